#include "platform/Console.h"

#include <windows.h>

#include <shellapi.h>
#include <utf8.h>

#include <algorithm>
#include <iterator>

#include "platform/windows/WindowsCalls.h"

namespace {

using WindowsCalls::Fail;
using WindowsCalls::FromWide;
using WindowsCalls::ToWide;

std::string ValidText(std::string_view ALine) {
  std::string Text;
  Text.reserve(ALine.size() + 2);
  utf8::replace_invalid(ALine.begin(), ALine.end(), std::back_inserter(Text));
  return Text;
}

/// A console takes characters, so that no code page matters.
void WriteToConsole(HANDLE AHandle, std::string_view AName, const std::wstring& AText) {
  // What one call takes is limited by the console's own memory.
  constexpr std::size_t LargestPiece = 8'192;
  for (std::wstring_view Left = AText; !Left.empty();) {
    DWORD Written = 0;
    const auto Size = static_cast<DWORD>(std::min(Left.size(), LargestPiece));
    if (::WriteConsoleW(AHandle, Left.data(), Size, &Written, nullptr) == 0) {
      Fail(AName);
    }
    Left.remove_prefix(Written);
  }
}

void WriteToFile(HANDLE AHandle, std::string_view AName, std::string_view AText) {
  while (!AText.empty()) {
    DWORD Written = 0;
    if (::WriteFile(AHandle, AText.data(), static_cast<DWORD>(AText.size()), &Written, nullptr) == 0) {
      Fail(AName);
    }
    if (Written == 0) {
      Fail(ERROR_WRITE_FAULT, AName);
    }
    AText.remove_prefix(Written);
  }
}

void WriteLineTo(DWORD AHandle, std::string_view AName, std::string_view ALine) {
  const HANDLE Handle = ::GetStdHandle(AHandle);
  // A program that was started without a console has nobody to read its lines: that is no error.
  if (Handle == nullptr || Handle == INVALID_HANDLE_VALUE || ::GetFileType(Handle) == FILE_TYPE_UNKNOWN) {
    return;
  }
  const std::string Text = ValidText(ALine).append("\r\n");
  DWORD Mode = 0;
  if (::GetConsoleMode(Handle, &Mode) != 0) {
    WriteToConsole(Handle, AName, ToWide(Text));
  } else {
    WriteToFile(Handle, AName, Text);
  }
}

}  // namespace

namespace Platform {

TConsole::TConsole() {
  // No box with a button, at which a run by night would stay, for a drive without a disk.
  ::SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX);
}

std::vector<std::string> TConsole::Arguments(int /*ACount*/, const char* const* /*AValues*/) const {
  int Count = 0;
  const std::unique_ptr<wchar_t*, WindowsCalls::TLocalFree> Words(::CommandLineToArgvW(::GetCommandLineW(), &Count));
  std::vector<std::string> Arguments;
  for (int I = 1; Words != nullptr && I < Count; ++I) {
    Arguments.push_back(FromWide(Words.get()[I]));
  }
  return Arguments;
}

void WriteOutputLine(std::string_view ALine) { WriteLineTo(STD_OUTPUT_HANDLE, "standard output", ALine); }

void WriteErrorLine(std::string_view ALine) { WriteLineTo(STD_ERROR_HANDLE, "standard error", ALine); }

void WriteDebugLine(std::string_view ALine) { ::OutputDebugStringW(ToWide(ValidText(ALine).append("\r\n")).c_str()); }

}  // namespace Platform
