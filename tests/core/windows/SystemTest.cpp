#include <gmock/gmock.h>

#include "QuillonDateTime.h"
#include "QuillonPreferences.h"
#include "TestPlatform.h"
#include "platform/Paths.h"
#include "platform/Proxies.h"
#include "platform/windows/RegistryPreferences.h"
#include "platform/windows/WindowsCalls.h"

namespace {

using testing::ElementsAre;
using testing::EndsWith;

class Registry : public testing::Test {
 protected:
  Registry() { FPreferences.OpenKey(FKey, true); }
  ~Registry() override { FPreferences.DeleteKey(FKey); }

  /// Of this test alone: others may run at the same time.
  const std::string FName = QuillonGuid::Plain(QuillonGuid::New());
  const std::string FKey = R"(\Software\Tarnhill Systems\Velmora 6\)" + FName;

  TQuillonRegistryPreferences FPreferences{HKEY_CURRENT_USER, KEY_ALL_ACCESS};
};

TEST_F(Registry, ValuesComeBackInTheirKinds) {
  const auto Time = TQuillonDateTime::Create(2026, 8, 1, 7, 45);
  const TGUID ID = QuillonGuid::New();
  FPreferences.WriteString("s", "K\u00e4the \U0001F600");
  FPreferences.WriteInteger("i", -7);
  FPreferences.WriteFloat("f", 0.1);
  FPreferences.WriteCurrency("m", -12'345);
  FPreferences.WriteDateTime("d", Time);
  FPreferences.WriteGuid("g", ID);
  FPreferences.WriteBinary("b", std::string_view("\0\xFF", 2));
  const auto Again = QuillonPreferences::UserPreferences();
  ASSERT_TRUE(Again->OpenKey(R"(software\TARNHILL systems/Velmora 6\)" + FName, false));
  EXPECT_EQ(Again->ReadString("S"), "K\u00e4the \U0001F600");
  EXPECT_EQ(Again->ReadInteger("i"), -7);
  EXPECT_EQ(Again->ReadString("i"), "-7");
  EXPECT_EQ(Again->ReadFloat("f"), 0.1);
  EXPECT_EQ(Again->ReadCurrency("m"), -12'345);
  EXPECT_EQ(Again->ReadDateTime("d"), Time);
  EXPECT_EQ(Again->ReadGuid("g"), ID);
  EXPECT_EQ(Again->ReadBinary("b"), std::string_view("\0\xFF", 2));
  EXPECT_EQ(Again->ReadInteger("s", 3), 3);
  EXPECT_EQ(Again->ReadFloat("i"), -7);
  EXPECT_EQ(Again->ReadString("absent", "default"), "default");
}

TEST_F(Registry, KeysAreListedCreatedAndDeleted) {
  EXPECT_FALSE(FPreferences.OpenKey("Sub", false));
  EXPECT_TRUE(FPreferences.CreateKey(R"(Sub\Deep)"));
  FPreferences.WriteString("a", "1");
  EXPECT_THAT(FPreferences.GetKeyNames(), ElementsAre("Sub"));
  EXPECT_THAT(FPreferences.GetValueNames(), ElementsAre("a"));
  EXPECT_TRUE(FPreferences.HasSubKeys() && FPreferences.ValueExists("A") && FPreferences.KeyExists("sub/deep"));
  EXPECT_TRUE(FPreferences.DeleteValue("a") && FPreferences.DeleteKey("Sub"));
  EXPECT_FALSE(FPreferences.DeleteValue("a") || FPreferences.DeleteKey("Sub"));
  FPreferences.CloseKey();
  EXPECT_FALSE(FPreferences.KeyExists("Test"));
  EXPECT_THROW(FPreferences.WriteString("", "x"), EQuillonException);
}

TEST_F(Registry, TheSystemsProxyIsThatOfTheSettings) {
  constexpr const char* Connections = R"(\Software\Microsoft\Windows\CurrentVersion\Internet Settings\Connections)";
  const auto Number = [](std::size_t AValue) {
    return std::string(1, static_cast<char>(AValue)) + std::string(3, '\0');
  };
  const auto Set = [&](char AFlags, const std::string& AProxy, const std::string& ABypass) {
    ASSERT_TRUE(FPreferences.OpenKey(Connections, true));
    FPreferences.WriteBinary("DefaultConnectionSettings", Number(0x46) + Number(1) +
                                                              Number(static_cast<std::size_t>(AFlags)) +
                                                              Number(AProxy.size()) + AProxy + Number(ABypass.size()) +
                                                              ABypass + Number(0) + std::string(32, '\0'));
    FPreferences.OpenKey(FKey, true);
  };
  Set(3, "http=a:80;https=b:81", "*.school.example;<local>");
  EXPECT_EQ(Platform::SystemProxyFor("https://service.example/path"), "b:81");
  EXPECT_EQ(Platform::SystemProxyFor("http://service.example"), "a:80");
  for (const char* Direct :
       {"https://iserv.school.example/", "https://iserv/", "https://localhost:1/", "http://127.0.0.1/"}) {
    EXPECT_EQ(Platform::SystemProxyFor(Direct), "") << Direct;
  }
  Set(3, "all:8080", "");
  EXPECT_EQ(Platform::SystemProxyFor("https://service.example/"), "all:8080");
  Set(1, "", "");
  EXPECT_EQ(Platform::SystemProxyFor("https://service.example/"), "");

  // The computer's own, for accounts without any.
  TQuillonRegistryPreferences Machine(HKEY_LOCAL_MACHINE, KEY_ALL_ACCESS);
  ASSERT_TRUE(Machine.OpenKey(Connections, true));
  Machine.WriteBinary("WinHttpSettings",
                      Number(0x18) + Number(0) + Number(3) + Number(5) + "own:8" + Number(11) + "a.b *.c.com");
  EXPECT_EQ(Platform::SystemProxyFor("https://service.example/"), "own:8");
  EXPECT_EQ(Platform::SystemProxyFor("https://x.c.com/"), "");
  EXPECT_TRUE(Machine.DeleteValue("WinHttpSettings"));
}

TEST(WindowsFolders, AreTheProductsOwn) {
  for (const std::string& Folder : {Platform::UserSettingsFolder(), Platform::MachineSettingsFolder()}) {
    EXPECT_THAT(Folder, EndsWith(R"(\Tarnhill Systems\Velmora 6)"));
  }
  EXPECT_NE(Platform::UserSettingsFolder(), Platform::MachineSettingsFolder());
  EXPECT_THAT(Platform::ProgramFile(), EndsWith("test_core.exe"));
}

TEST(WindowsZone, BerlinHasTheOffsetsOfItsWallClocks) {
  if (!TestPlatform::SetLocalZone("Europe/Berlin")) {
    GTEST_SKIP() << "the system's zone is another one";
  }
  for (const auto& [Text, Offset] : std::vector<std::pair<const char*, int>>{{"2026-03-29T01:59:59", 1},
                                                                             {"2026-03-29T02:30:00", 1},
                                                                             {"2026-03-29T03:00:00", 2},
                                                                             {"2026-10-25T02:30:00", 2},
                                                                             {"2026-10-25T03:00:00", 1},
                                                                             {"1996-10-20T12:00:00", 2},
                                                                             {"2025-12-31T23:59:59", 1},
                                                                             {"1899-12-30T00:00:00", 1},
                                                                             {"0001-01-01T00:00:00", 1},
                                                                             {"9999-12-31T00:00:00", 1}}) {
    EXPECT_EQ(QuillonDateTime::LocalOffset(QuillonDateTime::ParseDateTime(Text)), Offset * 3600) << Text;
  }
}

}  // namespace
