#pragma once

#include <unordered_map>
#include <vector>

class TVELKlasse;
class TVELPlan;

namespace uDataUtils {

/// The classes that are taught within others.
class TIntegratedClasses {
 public:
  explicit TIntegratedClasses(const TVELPlan& APlan);

  /// Those that are taught within one of the classes, in the order of the plan.
  std::vector<TVELKlasse*> Of(const std::vector<TVELKlasse*>& AClasses) const;

 private:
  struct TPlace {
    int Place;
    TVELKlasse* Class;
  };

  std::unordered_map<const TVELKlasse*, std::vector<TPlace>> FWithin;
};

}  // namespace uDataUtils
