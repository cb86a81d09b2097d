#include "QuillonClasses/Lines.h"

#include <algorithm>

TQuillonItem TQuillonLine::Pop() {
  TQuillonItem Item = Peek();
  if (!FList.empty()) {
    FList.pop_back();
  }
  return Item;
}

TQuillonItem TQuillonLine::Remove(const TQuillonPersistent* AnObject) {
  const auto Found = std::ranges::find_if(
      FList, [&](const TQuillonItem& AnItem) { return QuillonClasses::AreEqual(AnItem.get(), AnObject); });
  if (Found == FList.end()) {
    return nullptr;
  }
  TQuillonItem Item = std::move(*Found);
  FList.erase(Found);
  return Item;
}
