#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <new>
#include <string>

#include "QuillonDataObjects/Snapshot.h"
#include "core/TestFiles.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Plan.h"
#include "uPlandaten/Termine.h"
#include "uPlandaten/Veranstaltungen.h"

// Every call that can fail is made to fail in turn, on a small plan.

namespace {

/// Allocations left until one fails; below zero none does.
thread_local int LeftAllocations = -1;

}  // namespace

void* operator new(std::size_t ASize) {
  if (LeftAllocations >= 0 && LeftAllocations-- == 0) {
    throw std::bad_alloc();
  }
  if (void* const Block = std::malloc(ASize == 0 ? 1 : ASize)) {
    return Block;
  }
  throw std::bad_alloc();
}
void operator delete(void* ABlock) noexcept { std::free(ABlock); }
void operator delete(void* ABlock, std::size_t /*ASize*/) noexcept { std::free(ABlock); }

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
