#pragma once

#include <algorithm>
#include <string>
#include <string_view>

#include "QuillonDataObjects/DataClass.h"
#include "QuillonDataObjects/Literal.h"

/// Base of all objects of a workspace. What refers to one forgets it when it goes.
class TQuillonRemoteWorkspaceObject : public TQuillonDataObject {
 public:
  static const TQuillonDataClass& Class();

  /// Copies the content.
  /// @throws EQuillonAssignError for an object of an unrelated class
  void Assign(const TQuillonObject& AnObject) override;
  /// The class's display text, with what this object is told by.
  std::string GetDisplayName() const override;

 protected:
  void FreeProperties() override;
  /// What stands for "%s" in the display text.
  virtual std::string DisplayArgument() const { return {}; }
};

/// Base of all lists of a workspace. What one owns lies in no other: else a few files that lie in each other's folders
/// could stand for more than any memory holds.
class TQuillonRemoteWorkspaceAbstractList : public TQuillonDataList {
 public:
  using TQuillonDataList::TQuillonDataList;

 protected:
  /// @throws EQuillonCollectionError for an item that another list owns
  void BeforeInsert(int AnIndex, TQuillonDataObject* AnItem) override;
  void ReleaseReferences() override;
};

namespace QuillonRemoteWorkspaces {

/// The description of a class that lists hold, where the class itself is only named.
template <class TItem>
const TQuillonDataClass& ItemClassOf();

}  // namespace QuillonRemoteWorkspaces

/// A list of items of one class, told from others by its name.
template <class TItem, TQuillonLiteral AName>
class TQuillonRemoteWorkspaceList : public TQuillonListOf<TItem, TQuillonRemoteWorkspaceAbstractList> {
 public:
  using TQuillonListOf<TItem, TQuillonRemoteWorkspaceAbstractList>::TQuillonListOf;

  static const TQuillonDataClass& Class() {
    static const TQuillonDataClass Description =
        DescribeAbstractClass<TQuillonRemoteWorkspaceList, TQuillonDataList>(AName.View());
    return Description;
  }
  const TQuillonDataClass& DataClass() const override { return Class(); }
  const TQuillonDataClass& ItemClass() const override { return QuillonRemoteWorkspaces::ItemClassOf<TItem>(); }
};

/// A list of items that have names. Letters count as they stand.
template <class TItem, TQuillonLiteral AName>
class TQuillonRemoteWorkspaceNamedList : public TQuillonRemoteWorkspaceList<TItem, AName> {
 public:
  using TBase = TQuillonRemoteWorkspaceList<TItem, AName>;
  using TBase::TBase;

  TItem* Find(const TGUID& AnID) const { return static_cast<TItem*>(TBase::Find(AnID)); }
  /// The first item of the name; null if there is none.
  TItem* Find(std::string_view AText) const {
    const auto Found = std::find_if(this->begin(), this->end(),
                                    [&](const TItem* AnItem) { return AnItem != nullptr && AnItem->FName == AText; });
    return Found == this->end() ? nullptr : *Found;
  }
  /// True if no item but AnObject, which may be null, has the name; an empty one is always free.
  bool Validate(const TItem* AnObject, std::string_view ANewName) const {
    return ANewName.empty() || std::none_of(this->begin(), this->end(), [&](const TItem* AnItem) {
             return AnItem != nullptr && AnItem != AnObject && AnItem->FName == ANewName;
           });
  }
};
