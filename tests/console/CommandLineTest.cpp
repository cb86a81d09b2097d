#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "CommandLine.h"

namespace {

constexpr const char* NotFound = "(none)";

struct TQuestion {
  std::vector<std::string> Arguments;
  const char* Name;
  const char* Value;
  bool PathsBeginWithSlash = true;
};

const TQuestion Questions[] = {
    // A value is appended, or the next argument.
    {{"export", "-c", "cfg.json"}, "c", "cfg.json"},
    {{"export", "-c:cfg.json"}, "c", "cfg.json"},
    {{"export", "-ccfg.json"}, "c", "cfg.json"},
    {{"export", "-c=cfg.json"}, "c", "=cfg.json"},
    {{"export", "-c::x"}, "c", ":x"},
    {{"export", "-c:", "cfg.json"}, "c", ""},
    {{"export", "-C", "cfg.json"}, "c", "cfg.json"},
    {{"export", "/c:cfg.json", "/p:SDUI"}, "p", "SDUI"},
    // It is empty where none follows.
    {{"export", "-c"}, "c", ""},
    {{"export", "-c", "-p", "sdui"}, "c", ""},
    {{"export", "-c", "-"}, "c", ""},
    {{"export", "-c", "", "cfg.json"}, "c", ""},
    {{}, "c", NotFound},
    {{"export", "", "c", "-", "-d"}, "c", NotFound},
    {{"-s", "file"}, "s", "file"},
    // A short name catches a longer option that stands ahead.
    {{"export", "-sn", "srv", "-s", "server"}, "s", "n"},
    {{"export", "-s", "server", "-sn", "srv"}, "s", "server"},
    {{"export", "-s", "server", "-sn", "srv"}, "sn", "srv"},
    {{"export", "-c", "first", "-c", "second"}, "c", "first"},
    // A path is no switch where paths begin with a slash; one slash alone still leads a switch.
    {{"export", "-fn", "/srv/plan.velmora"}, "fn", "/srv/plan.velmora"},
    {{"export", "-fn", "//srv"}, "fn", "//srv"},
    {{"export", "-o", "/srv/a:b/c"}, "o", "/srv/a:b/c"},
    {{"export", "/srv/plan", "-s", "file"}, "s", "file"},
    {{"export", "/c:/etc/cfg.json"}, "c", "/etc/cfg.json"},
    {{"export", "-c/etc/cfg.json"}, "c", "/etc/cfg.json"},
    {{"export", "-fn", "/plan.velmora"}, "fn", ""},
    {{"export", "-fn:/plan.velmora"}, "fn", "/plan.velmora"},
    {{"export", "-fn", "/srv/plan.velmora"}, "fn", "", false},
    {{"export", "/srv/plan"}, "s", "rv/plan", false},
};

TEST(CommandLine, ReadsAnOption) {
  for (const TQuestion& Question : Questions) {
    std::string Value = "left over";
    const TCommandLine Line(Question.Arguments, Question.PathsBeginWithSlash);
    const bool IsFound = Line.FindOption(Question.Name, Value);
    EXPECT_EQ(IsFound ? Value : NotFound + Value, Question.Value) << testing::PrintToString(Question.Arguments);
  }
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
