#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "core/TestFiles.h"
#include "model/PlanDocument.h"
#include "uPlandaten/Klassen.h"

namespace {

TEST(BackgroundSaver, SavesAPlanThatIsReadAndWrittenMeanwhile) {
  uPlandaten::RegisterClasses(TQuillonDataClassRegistry::Instance());
  const TemporaryFolder Folder;
  const auto Plan = CreateStorage<TVELPlan>();
  Plan->FFileName = Folder.Path("plan.velmora");
  std::atomic<bool> IsDone = false;
  std::thread Reader([&] {
    while (!IsDone) {
      Plan->BeginRead();
      EXPECT_FALSE(Plan->SaveToXML().empty());
      Plan->EndRead();
    }
  });
  constexpr int Rounds = 30;
  for (int I = 0; I < Rounds; ++I) {
    Plan->BeginWrite();
    auto* const Class = QuillonDataObjects::Create<TVELKlasse>(Plan.get());
    Class->FKuerzel = std::to_string(I);
    Plan->FKlassen.Add(Class);
    Plan->EndWrite();
    Plan->SignalBackgroundSaver();
  }
  IsDone = true;
  Reader.join();
  // A save that has begun is waited for; it may be of an earlier state.
  Plan->StopBackgroundSaver();
  EXPECT_NE(Plan->LastBackgroundSave(), TQuillonBackgroundSave::Failed);
  Plan->SaveToFile();
  const auto Copy = CreateStorage<TVELPlan>();
  Copy->LoadFromFile(Plan->FFileName);
  EXPECT_EQ(Copy->FKlassen.Count(), Rounds);
}

}  // namespace
