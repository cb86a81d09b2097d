#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "QuillonDateTime.h"
#include "QuillonGuid.h"

/// Keys and values: settings that are not part of a data file. A key is a path of segments between backslashes or
/// slashes, from the root where it begins with one, else from the current key; names are the same in either case.
///
/// All values are text. A read gives the default for a value that is absent, or that is none of its kind.
class TQuillonAbstractPreferences {
 public:
  TQuillonAbstractPreferences() = default;
  TQuillonAbstractPreferences(const TQuillonAbstractPreferences&) = delete;
  TQuillonAbstractPreferences& operator=(const TQuillonAbstractPreferences&) = delete;
  virtual ~TQuillonAbstractPreferences() = default;

  /// Stores what was changed; without a change nothing is touched.
  /// @throws EQuillonException where that does not work; the changes stay to be stored
  virtual void FlushBuffer() = 0;
  /// Back to the root.
  virtual void CloseKey() = 0;
  /// Creates a key as far as it is missing; the current one stays. @return true
  virtual bool CreateKey(std::string_view AKey) = 0;
  /// Removes a key with all that it holds. @return false if there is none
  virtual bool DeleteKey(std::string_view AKey) = 0;
  virtual bool DeleteValue(std::string_view AName) = 0;
  /// Makes a key the current one. @return false, and the current one stays, if there is none and none is created
  virtual bool OpenKey(std::string_view AKey, bool CanCreate) = 0;
  virtual bool HasSubKeys() const = 0;
  virtual bool KeyExists(std::string_view AKey) const = 0;
  virtual bool ValueExists(std::string_view AName) const = 0;
  /// Names of the keys and of the values in the current key.
  virtual std::vector<std::string> GetKeyNames() const = 0;
  virtual std::vector<std::string> GetValueNames() const = 0;

  virtual std::string ReadString(std::string_view AName, std::string_view ADefault = {}) const = 0;
  virtual std::int32_t ReadInteger(std::string_view AName, std::int32_t ADefault = 0) const;
  virtual bool ReadBoolean(std::string_view AName, bool ADefault = false) const;
  virtual char32_t ReadChar(std::string_view AName, char32_t ADefault = 0) const;
  virtual double ReadFloat(std::string_view AName, double ADefault = 0) const;
  /// In ten-thousandths: an amount has four decimals.
  virtual std::int64_t ReadCurrency(std::string_view AName, std::int64_t ADefault = 0) const;
  /// In the settings' short form: "24.12.2026 18:30:00".
  virtual TQuillonDateTime ReadDateTime(std::string_view AName, TQuillonDateTime ADefault = {}) const;
  virtual TGUID ReadGuid(std::string_view AName, const TGUID& ADefault = {}) const;
  /// Bytes, which are stored as Base64; none for an absent value.
  virtual std::string ReadBinary(std::string_view AName) const;

  /// @throws EQuillonException for a value without a name
  virtual void WriteString(std::string_view AName, std::string_view AValue) = 0;
  virtual void WriteInteger(std::string_view AName, std::int32_t AValue);
  virtual void WriteBoolean(std::string_view AName, bool AValue);
  /// @throws EQuillonException for what is no character of Unicode
  virtual void WriteChar(std::string_view AName, char32_t AValue);
  virtual void WriteFloat(std::string_view AName, double AValue);
  virtual void WriteCurrency(std::string_view AName, std::int64_t AValue);
  virtual void WriteDateTime(std::string_view AName, TQuillonDateTime AValue);
  virtual void WriteGuid(std::string_view AName, const TGUID& AValue);
  virtual void WriteBinary(std::string_view AName, std::string_view ABytes);
};

namespace QuillonPreferences {

/// The settings of the user, and those of the machine, wherever this system keeps them. Both may be empty; what is
/// written is stored by FlushBuffer.
/// @throws EQuillonException, naming the place, for settings that cannot be read
std::unique_ptr<TQuillonAbstractPreferences> UserPreferences();
std::unique_ptr<TQuillonAbstractPreferences> MachinePreferences();

}  // namespace QuillonPreferences
