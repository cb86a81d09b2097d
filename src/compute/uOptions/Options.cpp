#include "uOptions/Options.h"

#include "QuillonDataObjects/DataClass.h"
#include "uOptions/ProgramPaths.h"
#include "uOptions/SettingsFile.h"

const TQuillonDataClass& TVELOptions::Class() {
  using T = TVELOptions;
  // clang-format off
  static const TQuillonDataClass Class = DescribeClass<T, TQuillonDataStorage>("TVELOptions")
      .String<&T::FLanguage>("Language").KeepsCurrent()
      .String<&T::FClassUserNamePattern>("ClassUserNamePattern", "[Key]")
      .String<&T::FTeacherUserNamePattern>("TeacherUserNamePattern", "[Firstname].[Surname]")
      .String<&T::FStudentUserNamePattern>("StudentUserNamePattern", "[Firstname].[Surname]")
      .String<&T::FUserSurnamePattern>("UserSurnamePattern")
      .String<&T::FUserFirstnamePattern>("UserFirstnamePattern", "^[A-Z]")
      .String<&T::FUserBirthdayPattern>("FUserBirthdayPattern", "yy");
  // clang-format on
  return Class;
}

void TVELOptions::InitProperties() {
  TQuillonDataStorage::InitProperties();
  SetDefaults();
}

void TVELOptions::ClearProperties() {
  TQuillonDataStorage::ClearProperties();
  SetDefaults();
}

void TVELOptions::SetDefaults() {
  QuillonDataObjects::ResetRows(*this);
  FLanguage = uOptions::ProgramPaths().FProductLanguage;
}

namespace uOptions {

TVELOptions& Options() { return SettingsOf<TVELOptions>(ProgramPaths().FOptionsFile); }

}  // namespace uOptions
