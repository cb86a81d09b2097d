#include "uOptions/ProgramPaths.h"

#include <memory>
#include <utility>

#include "QuillonFileSystem.h"
#include "QuillonPreferences.h"
#include "platform/Paths.h"

namespace {

using TPaths = TVELProgramPaths;

constexpr const char* MainKey = R"(\Software\Tarnhill Systems\Velmora 6\Main)";

struct TText {
  std::string TPaths::*Field;
  const char* Name;
};
constexpr TText MachineTexts[] = {
    {&TPaths::FSamplesFolder, "SampleFolder"},     {&TPaths::FSymbolsFolder, "SymbolsFolder"},
    {&TPaths::FKeysFolder, "KeysFolder"},          {&TPaths::FScriptsFolder, "ScriptFolder"},
    {&TPaths::FCalendarsFolder, "CalendarFolder"}, {&TPaths::FSecurityFolder, "SecurityFolder"},
    {&TPaths::FProductLanguage, "ProductLanguage"}};

struct TPlace {
  std::string TPaths::*Field;
  std::string TPaths::*Folder;
  const char* Name;
};
constexpr TPlace Places[] = {
    {&TPaths::FConfigFile, &TPaths::FUserDataFolder, "Velmora.cfg"},
    {&TPaths::FProgramFile, &TPaths::FBinaryFolder, "Velmora.exe"},
    {&TPaths::FPrintFormsFile, &TPaths::FUserDataFolder, "Velmora.pfm"},
    {&TPaths::FPrintFormsTemplate, &TPaths::FBinaryFolder, "Templates/Velmora.pfm"},
    {&TPaths::FHtmlFolder, &TPaths::FUserDataFolder, "HTML"},
    {&TPaths::FHtmlFormsFile, &TPaths::FCommonDataFolder, "Velmora.hfm"},
    {&TPaths::FHtmlFormsTemplate, &TPaths::FBinaryFolder, "Templates/Velmora.hfm"},
    {&TPaths::FCommonHtmlFolder, &TPaths::FCommonDataFolder, "HTML"},
    {&TPaths::FStatisticsFolder, &TPaths::FCommonDataFolder, "Statistics"},
    {&TPaths::FColorsFile, &TPaths::FCommonDataFolder, "Velmora.colors"},
    {&TPaths::FLogoFile, &TPaths::FUserDataFolder, "VelmoraLogo.png"},
    {&TPaths::FOptionsFile, &TPaths::FUserDataFolder, "Velmora.opt"},
    {&TPaths::FMessagesFile, &TPaths::FUserDataFolder, "Velmora.sms"},
    {&TPaths::FServerListFile, &TPaths::FUserDataFolder, "Velmora.servers"},
    {&TPaths::FLoginFile, &TPaths::FUserDataFolder, "velmora.login"},
};

/// A path below the current folder would be anybody's file.
/// @param AName with "/" ahead of what lies in a folder of the folder
std::string InFolder(const std::string& AFolder, std::string_view AName) {
  const std::size_t Inner = AName.find('/');
  if (!AFolder.empty() && Inner != std::string_view::npos) {
    return InFolder(TQuillonFilePath::Combine(AFolder, AName.substr(0, Inner)), AName.substr(Inner + 1));
  }
  return AFolder.empty() ? std::string() : TQuillonFilePath::Combine(AFolder, AName);
}

/// The settings; none where they cannot be read.
template <class TOpen>
std::unique_ptr<TQuillonAbstractPreferences> TryOpen(TOpen AnOpen) {
  try {
    return AnOpen();
  } catch (const EQuillonException&) {
    return nullptr;
  }
}

TPaths FillFromSystem() {
  const auto Machine = TryOpen(QuillonPreferences::MachinePreferences);
  const auto User = TryOpen(QuillonPreferences::UserPreferences);
  return uOptions::FillProgramPaths({Platform::MachineSettingsFolder(), Platform::UserSettingsFolder(),
                                     TQuillonFilePath::GetDirectoryName(Platform::ProgramFile()), Machine.get(),
                                     User.get()});
}

const TPaths*& InUse() {
  static const TPaths* Paths = nullptr;
  return Paths;
}

}  // namespace

namespace uOptions {

TVELProgramPaths FillProgramPaths(const TPathSources& ASources) {
  const auto Open = [](TQuillonAbstractPreferences* APreferences) {
    return APreferences != nullptr && APreferences->OpenKey(MainKey, false) ? APreferences : nullptr;
  };
  const TQuillonAbstractPreferences* const Machine = Open(ASources.Machine);
  const TQuillonAbstractPreferences* const User = Open(ASources.User);
  const auto Text = [](const TQuillonAbstractPreferences* AnOpen, const char* AName) {
    return AnOpen != nullptr ? AnOpen->ReadString(AName) : std::string();
  };
  const auto Flag = [](const TQuillonAbstractPreferences* AnOpen, const char* AName) {
    return AnOpen != nullptr && AnOpen->ReadBoolean(AName);
  };

  TPaths Paths;
  Paths.FBinaryFolder = Text(Machine, "BinFolder");
  if (Paths.FBinaryFolder.empty()) {
    Paths.FBinaryFolder = ASources.ProgramFolder;
  }
  Paths.FCommonDataFolder = ASources.CommonFolder;
  Paths.FUserDataFolder = ASources.UserFolder;
  Paths.FOptionsFolder = ASources.UserFolder;
  for (const TText& Row : MachineTexts) {
    Paths.*Row.Field = Text(Machine, Row.Name);
  }
  for (const TPlace& Row : Places) {
    Paths.*Row.Field = InFolder(Paths.*Row.Folder, Row.Name);
  }
  Paths.FNoUpdates = Flag(User, "NoUpdates");
  Paths.FNoServerManage = Flag(User, "NoServerManage");
  Paths.FSiteFileLocal = Flag(Machine, "SiteFileLocal");
  Paths.FSiteFile = InFolder(Paths.FSiteFileLocal ? Paths.FUserDataFolder : Paths.FCommonDataFolder, "Velmora.site");
  Paths.FProductVersion = Text(User, "ProductVersion");
  if (Paths.FProductVersion.empty()) {
    Paths.FProductVersion = Text(Machine, "ProductVersion");
  }
  return Paths;
}

const TVELProgramPaths& ProgramPaths() {
  if (InUse() == nullptr) {
    static const TPaths Paths = FillFromSystem();
    return Paths;
  }
  return *InUse();
}

TProgramPathsReplacement::TProgramPathsReplacement(const TVELProgramPaths& APaths)
    : FReplaced(std::exchange(InUse(), &APaths)) {}

TProgramPathsReplacement::~TProgramPathsReplacement() { InUse() = FReplaced; }

}  // namespace uOptions
