#include <gmock/gmock.h>
#include <sys/stat.h>

#include <cstdlib>

#include "QuillonXMLPreferences.h"
#include "core/TestFiles.h"

namespace {

/// Sets a variable of the environment as long as it lives; an empty value takes it away.
class Variable {
 public:
  Variable(const char* AName, const std::string& AValue) : FName(AName), FOld(std::getenv(AName)) {
    FHad = FOld != nullptr;
    FKept = FHad ? FOld : "";
    Set(!AValue.empty(), AValue);
  }
  ~Variable() { Set(FHad, FKept); }

 private:
  void Set(bool AnIsSet, const std::string& AValue) const {
    AnIsSet ? ::setenv(FName, AValue.c_str(), 1) : ::unsetenv(FName);
  }

  const char* FName;
  const char* FOld;
  bool FHad = false;
  std::string FKept;
};

TEST(PosixPreferences, WhatIsNoFileIsRefusedAndNotWaitedFor) {
  const TemporaryFolder Folder;
  const std::string Pipe = Folder.Path("pipe");
  ASSERT_EQ(::mkfifo(Pipe.c_str(), 0600), 0);
  EXPECT_THROW(TQuillonXMLPreferences{Pipe}, EQuillonException);
  TQuillonXMLPreferences Fresh(Pipe, true);
  Fresh.WriteString("a", "b");
  EXPECT_THROW(Fresh.FlushBuffer(), EQuillonException);
}

TEST(PosixPreferences, OfTheUserLieInTheirOwnFolder) {
  const TemporaryFolder Folder;
  const auto Store = [] {
    const auto Preferences = QuillonPreferences::UserPreferences();
    Preferences->WriteString("a", "b");
    Preferences->FlushBuffer();
  };
  const Variable Home("HOME", Folder.Path("home"));
  {
    const Variable Config("XDG_CONFIG_HOME", Folder.Path("config"));
    Store();
  }
  {
    const Variable Config("XDG_CONFIG_HOME", "relative");
    Store();
  }
  for (const char* Name : {"config/velmora/preferences.xml", "home/.config/velmora/preferences.xml"}) {
    const auto Mode = std::filesystem::status(Folder.Path(Name)).permissions();
    EXPECT_EQ(Mode, std::filesystem::perms::owner_read | std::filesystem::perms::owner_write) << Name;
  }
  EXPECT_THAT(QuillonPreferences::MachinePreferences()->ReadString("no such value"), testing::IsEmpty());
}

}  // namespace
