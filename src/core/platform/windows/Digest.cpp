#include "platform/Digest.h"

#include <windows.h>

#include <bcrypt.h>

#include <string>

#include "QuillonTypes.h"

namespace {

/// Opened once: that takes far longer than a name does.
BCRYPT_ALG_HANDLE Provider() {
  static const auto Result = [] {
    BCRYPT_ALG_HANDLE Opened = nullptr;
    if (::BCryptOpenAlgorithmProvider(&Opened, BCRYPT_SHA1_ALGORITHM, nullptr, 0) < 0) {
      throw EQuillonWin32Error(ERROR_GEN_FAILURE, "BCryptOpenAlgorithmProvider");
    }
    return Opened;
  }();
  return Result;
}

}  // namespace

namespace Platform {

std::array<std::uint8_t, 20> Sha1(std::string_view AFirst, std::string_view ASecond) {
  std::string Both(AFirst);
  Both += ASecond;
  std::array<std::uint8_t, 20> Result;
  if (::BCryptHash(Provider(), nullptr, 0, reinterpret_cast<UCHAR*>(Both.data()), static_cast<ULONG>(Both.size()),
                   Result.data(), static_cast<ULONG>(Result.size())) < 0) {
    throw EQuillonWin32Error(ERROR_GEN_FAILURE, "BCryptHash");
  }
  return Result;
}

}  // namespace Platform
