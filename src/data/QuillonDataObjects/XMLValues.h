#pragma once

#include <string>
#include <string_view>
#include <vector>

class TQuillonDataAbstractObject;
struct TQuillonDataRow;

/// Text forms of the plain kinds of rows in XML documents.
namespace QuillonXMLValues {

/// Puts the value of an element's text into the row's field.
/// @throws EQuillonConvertError for a text that is no value of the row's kind
void Read(TQuillonDataAbstractObject& AnObject, const TQuillonDataRow& ARow, std::string_view AText);

/// Appends the text of the row's field, without the escapes of XML.
void Append(std::string& ATarget, const TQuillonDataAbstractObject& AnObject, const TQuillonDataRow& ARow);

/// Items joined by ",", one with a blank, comma, quote or control character in double quotes, inner quotes doubled.
std::string JoinStrings(const std::vector<std::string>& AStrings);
std::vector<std::string> SplitStrings(std::string_view AText);

}  // namespace QuillonXMLValues
