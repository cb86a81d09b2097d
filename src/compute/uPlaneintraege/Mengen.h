#pragma once

#include <algorithm>
#include <cstddef>
#include <unordered_set>
#include <vector>

#include "uPlandaten/Listen.h"

/// The lists of an entry as sets that keep their order.
namespace uPlaneintraege {

template <class T>
bool Holds(const std::vector<T*>& AList, const T* AnItem) {
  return std::ranges::find(AList, AnItem) != AList.end();
}

/// Adds what is missing and not excepted, in its order; null does not count. Long lists are no slower than short ones.
template <class T>
void Merge(std::vector<T*>& ATarget, const std::vector<T*>& AnItems, const std::vector<T*>& AnExcepted = {}) {
  constexpr std::size_t FewItems = 32;
  if (ATarget.size() + AnItems.size() + AnExcepted.size() <= FewItems) {
    for (T* const Item : AnItems) {
      if (Item != nullptr && !Holds(ATarget, Item) && !Holds(AnExcepted, Item)) {
        ATarget.push_back(Item);
      }
    }
    return;
  }
  std::unordered_set<const T*> Known(ATarget.begin(), ATarget.end());
  Known.insert(AnExcepted.begin(), AnExcepted.end());
  Known.insert(nullptr);
  std::ranges::copy_if(AnItems, std::back_inserter(ATarget),
                       [&](const T* AnItem) { return Known.insert(AnItem).second; });
}

template <class T>
void Join(std::vector<T*>& ATarget, T* AnItem) {
  if (AnItem != nullptr && !Holds(ATarget, AnItem)) {
    ATarget.push_back(AnItem);
  }
}

/// The items of a list that are of the class.
template <class T>
std::vector<T*> ItemsOf(std::span<TQuillonDataObject* const> AnItems) {
  std::vector<T*> Found;
  for (TQuillonDataObject* const Item : AnItems) {
    if (auto* const Own = uDataObjects::As<T>(Item)) {
      Found.push_back(Own);
    }
  }
  return Found;
}

}  // namespace uPlaneintraege
