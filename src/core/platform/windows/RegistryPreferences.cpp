#include "platform/windows/RegistryPreferences.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <memory>

#include "platform/windows/WindowsCalls.h"

namespace {

using WindowsCalls::FromWide;
using WindowsCalls::ToWide;

std::string_view BytesOf(const std::wstring& AText) {
  return {reinterpret_cast<const char*>(AText.c_str()), (AText.size() + 1) * sizeof(wchar_t)};
}

/// The names that a call of the system lists; it wants the place of a name, room for it and the room's size.
template <class TList>
std::vector<std::string> NamesBy(HKEY AKey, TList AList) {
  constexpr DWORD LongestName = 16'384;
  std::vector<std::string> Names;
  std::wstring Name(LongestName, L'\0');
  for (DWORD I = 0; AKey != nullptr; ++I) {
    DWORD Length = LongestName;
    if (AList(AKey, I, Name.data(), &Length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) {
      break;
    }
    Names.push_back(FromWide({Name.data(), Length}));
  }
  return Names;
}

}  // namespace

struct TQuillonRegistryPreferences::TValue {
  DWORD Kind = REG_NONE;
  std::string Bytes;

  /// The value as a text; nothing for a kind that has none.
  std::optional<std::string> Text() const {
    switch (Kind) {
      case REG_SZ:
      case REG_EXPAND_SZ: {
        std::wstring Wide(Bytes.size() / sizeof(wchar_t), L'\0');
        std::memcpy(Wide.data(), Bytes.data(), Wide.size() * sizeof(wchar_t));
        Wide.resize(std::min(Wide.find(L'\0'), Wide.size()));
        return FromWide(Kind == REG_EXPAND_SZ ? Expanded(Wide) : Wide);
      }
      case REG_DWORD:
        return Number<std::int32_t>();
      case REG_QWORD:
        return Number<std::int64_t>();
      default:
        return std::nullopt;
    }
  }

 private:
  template <class T>
  std::optional<std::string> Number() const {
    std::array<char, sizeof(T)> Digits{};
    Bytes.copy(Digits.data(), Digits.size());
    return std::to_string(std::bit_cast<T>(Digits));
  }
  static std::wstring Expanded(const std::wstring& AText) {
    std::wstring Result(::ExpandEnvironmentStringsW(AText.c_str(), nullptr, 0), L'\0');
    const DWORD Length = ::ExpandEnvironmentStringsW(AText.c_str(), Result.data(), static_cast<DWORD>(Result.size()));
    Result.resize(Length > 0 && Length <= Result.size() ? Length - 1 : 0);
    return Result;
  }
};

TQuillonRegistryPreferences::TQuillonRegistryPreferences(HKEY ARootKey, REGSAM AnAccess)
    : FRootKey(ARootKey), FAccess(AnAccess) {}

TQuillonRegistryPreferences::TKey TQuillonRegistryPreferences::Open(const std::wstring& APath, REGSAM ARights) const {
  constexpr REGSAM Views = KEY_WOW64_32KEY | KEY_WOW64_64KEY;
  HKEY Key = nullptr;
  return TKey(
      ::RegOpenKeyExW(FRootKey, APath.c_str(), 0, ARights | (FAccess & Views), &Key) == ERROR_SUCCESS ? Key : nullptr);
}

LSTATUS TQuillonRegistryPreferences::Create(const std::wstring& APath, TKey& AKey) const {
  HKEY Key = nullptr;
  const LSTATUS Code =
      ::RegCreateKeyExW(FRootKey, APath.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE, FAccess, nullptr, &Key, nullptr);
  AKey.reset(Code == ERROR_SUCCESS ? Key : nullptr);
  return Code;
}

std::wstring TQuillonRegistryPreferences::PathOf(std::string_view AKey) const {
  constexpr std::string_view Delimiters = R"(\/)";
  const bool IsFromRoot = !AKey.empty() && Delimiters.find(AKey.front()) != std::string_view::npos;
  std::wstring Path = IsFromRoot ? std::wstring() : FCurrentKey;
  while (!AKey.empty()) {
    const std::size_t End = std::min(AKey.find_first_of(Delimiters), AKey.size());
    if (End > 0) {
      Path.append(Path.empty() ? L"" : LR"(\)").append(ToWide(AKey.substr(0, End)));
    }
    AKey.remove_prefix(std::min(End + 1, AKey.size()));
  }
  return Path;
}

bool TQuillonRegistryPreferences::CreateKey(std::string_view AKey) {
  TKey Created;
  if (const LSTATUS Code = Create(PathOf(AKey), Created); Code != ERROR_SUCCESS) {
    WindowsCalls::Fail(static_cast<DWORD>(Code), AKey);
  }
  return true;
}

bool TQuillonRegistryPreferences::DeleteKey(std::string_view AKey) {
  const std::wstring Path = PathOf(AKey);
  // The removal has no view of its own, but that of the key which it starts from.
  const std::size_t Last = Path.rfind(L'\\') + 1;
  const TKey Outer = Path.empty() ? nullptr : Open(Path.substr(0, Last > 0 ? Last - 1 : 0));
  return Outer != nullptr && ::RegDeleteTreeW(Outer.get(), Path.c_str() + Last) == ERROR_SUCCESS;
}

bool TQuillonRegistryPreferences::DeleteValue(std::string_view AName) {
  const TKey Key = Open(FCurrentKey, KEY_SET_VALUE);
  return !AName.empty() && Key != nullptr && ::RegDeleteValueW(Key.get(), ToWide(AName).c_str()) == ERROR_SUCCESS;
}

bool TQuillonRegistryPreferences::OpenKey(std::string_view AKey, bool CanCreate) {
  std::wstring Path = PathOf(AKey);
  TKey Key;
  if (CanCreate) {
    Create(Path, Key);
  } else {
    Key = Open(Path);
  }
  if (Key == nullptr) {
    return false;
  }
  FCurrentKey = std::move(Path);
  return true;
}

bool TQuillonRegistryPreferences::KeyExists(std::string_view AKey) const { return Open(PathOf(AKey)) != nullptr; }

bool TQuillonRegistryPreferences::ValueExists(std::string_view AName) const {
  const TKey Key = OpenCurrent();
  return !AName.empty() && Key != nullptr &&
         ::RegQueryValueExW(Key.get(), ToWide(AName).c_str(), nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
}

std::vector<std::string> TQuillonRegistryPreferences::GetKeyNames() const {
  const TKey Key = OpenCurrent();
  return NamesBy(Key.get(), [](HKEY AKey, DWORD AnIndex, wchar_t* AName, DWORD* ALength, auto... ARest) {
    return ::RegEnumKeyExW(AKey, AnIndex, AName, ALength, ARest...);
  });
}

std::vector<std::string> TQuillonRegistryPreferences::GetValueNames() const {
  const TKey Key = OpenCurrent();
  return NamesBy(Key.get(), [](HKEY AKey, DWORD AnIndex, wchar_t* AName, DWORD* ALength, auto... ARest) {
    return ::RegEnumValueW(AKey, AnIndex, AName, ALength, ARest...);
  });
}

TQuillonRegistryPreferences::TValue TQuillonRegistryPreferences::Read(std::string_view AName) const {
  const TKey Key = OpenCurrent();
  const std::wstring Name = ToWide(AName);
  TValue Value;
  LSTATUS Code = Key != nullptr ? ERROR_MORE_DATA : ERROR_FILE_NOT_FOUND;
  DWORD Size = 0;
  while (Code == ERROR_MORE_DATA) {
    Value.Bytes.resize(Size);
    Code = ::RegQueryValueExW(Key.get(), Name.c_str(), nullptr, &Value.Kind,
                              Value.Bytes.empty() ? nullptr : reinterpret_cast<BYTE*>(Value.Bytes.data()), &Size);
    // Without room the call only tells the size.
    if (Code == ERROR_SUCCESS && Size > Value.Bytes.size()) {
      Code = ERROR_MORE_DATA;
    }
  }
  Value.Bytes.resize(Code == ERROR_SUCCESS ? Size : 0);
  Value.Kind = Code == ERROR_SUCCESS ? Value.Kind : REG_NONE;
  return Value;
}

std::string TQuillonRegistryPreferences::ReadString(std::string_view AName, std::string_view ADefault) const {
  return Read(AName).Text().value_or(std::string(ADefault));
}

/// Bytes that are a value of the type, or else what its text gives.
template <class T>
T TQuillonRegistryPreferences::ReadAs(std::string_view AName, const T& AnOther) const {
  const TValue Value = Read(AName);
  std::array<char, sizeof(T)> Bytes{};
  if (Value.Kind != REG_BINARY || Value.Bytes.copy(Bytes.data(), Bytes.size()) != Bytes.size()) {
    return AnOther;
  }
  return std::bit_cast<T>(Bytes);
}

double TQuillonRegistryPreferences::ReadFloat(std::string_view AName, double ADefault) const {
  return ReadAs(AName, TQuillonAbstractPreferences::ReadFloat(AName, ADefault));
}

std::int64_t TQuillonRegistryPreferences::ReadCurrency(std::string_view AName, std::int64_t ADefault) const {
  return ReadAs(AName, TQuillonAbstractPreferences::ReadCurrency(AName, ADefault));
}

TQuillonDateTime TQuillonRegistryPreferences::ReadDateTime(std::string_view AName, TQuillonDateTime ADefault) const {
  return ReadAs<double>(AName, TQuillonAbstractPreferences::ReadDateTime(AName, ADefault));
}

std::string TQuillonRegistryPreferences::ReadBinary(std::string_view AName) const {
  TValue Value = Read(AName);
  return Value.Kind == REG_BINARY ? std::move(Value.Bytes) : TQuillonAbstractPreferences::ReadBinary(AName);
}

void TQuillonRegistryPreferences::Write(std::string_view AName, DWORD AKind, std::string_view ABytes) {
  if (AName.empty()) {
    throw EQuillonException("Ein Wert der Einstellungen braucht einen Namen.");
  }
  TKey Key;
  LSTATUS Code = Create(FCurrentKey, Key);
  if (Code == ERROR_SUCCESS) {
    Code = ::RegSetValueExW(Key.get(), ToWide(AName).c_str(), 0, AKind, reinterpret_cast<const BYTE*>(ABytes.data()),
                            static_cast<DWORD>(ABytes.size()));
  }
  if (Code != ERROR_SUCCESS) {
    WindowsCalls::Fail(static_cast<DWORD>(Code), AName);
  }
}

void TQuillonRegistryPreferences::WriteString(std::string_view AName, std::string_view AValue) {
  Write(AName, REG_SZ, BytesOf(ToWide(AValue)));
}

void TQuillonRegistryPreferences::WriteInteger(std::string_view AName, std::int32_t AValue) {
  const auto Bytes = std::bit_cast<std::array<char, sizeof(AValue)>>(AValue);
  Write(AName, REG_DWORD, {Bytes.data(), Bytes.size()});
}

void TQuillonRegistryPreferences::WriteFloat(std::string_view AName, double AValue) {
  const auto Bytes = std::bit_cast<std::array<char, sizeof(AValue)>>(AValue);
  WriteBinary(AName, {Bytes.data(), Bytes.size()});
}

void TQuillonRegistryPreferences::WriteCurrency(std::string_view AName, std::int64_t AValue) {
  const auto Bytes = std::bit_cast<std::array<char, sizeof(AValue)>>(AValue);
  WriteBinary(AName, {Bytes.data(), Bytes.size()});
}

void TQuillonRegistryPreferences::WriteDateTime(std::string_view AName, TQuillonDateTime AValue) {
  WriteFloat(AName, AValue);
}

void TQuillonRegistryPreferences::WriteBinary(std::string_view AName, std::string_view ABytes) {
  Write(AName, REG_BINARY, ABytes);
}
