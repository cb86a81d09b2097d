#pragma once

#include <string>
#include <string_view>

/// What XML documents can hold, and how to hold the rest.
namespace QuillonXMLText {

/// The text as the name of an element (XML 1.0, fifth edition; a colon is no part of it): each UTF-16 unit that may not
/// stand where it does as "_xHHHH_", and so the "_" of a text that begins like such an escape. Bytes that are no UTF-8
/// become U+FFFD.
std::string EscapeName(std::string_view AText);
/// The text that EscapeName made the name of.
std::string UnescapeName(std::string_view AName);

/// The text with U+FFFD for all that is no character of XML.
std::string OnlyCharacters(std::string_view AText);

}  // namespace QuillonXMLText
