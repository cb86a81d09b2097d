#include "uDataUtils/ItemSet.h"

#include "QuillonDataObjects/DataList.h"

namespace uDataUtils {

namespace {

constexpr int FewItems = 32;

}  // namespace

TItemSet::TItemSet(const TQuillonDataList& AList) : FList(AList) {
  if (AList.Count() <= FewItems) {
    return;
  }
  for (const TQuillonDataObject* Item : AList.Items()) {
    if (Item != nullptr) {
      FIdentities.insert(Item->ID());
    }
  }
}

bool TItemSet::Contains(const TQuillonDataObject* AnItem) const {
  return FIdentities.empty() ? FList.Contains(AnItem) : AnItem != nullptr && FIdentities.contains(AnItem->ID());
}

}  // namespace uDataUtils
