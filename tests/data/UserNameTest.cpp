#include <gtest/gtest.h>

#include <array>
#include <string>
#include <thread>
#include <vector>

#include "QuillonDataObjects/UserName.h"

namespace {

TEST(UserName, StandsForItsTextInEveryThread) {
  constexpr int Count = 5000;
  const auto TextOf = [](int ANumber) { return "user " + std::to_string(ANumber); };
  std::array<std::vector<TQuillonUserName>, 3> Found;
  std::vector<std::jthread> Threads;
  Threads.reserve(Found.size());
  for (std::vector<TQuillonUserName>& Names : Found) {
    Threads.emplace_back([&] {
      for (int I = 0; I < Count; ++I) {
        Names.emplace_back(TextOf(I));
      }
    });
  }
  Threads.clear();
  for (const std::vector<TQuillonUserName>& Names : Found) {
    EXPECT_EQ(Names, Found.front());
    for (int I = 0; I < Count; ++I) {
      ASSERT_EQ(Names[static_cast<std::size_t>(I)].Text(), TextOf(I));
    }
  }
  EXPECT_NE(TQuillonUserName("a"), TQuillonUserName("b"));
  EXPECT_EQ(TQuillonUserName(""), TQuillonUserName());
  EXPECT_EQ(TQuillonUserName().Text(), "");
}

}  // namespace
