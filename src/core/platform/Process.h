#pragma once

#include <cstdint>

namespace Platform {

/// The most memory that this process has had in use at a time so far, in bytes; 0 where the system does not tell.
std::uint64_t PeakMemory();

}  // namespace Platform
