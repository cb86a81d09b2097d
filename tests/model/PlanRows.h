#pragma once

#include <vector>

#include "data/DataRows.h"
#include "uPlandaten/Plan.h"

/// Generic work on the rows of a plan's classes.
namespace PlanRows {

using DataRows::Descendants;
using DataRows::Snapshot;
using DataRows::TDetail;

/// All classes of a plan, ordered by tag and display text.
inline std::vector<const TQuillonDataClass*> Classes() {
  uPlandaten::RegisterClasses(TQuillonDataClassRegistry::Instance());
  return DataRows::Descendants(TVELDataObject::Class());
}

class TFiller : public DataRows::TFiller {
 public:
  explicit TFiller(unsigned ASeed) : DataRows::TFiller(ASeed) { Classes(); }
};

}  // namespace PlanRows
