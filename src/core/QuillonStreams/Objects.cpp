#include "QuillonStreams/Objects.h"

#include <algorithm>
#include <utility>

#include "QuillonText.h"
#include "QuillonZlib.h"

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
  TQuillonStreamWriter(Stream).WriteObject(&AnObject);
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

void TQuillonClassRegistry::RemoveClass(const TQuillonPersistentClass& AClass) {
  if (ContainsClass(AClass)) {
    FClassMap.erase(AClass.Name);
  }
}

void TQuillonPersistent::WriteProperties(TQuillonObjectWriter& AWriter) const {
  ForEachProperty(PersistentClass(), [&](const TQuillonProperty& AProperty) { AProperty.Write(*this, AWriter); });
}

void TQuillonPersistent::ReadProperties(TQuillonObjectReader& AReader) {
  ForEachProperty(PersistentClass(), [&](const TQuillonProperty& AProperty) { AProperty.Read(*this, AReader); });
}

std::shared_ptr<TQuillonPersistent> TQuillonPersistent::Clone() const {
  TQuillonMemoryStream Stream(BytesOf(*this));
  return TQuillonStreamReader(Stream).ReadObject();
}

bool TQuillonPersistent::HasSameContent(const TQuillonPersistent& AnObject) const {
  return this == &AnObject || BytesOf(*this) == BytesOf(AnObject);
}

void TQuillonPersistent::SaveToStream(TQuillonStream& AStream) const {
  TQuillonStreamWriter Writer(AStream, BufferSize);
  Writer.WriteObjectProperties(this);
  Writer.FlushBuffer();
}

void TQuillonPersistent::LoadFromStream(TQuillonStream& AStream) {
  TQuillonStreamReader Reader(AStream, BufferSize);
  TQuillonObjectReader ObjectReader(Reader);
  ReadProperties(ObjectReader);
  Reader.FlushBuffer();
}

void TQuillonPersistent::SaveToZipStream(TQuillonStream& AStream) const {
  TQuillonZCompressionStream Compressed(AStream);
  TQuillonStreamWriter(Compressed).WriteObjectProperties(this);
  Compressed.Finish();
}

void TQuillonPersistent::LoadFromZipStream(TQuillonStream& AStream) {
  TQuillonZDecompressionStream Compressed(AStream);
  TQuillonStreamReader Reader(Compressed);
  TQuillonObjectReader ObjectReader(Reader);
  ReadProperties(ObjectReader);
  Compressed.Finish();
}

void TQuillonWriter::WriteObject(const TQuillonPersistent* AnObject) {
  TQuillonObjectWriter(*this).WriteObject(AnObject);
}

void TQuillonWriter::WriteObjectProperties(const TQuillonPersistent* AnObject) {
  TQuillonObjectWriter(*this).WriteObjectProperties(AnObject);
}

std::shared_ptr<TQuillonPersistent> TQuillonReader::ReadObject() { return TQuillonObjectReader(*this).ReadObject(); }

std::shared_ptr<TQuillonPersistent> TQuillonReader::ReadObjectProperties(std::shared_ptr<TQuillonPersistent> AnObject,
                                                                         const TQuillonPersistentClass& AClass) {
  return TQuillonObjectReader(*this).ReadObjectProperties(std::move(AnObject), AClass);
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

void TQuillonObjectWriter::WriteObjectProperties(const TQuillonPersistent* AnObject) {
  if (AnObject == nullptr) {
    throw EQuillonPersistentError("Objektinstanz darf nicht NIL sein.");
  }
  AnObject->WriteProperties(*this);
}

std::shared_ptr<TQuillonPersistent> TQuillonObjectReader::ReadObjectProperties(
    std::shared_ptr<TQuillonPersistent> AnObject, const TQuillonPersistentClass& AClass) {
  auto Object = AnObject == nullptr ? AClass.Create() : std::move(AnObject);
  Object->ReadProperties(*this);
  return Object;
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

namespace QuillonStreams {

std::string_view NameOf(TNames ANames, std::size_t AValue) {
  if (AValue >= ANames.size()) {
    throw EQuillonConvertError(std::to_string(AValue) + " ist kein Wert der Aufzählung.");
  }
  return ANames[AValue];
}

std::size_t ValueOfName(TNames ANames, std::string_view AName) {
  const auto Found = std::ranges::find(ANames, AName);
  if (Found == ANames.end()) {
    throw EQuillonConvertError(QuillonText::Quoted(AName) + " ist kein Name der Aufzählung.");
  }
  return static_cast<std::size_t>(Found - ANames.begin());
}

std::vector<std::string_view> SplitNames(std::string_view AText) {
  std::vector<std::string_view> Names;
  for (std::size_t Begin = 0; !AText.empty() && Begin <= AText.size();) {
    const std::size_t End = std::min(AText.find(',', Begin), AText.size());
    Names.push_back(AText.substr(Begin, End - Begin));
    Begin = End + 1;
  }
  return Names;
}

}  // namespace QuillonStreams
