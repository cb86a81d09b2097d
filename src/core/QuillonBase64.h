#pragma once

#include <string>
#include <string_view>

/// Bytes as text: Base64 (RFC 4648, section 4).
namespace QuillonBase64 {

/// Without line breaks.
std::string Encode(std::string_view ABytes);
/// White space is passed over.
/// @throws EQuillonConvertError for what is no Base64
std::string Decode(std::string_view AText);

}  // namespace QuillonBase64
