#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "QuillonDataObjects/Conflict.h"
#include "QuillonGuid.h"

class TQuillonDataList;
class TQuillonDataObject;
class TQuillonDataPlayback;
class TQuillonReader;
class TQuillonWriter;
struct TQuillonDataEvent;
struct TQuillonDataOperationClass;

/// One thing that a user did to a storage, as a change log holds it. Which fields it has is up to its kind; the others
/// are empty.
struct TQuillonDataOperation {
  TQuillonDataOperationKind FKind = TQuillonDataOperationKind::Creation;
  std::int32_t FListIndex = 0;      ///< -1 for the place of the list's choice
  std::int64_t FObjectVersion = 0;  ///< what the operation has made it
  std::int64_t FListVersion = 0;    ///< what the operation has made it
  TGUID FObjectID;
  TGUID FListID;
  std::string FUserName;           ///< in whose name it was done
  std::string FObjectClassName;    ///< the class's tag
  std::string FObjectData;         ///< the object's rows, as QuillonDataObjects::WriteContent writes them
  std::string FObjectDisplayName;  ///< name in messages, at the time of the operation
  std::string FListDisplayName;

  /// What holds for all operations of the kind.
  const TQuillonDataOperationClass& Class() const;
  /// What just happens, or is about to happen; raises the version of the object or list that it happens to.
  static TQuillonDataOperation Record(TQuillonDataOperationKind AKind, const std::string& AnUserName,
                                      const TQuillonDataEvent& AnEvent);
  /// The kind and the fields that it has.
  void Write(TQuillonWriter& AWriter) const;
  /// A kind that is not known is taken for a clearance.
  /// @throws EQuillonReaderError
  static TQuillonDataOperation Read(TQuillonReader& AReader);

  friend bool operator==(const TQuillonDataOperation&, const TQuillonDataOperation&) = default;
};

/// What an operation is recorded from; what its kind does not ask for may be missing.
struct TQuillonDataEvent {
  TQuillonDataObject* Object = nullptr;
  TQuillonDataList* List = nullptr;
  std::int32_t Index = 0;
};

/// A field of a kind of operations.
struct TQuillonDataOperationField {
  void (*Write)(const TQuillonDataOperation& AnOperation, TQuillonWriter& AWriter);
  void (*Read)(TQuillonDataOperation& AnOperation, TQuillonReader& AReader);
  void (*Record)(TQuillonDataOperation& AnOperation, const TQuillonDataEvent& AnEvent);
};

/// A kind of operations: all that tells it from the others.
struct TQuillonDataOperationClass {
  enum class TRaised : std::uint8_t { Nothing, Object, List };

  TQuillonDataOperationKind Kind;
  std::string_view Name;
  std::span<const TQuillonDataOperationField> Fields;  ///< in their order on a stream, behind the user's name
  TRaised Raised;                                      ///< whose version a record raises
  void (TQuillonDataPlayback::*Play)(const TQuillonDataOperation& AnOperation);
};

namespace QuillonDataObjects {

/// All kinds, each at the place of its number.
std::span<const TQuillonDataOperationClass> OperationClasses();

}  // namespace QuillonDataObjects
