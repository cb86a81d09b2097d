#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "QuillonDataObjects/DataClass.h"
#include "QuillonIO.h"
#include "data/PlainContent.h"
#include "model/PlanDocument.h"
#include "model/RandomUser.h"
#include "uPlandaten/Aenderungen.h"
#include "uPlandaten/Einstellungen.h"
#include "uPlandaten/Fehlzeiten.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Raeume.h"
#include "uPlandaten/Zeitrahmen.h"
#include "uSchluessel/Verzeichnisse.h"

namespace {

std::string BytesOf(TVELPlan& APlan) {
  TQuillonMemoryStream Stream;
  APlan.SaveToBinStream(Stream);
  return Stream.TakeContent();
}

TPlan CopyOf(TVELPlan& APlan) {
  auto Copy = CreateStorage<TVELPlan>();
  TQuillonMemoryStream Stream(BytesOf(APlan));
  Copy->LoadFromBinStream(Stream);
  return Copy;
}

TPlan LoadSchool() {
  uPlandaten::RegisterClasses(TQuillonDataClassRegistry::Instance());
  auto Plan = CreateStorage<TVELPlan>();
  Plan->LoadFromXML(QuillonIO::ReadWholeFile(VELMORA_SOURCE_DIR "/samples/schule.velmora"), "school");
  return Plan;
}

/// Sends the log as bytes to another copy. @return the conflict, which has changed nothing then; empty for none
std::string PlayOn(TVELPlan& ATarget, const TQuillonDataChangeLog& ALog) {
  TQuillonMemoryStream Stream;
  ALog.SaveToStream(Stream);
  Stream.Seek(0, TQuillonSeekOrigin::Begin);
  TQuillonDataChangeLog Sent;
  Sent.LoadFromStream(Stream);
  const std::string Before = ATarget.SaveToXML() + BytesOf(ATarget);
  try {
    Sent.Playback(ATarget);
    return {};
  } catch (const EQuillonDataConflict& Conflict) {
    EXPECT_TRUE(ATarget.SaveToXML() + BytesOf(ATarget) == Before) << Conflict.what();
    return Conflict.what();
  }
}

std::string FirstDifference(const std::string& A, const std::string& B) {
  const auto Place = static_cast<std::size_t>(std::ranges::mismatch(A, B).in1 - A.begin());
  const std::size_t From = Place > 600 ? Place - 600 : 0;
  return Place == A.size() && A.size() == B.size() ? "" : A.substr(From, 900) + "\n---\n" + B.substr(From, 900);
}

}  // namespace

TEST(ChangeLogOfAPlan, AnySessionMakesTheSameOfAnotherCopy) {
  std::map<TQuillonDataOperationKind, int> Played;
  for (unsigned Seed = 1; Seed <= 8; ++Seed) {
    const TPlan A = LoadSchool();
    const TPlan B = CopyOf(*A);
    const TPlan Other = CopyOf(*A);
    TQuillonDataChangeLog& Log = A->ChangeLog();
    Log.Activate();
    TRandomUser User(*A, *Other, Seed);
    for (int Session = 0; Session < 4; ++Session) {
      for (int Step = 0; Step < 15; ++Step) {
        User.Act();
      }
      if (const std::string Conflict = PlayOn(*B, Log); !Conflict.empty()) {
        // The copy of an object is in the lists that this refers to before it gets a code of its own.
        EXPECT_NE(Conflict.find("ist bereits vorhanden"), std::string::npos) << Conflict;
        break;
      }
      ASSERT_EQ(FirstDifference(PlainContent(*B), PlainContent(*A)), "") << "seed " << Seed << ", " << Session;
      for (int I = 0; I < Log.Count(); ++I) {
        ++Played[Log.GetOperation(I).FKind];
      }
      Log.Clear();
    }
  }
  EXPECT_EQ(Played.size(), QuillonDataObjects::OperationClasses().size());
  for (const auto& [Kind, Count] : Played) {
    EXPECT_GT(Count, 10) << static_cast<int>(Kind);
  }
}

TEST(ChangeLogOfAPlan, TwoUsersWorkSideBySideUntilOneIsStale) {
  const TPlan A = LoadSchool();
  const TPlan B = CopyOf(*A);
  const TPlan Server = CopyOf(*A);
  for (const auto& [Plan, Name] : {std::pair{A.get(), "ann"}, std::pair{B.get(), "bob"}}) {
    Plan->ChangeLog().FUserName = TQuillonUserName(Name);
    Plan->ChangeLog().Activate();
  }
  const auto AddRoom = [](TVELPlan& APlan, const std::string& ACode) {
    auto* const Room = Create<TVELRaum>(&APlan);
    Room->Set(Room->FKuerzel, ACode);
    APlan.FRaeume.Add(Room);
  };
  const auto Type = [](TVELPlan& APlan, const std::string& AName) {
    auto* const Form = Create<TVELSchulform>(&APlan);
    Form->Set(Form->FKuerzel, AName);
    APlan.FVerzeichnisse->FSchulformen.Add(Form);
    auto* const Kind = Create<TVELSchultyp>(&APlan);
    Kind->Set(Kind->FKuerzel, AName);
    APlan.FVerzeichnisse->FSchultypen.Add(Kind);
  };
  AddRoom(*A, "Ann1"), AddRoom(*B, "Bob1");
  Type(*A, "t");
  A->FFehlzeiten.GetItem(0)->Set(A->FFehlzeiten.GetItem(0)->FBemerkung, std::string("ill"));
  B->FLehrer.GetItem(0)->Set(B->FLehrer.GetItem(0)->FBemerkung, std::string("b"));
  EXPECT_EQ(PlayOn(*Server, A->ChangeLog()), "");
  EXPECT_EQ(PlayOn(*Server, B->ChangeLog()), "");
  const int Last = Server->FRaeume.Count() - 1;
  EXPECT_EQ(Server->FRaeume.GetItem(Last - 1)->FKuerzel + Server->FRaeume.GetItem(Last)->FKuerzel, "Ann1Bob1");
  const TVELVerzeichnisse& Keys = *Server->FVerzeichnisse;
  EXPECT_TRUE(
      Keys.FSchulformen.GetItem(Keys.FSchulformen.Count() - 1)->DataClass().DescendsFrom(TVELSchulform::Class()));
  EXPECT_TRUE(Keys.FSchultypen.GetItem(Keys.FSchultypen.Count() - 1)->DataClass().DescendsFrom(TVELSchultyp::Class()));
  EXPECT_EQ(Server->FRaeume.GetItem(Last)->FCreatedBy.Text(), "bob");
  EXPECT_EQ(Server->FLehrer.GetItem(0)->FBemerkung, "b");
  EXPECT_EQ(Server->FFehlzeiten.GetItem(0)->FModified, A->FFehlzeiten.GetItem(0)->FModified);

  struct TCase {
    void (*Act)(TVELPlan&);
    std::string Conflict;
  };
  const std::string Teacher = "Lehrer \"" + Server->FLehrer.GetItem(0)->FKuerzel + "\"";
  const std::vector<TCase> Cases = {
      {[](TVELPlan& APlan) { APlan.FLehrer.GetItem(0)->Set(APlan.FLehrer.GetItem(0)->FBemerkung, std::string("a")); },
       "\"" + Teacher + "\" wurde bereits von Benutzer \"bob\" modifiziert."},
      {[](TVELPlan& APlan) { APlan.FRaeume.GetItem(0)->Set(APlan.FRaeume.GetItem(0)->FKuerzel, std::string("Bob1")); },
       "Das Kürzel \"Bob1\" ist bereits vorhanden."},
  };
  for (const TCase& Case : Cases) {
    A->ChangeLog().Clear();
    Case.Act(*A);
    EXPECT_EQ(PlayOn(*Server, A->ChangeLog()), Case.Conflict);
  }
}

TEST(ChangeLogOfAPlan, WhatComesFromOutsideIsToldOnce) {
  const TPlan A = LoadSchool();
  A->ChangeLog().Activate();
  auto* const Message = Create<TVELMitteilung>(nullptr);
  Message->FNeu.Add(A->FRaeume.GetItem(0));
  A->FAenderungen.Add(Message);
  EXPECT_EQ(A->ChangeLog().Count(), 3) << "the message, its room, and its place";
}

TEST(ChangeLogOfAPlan, APartThatGetsASuccessorGoesWithTheReferencesToIt) {
  const TPlan A = LoadSchool();
  A->FLehrer.GetItem(0)->FZeitrahmen = A->StandardTimeframe();
  const TPlan B = CopyOf(*A);
  A->ChangeLog().Activate();
  A->FEinstellungen->FZeitrahmen.Take(Create<TVELZeitrahmen>(A.get()), *A->FEinstellungen);
  A->FEinstellungen->Change();
  EXPECT_EQ(A->FLehrer.GetItem(0)->FZeitrahmen, nullptr);
  EXPECT_EQ(PlayOn(*B, A->ChangeLog()), "");
  EXPECT_EQ(FirstDifference(PlainContent(*B), PlainContent(*A)), "");

  const TPlan Fresh = CreateStorage<TVELPlan>();
  auto* const Teacher = Create<TVELLehrer>(Fresh.get());
  Fresh->FLehrer.Add(Teacher);
  Teacher->FZeitrahmen = Fresh->StandardTimeframe();
  A->Overwrite(*Fresh);
  EXPECT_EQ(Fresh->StandardTimeframe()->ID(), A->StandardTimeframe()->ID());
  EXPECT_EQ(Fresh->FLehrer.GetItem(0), Teacher);
  EXPECT_EQ(Teacher->FZeitrahmen, nullptr);
}
