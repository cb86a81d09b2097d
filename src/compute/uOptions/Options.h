#pragma once

#include <cstdint>
#include <string>

#include "QuillonDataObjects/Storage.h"

/// What the user name of a new user is made of.
enum class TVELCreateUserName : std::uint8_t { cuFirstLastName, cuEmail };

/// Options of the user.
class TVELOptions : public TQuillonDataStorage {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }

  std::string FLanguage;  ///< that of the product unless the file says another
  TVELCreateUserName FCreateUserName = TVELCreateUserName::cuFirstLastName;  ///< of the running program only
  std::string FClassUserNamePattern;
  std::string FTeacherUserNamePattern;
  std::string FStudentUserNamePattern;
  std::string FUserSurnamePattern;
  std::string FUserFirstnamePattern;
  std::string FUserBirthdayPattern;

 protected:
  void InitProperties() override;
  void ClearProperties() override;

 private:
  void SetDefaults();
};

namespace uOptions {

/// The options of this user, read from their file at the first need.
/// @throws EQuillonException, naming the file, for one that is damaged
TVELOptions& Options();

}  // namespace uOptions
