#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <functional>
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
