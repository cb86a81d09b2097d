#include "QuillonDataObjects/ReaderWriter.h"

#include <algorithm>

#include "QuillonDataObjects/DataClass.h"
#include "QuillonDataObjects/Storage.h"
#include "QuillonDataObjects/Sweep.h"

TQuillonDataObject* TQuillonDataObjectReader::FindKnown(const TQuillonDataClass& ABase, const TGUID& AnID) const {
  auto* const Found = static_cast<TQuillonDataObject*>(FStorage.Registry().GetObject(AnID, ABase));
  if (Found != nullptr) {
    TQuillonDataHolder::MarkNamed(*Found);
  }
  return Found;
}

TQuillonDataObject& TQuillonDataObjectReader::Create(const TQuillonDataClass& AClass, const TGUID& AnID) const {
  TQuillonDataObject& Object = *AClass.Create(&FStorage, AnID);
  TQuillonDataHolder::MarkNamed(Object);
  return Object;
}

void TQuillonDataObjectReader::ReadContent(TQuillonDataObject& AnObject) {
  FBeingRead.push_back(&AnObject);
  try {
    AnObject.ReadProperties(*this);
  } catch (...) {
    FBeingRead.pop_back();
    // A damaged file may nest an object in itself: the outer one ends it.
    if (!TQuillonDataHolder::IsHeld(AnObject) && std::ranges::find(FBeingRead, &AnObject) == FBeingRead.end()) {
      QuillonDataObjects::ClearReferences(FStorage, AnObject);
      QuillonDataObjects::Free(&AnObject);
    }
    throw;
  }
  FBeingRead.pop_back();
}
