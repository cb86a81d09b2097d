#include "uDataUtils/Classes.h"

#include <algorithm>

#include "uPlandaten/Klassen.h"
#include "uPlandaten/Plan.h"

namespace uDataUtils {

TIntegratedClasses::TIntegratedClasses(const TVELPlan& APlan) {
  int Place = 0;
  for (TVELKlasse* const Class : APlan.FKlassen) {
    if (Class != nullptr && Class->FIntegrierteKlasse != nullptr) {
      FWithin[Class->FIntegrierteKlasse].push_back({Place, Class});
    }
    ++Place;
  }
}

std::vector<TVELKlasse*> TIntegratedClasses::Of(const std::vector<TVELKlasse*>& AClasses) const {
  if (FWithin.empty()) {
    return {};
  }
  std::vector<TPlace> Found;
  for (const TVELKlasse* Class : AClasses) {
    if (const auto Within = FWithin.find(Class); Within != FWithin.end()) {
      Found.insert(Found.end(), Within->second.begin(), Within->second.end());
    }
  }
  std::ranges::stable_sort(Found, {}, &TPlace::Place);
  std::vector<TVELKlasse*> Classes;
  std::ranges::transform(Found, std::back_inserter(Classes), &TPlace::Class);
  return Classes;
}

}  // namespace uDataUtils
