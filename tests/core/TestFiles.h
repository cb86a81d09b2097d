#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "QuillonGuid.h"
#include "QuillonTypes.h"
#include "platform/Files.h"

/// A folder of its own for a test, removed with all that is in it.
class TemporaryFolder {
 public:
  TemporaryFolder()
      : FPath(std::filesystem::temp_directory_path() / ("test-" + QuillonGuid::Plain(QuillonGuid::New()))) {
    std::filesystem::create_directory(FPath);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() {
    std::error_code Ignored;
    std::filesystem::remove_all(FPath, Ignored);
  }

  std::string Path(const std::string& AName) const { return (FPath / AName).string(); }

  std::vector<std::string> Names() const {
    std::vector<std::string> Result;
    for (const auto& Entry : std::filesystem::directory_iterator(FPath)) {
      Result.push_back(Entry.path().filename().string());
    }
    return Result;
  }

 private:
  std::filesystem::path FPath;
};

/// The system's files, of which chosen calls fail. Calls that cannot fail, and the removal of files, are not counted.
class FailingFiles final : public Platform::FileSystem {
 public:
  /// Lets calls fail from the AFirst-th one on, counted from 1 again.
  void FailFrom(int AFirst, int AnErrorCode, int ACount = 1'000'000) {
    FCalls = 0;
    FFirst = AFirst;
    FCount = ACount;
    FErrorCode = AnErrorCode;
  }
  void RefuseNewFiles(int AnErrorCode) { FRefusal = AnErrorCode; }
  void RefuseRenaming(int AnErrorCode) { FRenameRefusal = AnErrorCode; }
  int Calls() const { return FCalls; }

  std::unique_ptr<Platform::File> Open(const std::string& APath, Platform::Access AnAccess,
                                       Platform::Creation ACreation, Platform::Lock ALock) override {
    const bool IsNew = ACreation == Platform::Creation::New || ACreation == Platform::Creation::NewPrivate;
    if (FRefusal != 0 && IsNew) {
      throw EQuillonWin32Error(FRefusal, APath);
    }
    Count();
    return std::make_unique<FailingFile>(*this, FSystem.Open(APath, AnAccess, ACreation, ALock));
  }
  Platform::EntryKind Look(const std::string& APath) override { return FSystem.Look(APath); }
  std::int64_t SizeOf(const std::string& APath) override { return Counted().SizeOf(APath); }
  bool IsWriteable(const std::string& APath) override { return FSystem.IsWriteable(APath); }
  std::string FollowLinks(const std::string& APath) override { return Counted().FollowLinks(APath); }
  void Remove(const std::string& APath) override { FSystem.Remove(APath); }
  void Rename(const std::string& APath, const std::string& ANewPath, bool DoReplace) override {
    if (FRenameRefusal != 0) {
      throw EQuillonWin32Error(FRenameRefusal, ANewPath);
    }
    Counted().Rename(APath, ANewPath, DoReplace);
  }
  void MakeDirectory(const std::string& APath) override { Counted().MakeDirectory(APath); }
  void FlushDirectory(const std::string& APath) override { Counted().FlushDirectory(APath); }

 private:
  class FailingFile final : public Platform::File {
   public:
    FailingFile(FailingFiles& AFiles, std::unique_ptr<Platform::File> AFile)
        : FFiles(AFiles), FFile(std::move(AFile)) {}

    std::size_t Read(std::span<char> ABuffer) override { return Counted().Read(ABuffer); }
    void Write(std::string_view ABytes) override { Counted().Write(ABytes); }
    std::int64_t Seek(std::int64_t AnOffset, Platform::SeekFrom AnOrigin) override {
      return Counted().Seek(AnOffset, AnOrigin);
    }
    void SetSize(std::int64_t ASize) override { Counted().SetSize(ASize); }
    void Flush() override { Counted().Flush(); }
    void TakeAttributes(const std::string& APath) override { Counted().TakeAttributes(APath); }
    void Close() override { Counted().Close(); }

   private:
    Platform::File& Counted() {
      FFiles.Count();
      return *FFile;
    }

    FailingFiles& FFiles;
    std::unique_ptr<Platform::File> FFile;
  };

  void Count() {
    if (++FCalls >= FFirst && FCalls < FFirst + FCount) {
      throw EQuillonWin32Error(FErrorCode, "a failing call");
    }
  }
  Platform::FileSystem& Counted() {
    Count();
    return FSystem;
  }

  Platform::FileSystem& FSystem = Platform::Files();
  int FCalls = 0;
  int FFirst = 1;
  int FCount = 0;
  int FErrorCode = 0;
  int FRefusal = 0;
  int FRenameRefusal = 0;
};
