#pragma once

#include <cstdint>
#include <string>

#include "QuillonTypes.h"

/// What can happen to an object or a list; the values are those of the change log.
enum class TQuillonDataOperationKind : std::uint8_t {
  Creation,
  Modification,
  Release,
  Insertion,
  Deletion,
  Clearance,
  Move
};

enum TQuillonDataConflictType : std::uint8_t {
  ctObjectMissing,
  ctObjectListMissing,
  ctObjectModified,
  ctObjectListModified,
  ctSemanticConflict,
  ctTooMuchChanges
};

/// A change that does not go together with what the storage holds.
class EQuillonDataConflict : public EQuillonException {
 public:
  EQuillonDataConflict(TQuillonDataConflictType AType, const std::string& AMessage)
      : EQuillonException(AMessage), FConflictType(AType) {}

  TQuillonDataConflictType FConflictType;
};
