#include "platform/windows/WindowsCalls.h"

#include <algorithm>

#include "QuillonTypes.h"

namespace WindowsCalls {

namespace {

constexpr std::wstring_view Unlimited = LR"(\\?\)";
constexpr std::wstring_view UnlimitedShare = LR"(\\?\UNC\)";
/// From here on a folder's path needs the form without a limit.
constexpr std::size_t LongestPlainPath = 247;

std::wstring Convert(std::string_view AText, DWORD AFlags) {
  const int Size = static_cast<int>(AText.size());
  const int Length = Size == 0 ? 0 : ::MultiByteToWideChar(CP_UTF8, AFlags, AText.data(), Size, nullptr, 0);
  std::wstring Wide(static_cast<std::size_t>(Length), L'\0');
  if (Length > 0) {
    ::MultiByteToWideChar(CP_UTF8, AFlags, AText.data(), Size, Wide.data(), Length);
  }
  return Wide;
}

}  // namespace

void Fail(DWORD AnErrorCode, std::string_view ASubject) {
  throw EQuillonWin32Error(static_cast<int>(AnErrorCode), ASubject);
}

void Fail(std::string_view ASubject) { Fail(::GetLastError(), ASubject); }

std::wstring ToWide(std::string_view AText) { return Convert(AText, 0); }

std::string FromWide(std::wstring_view AText) {
  const int Size = static_cast<int>(AText.size());
  const int Length =
      Size == 0 ? 0 : ::WideCharToMultiByte(CP_UTF8, 0, AText.data(), Size, nullptr, 0, nullptr, nullptr);
  std::string Text(static_cast<std::size_t>(Length), '\0');
  if (Length > 0) {
    ::WideCharToMultiByte(CP_UTF8, 0, AText.data(), Size, Text.data(), Length, nullptr, nullptr);
  }
  return Text;
}

std::wstring WidePath(std::string_view APath) {
  const std::wstring Given = Convert(APath, MB_ERR_INVALID_CHARS);
  if (APath.find('\0') != std::string_view::npos || Given.empty() != APath.empty()) {
    Fail(ERROR_INVALID_NAME, APath);
  }
  if (Given.empty() || Given.starts_with(Unlimited)) {
    return Given;
  }
  std::wstring Full(MAX_PATH, L'\0');
  for (;;) {
    const DWORD Length = ::GetFullPathNameW(Given.c_str(), static_cast<DWORD>(Full.size()), Full.data(), nullptr);
    if (Length == 0) {
      Fail(APath);
    }
    const bool HasFitted = Length < Full.size();
    Full.resize(Length);
    if (HasFitted) {
      break;
    }
  }
  const bool IsShare = Full.starts_with(LR"(\\)");
  if (Full.size() <= LongestPlainPath || Full.starts_with(LR"(\\.\)")) {
    return Full;
  }
  return std::wstring(IsShare ? UnlimitedShare : Unlimited).append(Full, IsShare ? 2 : 0);
}

std::string NarrowPath(std::wstring_view APath) {
  if (APath.starts_with(UnlimitedShare)) {
    return R"(\\)" + FromWide(APath.substr(UnlimitedShare.size()));
  }
  return FromWide(APath.starts_with(Unlimited) ? APath.substr(Unlimited.size()) : APath);
}

std::optional<std::string> Variable(const wchar_t* AName) {
  // A variable may change between the two calls, of which the first one tells the size.
  std::wstring Value(::GetEnvironmentVariableW(AName, nullptr, 0), L'\0');
  if (Value.empty()) {
    return std::nullopt;
  }
  Value.resize(std::min<std::size_t>(::GetEnvironmentVariableW(AName, Value.data(), static_cast<DWORD>(Value.size())),
                                     Value.size()));
  return FromWide(Value);
}

}  // namespace WindowsCalls
