#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>

class TQuillonDataObject;

/// The pointers of a list: count and room stand ahead of the first item. A list that had no item yet, as most of a
/// plan, takes a pointer's place and no memory.
class TQuillonItems {
 public:
  using TItem = TQuillonDataObject*;

  std::size_t size() const { return FHead != nullptr ? FHead->Count : 0; }
  bool empty() const { return size() == 0; }
  TItem* begin() { return FHead != nullptr ? FHead->Items() : nullptr; }
  TItem* end() { return begin() + size(); }
  const TItem* begin() const { return FHead != nullptr ? FHead->Items() : nullptr; }
  const TItem* end() const { return begin() + size(); }
  TItem& operator[](std::size_t AnIndex) { return begin()[AnIndex]; }
  TItem operator[](std::size_t AnIndex) const { return begin()[AnIndex]; }

  /// @throws std::bad_alloc, and leaves the items as they are
  void push_back(TItem AnItem) { insert(end(), AnItem); }
  void pop_back() { --FHead->Count; }
  /// @throws as push_back
  void insert(TItem* APlace, TItem AnItem);
  void erase(TItem* AFirst, TItem* ALast);
  void erase(TItem* APlace) { erase(APlace, APlace + 1); }

 private:
  struct THead {
    std::uint32_t Count;
    std::uint32_t Room;

    TItem* Items() { return reinterpret_cast<TItem*>(this + 1); }
  };
  struct TFree {
    void operator()(THead* AHead) const { std::free(AHead); }
  };

  void Grow();

  std::unique_ptr<THead, TFree> FHead;
};
