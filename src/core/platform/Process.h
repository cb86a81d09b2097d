#pragma once

#include <cstdint>

namespace Platform {

/// The most memory that this process has had in use at a time so far, in bytes; 0 where the system does not tell.
std::uint64_t PeakMemory();

/// Whether memory counts against a limit of this process before it is touched: RLIMIT_AS or RLIMIT_DATA.
bool IsMemoryLimited();

/// Prepares for about so many bytes that are going to be allocated piece by piece. A hint, which takes no memory ahead:
/// where the system has large pages for who asks (Linux, "madvise"), the memory comes in these, and a seventh of a
/// load's time is saved, which the first touch of each small page takes. From then on the process keeps what it frees.
/// Nothing is done where memory is limited.
void ExpectMemory(std::uint64_t ASize);

}  // namespace Platform
