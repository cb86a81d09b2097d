#include <gmock/gmock.h>

#include "exchange/FileSets.h"
#include "platform/windows/WindowsCalls.h"

namespace {

using testing::UnorderedElementsAre;
using WindowsFileSets = FileSets;

TEST_F(WindowsFileSets, AFileThatAProgramShowsKeepsTheWholeEarlierSet) {
  Write("one", {"mark", "a", "b"});
  for (const char* Shown : {"a", "b", "mark"}) {
    const auto Viewer =
        WindowsCalls::OwnedFile(::CreateFileW(WindowsCalls::WidePath(FFolder.Path(Shown)).c_str(), GENERIC_READ,
                                              FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr));
    EXPECT_THROW(Write("two", {"mark", "a"}), EQuillonFileInUseError) << Shown;
    EXPECT_EQ(Content("a") + Content("b") + Content("mark"), "oneoneone") << Shown;
    EXPECT_THAT(FFolder.Names(), UnorderedElementsAre("mark", "a", "b"));
  }
  Write("two", {"mark", "a"});
  EXPECT_EQ(Content("a") + Content("mark"), "twotwo");
}

}  // namespace
