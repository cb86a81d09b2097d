#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace Platform {

/// SHA-1 (RFC 3174) of one text behind the other.
/// @throws EQuillonWin32Error when the system has no such service
std::array<std::uint8_t, 20> Sha1(std::string_view AFirst, std::string_view ASecond);

}  // namespace Platform
