#include "uUpload/State.h"

namespace {

class TUserState final : public TVELUploadState {
 public:
  bool IsUnchanged(const std::string& /*AName*/, std::int64_t /*AVersion*/) override { return false; }
  void Store(const std::string& /*AName*/, std::int64_t /*AVersion*/) override {}
};

}  // namespace

namespace uUpload {

std::unique_ptr<TVELUploadState> UserState() { return std::make_unique<TUserState>(); }

}  // namespace uUpload
