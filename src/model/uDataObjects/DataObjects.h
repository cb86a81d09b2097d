#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "QuillonDataObjects/Conflict.h"
#include "QuillonDataObjects/DataClass.h"
#include "QuillonDataObjects/DataList.h"
#include "QuillonDataObjects/Storage.h"

/// Base of all objects of a plan.
class TVELDataObject : public TQuillonDataObject {
 public:
  static const TQuillonDataClass& Class();

  std::int32_t FTag = 0;  ///< scratch value of the running program, never stored
  std::string FCustomID;  ///< identifier given by an outside system

  /// Copies the content; the storage of this object takes over the file version of the other's.
  /// @throws EQuillonAssignError for an object of an unrelated class
  void Assign(const TQuillonObject& AnObject) override;
  /// Does nothing without storage and while the storage's change tracking is locked.
  void Change() override;
  /// Tests what an operation that another user has logged makes of this object.
  /// @param AList the list that receives the object; may be null
  /// @throws EQuillonDataConflict
  virtual void CheckConflict(TQuillonDataOperationKind /*AKind*/, const TQuillonDataList* /*AList*/) const {}
  void AfterOperation(TQuillonDataOperationKind AKind, const TQuillonDataList* AList) override {
    CheckConflict(AKind, AList);
  }
  /// The class's display text, with what this object is told by.
  std::string GetDisplayName() const override;

 protected:
  /// True for the operations that can bring in a conflict: an object that is changed, or enters a list.
  static bool MayConflict(TQuillonDataOperationKind AKind) {
    return AKind == TQuillonDataOperationKind::Modification || AKind == TQuillonDataOperationKind::Insertion;
  }
  /// Takes every reference to this object out of its storage, unless that is cleared or destroyed.
  void FreeProperties() override;
  /// What stands for "%s" in the display text.
  virtual std::string DisplayArgument() const { return {}; }
  /// Release of the file that is being read.
  TQuillonRelease FileRelease() const;
};

/// Base of all lists of a plan.
class TVELDataList : public TQuillonListOf<TVELDataObject> {
 public:
  using TQuillonListOf::TQuillonListOf;

  /// Does nothing without storage and while the storage's change tracking is locked.
  void Change() override;
  /// The first item with the identifier, an empty one included; null if there is none.
  TVELDataObject* FindCustomID(std::string_view ACustomID) const;

 protected:
  void ReleaseReferences() override;
};

namespace uDataObjects {

/// The object as one of class T or of a descendant; null if it is none, or null.
template <class T>
const T* As(const TQuillonDataObject* AnObject) {
  return AnObject != nullptr && AnObject->DataClass().DescendsFrom(T::Class()) ? static_cast<const T*>(AnObject)
                                                                               : nullptr;
}
template <class T>
T* As(TQuillonDataObject* AnObject) {
  return const_cast<T*>(As<T>(const_cast<const TQuillonDataObject*>(AnObject)));
}

}  // namespace uDataObjects

/// Base of the product's storages.
class TVELDataStorage : public TQuillonDataStorage {
 public:
  static const TQuillonDataClass& Class();

  /// Loads the document that is the first entry of an archive; nothing changes for an archive without entries, an empty
  /// name or a file that does not exist.
  /// @throws EQuillonZipError, and what loading raises
  void LoadFromZipFile(const std::string& AZipFileName);
  /// Saves the document as the one entry of an archive, named after the archive's file without extension.
  /// @throws EQuillonZipError, EQuillonFileHandleError
  void SaveToZipFile(const std::string& AZipFileName);
};
