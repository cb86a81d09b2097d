#include <gtest/gtest.h>

#include "QuillonFileSystem.h"

TEST(FilePath, TakesPathsApartAndTogether) {
  using Path = TQuillonFilePath;
  struct Parts {
    const char* Path;
    const char* Directory;
    const char* Name;
    const char* Extension;
  };
  for (const auto& [Whole, Directory, Name, Extension] :
       {Parts{"/home/plan.data", "/home", "plan", "data"}, Parts{"plan.tar.gz", "", "plan.tar", "gz"},
        Parts{"/plan", "/", "plan", ""}, Parts{"a.b/plan", "a.b", "plan", ""}, Parts{"a//b/", "a//b", "", ""},
        Parts{"/etc/.profile", "/etc", ".profile", ""}, Parts{"plan.", "", "plan.", ""}, Parts{"..", "", "..", ""},
        Parts{"", "", "", ""}, Parts{"/", "/", "", ""}}) {
    EXPECT_EQ(Path::GetDirectoryName(Whole), Directory) << Whole;
    EXPECT_EQ(Path::GetFileNameWithoutExtension(Whole), Name) << Whole;
    EXPECT_EQ(Path::GetExtension(Whole), Extension) << Whole;
    EXPECT_EQ(Path::HasExtension(Whole), *Extension != '\0') << Whole;
  }
  EXPECT_EQ(Path::GetFileName("/home/plan.data"), "plan.data");

  EXPECT_EQ(Path::AddExtension("plan.data", "bak"), "plan.data.bak");
  EXPECT_EQ(Path::AddExtension("plan.", "bak"), "plan..bak");
  EXPECT_EQ(Path::AddExtension("plan", ""), "plan");
  EXPECT_EQ(Path::AddExtension("", "bak"), "");
  EXPECT_EQ(Path::ChangeExtension("a.b/plan.data", "csv"), "a.b/plan.csv");
  EXPECT_EQ(Path::ChangeExtension("a.b/plan", "csv"), "a.b/plan.csv");
  EXPECT_EQ(Path::ChangeExtension("plan.data", ""), "plan");

  EXPECT_EQ(Path::Combine("a", "b"), "a/b");
  EXPECT_EQ(Path::Combine("a/", "b/"), "a/b/");
  EXPECT_EQ(Path::Combine("", "b"), "b");
  EXPECT_EQ(Path::Combine("a", ""), "a");
  EXPECT_EQ(Path::Combine("a", "/b"), "/b");
  const std::vector<std::string> Steps = {"/", "a", "", "b.txt"};
  EXPECT_EQ(Path::Combine(Steps), "/a/b.txt");

  EXPECT_EQ(Path::AddTrailingPathDelimiter("a"), "a/");
  EXPECT_EQ(Path::AddTrailingPathDelimiter("a/"), "a/");
  EXPECT_EQ(Path::RemoveTrailingPathDelimiter("a/"), "a");
  EXPECT_EQ(Path::RemoveTrailingPathDelimiter("//"), "/");
  EXPECT_TRUE(Path::IsRoot("/"));
  EXPECT_FALSE(Path::IsRoot("/a"));
  EXPECT_FALSE(Path::IsRoot(""));
}
