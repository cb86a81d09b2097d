#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "QuillonGuid.h"
#include "QuillonTypes.h"
#include "platform/WatchedFiles.h"

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

  std::string Path(const std::string& AName) const {
    return (FPath / std::u8string(AName.begin(), AName.end())).generic_string();
  }

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

/// The system's files, of which chosen calls fail. The listing of a folder and the removal of files are not counted:
/// their failures are no errors.
class FailingFiles final : public Platform::WatchedFiles {
 public:
  /// Lets calls fail from the AFirst-th one on, counted from 1 again.
  void FailFrom(int AFirst, int AnErrorCode, int ACount = 1'000'000) {
    FCalls = 0;
    FFirst = AFirst;
    FCount = ACount;
    FErrorCode = AnErrorCode;
  }
  /// Lets every call of a kind fail, none with the code 0.
  void Refuse(Call ACall, int AnErrorCode) { FRefused[ACall] = AnErrorCode; }
  /// Lets a folder take no new files.
  void RefuseIn(const std::string& AFolder, int AnErrorCode) {
    FClosed = std::filesystem::path(AFolder).parent_path();
    FClosedCode = AnErrorCode;
  }
  int Calls() const { return FCalls; }

  std::unique_ptr<Platform::File> Open(const std::string& APath, Platform::Access AnAccess,
                                       Platform::Creation ACreation, Platform::Lock ALock) override {
    const bool IsNew = ACreation == Platform::Creation::New || ACreation == Platform::Creation::NewPrivate;
    RefuseClosed(IsNew ? std::filesystem::path(APath).parent_path() : std::filesystem::path());
    return WatchedFiles::Open(APath, AnAccess, ACreation, ALock);
  }
  std::unique_ptr<Platform::File> OpenUnnamed(const std::string& AFolder, Platform::Creation ACreation,
                                              Platform::Lock ALock) override {
    RefuseClosed(AFolder);
    return WatchedFiles::OpenUnnamed(AFolder, ACreation, ALock);
  }

 private:
  void RefuseClosed(const std::filesystem::path& AFolder) const {
    if (FClosedCode != 0 && AFolder == FClosed) {
      throw EQuillonWin32Error(FClosedCode, "a folder that takes no new files");
    }
  }

  void Around(Call ACall, const std::function<void()>& ARun) override {
    if (const int Code = FRefused[ACall]; Code != 0) {
      throw EQuillonWin32Error(Code, "a refused call");
    }
    if (ACall != Call::NamesIn && ACall != Call::Remove && ++FCalls >= FFirst && FCalls < FFirst + FCount) {
      throw EQuillonWin32Error(FErrorCode, "a failing call");
    }
    ARun();
  }

  std::map<Call, int> FRefused;
  std::filesystem::path FClosed;
  int FClosedCode = 0;
  int FCalls = 0;
  int FFirst = 1;
  int FCount = 0;
  int FErrorCode = 0;
};
