#pragma once

#include <cstdint>
#include <string>

#include "QuillonDataObjects/Storage.h"

/// What an interactive program remembers of the login at the data server; never a password.
class TVELLoginData : public TQuillonDataStorage {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }

  std::string FAutoStartFileName;
  bool FAutoStart = false;                   ///< open FAutoStartFileName at the start
  bool FAutoSicherung = false;               ///< synchronise by itself
  std::int32_t FAutoSicherungIntervall = 0;  ///< between two synchronisations, minutes
  bool FSaveUserName = false;
  std::string FServerName;
  std::uint16_t FServerPort = 0;
  std::string FUserName;
  TGUID FPlanFileID;  ///< the plan that was opened last
  std::string FPlanFileName;

 protected:
  void InitProperties() override;
  void ClearProperties() override;
  /// The folder of the user's files may not be there yet.
  void BeforeStore() override;
  std::string GetDefaultFileName() const override;
};

namespace uLogin {

/// The login data of this user, read from their file at the first need; SaveToFile stores them there.
/// @throws EQuillonException, naming the file, for one that is damaged
TVELLoginData& LoginData();

}  // namespace uLogin
