#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

#include "QuillonDataObjects/DataObject.h"
#include "QuillonDataObjects/Operations.h"

/// Does to a storage what the operations of a log tell, one after the other.
///
/// An operation that finds what it would bring about already does nothing. One whose object or list is gone, or has
/// been changed by others since, raises EQuillonDataConflict: seeing to it that nothing of the log stays is up to the
/// caller. A log comes from outside: whatever it tells, the storage stays whole.
class TQuillonDataPlayback {
 public:
  using TOperation = TQuillonDataOperation;

  /// @param AnOperations must outlive the playback
  TQuillonDataPlayback(TQuillonDataStorage& AStorage, std::span<const TOperation> AnOperations);

  void Run();

  /// The kinds of operations.
  void Create(const TOperation& AnOperation);
  void Modify(const TOperation& AnOperation);
  void Release(const TOperation& AnOperation);
  void Insert(const TOperation& AnOperation);
  void Delete(const TOperation& AnOperation);
  void Clear(const TOperation& AnOperation);
  void Move(const TOperation& AnOperation);

 private:
  /// The next operation that names the object of this one; null if there is none.
  const TOperation* NextOf(const TOperation& AnOperation) const;
  /// The class of the object that the operation creates.
  const TQuillonDataClass& ClassOf(const TOperation& AnOperation) const;
  /// The object that the operation names, if it is of the class; null if there is none.
  TQuillonDataObject* Find(const TOperation& AnOperation, const TQuillonDataClass& AClass) const;
  /// As Find; a missing one and one that others have changed are conflicts.
  TQuillonDataObject& Require(const TOperation& AnOperation, const TQuillonDataClass& AClass) const;
  TQuillonDataList& RequireList(const TOperation& AnOperation) const;
  void CheckList(const TOperation& AnOperation, const TQuillonDataList& AList) const;
  /// Ends the operation on a list.
  /// @param AnItem what entered the list or was moved in it; may be null
  void Finish(const TOperation& AnOperation, TQuillonDataObject* AnItem);

  TQuillonDataStorage& FStorage;
  std::span<const TOperation> FOperations;
  std::vector<std::size_t> FNext;  ///< for each operation the place of the next one that names its object
};
