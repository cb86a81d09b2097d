#pragma once

#include <set>

#include "QuillonGuid.h"

class TQuillonDataList;
class TQuillonDataObject;

namespace uDataUtils {

/// TQuillonDataList::Contains for many looks at a list that does not change meanwhile, however long that is.
class TItemSet {
 public:
  explicit TItemSet(const TQuillonDataList& AList);

  bool Contains(const TQuillonDataObject* AnItem) const;

 private:
  const TQuillonDataList& FList;
  std::set<TGUID> FIdentities;  ///< empty for a list that is as soon looked through
};

}  // namespace uDataUtils
