#pragma once

#include <string>

#include "platform/Files.h"
#include "platform/windows/WindowsCalls.h"

/// A file behind a handle, which it owns.
class WindowsFile final : public Platform::File {
 public:
  /// @param APath what errors name
  WindowsFile(WindowsCalls::THandle AHandle, std::string APath, bool AnIsLocked);

  std::size_t Read(std::span<char> ABuffer) override;
  void Write(std::string_view ABytes) override;
  std::int64_t Seek(std::int64_t AnOffset, Platform::SeekFrom AnOrigin) override;
  void SetSize(std::int64_t ASize) override;
  void Flush() override;
  void BeginFlush() override {}
  void EndFlush() override { Flush(); }
  void FlushSystem() override {}
  void TakeAttributes(const std::string& APath) override;
  void GiveName(const std::string& APath) override;
  bool IsLocked() const override { return FIsLocked; }
  void Close() override;

 private:
  WindowsCalls::THandle FHandle;
  std::string FPath;
  bool FIsLocked;
};
