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

void TQuillonDataObjectReader::ReadContent(TQuillonDataObject& AnObject, TFailed AFailed) {
  // No plan comes near; a damaged file may.
  constexpr std::size_t MaxLevels = 256;
  if (FBeingRead.size() >= MaxLevels || std::ranges::find(FBeingRead, &AnObject) != FBeingRead.end()) {
    throw EQuillonDataObjectReaderError(AnObject.GetPublicClassName() + " " + QuillonGuid::Braced(AnObject.ID()) +
                                        " ist in sich selbst oder zu tief verschachtelt.");
  }
  FBeingRead.push_back(&AnObject);
  try {
    AnObject.ReadProperties(*this);
  } catch (...) {
    FBeingRead.pop_back();
    if (AFailed == TFailed::Freed && !TQuillonDataHolder::IsHeld(AnObject)) {
      QuillonDataObjects::ClearReferences(FStorage, AnObject);
      QuillonDataObjects::Free(&AnObject);
    }
    throw;
  }
  FBeingRead.pop_back();
}
