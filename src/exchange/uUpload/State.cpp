#include "uUpload/State.h"

#include "QuillonPreferences.h"

namespace {

constexpr std::string_view Key = R"(Software\Tarnhill Systems\Velmora 6\Console)";

class TUserState final : public TVELUploadState {
 public:
  bool IsUnchanged(const std::string& AName, std::int64_t AVersion) override {
    try {
      const auto Preferences = QuillonPreferences::UserPreferences();
      return Preferences->OpenKey(Key, false) && Preferences->ReadString(AName) == std::to_string(AVersion);
    } catch (const EQuillonException&) {
      return false;
    }
  }

  void Store(const std::string& AName, std::int64_t AVersion) override {
    try {
      const auto Preferences = QuillonPreferences::UserPreferences();
      if (Preferences->OpenKey(Key, true)) {
        Preferences->WriteString(AName, std::to_string(AVersion));
        Preferences->FlushBuffer();
      }
    } catch (const EQuillonException&) {
      // The upload itself is done; the next run makes it again.
      return;
    }
  }
};

}  // namespace

namespace uUpload {

std::unique_ptr<TVELUploadState> UserState() { return std::make_unique<TUserState>(); }

}  // namespace uUpload
