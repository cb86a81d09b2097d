#include "uOstrel/FileSet.h"

#include <algorithm>
#include <set>
#include <utility>

#include "QuillonFileSystem.h"
#include "QuillonTypes.h"

namespace uOstrel {

namespace {

constexpr std::string_view LockName = ".velmora-lock";

/// A new file as a stream.
class TNewFileStream : public TQuillonStream {
 public:
  TNewFileStream(TQuillonNewFile& AFile, const std::string& AName) : FFile(AFile.File()), FName(AName) {}

  std::size_t Read(std::span<char> ABuffer) override {
    return QuillonIO::OnFile(FName, [&] { return FFile.Read(ABuffer); });
  }
  void Write(std::string_view ABytes) override {
    QuillonIO::OnFile(FName, [&] { FFile.Write(ABytes); });
  }
  std::int64_t Seek(std::int64_t AnOffset, TQuillonSeekOrigin AnOrigin) override {
    return QuillonIO::OnFile(FName, [&] { return FFile.Seek(AnOffset, static_cast<Platform::SeekFrom>(AnOrigin)); });
  }
  void SetEndOfFile() override {
    QuillonIO::OnFile(FName, [&] { FFile.SetSize(FFile.Seek(0, Platform::SeekFrom::Current)); });
  }

 private:
  Platform::File& FFile;
  const std::string& FName;
};

}  // namespace

/// A file of the set, or a device that was written to instead.
struct TFileSet::TMember {
  explicit TMember(std::string APath) : Path(std::move(APath)) {}

  std::string Path;    ///< under its name in the folder
  std::string Target;  ///< where links lead
  std::optional<TQuillonNewFile> New;
  std::unique_ptr<TQuillonStream> Stream;
};

TFileSet::TFileSet(std::string AFolder, std::vector<std::string> ANames, std::string_view AMarker,
                   std::chrono::milliseconds ATimeOut)
    : FFolder(AFolder.empty() ? "." : std::move(AFolder)),
      FMarker(PathOf(std::string(AMarker))),
      FRest(std::move(ANames)),
      FLockPath(PathOf(std::string(LockName))) {
  QuillonIO::WaitWhileInUse(ATimeOut, [this] {
    // The lock and its removal at a signal come at once: that of another run must not be removed.
    Platform::WithSignalsDelayed([this] {
      const bool IsOther = Platform::Files().Look(FLockPath) >= Platform::EntryKind::Directory;
      FLock = QuillonIO::OnFile(IsOther ? FLockPath : FFolder, [this] {
        return Platform::Files().Open(FLockPath, Platform::Access::Read, Platform::Creation::LockFile,
                                      Platform::Lock::Exclusive);
      });
      FLockRemoval.emplace(FLockPath);
    });
  });
  TQuillonNewFile::RemoveLeftOvers(FFolder);
}

TFileSet::~TFileSet() {
  Platform::WithSignalsDelayed([this] {
    FLockRemoval.reset();
    try {
      // As long as it is held: the next one who has waited for it finds that it is gone and makes another.
      Platform::Files().Remove(FLockPath);
    } catch (const EQuillonWin32Error&) {
      // The next run takes it over.
    }
  });
}

std::string TFileSet::PathOf(const std::string& AName) const { return TQuillonFilePath::Combine(FFolder, AName); }

TQuillonStream& TFileSet::Begin(const std::string& AName) {
  const std::scoped_lock Lock(FBeginning);
  std::erase(FRest, AName);
  TMember& Member = FMembers.emplace_back(PathOf(AName));
  auto& Files = Platform::Files();
  return QuillonIO::OnFile(Member.Path, [&]() -> TQuillonStream& {
    Member.Target = Files.FollowLinks(Member.Path);
    const Platform::EntryKind Kind = Files.Look(Member.Target);
    const bool IsThere = Kind == Platform::EntryKind::File;
    if (!IsThere && Kind != Platform::EntryKind::None) {
      Member.Stream = std::make_unique<TQuillonFileStream>(Member.Path, fomCreate, famShareExclusive);
      return *Member.Stream;
    }
    if (IsThere && !Files.IsWriteable(Member.Target)) {
      throw EQuillonWin32Error(Platform::NotWriteableError(Member.Target), Member.Path);
    }
    const std::string Folder = QuillonIO::FolderOf(Member.Target);
    if (Member.Target != Member.Path) {
      TQuillonNewFile::RemoveLeftOvers(Folder);
    }
    Member.New.emplace(Folder, IsThere ? Platform::Creation::NewPrivate : Platform::Creation::New);
    if (IsThere) {
      Member.New->File().TakeAttributes(Member.Target);
    }
    Member.Stream = std::make_unique<TNewFileStream>(*Member.New, Member.Path);
    return *Member.Stream;
  });
}

void TFileSet::End(const TQuillonStream& AContent) {
  const auto MemberOf = [&]() -> TMember& {
    const std::scoped_lock Lock(FBeginning);
    return *std::ranges::find(FMembers, &AContent, [](const TMember& AMember) { return AMember.Stream.get(); });
  };
  if (TMember& Member = MemberOf(); Member.New) {
    Member.New->File().BeginFlush();
  }
}

bool TFileSet::IsOutOfSight() const {
  // One that could not be begun has neither.
  return std::ranges::all_of(FMembers, [](const TMember& AMember) { return AMember.New || AMember.Stream == nullptr; });
}

void TFileSet::CheckRest() const {
  // Refused ahead of the burst as the files are that have a successor.
  for (const std::string& Name : FRest) {
    const std::string Path = PathOf(Name);
    if (Platform::Files().Look(Path) == Platform::EntryKind::File && !Platform::Files().IsWriteable(Path)) {
      throw EQuillonFileHandleError(Platform::NotWriteableError(Path), Path);
    }
  }
}

void TFileSet::Place() {
  CheckRest();
  ForEachNew([](TQuillonNewFile& AFile) { AFile.File().EndFlush(); });
  std::set<std::string> Flushed;
  for (TMember& Member : FMembers) {
    if (Member.New && Flushed.insert(QuillonIO::FolderOf(Member.Target)).second) {
      QuillonIO::OnFile(Member.Path, [&] { Member.New->File().FlushSystem(); });
    }
  }
  ForEachNew([](TQuillonNewFile& AFile) { AFile.Prepare(); });
  for (const std::string& Path : EarlierPaths()) {
    QuillonIO::OnFile(Path, [&] {
      if (Platform::Files().Look(Path) == Platform::EntryKind::File) {
        Platform::Files().DemandGivesWay(Path);
      }
    });
  }
  // To free a large file takes its time: while they are open, the earlier files are not freed within the burst.
  const auto Earlier = Platform::OpenFilesGiveWay ? OpenEarlier() : std::vector<std::unique_ptr<Platform::File>>();
  Platform::WithSignalsDelayed([this] { Burst(); });
}

/// What files of the set, and those without a successor, are to take the place of.
std::vector<std::string> TFileSet::EarlierPaths() const {
  std::vector<std::string> Paths;
  for (const TMember& Member : FMembers) {
    if (Member.New) {
      Paths.push_back(Member.Target);
    }
  }
  for (const std::string& Name : FRest) {
    Paths.push_back(PathOf(Name));
  }
  return Paths;
}

std::vector<std::unique_ptr<Platform::File>> TFileSet::OpenEarlier() const {
  std::vector<std::unique_ptr<Platform::File>> Files;
  for (const std::string& Path : EarlierPaths()) {
    try {
      if (Platform::Files().Look(Path) == Platform::EntryKind::File) {
        Files.push_back(
            Platform::Files().Open(Path, Platform::Access::Read, Platform::Creation::Never, Platform::Lock::None));
      }
    } catch (const EQuillonWin32Error&) {
      continue;
    }
  }
  return Files;
}

template <class TCall>
void TFileSet::ForEachNew(const TCall& ACall) {
  for (TMember& Member : FMembers) {
    if (Member.New) {
      QuillonIO::OnFile(Member.Path, [&] { ACall(*Member.New); });
    }
  }
}

void TFileSet::Burst() {
  const auto RemoveFile = [](const std::string& APath) {
    if (Platform::Files().Look(APath) == Platform::EntryKind::File) {
      TQuillonFileSystem::DeleteFile(APath, true);
    }
  };
  const auto Marker = std::ranges::find(FMembers, FMarker, &TMember::Path);
  RemoveFile(Marker != FMembers.end() ? Marker->Target : FMarker);
  try {
    for (auto Member = FMembers.begin(); Member != FMembers.end(); ++Member) {
      if (Member->New && Member != Marker) {
        QuillonIO::OnFile(Member->Path, [&] { Member->New->Replace(Member->Target); });
      }
    }
    for (const std::string& Name : FRest) {
      RemoveFile(PathOf(Name));
    }
    if (Marker != FMembers.end() && Marker->New) {
      QuillonIO::OnFile(FMarker, [&] { Marker->New->Replace(Marker->Target); });
    }
  } catch (const EQuillonException& Error) {
    throw EQuillonException("The set in \"" + FFolder +
                            "\" is incomplete, and its files may be of two exports: " + Error.what());
  }
  FlushFolders();
}

void TFileSet::FlushFolders() {
  std::set<std::string> Folders = {FFolder};
  for (const TMember& Member : FMembers) {
    Folders.insert(QuillonIO::FolderOf(Member.Target));
  }
  for (const std::string& Folder : Folders) {
    QuillonIO::OnFile(Folder, [&] { Platform::Files().FlushDirectory(Folder); });
  }
}

}  // namespace uOstrel
