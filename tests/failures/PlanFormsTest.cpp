#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <functional>
#include <new>
#include <string>

#include "QuillonDataObjects/Snapshot.h"
#include "core/TestFiles.h"
#include "data/PlainContent.h"
#include "failures/Allocations.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Plan.h"
#include "uPlandaten/Termine.h"
#include "uPlandaten/Veranstaltungen.h"

// Every call that can fail is made to fail in turn, on a small plan.

namespace {

using TPlan = TQuillonDataHandle<TVELPlan>;

/// A stream in memory of which one call fails, or takes and gives nothing.
class TFailingStream final : public TQuillonMemoryStream {
 public:
  explicit TFailingStream(std::string AContent = {}) : TQuillonMemoryStream(std::move(AContent)) {}

  std::size_t Read(std::span<char> ABuffer) override {
    // Small pieces, so that there are many of them.
    constexpr std::size_t Piece = 100;
    return IsNext() ? 0 : TQuillonMemoryStream::Read(ABuffer.first(std::min(ABuffer.size(), Piece)));
  }
  void Write(std::string_view ABytes) override {
    if (IsNext()) {
      throw EQuillonStreamError("the disk is full");
    }
    TQuillonMemoryStream::Write(ABytes);
  }

  int FLeft = -1;  ///< calls left until one fails

 private:
  bool IsNext() { return FLeft >= 0 && FLeft-- == 0; }
};

class PlanForms : public testing::Test {
 protected:
  PlanForms() {
    uPlandaten::RegisterClasses(TQuillonDataClassRegistry::Instance());
    const TPlan Plan = NewPlan();
    for (const char* Code : {"1a", "1b"}) {
      auto* const Class = QuillonDataObjects::Create<TVELKlasse>(Plan.get());
      Class->FKuerzel = Code;
      Plan->FKlassen.Add(Class);
      auto* const Lesson = QuillonDataObjects::Create<TVELVeranstaltung>(Plan.get());
      Plan->FVeranstaltungen.Add(Lesson);
      Lesson->FKlassen.Add(Class);
      Lesson->FTermine.Add(QuillonDataObjects::Create<TVELTermin>(Plan.get()));
    }
    FBinary = BinaryOf(*Plan);
    const TPlan Copy = NewPlan();
    Read(*Copy, FBinary);
    FDocument = Copy->SaveToXML();
  }

  static TPlan NewPlan() { return QuillonDataObjects::CreateStorage<TVELPlan>(); }
  static std::string BinaryOf(const TVELPlan& APlan) {
    TQuillonMemoryStream Stream;
    APlan.SaveToBinStream(Stream);
    return Stream.TakeContent();
  }
  static void Read(TVELPlan& APlan, const std::string& AContent) {
    TQuillonMemoryStream Stream(AContent);
    APlan.LoadFromBinStream(Stream);
  }
  /// Runs the step with the first allocation failing, then the second, until it does not fail any more.
  /// @return how often it failed
  static int FailEachAllocation(const std::function<void(TVELPlan&)>& APrepare,
                                const std::function<void(TVELPlan&)>& AStep,
                                const std::function<void(TVELPlan&)>& ACheck) {
    for (int Failures = 0;; ++Failures) {
      const TPlan Plan = NewPlan();
      APrepare(*Plan);
      bool HasFailed = false;
      LeftAllocations = Failures;
      try {
        AStep(*Plan);
      } catch (const std::bad_alloc&) {
        HasFailed = true;
      }
      HasFailed = HasFailed || LeftAllocations < 0;
      LeftAllocations = -1;
      ACheck(*Plan);
      if (!HasFailed) {
        return Failures;
      }
    }
  }

  std::string FBinary;
  std::string FDocument;
};

TEST_F(PlanForms, StayWholeWhicheverAllocationFails) {
  const auto Nothing = [](TVELPlan&) {};
  const auto LoadsAfresh = [&](TVELPlan& APlan) {
    Read(APlan, FBinary);
    EXPECT_TRUE(APlan.SaveToXML() == FDocument);
  };
  EXPECT_GT(FailEachAllocation(
                Nothing, [&](TVELPlan& APlan) { Read(APlan, FBinary); }, LoadsAfresh),
            20);
  const auto Load = [&](TVELPlan& APlan) { Read(APlan, FBinary); };
  EXPECT_GT(FailEachAllocation(
                Load,
                [](TVELPlan& APlan) {
                  TQuillonDataMemorySnapshot Snapshot(APlan);
                  Snapshot.Request();
                },
                [&](TVELPlan& APlan) { EXPECT_TRUE(APlan.SaveToXML() == FDocument); }),
            3);
}

/// Changes of every kind: of fields, of lists, objects made and freed.
void Edit(TVELPlan& APlan) {
  auto* const Class = QuillonDataObjects::Create<TVELKlasse>(&APlan);
  Class->Set(Class->FKuerzel, "2a");
  APlan.FKlassen.Add(Class);
  TVELVeranstaltung& Lesson = *APlan.FVeranstaltungen.GetItem(0);
  Lesson.FKlassen.Add(Class);
  Lesson.FKlassen.Move(1, 0);
  Lesson.FTermine.Clear();
  APlan.FVeranstaltungen.Move(1, 0);
  APlan.FVeranstaltungen.Delete(0);
  APlan.FKlassen.Delete(0);
  QuillonDataObjects::Free(QuillonDataObjects::Create<TVELTermin>(&APlan));
  Class->Set(Class->FKuerzel, "2b");
}

TEST_F(PlanForms, ArePlayedBackWhollyOrNotAtAllWhicheverAllocationFails) {
  const auto Load = [&](TVELPlan& APlan) { Read(APlan, FBinary); };
  const TPlan Edited = NewPlan();
  Load(*Edited);
  Edited->ChangeLog().Activate();
  Edit(*Edited);
  bool IsPlayed = false;
  EXPECT_GT(FailEachAllocation(
                Load,
                [&](TVELPlan& APlan) {
                  IsPlayed = false;
                  IsPlayed = Edited->ChangeLog().Playback(APlan);
                },
                [&](TVELPlan& APlan) {
                  EXPECT_EQ(IsPlayed ? PlainContent(APlan) : APlan.SaveToXML(),
                            IsPlayed ? PlainContent(*Edited) : FDocument);
                }),
            20);
}

TEST_F(PlanForms, AreWhatTheirLogTellsWhicheverAllocationFails) {
  int Played = 0;
  const int Failures = FailEachAllocation(
      [&](TVELPlan& APlan) {
        Read(APlan, FBinary);
        APlan.ChangeLog().Activate();
      },
      Edit,
      [&](TVELPlan& APlan) {
        if (!APlan.ChangeLog().HasTooMuchChanges()) {
          ++Played;
          const TPlan Copy = NewPlan();
          Read(*Copy, FBinary);
          APlan.ChangeLog().Playback(*Copy);
          EXPECT_EQ(PlainContent(*Copy), PlainContent(APlan));
        }
      });
  EXPECT_GT(Played, 20);
  EXPECT_GT(Failures, Played);
}

TEST_F(PlanForms, OverwriteWhatCanBeSavedWhicheverAllocationFails) {
  const TPlan Source = NewPlan();
  Read(*Source, FBinary);
  EXPECT_GT(FailEachAllocation(
                [&](TVELPlan& APlan) {
                  Read(APlan, FBinary);
                  Edit(APlan);
                },
                [&](TVELPlan& APlan) { Source->Overwrite(APlan); },
                [&](TVELPlan& APlan) { EXPECT_NO_THROW(Read(*NewPlan(), BinaryOf(APlan))); }),
            20);
}

TEST_F(PlanForms, LeaveTheOldFileOrTheNewOneWhicheverCallOfTheDiskFails) {
  const TPlan Plan = NewPlan();
  Read(*Plan, FBinary);
  Plan->FFileFormat = ffBinary;
  const TemporaryFolder Folder;
  const std::string Name = Folder.Path("plan");
  int Failures = 0;
  for (bool HasFailed = true; HasFailed; ++Failures) {
    Plan->SaveToFile(Name);
    const std::string Old = QuillonIO::ReadWholeFile(Name);
    Edit(*Plan);
    {
      FailingFiles Files;
      const Platform::FilesReplacement Replacement(Files);
      Files.FailFrom(Failures + 1, ENOSPC, 1);
      try {
        Plan->SaveToFile(Name);
        HasFailed = Files.Calls() > Failures;
      } catch (const EQuillonWin32Error&) {
      }
    }
    const std::string Content = QuillonIO::ReadWholeFile(Name);
    EXPECT_TRUE(Content == Old || Content == BinaryOf(*Plan)) << Failures;
    EXPECT_EQ(Folder.Names().size(), 1U) << Failures;
    Read(*Plan, FBinary);
  }
  EXPECT_GT(Failures, 5);
}

TEST_F(PlanForms, StayWholeWhicheverReadOrWriteFails) {
  for (int Failures = 0, Left = -1; Left < 0; ++Failures) {
    TFailingStream Stream(FBinary);
    Stream.FLeft = Failures;
    const TPlan Plan = NewPlan();
    try {
      Plan->LoadFromBinStream(Stream);
    } catch (const EQuillonReaderError&) {
      ASSERT_LT(Stream.FLeft, 0);
    }
    Left = Stream.FLeft;
    Read(*Plan, FBinary);
    EXPECT_TRUE(Plan->SaveToXML() == FDocument);
  }
  const TPlan Plan = NewPlan();
  Read(*Plan, FBinary);
  for (const auto Save : {&TVELPlan::SaveToBinStream, &TVELPlan::SaveToZIPStream}) {
    TFailingStream Stream;
    Stream.FLeft = 0;
    EXPECT_THROW((Plan.get()->*Save)(Stream), EQuillonException);
  }
}

}  // namespace
