#include "failures/Allocations.h"

#include <cstdlib>
#include <new>

thread_local int LeftAllocations = -1;

void* operator new(std::size_t ASize) {
  if (LeftAllocations >= 0 && LeftAllocations-- == 0) {
    throw std::bad_alloc();
  }
  if (void* const Block = std::malloc(ASize == 0 ? 1 : ASize)) {
    return Block;
  }
  throw std::bad_alloc();
}
void operator delete(void* ABlock) noexcept { std::free(ABlock); }
void operator delete(void* ABlock, std::size_t /*ASize*/) noexcept { std::free(ABlock); }
