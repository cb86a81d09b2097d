#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <type_traits>

#include "QuillonGuid.h"
#include "QuillonTypes.h"

/// A value that could not be written whole.
class EQuillonWriterError : public EQuillonException {
 public:
  EQuillonWriterError() : EQuillonException("Es konnten nicht alle Daten geschrieben werden.") {}
};

/// A value that could not be read whole, or has a length below zero.
class EQuillonReaderError : public EQuillonException {
 public:
  EQuillonReaderError() : EQuillonException("Es konnten nicht alle Daten gelesen werden.") {}
};

/// A transfer that the handler of its progress has ended.
class EQuillonStreamAbort : public EQuillonException {
 public:
  EQuillonStreamAbort() : EQuillonException("Datentransfer wurde vorzeitig abgebrochen.") {}
};

/// Is told about a transfer: the bytes so far, those of the whole, and a flag that ends the transfer if it is set.
using TQuillonStreamProgressEvent = std::function<void(std::int64_t APosition, std::int64_t ATotal, bool& DoAbort)>;

/// Numbers that stand on streams in a form of their own, for fields of such a kind.
struct TExtended {
  double Value = 0;  ///< in the ten bytes of QuillonExtended
  friend bool operator==(const TExtended&, const TExtended&) = default;
};
struct TComp {
  std::int64_t Value = 0;
  friend bool operator==(const TComp&, const TComp&) = default;
};
struct TCurrency {
  std::int64_t TenThousandths = 0;
  /// The amount times 10,000, rounded to the nearest whole number, of two equally near ones the even one.
  /// @throws EQuillonConvertError for an amount that has no place in 64 bits
  static TCurrency Of(double AnAmount);
  double Amount() const { return static_cast<double>(TenThousandths) / 10'000; }
  friend bool operator==(const TCurrency&, const TCurrency&) = default;
};

/// What a drawing is made with, as it stands on streams; nothing is drawn here.
struct TQuillonBrush {
  std::int32_t Color = 0;
  std::uint8_t Style = 0;
  friend bool operator==(const TQuillonBrush&, const TQuillonBrush&) = default;
};
struct TQuillonPen {
  std::int32_t Color = 0;
  std::uint8_t Mode = 0;
  std::uint8_t Style = 0;
  std::int32_t Width = 0;
  friend bool operator==(const TQuillonPen&, const TQuillonPen&) = default;
};
struct TQuillonFont {
  std::string Name;
  std::int32_t Color = 0;
  std::int32_t Size = 0;
  std::uint8_t Styles = 0;
  friend bool operator==(const TQuillonFont&, const TQuillonFont&) = default;
};

namespace QuillonStreams {

/// Bytes that are moved in one go, and how far memory runs ahead of what really comes.
inline constexpr std::size_t PieceSize = 65'536;

/// Places of a GUID record's bytes in the order of its text: its first three fields have their lowest byte first.
inline constexpr std::array<std::uint8_t, 16> GuidPlaces = {3, 2, 1, 0, 5, 4, 7, 6, 8, 9, 10, 11, 12, 13, 14, 15};

/// The unsigned integer with the bytes of a plain value.
template <std::size_t Size>
using TBits = std::conditional_t<
    Size == 1, std::uint8_t,
    std::conditional_t<Size == 2, std::uint16_t, std::conditional_t<Size == 4, std::uint32_t, std::uint64_t>>>;

/// @throws EQuillonStreamAbort if the handler wants so
inline void Report(const TQuillonStreamProgressEvent& AnEvent, std::size_t APosition, std::size_t ATotal) {
  bool DoAbort = false;
  if (AnEvent) {
    AnEvent(static_cast<std::int64_t>(APosition), static_cast<std::int64_t>(ATotal), DoAbort);
  }
  if (DoAbort) {
    throw EQuillonStreamAbort();
  }
}

}  // namespace QuillonStreams
