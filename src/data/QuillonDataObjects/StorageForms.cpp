#include <algorithm>
#include <optional>
#include <vector>

#include "QuillonDataObjects/BinReader.h"
#include "QuillonDataObjects/BinWriter.h"
#include "QuillonDataObjects/Content.h"
#include "QuillonDataObjects/DataClass.h"
#include "QuillonDataObjects/Storage.h"
#include "QuillonDataObjects/Sweep.h"
#include "QuillonDataObjects/XMLPullReader.h"
#include "QuillonDataObjects/XMLReader.h"
#include "QuillonDataObjects/XMLWriter.h"
#include "QuillonFileSystem.h"
#include "QuillonStreams/Kept.h"
#include "QuillonStreams/ReadAhead.h"
#include "QuillonZlib.h"
#include "platform/Process.h"

namespace {

/// Sets a flag for as long as it lives.
class TFlagged {
 public:
  explicit TFlagged(bool& AFlag) : FFlag(AFlag), FBefore(AFlag) { AFlag = true; }
  TFlagged(const TFlagged&) = delete;
  TFlagged& operator=(const TFlagged&) = delete;
  ~TFlagged() { FFlag = FBefore; }

 private:
  bool& FFlag;
  const bool FBefore;
};

constexpr int BestCompression = 9;

bool CanGoBack(TQuillonStream& AStream) {
  try {
    AStream.Seek(AStream.Position(), TQuillonSeekOrigin::Begin);
    return true;
  } catch (const EQuillonException&) {
    return false;
  }
}

}  // namespace

template <class TRead>
void TQuillonDataStorage::WhileReading(const TRead& ARead) {
  const TQuillonChangeTrackingLock Tracking(*this);
  const TQuillonDataChangeLogLock Log(&FChangeLog);
  const TFlagged Reading(FIsReading);
  struct TCount {
    std::uint64_t& Count;
    ~TCount() { ++Count; }
  } const Counted{FChangeCount};
  FReadingSince = QuillonDateTime::Now();
  ARead();
}

template <class TRead>
void TQuillonDataStorage::Update(const TRead& ARead) {
  std::vector<std::pair<TGUID, const TQuillonDataClass*>> LetGo;
  {
    struct TCollecting {
      TQuillonDataStorage& Storage;
      ~TCollecting() { Storage.FLetGo = nullptr; }
    } const Collecting{*this};
    FLetGo = &LetGo;
    WhileReading(ARead);
  }
  const TQuillonChangeTrackingLock Tracking(*this);
  const TQuillonDataChangeLogLock Log(&FChangeLog);
  std::vector<TQuillonDataObject*> Gone;
  for (const auto& [ID, Class] : LetGo) {
    auto* const Object = static_cast<TQuillonDataObject*>(FObjectRegistry.GetObject(ID, *Class));
    if (Object != nullptr && !TQuillonDataHolder::IsHeld(*Object) && std::ranges::find(Gone, Object) == Gone.end()) {
      Gone.push_back(Object);
    }
  }
  if (!Gone.empty()) {
    QuillonDataObjects::ClearReferences(*this, Gone);
    std::ranges::for_each(Gone, QuillonDataObjects::Free);
  }
}

void TQuillonDataStorage::LoadWith(TQuillonDataObjectReader& AReader) {
  {
    const TQuillonDataChangeLogLock Log(&FChangeLog);
    Clear();
  }
  WhileReading([&] { ReadProperties(AReader); });
}

void TQuillonDataStorage::LoadFromXML(TQuillonBuffer ADocument, std::string_view ASource) {
  TQuillonBufferStream Stream({ADocument.Data(), ADocument.Size()});
  Platform::ExpectMemory(ADocument.Size());
  if (!PullFromXML(Stream)) {
    ReadWholeXML(std::move(ADocument), ASource);
  }
}

void TQuillonDataStorage::LoadFromXML(TQuillonStream& AStream, std::string_view ASource) {
  std::optional<TQuillonKeptStream> Kept;
  TQuillonStream& Stream = CanGoBack(AStream) ? AStream : Kept.emplace(AStream);
  const std::int64_t Start = Stream.Position();
  Platform::ExpectMemory(QuillonIO::ClaimedSize(Stream));
  if (!PullFromXML(Stream)) {
    Stream.Seek(Start, TQuillonSeekOrigin::Begin);
    ReadWholeXML(QuillonIO::ReadIntoBuffer(Stream), ASource);
  }
}

void TQuillonDataStorage::ReadWholeXML(TQuillonBuffer ADocument, std::string_view ASource) {
  TQuillonDataObjectXMLReader Reader(*this, std::move(ADocument), ASource);
  LoadWith(Reader);
}

bool TQuillonDataStorage::PullFromXML(TQuillonStream& AStream) {
  if (FChangeCount != 0) {
    return false;  // what is lost if the document turns out to be malformed may be a whole plan
  }
  TQuillonMemoryStream Before;
  SaveToBinStream(Before);
  const bool WasModified = FModified;
  const auto Restore = [&] {
    if (FChangeCount != 0) {
      Before.Seek(0, TQuillonSeekOrigin::Begin);
      const TFlagged Restoring(FIsRestoring);
      LoadFromBinStream(Before);
      FModified = WasModified;
      FChangeCount = 0;
    }
  };
  try {
    TQuillonDataObjectXMLPullReader Reader(*this, AStream);
    LoadWith(Reader);
    Reader.Finish();
    return true;
  } catch (const TQuillonXMLUnusual&) {
    // The other reader takes it.
  } catch (const EQuillonException&) {
    // The other reader comes to the same error, and tells more of it.
  } catch (...) {
    Restore();  // from want of memory, which the other reader needs more of
    throw;
  }
  Restore();
  return false;
}

void TQuillonDataStorage::WriteXML(const TQuillonContentSink& ASink) const {
  TQuillonDataObjectXMLWriter Writer(ASink);
  WriteProperties(Writer);
  Writer.Finish();
}

std::string TQuillonDataStorage::SaveToXML() const {
  constexpr std::size_t XMLToBinary = 2;
  std::string Document;
  Document.reserve(XMLToBinary * ExpectedSize());
  WriteXML([&](std::string_view APiece) { Document.append(APiece); });
  return Document;
}

TQuillonContent TQuillonDataStorage::XMLContent() const {
  return [this](const TQuillonContentSink& ASink) { WriteXML(ASink); };
}

void TQuillonDataStorage::LoadFromBinStream(TQuillonStream& AStream) {
  constexpr std::size_t MemoryToBinary = 2;
  Platform::ExpectMemory(MemoryToBinary * QuillonIO::ClaimedSize(AStream));
  TQuillonDataObjectBinReader Reader(*this, AStream, true);
  LoadWith(Reader);
  FModified = false;
}

void TQuillonDataStorage::SaveToBinStream(TQuillonStream& AStream) const {
  TQuillonDataObjectBinWriter Writer(AStream, true);
  WriteProperties(Writer);
  Writer.Finish();
}

void TQuillonDataStorage::LoadFromZIPStream(TQuillonStream& AStream) {
  TQuillonZDecompressionStream Unpacked(AStream);
  TQuillonReadAheadStream Content(Unpacked);
  {
    TQuillonDataObjectBinReader Reader(*this, Content, true);
    LoadWith(Reader);
  }
  if (const std::int64_t End = Content.Position(); Content.Finish() != End) {
    throw EQuillonDataObjectReaderError("Hinter dem Ende des Dokuments stehen weitere Daten.");
  }
  FModified = false;
}

void TQuillonDataStorage::SaveToZIPStream(TQuillonStream& AStream) const {
  TQuillonZCompressionStream Content(AStream, BestCompression);
  SaveToBinStream(Content);
  Content.Finish();
}

void TQuillonDataStorage::LoadFromBinFile(const std::string& AFileName) {
  TQuillonFileStream File(AFileName, fomOpenRead, famShareDenyWrite, fomOpenRead, famShareDenyNone);
  LoadFromBinStream(File);
}

void TQuillonDataStorage::SaveToBinFile(const std::string& AFileName) const {
  TQuillonMemoryStream Content;
  SaveToBinStream(Content);
  QuillonIO::ReplaceFile(AFileName, Content.Content());
}

void TQuillonDataStorage::Overwrite(TQuillonDataStorage& AStorage) const {
  if (&AStorage.DataClass() != &DataClass() || &AStorage == this) {
    return;
  }
  TQuillonMemoryStream Content;
  SaveToBinStream(Content);
  Content.Seek(0, TQuillonSeekOrigin::Begin);
  TQuillonDataObjectBinReader Reader(AStorage, Content, true, dormOverwrite);
  AStorage.Update([&] { AStorage.ReadProperties(Reader); });
  AStorage.FModified = true;
}

void TQuillonDataStorage::SaveToMemorySnapshot(TQuillonStream& AStream) {
  AStream.Clear();
  SaveToBinStream(AStream);
  FChangeLog.SaveToStream(AStream);
  FModified = false;
}

void TQuillonDataStorage::LoadFromMemorySnapshot(TQuillonStream& AStream) {
  FChangeLog.Clear();
  AStream.Seek(0, TQuillonSeekOrigin::Begin);
  const TFlagged Restoring(FIsRestoring);
  LoadFromBinStream(AStream);
  FChangeLog.LoadFromStream(AStream);
}

void TQuillonDataStorage::SaveToSnapshot(const std::string& AFileName) {
  if (AFileName.empty()) {
    return;
  }
  TQuillonMemoryStream Content;
  const bool WasModified = FModified;
  SaveToMemorySnapshot(Content);
  FModified = WasModified;
  TQuillonFileSystem::ForceDirectory(TQuillonFilePath::GetDirectoryName(AFileName));
  QuillonIO::ReplaceFile(AFileName, Content.Content());
  FModified = false;
}

void TQuillonDataStorage::LoadFromSnapshot(const std::string& AFileName) {
  if (!AFileName.empty() && TQuillonFileSystem::Exists(AFileName)) {
    TQuillonFileStream File(AFileName, fomOpenRead, famShareDenyWrite, fomOpenRead, famShareDenyNone);
    LoadFromMemorySnapshot(File);
  }
}

namespace QuillonDataObjects {

std::string WriteContent(const TQuillonDataAbstractObject& AnObject) {
  TQuillonMemoryStream Content;
  TQuillonDataObjectBinWriter Writer(Content, false);
  AnObject.WriteProperties(Writer);
  Writer.Finish();
  return Content.TakeContent();
}

void ReadContent(TQuillonDataStorage& AStorage, TQuillonDataAbstractObject& AnObject, std::string_view AContent) {
  TQuillonMemoryStream Stream{std::string(AContent)};
  TQuillonDataObjectBinReader Reader(AStorage, Stream, false);
  AStorage.Update([&] { AnObject.ReadProperties(Reader); });
}

}  // namespace QuillonDataObjects
