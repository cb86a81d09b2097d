#pragma once

#include <algorithm>
#include <cstddef>
#include <limits>
#include <unordered_map>
#include <utility>
#include <vector>

#include "uDataUtils/Spans.h"

namespace uDataUtils {

/// Items with a span, by a key: whose they are. Filled once, then made, and asked from then on.
template <class TItem>
class TSpanIndex {
 public:
  void Add(const void* AKey, const TSpan& ASpan, TItem AnItem) { FEntries.push_back({AKey, ASpan, AnItem, 0}); }

  /// Ends the filling.
  void Make() {
    std::ranges::stable_sort(FEntries, [](const TEntry& A, const TEntry& B) {
      return A.Key != B.Key ? std::less<>()(A.Key, B.Key) : A.Span.Start < B.Span.Start;
    });
    for (std::size_t First = 0, Last = 0; First < FEntries.size(); First = Last) {
      while (Last < FEntries.size() && FEntries[Last].Key == FEntries[First].Key) {
        ++Last;
      }
      FParts.emplace(FEntries[First].Key, TPart{First, Last});
      SetLatest({First, Last});
    }
  }

  /// Calls AVisit with each item of the key whose span begins by ALatestStart and ends at AnEarliestFinish or later, by
  /// start and of equal ones in the order in which they were added, until it answers true. True if it did.
  /// Each item takes a time logarithmic in the number of all of the key.
  template <class TVisit>
  bool Visit(const void* AKey, TVELDateTime ALatestStart, TVELDateTime AnEarliestFinish, const TVisit& AVisit) const {
    const auto Part = FParts.find(AKey);
    return Part != FParts.end() && VisitPart(Part->second, ALatestStart, AnEarliestFinish, AVisit);
  }

 private:
  struct TEntry {
    const void* Key;
    TSpan Span;
    TItem Item;
    double Latest;  ///< finish of the part whose middle the entry is
  };
  /// Entries from First up to, but without, Last. Its middle one parts it into two.
  struct TPart {
    std::size_t First;
    std::size_t Last;

    bool IsEmpty() const { return First == Last; }
    std::size_t Middle() const { return First + (Last - First) / 2; }
    TPart Left() const { return {First, Middle()}; }
    TPart Right() const { return {Middle() + 1, Last}; }
  };

  double SetLatest(const TPart& APart) {
    if (APart.IsEmpty()) {
      return -std::numeric_limits<double>::infinity();
    }
    TEntry& Middle = FEntries[APart.Middle()];
    Middle.Latest = std::max<double>({Middle.Span.Finish, SetLatest(APart.Left()), SetLatest(APart.Right())});
    return Middle.Latest;
  }

  template <class TVisit>
  bool VisitPart(const TPart& APart, double ALatestStart, double AnEarliestFinish, const TVisit& AVisit) const {
    if (APart.IsEmpty()) {
      return false;
    }
    const TEntry& Middle = FEntries[APart.Middle()];
    if (Middle.Latest < AnEarliestFinish) {
      return false;
    }
    if (VisitPart(APart.Left(), ALatestStart, AnEarliestFinish, AVisit)) {
      return true;
    }
    if (Middle.Span.Start > ALatestStart) {
      return false;
    }
    return (Middle.Span.Finish >= AnEarliestFinish && AVisit(Middle.Item)) ||
           VisitPart(APart.Right(), ALatestStart, AnEarliestFinish, AVisit);
  }

  std::vector<TEntry> FEntries;  ///< by key and start
  std::unordered_map<const void*, TPart> FParts;
};

}  // namespace uDataUtils
