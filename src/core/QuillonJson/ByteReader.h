#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

/// Hands out the bytes of a JSON text. In UTF-8 each character beyond ASCII comes as the escapes (\uXXXX) of its UTF-16
/// units.
class TQuillonJSONByteReader {
 public:
  /// Reads from AnOffset up to ARange, which is not past the data. A byte order mark of UTF-8 is passed over and turns
  /// AnIsUtf8 on.
  TQuillonJSONByteReader(std::string_view AData, std::size_t AnOffset, std::size_t ARange, bool AnIsUtf8);

  bool Empty() const { return FUtf8offset == FUtf8length && FOffset >= FRange; }
  /// The next byte, of which there must be one.
  /// @throws EQuillonJSONError for bytes that are no UTF-8
  char PeekByte();
  /// As PeekByte, and goes past it.
  char ConsumeByte();
  /// Offset of the next byte; within a character's escapes, of the character.
  std::size_t Offset() const { return FOffset; }
  bool IsUTF8() const { return FIsUTF8; }

 private:
  void ReadCharacter();
  void AppendUnit(std::uint32_t AUnit);

  static constexpr std::size_t EscapeSize = 6;

  std::string_view FData;
  std::size_t FOffset;
  std::size_t FRange;
  bool FIsUTF8;
  std::array<char, 2 * EscapeSize> FUtf8data{};
  std::size_t FUtf8offset = 0;
  std::size_t FUtf8length = 0;
  std::size_t FSequenceSize = 0;
};
