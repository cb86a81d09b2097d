#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "uDataUtils/Spans.h"

class TVELAenderung;
class TVELPlanobjekt;

/// The list of substitutions, as it hangs in a school's hall.
namespace uDataUtils {

class TPlanContext;

/// Which changes a list shows. A number above the last one shows none.
enum TSubstitutionMode : std::uint8_t { smAll, smSubstitutions, smOpenOnly, smWithoutOpen };

struct TSubstitutionFilter {
  TSpan Span;                                           ///< half-open
  std::span<const TVELPlanobjekt* const> Objects = {};  ///< whose changes; empty for all
  bool PublishedOnly = false;
  bool WithAbsentClasses = false;  ///< also those whose classes are all absent
  std::uint8_t Mode = smAll;
  std::function<bool(const TVELAenderung&)> Takes = {};  ///< asked ahead of all else; none takes all
};

/// The changes of a list in the order of time: substitutions, but of subjects that need none; additional lessons; room
/// changes that name a room; substitutions of supervisions; messages with a time of day.
/// @param AHasObjects tells whether the plan entry of a substitution shows missing or new objects; one without stays
///   only where its reason asks for it
std::vector<TVELAenderung*> AllSubstitutions(const TPlanContext& AContext, const TSubstitutionFilter& AFilter,
                                             const std::function<bool(const TVELAenderung&)>& AHasObjects);

}  // namespace uDataUtils
