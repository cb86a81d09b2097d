#include "QuillonFileSystem/FileVersion.h"

#include <array>
#include <string_view>
#include <tuple>

#include "QuillonFileSystem/FileSystem.h"
#include "QuillonFileSystem/NativePath.h"
#include "platform/FileInfo.h"
#include "platform/Paths.h"

namespace {

struct TText {
  std::string_view Name;
  std::string TQuillonFileVersion::*Field;
};

/// By their names in the block.
constexpr std::array Texts = {TText{"Comments", &TQuillonFileVersion::FComment},
                              TText{"CompanyName", &TQuillonFileVersion::FCompanyName},
                              TText{"FileDescription", &TQuillonFileVersion::FFileDescription},
                              TText{"FileVersion", &TQuillonFileVersion::FFileVersion},
                              TText{"InternalName", &TQuillonFileVersion::FInternalName},
                              TText{"LegalCopyright", &TQuillonFileVersion::FLegalCopyright},
                              TText{"LegalTrademarks", &TQuillonFileVersion::FLegalTradeMarks},
                              TText{"OriginalFilename", &TQuillonFileVersion::FOriginalFileName},
                              TText{"PrivateBuild", &TQuillonFileVersion::FPrivateBuild},
                              TText{"ProductName", &TQuillonFileVersion::FProductName},
                              TText{"ProductVersion", &TQuillonFileVersion::FProductVersion},
                              TText{"SpecialBuild", &TQuillonFileVersion::FSpecialBuild}};

}  // namespace

TQuillonFileVersion::TQuillonFileVersion() : TQuillonFileVersion(Platform::ProgramFile()) {}

TQuillonFileVersion::TQuillonFileVersion(const std::string& AFileName)
    : FBuildDateStamp(TQuillonFileSystem::GetLastWriteTime(AFileName)), FFileName(AFileName) {
  const auto Block = QuillonFileSystem::OnPath(AFileName, [&] { return Platform::VersionBlockOf(AFileName); });
  if (!Block) {
    return;
  }
  std::tie(FFileMajorVersion, FFileMinorVersion, FFileRevision, FFileBuild) = std::tuple_cat(Block->FileVersion);
  std::tie(FProductMajorVersion, FProductMinorVersion, FProductRevision, FProductBuild) =
      std::tuple_cat(Block->ProductVersion);
  FFileFlags = Block->Flags;
  FLanguageName = Block->Language;
  for (const auto& [Name, Field] : Texts) {
    if (const auto Found = Block->Texts.find(Name); Found != Block->Texts.end()) {
      this->*Field = Found->second;
    }
  }
}
