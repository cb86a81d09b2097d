#include "uLogin/LoginData.h"

#include "QuillonDataObjects/DataClass.h"
#include "QuillonFileSystem.h"
#include "uOptions/ProgramPaths.h"
#include "uOptions/SettingsFile.h"

const TQuillonDataClass& TVELLoginData::Class() {
  using T = TVELLoginData;
  // clang-format off
  static const TQuillonDataClass Class = DescribeClass<T, TQuillonDataStorage>("TVELLoginData")
      .String<&T::FAutoStartFileName>("AutoStartFileName")
      .Boolean<&T::FAutoStart>("AutoStart")
      .Boolean<&T::FAutoSicherung>("AutoSync")
      .LongInt<&T::FAutoSicherungIntervall>("AutoSyncIntervall", 10)
      .Boolean<&T::FSaveUserName>("SaveUserName")
      .String<&T::FServerName>("ServerName", "127.0.0.1")
      .Word<&T::FServerPort>("ServerPort", 8100)
      .String<&T::FUserName>("UserName")
      .Guid<&T::FPlanFileID>("FileID")
      .String<&T::FPlanFileName>("FileName");
  // clang-format on
  return Class;
}

void TVELLoginData::InitProperties() {
  TQuillonDataStorage::InitProperties();
  QuillonDataObjects::ResetRows(*this);
}

void TVELLoginData::ClearProperties() {
  TQuillonDataStorage::ClearProperties();
  QuillonDataObjects::ResetRows(*this);
}

void TVELLoginData::BeforeStore() {
  if (!FFileName.empty()) {
    TQuillonFileSystem::ForceDirectory(TQuillonFilePath::GetDirectoryName(FFileName));
  }
}

std::string TVELLoginData::GetDefaultFileName() const { return uOptions::ProgramPaths().FLoginFile; }

namespace uLogin {

TVELLoginData& LoginData() { return uOptions::SettingsOf<TVELLoginData>(uOptions::ProgramPaths().FLoginFile); }

}  // namespace uLogin
