#include "platform/FileInfo.h"

#include <windows.h>

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <utility>

#include "platform/Files.h"
#include "platform/windows/WindowsCalls.h"

namespace {

using WindowsCalls::Fail;
using WindowsCalls::FromWide;
using WindowsCalls::WidePath;

/// Each attribute that a file has beside fattrNormal.
constexpr std::pair<TQuillonFileAttribute, DWORD> Attributes[] = {
    {fattrArchive, FILE_ATTRIBUTE_ARCHIVE},     {fattrCompressed, FILE_ATTRIBUTE_COMPRESSED},
    {fattrDirectory, FILE_ATTRIBUTE_DIRECTORY}, {fattrHidden, FILE_ATTRIBUTE_HIDDEN},
    {fattrOffline, FILE_ATTRIBUTE_OFFLINE},     {fattrReadOnly, FILE_ATTRIBUTE_READONLY},
    {fattrSystem, FILE_ATTRIBUTE_SYSTEM},       {fattrTemporary, FILE_ATTRIBUTE_TEMPORARY},
};
/// Those that can be set.
constexpr DWORD Settable = FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_OFFLINE |
                           FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_TEMPORARY;

constexpr std::int64_t CountsPerMillisecond = 10'000;
/// Milliseconds from 1601 to 1970.
constexpr std::int64_t UnixStart = 11'644'473'600'000;

std::int64_t Milliseconds(const FILETIME& ATime) {
  const auto Count = static_cast<std::int64_t>((std::uint64_t{ATime.dwHighDateTime} << 32U) | ATime.dwLowDateTime);
  return Count / CountsPerMillisecond - UnixStart;
}

FILETIME FileTime(std::int64_t AMilliseconds) {
  const auto Count = static_cast<std::uint64_t>((AMilliseconds + UnixStart) * CountsPerMillisecond);
  return {.dwLowDateTime = static_cast<DWORD>(Count), .dwHighDateTime = static_cast<DWORD>(Count >> 32U)};
}

/// The file or folder for calls that look at, or change, what stands beside its content; links are followed.
WindowsCalls::THandle OpenEntry(const std::string& APath, DWORD ARights) {
  constexpr DWORD ForAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  auto Entry = WindowsCalls::OwnedFile(::CreateFileW(WidePath(APath).c_str(), ARights, ForAll, nullptr, OPEN_EXISTING,
                                                     FILE_FLAG_BACKUP_SEMANTICS, nullptr));
  if (Entry == nullptr) {
    Fail(APath);
  }
  return Entry;
}

/// What a call writes into a buffer whose length it tells.
template <class TCall>
std::string Text(const std::string& APath, TCall ACall) {
  std::wstring Buffer(MAX_PATH, L'\0');
  for (;;) {
    const DWORD Length = ACall(Buffer.data(), static_cast<DWORD>(Buffer.size()));
    if (Length == 0) {
      Fail(APath);
    }
    const bool IsWhole = Length < Buffer.size();
    Buffer.resize(Length);
    if (IsWhole) {
      return WindowsCalls::NarrowPath(Buffer);
    }
  }
}

/// A value of the version block; null if it has none of the name.
template <class TValue>
const TValue* Value(const std::string& ABlock, const std::wstring& AName, UINT& ALength) {
  void* Found = nullptr;
  const bool IsThere = ::VerQueryValueW(ABlock.data(), AName.c_str(), &Found, &ALength) != 0 && ALength > 0;
  return IsThere ? static_cast<const TValue*>(Found) : nullptr;
}

std::array<std::uint16_t, 4> Numbers(DWORD AHigh, DWORD ALow) {
  return {HIWORD(AHigh), LOWORD(AHigh), HIWORD(ALow), LOWORD(ALow)};
}

void TakeNumbers(const VS_FIXEDFILEINFO& AnInfo, Platform::VersionBlock& ABlock) {
  constexpr std::pair<TQuillonFileFlag, DWORD> Flags[] = {{fflagDebug, VS_FF_DEBUG},
                                                          {fflagInfoInferred, VS_FF_INFOINFERRED},
                                                          {fflagPatched, VS_FF_PATCHED},
                                                          {fflagPreRelease, VS_FF_PRERELEASE},
                                                          {fflagPrivateBuild, VS_FF_PRIVATEBUILD},
                                                          {fflagSpecialBuild, VS_FF_SPECIALBUILD}};
  ABlock.FileVersion = Numbers(AnInfo.dwFileVersionMS, AnInfo.dwFileVersionLS);
  ABlock.ProductVersion = Numbers(AnInfo.dwProductVersionMS, AnInfo.dwProductVersionLS);
  for (const auto& [Flag, Bit] : Flags) {
    if ((AnInfo.dwFileFlags & AnInfo.dwFileFlagsMask & Bit) != 0) {
      ABlock.Flags.Include(Flag);
    }
  }
}

/// The texts of the first language.
void TakeTexts(const std::string& AContent, Platform::VersionBlock& ABlock) {
  struct TTranslation {
    WORD Language;
    WORD CodePage;
  };
  UINT Length = 0;
  const auto* const First = Value<TTranslation>(AContent, LR"(\VarFileInfo\Translation)", Length);
  if (First == nullptr || Length < sizeof(TTranslation)) {
    return;
  }
  std::array<wchar_t, 128> Language{};
  ::VerLanguageNameW(First->Language, Language.data(), static_cast<DWORD>(Language.size()));
  ABlock.Language = FromWide(Language.data());
  constexpr std::wstring_view Digits = L"0123456789abcdef";
  std::wstring Folder = LR"(\StringFileInfo\)";
  for (const WORD Number : {First->Language, First->CodePage}) {
    for (const int Shift : {12, 8, 4, 0}) {
      Folder.push_back(Digits[static_cast<std::size_t>(Number >> Shift) % 16U]);
    }
  }
  for (const wchar_t* Name :
       {L"Comments", L"CompanyName", L"FileDescription", L"FileVersion", L"InternalName", L"LegalCopyright",
        L"LegalTrademarks", L"OriginalFilename", L"PrivateBuild", L"ProductName", L"ProductVersion", L"SpecialBuild"}) {
    if (const auto* const Found = Value<wchar_t>(AContent, Folder + L"\\" + Name, Length)) {
      const std::wstring_view Whole(Found, Length);
      ABlock.Texts.emplace(FromWide(Name), FromWide(Whole.substr(0, Whole.find(L'\0'))));
    }
  }
}

/// The root of the volume that a path lies on, with a backslash at its end.
std::wstring VolumeRoot(const std::string& APath) {
  std::wstring Root(WidePath(APath).size() + MAX_PATH, L'\0');
  if (::GetVolumePathNameW(WidePath(APath).c_str(), Root.data(), static_cast<DWORD>(Root.size())) == 0) {
    Fail(APath);
  }
  return Root.substr(0, Root.find(L'\0'));
}

TQuillonDriveType KindOf(const std::wstring& ARoot) {
  switch (::GetDriveTypeW(ARoot.c_str())) {
    case DRIVE_REMOVABLE:
      return dtypeRemovableDrive;
    case DRIVE_FIXED:
      return dtypeFixedDrive;
    case DRIVE_REMOTE:
      return dtypeRemoteDrive;
    case DRIVE_CDROM:
      return dtypeCDROM;
    case DRIVE_RAMDISK:
      return dtypeRAMDisk;
    default:
      return dtypeUnknown;
  }
}

}  // namespace

namespace Platform {

FileInfo InfoOf(const std::string& APath) {
  BY_HANDLE_FILE_INFORMATION Info{};
  if (::GetFileInformationByHandle(OpenEntry(APath, FILE_READ_ATTRIBUTES).get(), &Info) == 0) {
    Fail(APath);
  }
  FileInfo Result;
  for (const auto& [Attribute, Bit] : Attributes) {
    if ((Info.dwFileAttributes & Bit) != 0) {
      Result.Attributes.Include(Attribute);
    }
  }
  if (Result.Attributes.IsEmpty()) {
    Result.Attributes.Include(fattrNormal);
  }
  Result.Times = {Milliseconds(Info.ftCreationTime), Milliseconds(Info.ftLastAccessTime),
                  Milliseconds(Info.ftLastWriteTime)};
  Result.Size = static_cast<std::int64_t>((std::uint64_t{Info.nFileSizeHigh} << 32U) | Info.nFileSizeLow);
  return Result;
}

void SetAttributes(const std::string& APath, TQuillonFileAttributes AnAttributes) {
  DWORD Bits = 0;
  for (const auto& [Attribute, Bit] : Attributes) {
    Bits |= AnAttributes.Contains(Attribute) ? Bit & Settable : 0;
  }
  if (::SetFileAttributesW(WidePath(APath).c_str(), Bits == 0 ? FILE_ATTRIBUTE_NORMAL : Bits) == 0) {
    Fail(APath);
  }
}

void SetTime(const std::string& APath, TQuillonFileTimeInfo AWhich, std::int64_t AMilliseconds) {
  const FILETIME Time = FileTime(AMilliseconds);
  const auto For = [&](TQuillonFileTimeInfo AnInfo) { return AnInfo == AWhich ? &Time : nullptr; };
  const auto Entry = OpenEntry(APath, FILE_WRITE_ATTRIBUTES);
  if (::SetFileTime(Entry.get(), For(ftimeCreation), For(ftimeLastAccess), For(ftimeLastWrite)) == 0) {
    Fail(APath);
  }
}

void RemoveAtRestart(const std::string& APath) {
  if (::MoveFileExW(WidePath(APath).c_str(), nullptr, MOVEFILE_DELAY_UNTIL_REBOOT) == 0) {
    Fail(APath);
  }
}

void RemoveFolder(const std::string& APath) {
  if (::RemoveDirectoryW(WidePath(APath).c_str()) == 0) {
    Fail(APath);
  }
}

void RemoveTree(const std::string& APath) {
  // The standard library's own way follows links and knows no long paths.
  std::vector<std::string> Folders;
  const auto Take = [&Folders](std::string AnEntry) {
    const DWORD Found = ::GetFileAttributesW(WidePath(AnEntry).c_str());
    if (Found == INVALID_FILE_ATTRIBUTES) {
      Fail(AnEntry);
    }
    if ((Found & FILE_ATTRIBUTE_DIRECTORY) == 0) {
      Files().Remove(AnEntry);
    } else if ((Found & FILE_ATTRIBUTE_REPARSE_POINT) != 0) {
      RemoveFolder(AnEntry);
    } else {
      Folders.push_back(std::move(AnEntry));
    }
  };
  Take(APath);
  for (std::size_t I = 0; I < Folders.size(); ++I) {
    const std::string Folder = Folders[I];
    for (const std::string& Name : Files().NamesIn(Folder)) {
      if (Name != "." && Name != "..") {
        Take(std::string(Folder).append("\\").append(Name));
      }
    }
  }
  std::for_each(Folders.rbegin(), Folders.rend(), RemoveFolder);
}

std::string FullPath(const std::string& APath) {
  // The form that knows no limit knows neither "." nor "..".
  std::string Full = APath.starts_with(R"(\\?\)") ? APath : WindowsCalls::NarrowPath(WidePath(APath));
  const bool IsShare = Full.starts_with(R"(\\)") && !Full.starts_with(R"(\\.\)") && RootLength(Full) == Full.size();
  return IsShare && !Full.ends_with('\\') ? Full + '\\' : Full;
}

std::string ShortForm(const std::string& APath) {
  const std::wstring Path = WidePath(APath);
  return Text(APath, [&](wchar_t* ABuffer, DWORD ASize) { return ::GetShortPathNameW(Path.c_str(), ABuffer, ASize); });
}

std::string LongForm(const std::string& APath) {
  const std::wstring Path = WidePath(APath);
  return Text(APath, [&](wchar_t* ABuffer, DWORD ASize) { return ::GetLongPathNameW(Path.c_str(), ABuffer, ASize); });
}

const bool PathsIgnoreCase = true;

std::vector<std::string> Drives() {
  std::vector<std::string> Result;
  const DWORD Bits = ::GetLogicalDrives();
  for (char Letter = 'A'; Letter <= 'Z'; ++Letter) {
    if ((Bits >> static_cast<unsigned>(Letter - 'A') & 1U) != 0) {
      Result.push_back({Letter, ':', '\\'});
    }
  }
  return Result;
}

TQuillonDriveType DriveTypeOf(const std::string& APath) { return KindOf(VolumeRoot(APath)); }

VolumeInfo VolumeOf(const std::string& APath) {
  const std::wstring Root = VolumeRoot(APath);
  VolumeInfo Result;
  std::array<wchar_t, MAX_PATH + 1> Name{};
  std::array<wchar_t, MAX_PATH + 1> FileSystem{};
  DWORD Serial = 0;
  if (::GetVolumeInformationW(Root.c_str(), Name.data(), static_cast<DWORD>(Name.size()), &Serial, nullptr, nullptr,
                              FileSystem.data(), static_cast<DWORD>(FileSystem.size())) == 0) {
    Fail(APath);
  }
  Result.Name = FromWide(Name.data());
  Result.SerialNumber = Serial;
  Result.FileSystem = FromWide(FileSystem.data());
  return Result;
}

VolumeSpace SpaceOf(const std::string& APath) {
  InfoOf(APath);  // raises for a path that leads nowhere, whose volume would be told all the same
  ULARGE_INTEGER Free{};
  ULARGE_INTEGER Size{};
  if (::GetDiskFreeSpaceExW(VolumeRoot(APath).c_str(), &Free, &Size, nullptr) == 0) {
    Fail(APath);
  }
  return {.Size = Size.QuadPart, .Free = Free.QuadPart};
}

bool IsSameFile(const std::string& APath1, const std::string& APath2) {
  std::error_code Ignored;
  return std::filesystem::equivalent(WidePath(APath1), WidePath(APath2), Ignored);
}

std::optional<VersionBlock> VersionBlockOf(const std::string& APath) {
  const std::wstring Path = WidePath(APath);
  DWORD Unused = 0;
  std::string Content(::GetFileVersionInfoSizeW(Path.c_str(), &Unused), '\0');
  if (Content.empty() ||
      ::GetFileVersionInfoW(Path.c_str(), 0, static_cast<DWORD>(Content.size()), Content.data()) == 0) {
    return std::nullopt;
  }
  VersionBlock Block;
  UINT Length = 0;
  if (const auto* const Fixed = Value<VS_FIXEDFILEINFO>(Content, L"\\", Length)) {
    TakeNumbers(*Fixed, Block);
  }
  TakeTexts(Content, Block);
  return Block;
}

}  // namespace Platform
