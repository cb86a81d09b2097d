#pragma once

#include <array>
#include <bit>
#include <compare>
#include <cstddef>
#include <cstdint>
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
