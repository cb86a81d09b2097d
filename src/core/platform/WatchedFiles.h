#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "platform/Files.h"

namespace Platform {

/// The files that were in use, every call of which passes Around: to be counted, measured, or made to fail.
class WatchedFiles : public FileSystem {
 public:
  // clang-format off
  enum class Call {
    Open, OpenUnnamed, SizeOf, FollowLinks, Rename, MakeDirectory, FlushDirectory, NamesIn, Remove,
    Read, Write, Seek, SetSize, Flush, EndFlush, FlushSystem, TakeAttributes, GiveName, Close
  };
  // clang-format on

  std::unique_ptr<File> Open(const std::string& APath, Access AnAccess, Creation ACreation, Lock ALock) override {
    return Watched(Pass(Call::Open, [&] { return FSystem.Open(APath, AnAccess, ACreation, ALock); }));
  }
  std::unique_ptr<File> OpenUnnamed(const std::string& AFolder, Creation ACreation, Lock ALock) override {
    return Watched(Pass(Call::OpenUnnamed, [&] { return FSystem.OpenUnnamed(AFolder, ACreation, ALock); }));
  }
  EntryKind Look(const std::string& APath) override { return FSystem.Look(APath); }
  std::vector<std::string> NamesIn(const std::string& AFolder) override {
    return Pass(Call::NamesIn, [&] { return FSystem.NamesIn(AFolder); });
  }
  std::int64_t SizeOf(const std::string& APath) override {
    return Pass(Call::SizeOf, [&] { return FSystem.SizeOf(APath); });
  }
  bool IsWriteable(const std::string& APath) override { return FSystem.IsWriteable(APath); }
  void DemandGivesWay(const std::string& APath) override { FSystem.DemandGivesWay(APath); }
  std::string FollowLinks(const std::string& APath) override {
    return Pass(Call::FollowLinks, [&] { return FSystem.FollowLinks(APath); });
  }
  void Remove(const std::string& APath) override {
    Around(Call::Remove, [&] { FSystem.Remove(APath); });
  }
  void Rename(const std::string& APath, const std::string& ANewPath, bool DoReplace) override {
    Around(Call::Rename, [&] { FSystem.Rename(APath, ANewPath, DoReplace); });
  }
  void MakeDirectory(const std::string& APath) override {
    Around(Call::MakeDirectory, [&] { FSystem.MakeDirectory(APath); });
  }
  void FlushDirectory(const std::string& APath) override {
    Around(Call::FlushDirectory, [&] { FSystem.FlushDirectory(APath); });
  }

 protected:
  /// Calls that cannot fail do not come here.
  virtual void Around(Call ACall, const std::function<void()>& ARun) = 0;

 private:
  class WatchedFile final : public File {
   public:
    WatchedFile(WatchedFiles& AFiles, std::unique_ptr<File> AFile) : FFiles(AFiles), FFile(std::move(AFile)) {}

    std::size_t Read(std::span<char> ABuffer) override {
      return FFiles.Pass(Call::Read, [&] { return FFile->Read(ABuffer); });
    }
    void Write(std::string_view ABytes) override {
      FFiles.Around(Call::Write, [&] { FFile->Write(ABytes); });
    }
    std::int64_t Seek(std::int64_t AnOffset, SeekFrom AnOrigin) override {
      return FFiles.Pass(Call::Seek, [&] { return FFile->Seek(AnOffset, AnOrigin); });
    }
    void SetSize(std::int64_t ASize) override {
      FFiles.Around(Call::SetSize, [&] { FFile->SetSize(ASize); });
    }
    void Flush() override {
      FFiles.Around(Call::Flush, [&] { FFile->Flush(); });
    }
    void BeginFlush() override { FFile->BeginFlush(); }
    void EndFlush() override {
      FFiles.Around(Call::EndFlush, [&] { FFile->EndFlush(); });
    }
    void FlushSystem() override {
      FFiles.Around(Call::FlushSystem, [&] { FFile->FlushSystem(); });
    }
    void TakeAttributes(const std::string& APath) override {
      FFiles.Around(Call::TakeAttributes, [&] { FFile->TakeAttributes(APath); });
    }
    void GiveName(const std::string& APath) override {
      FFiles.Around(Call::GiveName, [&] { FFile->GiveName(APath); });
    }
    bool IsLocked() const override { return FFile->IsLocked(); }
    void Close() override {
      FFiles.Around(Call::Close, [&] { FFile->Close(); });
    }

   private:
    WatchedFiles& FFiles;
    std::unique_ptr<File> FFile;
  };

  template <class TRun>
  std::invoke_result_t<TRun> Pass(Call ACall, const TRun& ARun) {
    std::optional<std::invoke_result_t<TRun>> Result;
    Around(ACall, [&] { Result.emplace(ARun()); });
    return std::move(*Result);
  }
  std::unique_ptr<File> Watched(std::unique_ptr<File> AFile) {
    return std::make_unique<WatchedFile>(*this, std::move(AFile));
  }

  FileSystem& FSystem = Files();
};

}  // namespace Platform
