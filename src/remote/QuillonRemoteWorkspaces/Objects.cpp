#include "QuillonRemoteWorkspaces/Objects.h"

#include "QuillonDataObjects/Storage.h"
#include "QuillonDataObjects/Sweep.h"

const TQuillonDataClass& TQuillonRemoteWorkspaceObject::Class() {
  static const TQuillonDataClass Class =
      DescribeAbstractClass<TQuillonRemoteWorkspaceObject, TQuillonDataObject>("TQuillonRemoteWorkspaceObject");
  return Class;
}

void TQuillonRemoteWorkspaceObject::Assign(const TQuillonObject& AnObject) {
  if (const auto* const Source = dynamic_cast<const TQuillonRemoteWorkspaceObject*>(&AnObject)) {
    QuillonDataObjects::AssignRows(*this, *Source);
  } else {
    TQuillonDataObject::Assign(AnObject);
  }
}

std::string TQuillonRemoteWorkspaceObject::GetDisplayName() const { return DataClass().DisplayText(DisplayArgument()); }

void TQuillonRemoteWorkspaceObject::FreeProperties() {
  if (TQuillonDataStorage* const Store = QuillonDataObjects::SweptStorage(*this)) {
    QuillonDataObjects::ClearReferences(*Store, *this);
  }
  TQuillonDataObject::FreeProperties();
}

void TQuillonRemoteWorkspaceAbstractList::BeforeInsert(int /*AnIndex*/, TQuillonDataObject* AnItem) {
  if (IsItemOwner() && TQuillonDataHolder::IsShared(*AnItem)) {
    throw EQuillonCollectionError(AnItem->GetDisplayName() + " liegt bereits in einer Liste.");
  }
}

void TQuillonRemoteWorkspaceAbstractList::ReleaseReferences() {
  if (TQuillonDataStorage* const Store = QuillonDataObjects::SweptStorage(*this)) {
    QuillonDataObjects::ClearReferences(*Store, Items());
  }
}
