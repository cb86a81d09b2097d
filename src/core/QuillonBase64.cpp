#include "QuillonBase64.h"

#include <algorithm>
#include <cstdint>

#include "QuillonTypes.h"

namespace {

constexpr std::string_view Alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

}  // namespace

namespace QuillonBase64 {

std::string Encode(std::string_view ABytes) {
  std::string Text;
  Text.reserve((ABytes.size() + 2) / 3 * 4);
  for (std::size_t I = 0; I < ABytes.size(); I += 3) {
    const std::size_t Count = std::min<std::size_t>(3, ABytes.size() - I);
    std::uint32_t Group = 0;
    for (std::size_t J = 0; J < 3; ++J) {
      Group = (Group << 8) | (J < Count ? static_cast<std::uint8_t>(ABytes[I + J]) : 0U);
    }
    for (std::size_t J = 0; J < 4; ++J) {
      Text.push_back(J <= Count ? Alphabet[(Group >> (18 - 6 * J)) & 0x3F] : '=');
    }
  }
  return Text;
}

std::string Decode(std::string_view AText) {
  std::string Bytes;
  std::uint32_t Group = 0;
  int Bits = 0;
  bool IsPadded = false;
  for (const char C : AText) {
    if (C == ' ' || C == '\t' || C == '\r' || C == '\n') {
      continue;
    }
    const std::size_t Value = Alphabet.find(C);
    if (C == '=') {
      IsPadded = true;
    } else if (Value == std::string_view::npos || IsPadded) {
      throw EQuillonConvertError("der Text ist kein gültiges Base64.");
    } else {
      Group = (Group << 6) | static_cast<std::uint32_t>(Value);
      Bits += 6;
      if (Bits >= 8) {
        Bits -= 8;
        Bytes.push_back(static_cast<char>((Group >> Bits) & 0xFF));
      }
    }
  }
  return Bytes;
}

}  // namespace QuillonBase64
