#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

#include "SchoolGenerator.h"

namespace {

std::string Save(const SchoolGenerator::TOptions& AnOptions) {
  return SchoolGenerator::Generate(AnOptions)->SaveToXML();
}

std::string LoadAndSave(const std::string& ADocument) {
  uPlandaten::RegisterClasses(TQuillonDataClassRegistry::Instance());
  const auto Plan = QuillonDataObjects::CreateStorage<TVELPlan>();
  Plan->LoadFromXML(ADocument, "school");
  return Plan->SaveToXML();
}

/// The texts are too long to be shown by a failing comparison.
::testing::AssertionResult Same(const std::string& A, const std::string& B) {
  if (A == B) {
    return ::testing::AssertionSuccess();
  }
  const auto Place = std::mismatch(A.begin(), A.end(), B.begin(), B.end()).first - A.begin();
  const auto From = static_cast<std::size_t>(std::max<std::ptrdiff_t>(0, Place - 300));
  return ::testing::AssertionFailure() << "different at byte " << Place << ":\n"
                                       << A.substr(From, 500) << "\n--- and ---\n"
                                       << B.substr(From, 500);
}

}  // namespace

TEST(SampleTest, TheCheckedInSchoolIsWhatTheGeneratorMakes) {
  std::ifstream File(VELMORA_SOURCE_DIR "/samples/schule.velmora", std::ios::binary);
  const std::string Sample((std::istreambuf_iterator<char>(File)), std::istreambuf_iterator<char>());
  SchoolGenerator::TOptions Options;
  Options.Small = true;
  EXPECT_TRUE(Same(Save(Options), Sample)) << "scripts/make-sample.sh makes it anew";
}

TEST(SampleTest, SchoolsDifferBySeedAndNeverOtherwise) {
  SchoolGenerator::TOptions Options;
  Options.Small = true;
  Options.Seed = 7;
  const std::string School = Save(Options);
  EXPECT_TRUE(Same(Save(Options), School));
  Options.Seed = 8;
  EXPECT_NE(Save(Options), School);
}

TEST(SampleTest, ASchoolIsTheSameAfterLoadAndSave) {
  for (const auto& [Scale, Small] : {std::pair(1, true), std::pair(3, true), std::pair(2, false)}) {
    SchoolGenerator::TOptions Options;
    Options.Scale = Scale;
    Options.Small = Small;
    const std::string School = Save(Options);
    EXPECT_TRUE(Same(LoadAndSave(School), School)) << "scale " << Scale << (Small ? ", small" : "");
  }
}
