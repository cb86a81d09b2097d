#include "QuillonDataObjects/ReaderWriter.h"

#include "QuillonDataObjects/DataClass.h"
#include "QuillonDataObjects/Storage.h"

TQuillonDataObject& TQuillonDataObjectReader::FindOrCreate(const TQuillonDataClass& AClass, const TGUID& AnID) const {
  TQuillonDataAbstractObject* const Found = FStorage.Registry().GetObject(AnID, AClass);
  return Found != nullptr ? static_cast<TQuillonDataObject&>(*Found) : *AClass.Create(&FStorage, AnID);
}
