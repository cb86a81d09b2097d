#pragma once

#include <cstdint>
#include <memory>
#include <string>

/// The version of the data file at its last good upload, kept between runs for each user.
class TVELUploadState {
 public:
  TVELUploadState() = default;
  TVELUploadState(const TVELUploadState&) = delete;
  TVELUploadState& operator=(const TVELUploadState&) = delete;
  virtual ~TVELUploadState() = default;

  /// Whether the version is the one of the last upload. What is not there, or cannot be read, is another one.
  virtual bool IsUnchanged(const std::string& AName, std::int64_t AVersion) = 0;
  /// Keeps the version; where that cannot be done, nothing is kept, and that is no failure.
  virtual void Store(const std::string& AName, std::int64_t AVersion) = 0;
};

namespace uUpload {

/// The state among the preferences of the user who runs the process.
std::unique_ptr<TVELUploadState> UserState();

}  // namespace uUpload
