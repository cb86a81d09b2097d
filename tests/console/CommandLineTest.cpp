#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "CommandLine.h"

namespace {

/// What the option reader answers: the value, or "(none)" where the option is not found.
std::string Option(const std::vector<std::string>& AnArguments, std::string_view AName,
                   bool APathsBeginWithSlash = true) {
  std::string Value = "left over";
  const bool IsFound = TCommandLine(AnArguments, APathsBeginWithSlash).FindOption(AName, Value);
  if (!IsFound) {
    EXPECT_EQ(Value, "") << "a value without an option";
  }
  return IsFound ? Value : "(none)";
}

TEST(CommandLine, TakesAnAppendedValueOrTheNextArgument) {
  EXPECT_EQ(Option({"export", "-c", "cfg.json"}, "c"), "cfg.json");
  EXPECT_EQ(Option({"export", "-c:cfg.json"}, "c"), "cfg.json");
  EXPECT_EQ(Option({"export", "-ccfg.json"}, "c"), "cfg.json");
  EXPECT_EQ(Option({"export", "-c=cfg.json"}, "c"), "=cfg.json");
  EXPECT_EQ(Option({"export", "-c::x"}, "c"), ":x");
  EXPECT_EQ(Option({"export", "-c:", "cfg.json"}, "c"), "");
  EXPECT_EQ(Option({"export", "-C", "cfg.json"}, "c"), "cfg.json");
  EXPECT_EQ(Option({"export", "/c:cfg.json", "/p:SDUI"}, "p"), "SDUI");
}

TEST(CommandLine, LeavesTheValueEmptyWhereNoneFollows) {
  EXPECT_EQ(Option({"export", "-c"}, "c"), "");
  EXPECT_EQ(Option({"export", "-c", "-p", "sdui"}, "c"), "");
  EXPECT_EQ(Option({"export", "-c", "-"}, "c"), "");
  EXPECT_EQ(Option({"export", "-c", "", "cfg.json"}, "c"), "");
  EXPECT_EQ(Option({}, "c"), "(none)");
  EXPECT_EQ(Option({"export", "", "c", "-", "-d"}, "c"), "(none)");
  EXPECT_EQ(Option({"-s", "file"}, "s"), "file") << "the first argument is looked at as well";
}

TEST(CommandLine, LetsAShortNameCatchALongerOptionThatStandsAhead) {
  EXPECT_EQ(Option({"export", "-sn", "srv", "-s", "server"}, "s"), "n");
  EXPECT_EQ(Option({"export", "-s", "server", "-sn", "srv"}, "s"), "server");
  EXPECT_EQ(Option({"export", "-s", "server", "-sn", "srv"}, "sn"), "srv");
  EXPECT_EQ(Option({"newguids", "-fn", "x"}, "f"), "n");
  EXPECT_EQ(Option({"export", "-c", "first", "-c", "second"}, "c"), "first");
}

TEST(CommandLine, TellsPathsFromSwitchesWherePathsBeginWithASlash) {
  EXPECT_EQ(Option({"export", "-fn", "/srv/plan.velmora"}, "fn"), "/srv/plan.velmora");
  EXPECT_EQ(Option({"export", "-fn", "//srv"}, "fn"), "//srv");
  EXPECT_EQ(Option({"export", "-o", "/srv/a:b/c"}, "o"), "/srv/a:b/c");
  EXPECT_EQ(Option({"export", "/srv/plan", "-s", "file"}, "s"), "file") << "a path is not searched for options";
  EXPECT_EQ(Option({"export", "/c:/etc/cfg.json"}, "c"), "/etc/cfg.json");
  EXPECT_EQ(Option({"export", "-c/etc/cfg.json"}, "c"), "/etc/cfg.json");
  EXPECT_EQ(Option({"export", "-fn", "/plan.velmora"}, "fn"), "") << "one slash alone still leads a switch";
  EXPECT_EQ(Option({"export", "-fn:/plan.velmora"}, "fn"), "/plan.velmora");

  EXPECT_EQ(Option({"export", "-fn", "/srv/plan.velmora"}, "fn", false), "");
  EXPECT_EQ(Option({"export", "/srv/plan"}, "s", false), "rv/plan");
}

TEST(CommandLine, FindsASwitchByItsWholeNameAnywhere) {
  const auto HasSwitch = [](const std::vector<std::string>& AnArguments) {
    return TCommandLine(AnArguments, true).FindSwitch("minimal-display");
  };
  EXPECT_TRUE(HasSwitch({"-minimal-display"}));
  EXPECT_TRUE(HasSwitch({"export", "-c", "x", "/Minimal-DISPLAY"}));
  EXPECT_FALSE(HasSwitch({"minimal-display"}));
  EXPECT_FALSE(HasSwitch({"-minimal-display:on"}));
  EXPECT_FALSE(HasSwitch({"--minimal-display"}));
  EXPECT_FALSE(HasSwitch({}));
}

TEST(CommandLine, TakesTheFirstArgumentForTheCommand) {
  EXPECT_EQ(TCommandLine({"-minimal-display", "export"}, true).Command(), "-minimal-display");
  EXPECT_EQ(TCommandLine({}, true).Command(), std::nullopt);
}

}  // namespace
