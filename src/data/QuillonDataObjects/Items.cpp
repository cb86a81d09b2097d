#include "QuillonDataObjects/Items.h"

#include <algorithm>
#include <limits>
#include <new>

void TQuillonItems::Grow() {
  // The first room is what a heap's smallest block holds anyway.
  constexpr std::size_t FirstRoom = 2;
  static_assert(sizeof(THead) % alignof(TItem) == 0);
  const std::size_t Count = size();
  const std::size_t Room = std::max(FirstRoom, 2 * Count);
  if (Room > std::numeric_limits<std::uint32_t>::max()) {
    throw std::bad_alloc();
  }
  void* const Memory = std::realloc(FHead.get(), sizeof(THead) + Room * sizeof(void*));
  if (Memory == nullptr) {
    throw std::bad_alloc();
  }
  static_cast<void>(FHead.release());
  FHead.reset(new (Memory) THead{.Count = static_cast<std::uint32_t>(Count), .Room = static_cast<std::uint32_t>(Room)});
}

void TQuillonItems::insert(TItem* APlace, TItem AnItem) {
  const std::ptrdiff_t Index = APlace - begin();
  if (FHead == nullptr || FHead->Count == FHead->Room) {
    Grow();
  }
  TItem* const Place = begin() + Index;
  std::move_backward(Place, end(), end() + 1);
  *Place = AnItem;
  ++FHead->Count;
}

void TQuillonItems::erase(TItem* AFirst, TItem* ALast) {
  if (AFirst != ALast) {
    FHead->Count = static_cast<std::uint32_t>(std::move(ALast, end(), AFirst) - begin());
  }
}
