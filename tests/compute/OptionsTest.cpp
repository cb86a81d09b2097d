#include <gmock/gmock.h>

#include <fstream>

#include "QuillonFileSystem.h"
#include "QuillonXMLPreferences.h"
#include "core/TestFiles.h"
#include "uOptions/Options.h"
#include "uOptions/ProgramPaths.h"

namespace {

using ::testing::HasSubstr;

TEST(ProgramPaths, ComeFromFoldersAndSettings) {
  TQuillonXMLPreferences Machine("");
  Machine.OpenKey(R"(\Software\Tarnhill Systems\Velmora 6\Main)", true);
  Machine.WriteString("SampleFolder", "/samples");
  Machine.WriteString("ProductVersion", "6.0");
  uOptions::TPathSources Sources{"/etc/velmora", "/home/x", "/usr/bin", &Machine, nullptr};
  TVELProgramPaths Paths = uOptions::FillProgramPaths(Sources);
  EXPECT_EQ(Paths.FSiteFile, TQuillonFilePath::Combine("/etc/velmora", "Velmora.site"));
  EXPECT_EQ(Paths.FColorsFile, TQuillonFilePath::Combine("/etc/velmora", "Velmora.colors"));
  EXPECT_EQ(Paths.FOptionsFile, TQuillonFilePath::Combine("/home/x", "Velmora.opt"));
  EXPECT_EQ(Paths.FPrintFormsTemplate,
            TQuillonFilePath::Combine(std::vector<std::string>{"/usr/bin", "Templates", "Velmora.pfm"}));
  EXPECT_EQ(Paths.FSamplesFolder, "/samples");
  EXPECT_EQ(Paths.FProductVersion, "6.0");

  TQuillonXMLPreferences User("");
  User.OpenKey(R"(\Software\Tarnhill Systems\Velmora 6\Main)", true);
  User.WriteString("ProductVersion", "6.1");
  User.WriteBoolean("NoUpdates", true);
  Machine.WriteBoolean("SiteFileLocal", true);
  Machine.WriteString("BinFolder", "/opt/velmora");
  Sources.User = &User;
  Paths = uOptions::FillProgramPaths(Sources);
  EXPECT_EQ(Paths.FSiteFile, TQuillonFilePath::Combine("/home/x", "Velmora.site"));
  EXPECT_EQ(Paths.FProgramFile, TQuillonFilePath::Combine("/opt/velmora", "Velmora.exe"));
  EXPECT_EQ(Paths.FProductVersion, "6.1");
  EXPECT_TRUE(Paths.FNoUpdates);

  // A user without a home has no files, and not those of the current folder.
  EXPECT_EQ(uOptions::FillProgramPaths({}).FOptionsFile, "");
}

TEST(Options, AreThoseOfTheirFile) {
  const TemporaryFolder Folder;
  TVELProgramPaths Paths;
  const uOptions::TProgramPathsReplacement Replacement(Paths);
  Paths.FProductLanguage = "de";
  Paths.FOptionsFile = Folder.Path("missing");
  EXPECT_EQ(uOptions::Options().FLanguage, "de");
  EXPECT_EQ(uOptions::Options().FUserFirstnamePattern, "^[A-Z]");

  Paths.FOptionsFile = Folder.Path("Velmora.opt");
  std::ofstream(Paths.FOptionsFile) << "<Storage><ClassUserNamePattern>k</ClassUserNamePattern>"
                                       "<FUserBirthdayPattern/></Storage>";
  EXPECT_EQ(uOptions::Options().FLanguage, "de");
  EXPECT_EQ(uOptions::Options().FClassUserNamePattern, "k");
  EXPECT_EQ(uOptions::Options().FUserBirthdayPattern, "");
  uOptions::Options().FLanguage = "en";
  EXPECT_THAT(uOptions::Options().SaveToXML(), HasSubstr("<Language>en</Language>"));

  for (const char* Damaged : {"<Storage>", "<Other/>", "<Storage><FileVersion>x</FileVersion></Storage>"}) {
    Paths.FOptionsFile = Folder.Path("damaged");
    std::ofstream(Paths.FOptionsFile) << Damaged;
    try {
      uOptions::Options();
      ADD_FAILURE() << Damaged;
    } catch (const EQuillonException& Error) {
      EXPECT_THAT(Error.what(), HasSubstr(Paths.FOptionsFile));
    }
  }
}

}  // namespace
