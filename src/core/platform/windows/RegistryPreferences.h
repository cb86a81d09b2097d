#pragma once

#include <windows.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "QuillonPreferences.h"

/// Preferences in the system's registry, below one of its roots. What is written is there at once.
///
/// Numbers and bytes are values of their own kinds, as other programs of the product write them; one that is a text is
/// read as in a file of settings, and a number as its text.
class TQuillonRegistryPreferences : public TQuillonAbstractPreferences {
 public:
  /// @param AnAccess rights with which keys are created and written, and the view (KEY_WOW64_32KEY) in which they are
  ///                 looked for; reading needs no more than the right of reading
  explicit TQuillonRegistryPreferences(HKEY ARootKey, REGSAM AnAccess);

  void FlushBuffer() override {}
  void CloseKey() override { FCurrentKey.clear(); }
  bool CreateKey(std::string_view AKey) override;
  bool DeleteKey(std::string_view AKey) override;
  bool DeleteValue(std::string_view AName) override;
  bool OpenKey(std::string_view AKey, bool CanCreate) override;
  bool HasSubKeys() const override { return !GetKeyNames().empty(); }
  bool KeyExists(std::string_view AKey) const override;
  bool ValueExists(std::string_view AName) const override;
  std::vector<std::string> GetKeyNames() const override;
  std::vector<std::string> GetValueNames() const override;

  std::string ReadString(std::string_view AName, std::string_view ADefault = {}) const override;
  double ReadFloat(std::string_view AName, double ADefault = 0) const override;
  std::int64_t ReadCurrency(std::string_view AName, std::int64_t ADefault = 0) const override;
  TQuillonDateTime ReadDateTime(std::string_view AName, TQuillonDateTime ADefault = {}) const override;
  std::string ReadBinary(std::string_view AName) const override;

  /// @throws EQuillonWin32Error, as all that write, for a key that may not be written
  void WriteString(std::string_view AName, std::string_view AValue) override;
  void WriteInteger(std::string_view AName, std::int32_t AValue) override;
  void WriteFloat(std::string_view AName, double AValue) override;
  void WriteCurrency(std::string_view AName, std::int64_t AValue) override;
  void WriteDateTime(std::string_view AName, TQuillonDateTime AValue) override;
  void WriteBinary(std::string_view AName, std::string_view ABytes) override;

 private:
  struct TValue;

  struct TCloseKey {
    void operator()(HKEY AKey) const { ::RegCloseKey(AKey); }
  };
  using TKey = std::unique_ptr<HKEY__, TCloseKey>;

  /// No key where there is none, or it may not be opened so.
  TKey Open(const std::wstring& APath, REGSAM ARights = KEY_READ) const;
  TKey OpenCurrent() const { return Open(FCurrentKey); }
  /// @return the system's code
  LSTATUS Create(const std::wstring& APath, TKey& AKey) const;
  std::wstring PathOf(std::string_view AKey) const;
  TValue Read(std::string_view AName) const;
  template <class T>
  T ReadAs(std::string_view AName, const T& AnOther) const;
  void Write(std::string_view AName, DWORD AKind, std::string_view ABytes);

  HKEY FRootKey;
  REGSAM FAccess;
  std::wstring FCurrentKey;
};
