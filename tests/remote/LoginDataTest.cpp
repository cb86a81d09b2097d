#include <gmock/gmock.h>

#include <fstream>

#include "QuillonFileSystem.h"
#include "core/TestFiles.h"
#include "uLogin/LoginData.h"
#include "uOptions/ProgramPaths.h"

namespace {

using ::testing::HasSubstr;

TEST(LoginDataTest, IsRememberedInTheUsersFolder) {
  const TemporaryFolder Folder;
  TVELProgramPaths Paths = uOptions::FillProgramPaths({"", Folder.Path("new"), "", nullptr, nullptr});
  const uOptions::TProgramPathsReplacement Replacement(Paths);
  EXPECT_EQ(Paths.FLoginFile, TQuillonFilePath::Combine(Folder.Path("new"), "velmora.login"));
  TVELLoginData& Data = uLogin::LoginData();
  EXPECT_EQ(Data.FServerName, "127.0.0.1");
  EXPECT_EQ(Data.FServerPort, 8100);
  EXPECT_EQ(Data.FAutoSicherungIntervall, 10);
  EXPECT_FALSE(Data.FAutoStart || Data.FAutoSicherung || Data.FSaveUserName);
  EXPECT_TRUE(Data.FPlanFileID.IsZero());

  Data.FServerPort = 65535;
  Data.FAutoSicherung = true;
  Data.FPlanFileID = QuillonGuid::Parse("{00112233-4455-6677-8899-AABBCCDDEEFF}");
  Data.SaveToFile();
  std::filesystem::copy_file(Paths.FLoginFile, Folder.Path("copy"));
  Paths.FLoginFile = Folder.Path("copy");
  const TVELLoginData& Again = uLogin::LoginData();
  EXPECT_EQ(Again.FServerPort, 65535);
  EXPECT_TRUE(Again.FAutoSicherung);
  EXPECT_EQ(Again.FPlanFileID, QuillonGuid::Parse("{00112233-4455-6677-8899-AABBCCDDEEFF}"));
  EXPECT_EQ(Again.FServerName, "127.0.0.1");

  for (const char* Damaged : {"<Storage>", "<Other/>", "<Storage><ServerPort>65536</ServerPort></Storage>"}) {
    Paths.FLoginFile = Folder.Path("damaged");
    std::ofstream(Paths.FLoginFile) << Damaged;
    try {
      uLogin::LoginData();
      ADD_FAILURE() << Damaged;
    } catch (const EQuillonException& Error) {
      EXPECT_THAT(Error.what(), HasSubstr(Paths.FLoginFile));
    }
  }
}

}  // namespace
