#pragma once

#include <cstddef>
#include <span>

namespace Platform {

/// Fills the bytes from the operating system's cryptographic generator.
/// @throws EQuillonWin32Error when the system has none to give
void FillRandom(std::span<std::byte> ABytes);

}  // namespace Platform
