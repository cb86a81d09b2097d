#include "QuillonStreams/Objects.h"

#include <algorithm>
#include <utility>

#include "QuillonText.h"

namespace {

/// Levels of objects within each other: far more than any class has, and far fewer than a thread's stack has room for.
constexpr int MaxDepth = 256;

void CheckLevels(int ADepth) {
  if (ADepth >= MaxDepth) {
    throw EQuillonPersistentError("Die Objekte sind zu tief geschachtelt.");
  }
}

/// Counts a level as long as it lives.
class TLevel {
 public:
  explicit TLevel(int& ADepth) : FDepth(ADepth) {
    CheckLevels(FDepth);
    ++FDepth;
  }
  TLevel(const TLevel&) = delete;
  TLevel& operator=(const TLevel&) = delete;
  ~TLevel() { --FDepth; }

 private:
  int& FDepth;
};

template <class TAction>
void ForEachProperty(const TQuillonPersistentClass& AClass, const TAction& AnAction) {
  if (AClass.Base != nullptr) {
    ForEachProperty(*AClass.Base, AnAction);
  }
  for (const TQuillonProperty& Property : AClass.Properties) {
    AnAction(Property);
  }
}

std::shared_ptr<TQuillonPersistent> MakeObject(const std::string& AClassName) {
  if (AClassName.empty()) {
    throw EQuillonPersistentError("Kein Klassenname gefunden.");
  }
  const TQuillonPersistentClass* Class = TQuillonClassRegistry::Instance().GetClass(AClassName);
  if (Class == nullptr) {
    throw EQuillonPersistentError("Klasse " + QuillonText::Quoted(AClassName) + " wurde nicht registriert.");
  }
  return Class->Create();
}

/// The object's graph as a stream of its own.
std::string BytesOf(const TQuillonPersistent& AnObject) {
  TQuillonMemoryStream Stream;
  TQuillonStreamWriter Writer(Stream);
  TQuillonObjectWriter(Writer).WriteObject(&AnObject);
  return Stream.TakeContent();
}

constexpr std::size_t BufferSize = 4096;

}  // namespace

TQuillonClassRegistry& TQuillonClassRegistry::Instance() {
  static TQuillonClassRegistry Registry;
  return Registry;
}

const TQuillonPersistentClass* TQuillonClassRegistry::GetClass(std::string_view AName) const {
  const auto Found = FClassMap.find(AName);
  return Found == FClassMap.end() ? nullptr : Found->second;
}

void TQuillonPersistent::WriteProperties(TQuillonObjectWriter& AWriter) const {
  ForEachProperty(PersistentClass(), [&](const TQuillonProperty& AProperty) { AProperty.Write(*this, AWriter); });
}

void TQuillonPersistent::ReadProperties(TQuillonObjectReader& AReader) {
  ForEachProperty(PersistentClass(), [&](const TQuillonProperty& AProperty) { AProperty.Read(*this, AReader); });
}

std::shared_ptr<TQuillonPersistent> TQuillonPersistent::Clone() const {
  TQuillonMemoryStream Stream(BytesOf(*this));
  TQuillonStreamReader Reader(Stream);
  return TQuillonObjectReader(Reader).ReadObject();
}

bool TQuillonPersistent::Equals(const TQuillonPersistent& AnObject) const {
  return this == &AnObject || BytesOf(*this) == BytesOf(AnObject);
}

void TQuillonPersistent::SaveToStream(TQuillonStream& AStream) const {
  TQuillonStreamWriter Writer(AStream, BufferSize);
  TQuillonObjectWriter ObjectWriter(Writer);
  WriteProperties(ObjectWriter);
  Writer.FlushBuffer();
}

void TQuillonPersistent::LoadFromStream(TQuillonStream& AStream) {
  TQuillonStreamReader Reader(AStream, BufferSize);
  TQuillonObjectReader ObjectReader(Reader);
  ReadProperties(ObjectReader);
  Reader.FlushBuffer();
}

void TQuillonObjectWriter::WriteObject(const TQuillonPersistent* AnObject) {
  if (AnObject == nullptr) {
    WriteLongInt(0);
    return;
  }
  const auto [Entry, IsNew] = FHandles.try_emplace(AnObject, static_cast<std::int32_t>(FHandles.size() + 1));
  WriteLongInt(Entry->second);
  if (IsNew) {
    const TLevel Level(FDepth);
    WriteString(AnObject->PersistentClass().Name);
    AnObject->WriteProperties(*this);
  }
}

std::shared_ptr<TQuillonPersistent> TQuillonObjectReader::ReadAny(bool IsHeld) {
  const std::int32_t Handle = ReadLongInt();
  if (Handle == 0) {
    return nullptr;
  }
  auto Found = FObjectMap.find(Handle);
  if (Found == FObjectMap.end()) {
    const TLevel Level(FDepth);
    const int HeightBeside = std::exchange(FHeightBelow, 0);
    Found = FObjectMap.emplace(Handle, TEntry{MakeObject(ReadString())}).first;
    Found->second.Object->ReadProperties(*this);
    Found->second.Height = FHeightBelow + 1;
    FHeightBelow = HeightBeside;
  }
  const TEntry& Entry = Found->second;
  if (IsHeld && Entry.Height == 0) {
    throw EQuillonReaderError();
  }
  if (IsHeld) {
    // A long row of objects, each the holder of the one before it, would be freed in as many nested calls.
    CheckLevels(Entry.Height);
    FHeightBelow = std::max(FHeightBelow, Entry.Height);
  }
  return Entry.Object;
}
