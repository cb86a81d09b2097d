#pragma once

#include <array>
#include <bit>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>

/// Identity of a data object: 16 bytes in the order of the text form (RFC 4122, network order).
struct TGUID {
  std::array<std::uint8_t, 16> Bytes{};

  bool IsZero() const { return *this == TGUID{}; }
  friend bool operator==(const TGUID& A, const TGUID& B) {
    // Two words at once: identities are compared millions of times while a plan is read.
    using TWords = std::array<std::uint64_t, 2>;
    return std::bit_cast<TWords>(A.Bytes) == std::bit_cast<TWords>(B.Bytes);
  }
  friend auto operator<=>(const TGUID&, const TGUID&) = default;
};

namespace QuillonGuid {

/// Characters of the braced text form.
inline constexpr std::size_t BracedLength = 38;
/// Characters of the plain text form.
inline constexpr std::size_t PlainLength = 36;

/// A random GUID (RFC 4122, version 4) from the operating system's generator.
TGUID New();

/// A name-based GUID of version 5 (RFC 4122, section 4.3).
/// @param AName the name in UTF-8
TGUID FromName(const TGUID& ANamespace, std::string_view AName);

/// Reads the 38-character form with braces, in either case; nothing else is accepted.
std::optional<TGUID> TryParse(std::string_view AText);

/// As TryParse.
/// @throws EQuillonConvertError for any other text
TGUID Parse(std::string_view AText);

/// Appends the data file's form: braces and upper-case digits, 38 characters.
void AppendBraced(std::string& ATarget, const TGUID& AGuid);
std::string Braced(const TGUID& AGuid);

/// Appends the exchange files' form: lower-case digits without braces, 36 characters.
void AppendPlain(std::string& ATarget, const TGUID& AGuid);
std::string Plain(const TGUID& AGuid);

}  // namespace QuillonGuid

/// A hash of all 16 bytes under a seed that is unknown to whoever made a file, so that nobody can aim at one slot.
class TGuidHash {
 public:
  /// Draws the seed.
  TGuidHash() { std::memcpy(&FSeed, QuillonGuid::New().Bytes.data(), sizeof FSeed); }

  std::uint64_t operator()(const TGUID& AGuid) const {
    const auto [High, Low] = std::bit_cast<std::array<std::uint64_t, 2>>(AGuid.Bytes);
    return Mix(Mix(High ^ FSeed) + Low);
  }

 private:
  static std::uint64_t Mix(std::uint64_t AValue) {
    AValue ^= AValue >> 32;
    AValue *= 0xD6E8FEB86659FD93U;
    AValue ^= AValue >> 32;
    AValue *= 0xD6E8FEB86659FD93U;
    return AValue ^ (AValue >> 32);
  }

  std::uint64_t FSeed = 0;
};
