#include <gmock/gmock.h>

#include <fstream>

#include "QuillonFileSystem.h"
#include "core/TestFiles.h"
#include "uColors.h"
#include "uOptions/ProgramPaths.h"
#include "uSite.h"

namespace {

using ::testing::HasSubstr;
using ::testing::Not;

class SettingsTest : public ::testing::Test {
 protected:
  std::string Put(const std::string& AName, std::string_view AContent) const {
    std::ofstream(FFolder.Path(AName)) << AContent;
    return FFolder.Path(AName);
  }

  TemporaryFolder FFolder;
  TVELProgramPaths FPaths;
  uOptions::TProgramPathsReplacement FReplacement{FPaths};
};

TEST_F(SettingsTest, ColoursThatTheFileLacksAreTheDefaults) {
  EXPECT_EQ(uColors::Colors().FBackgroundColor, 0xF1DBCD);
  EXPECT_EQ(uColors::Colors().FAdditionalLessonColor, 0xFF6600);
  EXPECT_EQ(uColors::Colors().FHeaderBgColor, uColors::Darker(0xF1DBCD, 50));
  FPaths.FColorsFile =
      Put("own", "<Storage><backgroundColor>255</backgroundColor><todayColor>1</todayColor></Storage>");
  EXPECT_EQ(uColors::Colors().FTodayColor, 1);
  EXPECT_EQ(uColors::Colors().FTodayHeaderColor, 0xC26B01);
  EXPECT_EQ(uColors::Colors().FHeaderBgColor, uColors::Darker(255, 50));
  FPaths.FColorsFile = Put("header", "<Storage><headerBgColor>7</headerBgColor></Storage>");
  EXPECT_EQ(uColors::Colors().FHeaderBgColor, 7);
}

TEST_F(SettingsTest, TheAdditionalLessonIsReadUnderAnotherNameThanWritten) {
  FPaths.FColorsFile = Put("written", "<Storage><additionalLessonColor>5</additionalLessonColor></Storage>");
  EXPECT_EQ(uColors::Colors().FAdditionalLessonColor, 0xFF6600);
  FPaths.FColorsFile = Put("read", "<Storage><tag_additionalLessonColor>5</tag_additionalLessonColor></Storage>");
  EXPECT_EQ(uColors::Colors().FAdditionalLessonColor, 5);
  EXPECT_THAT(uColors::Colors().SaveToXML(), HasSubstr("<additionalLessonColor>5</additionalLessonColor>"));
  EXPECT_THAT(uColors::Colors().SaveToXML(), Not(HasSubstr("tag_")));
}

TEST_F(SettingsTest, DarkerKeepsTheHue) {
  struct TCase {
    TColor Colour;
    int Steps;
    TColor Result;
  };
  for (const TCase& Case : {TCase{0xFFFFFF, 50, 0xC9C9C9}, TCase{0x0000FF, 60, 0x000080}, TCase{0x00FF00, 60, 0x008000},
                            TCase{0xFF0000, 60, 0x800000}, TCase{0x101010, 50, 0}, TCase{0xF1DBCD, 50, 0xDAA07A}}) {
    EXPECT_EQ(uColors::Darker(Case.Colour, Case.Steps), Case.Result) << std::hex << Case.Colour;
  }
}

TEST_F(SettingsTest, TheSiteHasTheOwnerOfItsFile) {
  EXPECT_EQ(uSite::Site().FBesitzer->FName1, "");
  FPaths.FSiteFile = Put("site",
                         "<Storage><Owner Class=\"Owner\" ID=\"{68D90B20-039A-4B6C-9804-FD8EB474B813}\">"
                         "<Name1>Schule</Name1></Owner></Storage>");
  EXPECT_EQ(uSite::Site().FBesitzer->FName1, "Schule");
}

TEST_F(SettingsTest, ADamagedFileIsNamed) {
  FPaths.FColorsFile = Put("Velmora.colors", "<Storage><todayColor>red</todayColor></Storage>");
  FPaths.FSiteFile = Put("Velmora.site", "<Storage><Owner/></Storage>");
  const auto Message = [](auto ACall) {
    try {
      ACall();
    } catch (const EQuillonException& Error) {
      return std::string(Error.what());
    }
    return std::string();
  };
  EXPECT_THAT(Message(uColors::Colors), HasSubstr(FPaths.FColorsFile));
  FPaths.FColorsFile = FFolder.Path("folder");
  TQuillonFileSystem::CreateDirectory(FPaths.FColorsFile);
  EXPECT_THAT(Message(uColors::Colors), HasSubstr(FPaths.FColorsFile));
  EXPECT_THAT(Message(uSite::Site), HasSubstr(FPaths.FSiteFile));
}

}  // namespace
