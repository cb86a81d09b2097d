#pragma once

#include <cerrno>
#include <string>

#include "QuillonTypes.h"
#include "platform/Files.h"

namespace PosixCalls {

/// Raises the error of the call that has just failed.
[[noreturn]] inline void Fail(const std::string& APath) { throw EQuillonWin32Error(errno, APath); }

/// Repeats a call that a signal broke off.
template <class TCall>
auto Retried(TCall ACall) {
  auto Result = ACall();
  while (Result < 0 && errno == EINTR) {
    Result = ACall();
  }
  return Result;
}

/// A path that leads to the open file, whether it has a name or not.
inline std::string PathOf(int ADescriptor) { return "/proc/self/fd/" + std::to_string(ADescriptor); }

}  // namespace PosixCalls

/// A file behind a descriptor, which it owns.
class PosixFile final : public Platform::File {
 public:
  /// @param APath what errors name
  PosixFile(int ADescriptor, std::string APath);
  ~PosixFile() override;

  std::size_t Read(std::span<char> ABuffer) override;
  void Write(std::string_view ABytes) override;
  std::int64_t Seek(std::int64_t AnOffset, Platform::SeekFrom AnOrigin) override;
  void SetSize(std::int64_t ASize) override;
  void Flush() override;
  void BeginFlush() override;
  void EndFlush() override;
  void FlushSystem() override;
  void TakeAttributes(const std::string& APath) override;
  void GiveName(const std::string& APath) override;
  bool IsLocked() const override { return FIsLocked; }
  void Close() override;

  /// @param DoWait whether a lock that is not free is waited for
  void TakeLock(Platform::Lock ALock, bool DoWait);
  /// Whether the path names this very file.
  bool IsAt(const std::string& APath) const;

 private:
  template <class TResult>
  std::size_t Checked(TResult AResult) const;
  void MarkAsSole() const;
  void RefuseIfSole() const;

  int FDescriptor;
  std::string FPath;
  bool FIsLocked = false;
};
