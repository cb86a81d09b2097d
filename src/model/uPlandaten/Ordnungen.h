#pragma once

#include <cstdint>
#include <unordered_map>
#include <vector>

#include "uPlandaten/Listen.h"

/// The orders of the large lists of a plan.
namespace uPlandaten {

/// The places of lessons in their order, equal ones for equal lessons. Comparing two lessons builds texts; here that of
/// each is built once.
class TLessonPlaces {
 public:
  /// @param ALists the lists whose lessons get a place; one may stand in several
  explicit TLessonPlaces(const std::vector<const TQuillonDataList*>& ALists);

  /// The place of a lesson of the lists.
  std::int32_t Of(const TQuillonDataObject& ALesson) const { return FPlaces.at(&ALesson); }
  /// Sorts a list of lessons that have a place.
  void Sort(TQuillonDataList& AList) const;

 private:
  std::unordered_map<const TQuillonDataObject*, std::int32_t> FPlaces;
};

/// The list's own order; the text of each item is built once.
void SortByTexts(TVELKalenderEintragList& AList);
void SortByTexts(TVELAnrechnungsliste& AList);

}  // namespace uPlandaten
