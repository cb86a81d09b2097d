#include "uDataObjects/DataObjects.h"

#include "QuillonDataObjects/Sweep.h"
#include "QuillonFileReplacement.h"
#include "QuillonFileSystem.h"
#include "QuillonZip.h"
#include "platform/Process.h"

const TQuillonDataClass& TVELDataObject::Class() {
  using T = TVELDataObject;
  static const TQuillonDataClass Class =
      DescribeAbstractClass<T, TQuillonDataObject>("TVELDataObject").String<&T::FCustomID>("CID").AlwaysWritten();
  return Class;
}

void TVELDataObject::Assign(const TQuillonObject& AnObject) {
  const auto* const Source = dynamic_cast<const TVELDataObject*>(&AnObject);
  if (Source == nullptr) {
    TQuillonDataObject::Assign(AnObject);
    return;
  }
  QuillonDataObjects::AssignRows(*this, *Source);
  TQuillonDataStorage* const Own = Storage();
  const TQuillonDataStorage* const Other = Source->Storage();
  if (Own != nullptr && Other != nullptr) {
    Own->FFileVersion = Other->FFileVersion;
  }
}

namespace {

/// True if changes count at present; a change that is not tracked is counted all the same.
bool TracksChange(const TQuillonDataAbstractObject& AnObject) {
  TQuillonDataStorage* const Store = AnObject.Storage();
  if (Store != nullptr && Store->IsChangeTrackingLocked()) {
    Store->CountChange();
    return false;
  }
  return Store != nullptr;
}

}  // namespace

void TVELDataObject::Change() {
  if (TracksChange(*this)) {
    TQuillonDataObject::Change();
  }
}

void TVELDataObject::FreeProperties() {
  if (TQuillonDataStorage* const Store = QuillonDataObjects::SweptStorage(*this)) {
    QuillonDataObjects::ClearReferences(*Store, *this);
  }
  TQuillonDataObject::FreeProperties();
}

std::string TVELDataObject::GetDisplayName() const {
  const bool HasText = !DataClass().DisplayFormat().empty();
  return HasText ? DataClass().DisplayText(DisplayArgument()) : TQuillonDataObject::GetDisplayName();
}

TQuillonRelease TVELDataObject::FileRelease() const {
  const TQuillonDataStorage* const Store = Storage();
  return Store != nullptr ? Store->FileRelease() : TQuillonRelease{};
}

void TVELDataList::Change() {
  if (TracksChange(*this)) {
    TQuillonListOf::Change();
  }
}

void TVELDataList::ReleaseReferences() {
  if (TQuillonDataStorage* const Store = QuillonDataObjects::SweptStorage(*this)) {
    QuillonDataObjects::ClearReferences(*Store, Items());
  }
}

TVELDataObject* TVELDataList::FindCustomID(std::string_view ACustomID) const {
  for (TVELDataObject* Item : *this) {
    if (Item != nullptr && Item->FCustomID == ACustomID) {
      return Item;
    }
  }
  return nullptr;
}

const TQuillonDataClass& TVELDataStorage::Class() {
  static const TQuillonDataClass Class = DescribeAbstractClass<TVELDataStorage, TQuillonDataStorage>("TVELDataStorage");
  return Class;
}

void TVELDataStorage::LoadFromZipFile(const std::string& AZipFileName) {
  if (AZipFileName.empty() || !TQuillonFileSystem::IsFile(AZipFileName)) {
    return;
  }
  TQuillonZipEntryStream Document(QuillonIO::ReadIntoBuffer(AZipFileName));
  if (Document.HasEntry()) {
    Platform::ExpectMemory(Document.ClaimedSize());
    LoadFromXML(Document, AZipFileName);
  }
}

void TVELDataStorage::SaveToZipFile(const std::string& AZipFileName) {
  const std::string Entry = TQuillonFilePath::GetFileNameWithoutExtension(AZipFileName);
  QuillonIO::ReplaceFile(AZipFileName, QuillonZip::MakeArchive(Entry, SaveToXML()));
}
