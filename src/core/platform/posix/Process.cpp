#include "platform/Process.h"

#include <sys/mman.h>
#include <sys/resource.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace Platform {

std::uint64_t PeakMemory() {
  constexpr std::uint64_t Unit = 1024;  // getrusage(2) counts kilobytes
  rusage Usage{};
  return getrusage(RUSAGE_SELF, &Usage) == 0 ? static_cast<std::uint64_t>(Usage.ru_maxrss) * Unit : 0;
}

bool IsMemoryLimited() {
  return std::ranges::any_of(std::array{RLIMIT_AS, RLIMIT_DATA}, [](auto AResource) {
    rlimit Limit{};
    return getrlimit(AResource, &Limit) == 0 && Limit.rlim_cur != RLIM_INFINITY;
  });
}

#ifdef __GLIBC__

void ExpectMemory(std::uint64_t ASize) {
  constexpr std::size_t LargePage = std::size_t{1} << 21;
  constexpr std::size_t MostExpected = std::size_t{1} << 32;
  constexpr int LargestOfTheHeap = 1 << 25;
  constexpr int MappedBlocks = 1 << 16;  // the library's own number, see mallopt(3)
  if (ASize < LargePage || IsMemoryLimited()) {
    return;
  }
  // The heap grows once by all of it, keeps that, and has it marked while it is still untouched.
  mallopt(M_TRIM_THRESHOLD, -1);
  mallopt(M_MMAP_THRESHOLD, LargestOfTheHeap);
  mallopt(M_MMAP_MAX, 0);
  std::size_t Size = std::min<std::uint64_t>(ASize, MostExpected) + LargePage;
  const std::unique_ptr<void, decltype(&std::free)> Heap(std::malloc(Size), &std::free);
  mallopt(M_MMAP_MAX, MappedBlocks);
  if (void* Start = Heap.get(); std::align(LargePage, LargePage, Start, Size) != nullptr) {
    madvise(Start, Size / LargePage * LargePage, MADV_HUGEPAGE);
  }
}

#else

void ExpectMemory(std::uint64_t /*ASize*/) {}

#endif

}  // namespace Platform
