#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "PlanFixture.h"
#include "uDataUtils/Substitutions.h"
#include "uPlandaten/Aufsichten.h"
#include "uPlandaten/Faecher.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Raeume.h"
#include "uPlandaten/Vertretungen.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const TSpan Lesson = Span("2026-09-07T08:00", "2026-09-07T08:45");

TEST(Changes, AreFoundFromTheFirstOfTheRunThatTheSearchHits) {
  TPlanFixture Plan("2026-08-03", "2027-07-01");
  const auto Add = [&](double AStart, double AFinish) {
    return &Plan.Change<TVELMitteilung>({Lesson.Start + AStart, Lesson.Start + AFinish});
  };
  const auto Found = [&](double AStart, double AFinish) {
    const TSpan Range{Lesson.Start + AStart, Lesson.Start + AFinish};
    return uDataUtils::ChangesFrom(*Plan, uDataUtils::FindAenderung(*Plan, Range), Range);
  };
  EXPECT_THAT(Found(0, 1), IsEmpty());
  TVELAenderung* const Early = Add(0, 1);
  TVELAenderung* const First = Add(2, 3);
  TVELAenderung* const Second = Add(2.5, 4);
  TVELAenderung* const Late = Add(9, 10);
  EXPECT_THAT(Found(0, 12), ElementsAre(Early, First, Second, Late));
  EXPECT_THAT(Found(1, 2.75), ElementsAre(First, Second)) << "touching spans share no moment";
  EXPECT_THAT(Found(4, 9), IsEmpty());
  EXPECT_THAT(Found(9.5, 9.5), ElementsAre(Late));
  EXPECT_THAT(Found(-2, -1), IsEmpty());
}

TEST(Changes, HangOnAppointmentsAndSupervisions) {
  TPlanFixture Plan("2026-08-03", "2027-07-01");
  TVELTermin& Termin = Plan.Weekly(velMonday);
  auto& Supervision = Plan.Add<TVELAufsicht>(Plan.Add<TVELAufsichtsbereich>(Plan->FAufsichtsbereiche).FAufsichten);
  const auto On = [&](TVELAenderung& AChange, TVELAbstrakterTermin& ASlot) {
    AChange.FATermin = &ASlot;
    return &AChange;
  };
  TVELAenderung* const Late = On(Plan.Change<TVELVertretung>({Lesson.Start + 0.01, Lesson.Finish}), Termin);
  TVELAenderung* const Room = On(Plan.Change<TVELRaumaenderung>(Lesson), Termin);
  On(Plan.Change<TVELVertretung>({Lesson.Finish, Lesson.Finish + 1}), Termin);
  On(Plan.Change<TVELVertretung>(Lesson), Plan.Weekly(velMonday));
  TVELAenderung* const Duty = On(Plan.Change<TVELAufsichtsVertretung>(Lesson), Supervision);
  auto& Teacher = Plan.Add<TVELLehrer>(Plan->FLehrer);
  for (const int Days : {0, 1}) {
    auto& Assignment = Plan.Add<TVELZuweisung>(Plan->FZuweisungen);
    Assignment.FStart = Lesson.Start - Days;
    Assignment.FEnde = Lesson.Finish;
    Assignment.FATermin = &Termin;
    Assignment.FNeu.Add(&Teacher);
  }
  const uDataUtils::TPlanContext& Context = Plan.Context();
  EXPECT_THAT(Context.Changes().Of(Termin, Lesson), ElementsAre(Room, Late));
  EXPECT_THAT(Context.Changes().Of(Supervision, Lesson), ElementsAre(Duty));
  const auto Assignments = Context.Concerns().Assignments(Teacher, Lesson);
  ASSERT_EQ(Assignments.size(), 2U);
  EXPECT_EQ(Context.Changes().Assignment(Termin, Lesson), Assignments.back()) << "the latest one";
  EXPECT_LT(Assignments.front()->FStart, Assignments.back()->FStart);
  EXPECT_EQ(Context.Changes().Assignment(Termin, {Lesson.Start + 7, Lesson.Finish + 7}), nullptr);
}

TEST(Changes, AListBeginsAtTheSubstitutionThatFreesSomebodyIfTheSearchHitsIt) {
  TPlanFixture Plan("2026-08-03", "2027-07-01");
  for (int I = 0; I < 7; ++I) {
    Plan.Change<TVELVertretung>({Lesson.Start, Lesson.Finish + I}).FFehlstellengrund = vaVerschoben;
  }
  const auto Freed = [&](int AnIndex) {
    auto& Change = *static_cast<TVELVertretung*>(Plan->FAenderungen.GetItem(AnIndex));
    Change.FFehlstellengrund = vaFreigestellt;
    const int Found = uDataUtils::FindAenderungForList(*Plan, Lesson);
    Change.FFehlstellengrund = vaVerschoben;
    return Found;
  };
  EXPECT_EQ(uDataUtils::FindAenderung(*Plan, Lesson), 6);
  EXPECT_EQ(Freed(3), 3);
  EXPECT_EQ(Freed(4), 6);
  EXPECT_EQ(Freed(6), 6);
  EXPECT_EQ(uDataUtils::FindAenderungForList(*Plan, Span("2026-09-01", "2026-09-02")), -1);
}

/// Teacher A teaches class K in room 1, and B class L in room 2, as does C in room 3 the subject F; N is new.
struct TSchool {
  TPlanFixture Plan{"2026-08-03", "2027-07-01"};
  std::vector<TVELPlanobjekt*> Objects;
  TVELTermin& Own = Plan.Weekly(velMonday);
  TVELTermin& Other = Plan.Weekly(velTuesday);

  TSchool() {
    for (const char* Code : {"K", "L"}) {
      Named<TVELKlasse>(Plan->FKlassen, Code);
    }
    for (const char* Code : {"A", "B", "N", "M"}) {
      Named<TVELLehrer>(Plan->FLehrer, Code);
    }
    for (const char* Code : {"1", "2", "3"}) {
      Named<TVELRaum>(Plan->FRaeume, Code);
    }
    Own.Veranstaltung()->FFach = &Named<TVELFach>(Plan->FFaecher, "F");
    Enter(Own, "K", "A", "1");
    Enter(Other, "L", "B", "2");
  }

  template <class T>
  T& Named(TQuillonDataList& AList, const char* ACode) {
    T& Object = Plan.Add<T>(AList);
    Object.FKuerzel = ACode;
    Objects.push_back(&Object);
    return Object;
  }
  TVELPlanobjekt* operator[](std::string_view ACode) const {
    return *std::ranges::find(Objects, ACode, [](const TVELPlanobjekt* AnObject) { return AnObject->FKuerzel; });
  }
  void Enter(TVELTermin& ATermin, std::string_view AClass, std::string_view ATeacher, std::string_view ARoom) {
    ATermin.Veranstaltung()->FKlassen.Add((*this)[AClass]);
    ATermin.FLehrer.Add((*this)[ATeacher]);
    ATermin.FRaeume.Add((*this)[ARoom]);
  }
  TVELVertretung& StandIn(TVELFehlstellengrund AReason, TVELVertretungsmerkmal AFeature,
                          TVELVertretungslehrermerkmal ATeachers = vlmKein) {
    auto& Change = Plan.Change<TVELVertretung>(Lesson);
    Change.FATermin = &Own;
    Change.FFehlstellengrund = AReason;
    Change.FVertretungsmerkmal = AFeature;
    Change.FVertretungslehrermerkmal = ATeachers;
    Change.FAenderungsstatus = aeFinished;
    return Change;
  }
  /// A substitution with the other lesson in the place of this one, or in no place.
  TVELVertretung& Moved(TVELVertretungsmerkmal AFeature, TVELVertretungslehrermerkmal ATeachers,
                        const TVELTermin* APlace) {
    TVELVertretung& Change = StandIn(vaKein, AFeature, ATeachers);
    Change.FATermin = APlace == nullptr ? nullptr : &Own;
    Change.FNeuerTermin = &Other;
    return Change;
  }
};

struct TSelection {
  const char* Name;
  const char* Expected;  ///< whose plans the change enters
  std::function<void(TSchool&)> Make;
};

TEST(Changes, EnterThePlansOfThoseWhoseLessonsTheyAreNot) {
  const TSelection Selections[] = {
      {"one stands in, in another room", "N3",
       [](TSchool& S) {
         auto& Change = S.StandIn(vaLehrerFehlzeit, vmKein);
         Change.FNeu.Add(S["N"]);
         Change.FNeu.Add(S["3"]);
         Change.FFehlend.Add(S["A"]);
       }},
      {"a room stays", "", [](TSchool& S) { S.StandIn(vaKein, vmKein).FNeu.Add(S["1"]); }},
      {"one stands in beside a moved lesson", "",
       [](TSchool& S) { S.StandIn(vaKein, vmKein, vlmVerschoben).FNeu.Add(S["N"]); }},
      {"one more teacher", "N", [](TSchool& S) { S.StandIn(vaKein, vmAenderung, vlmZusaetzlich).FNeu.Add(S["N"]); }},
      {"one of several", "N", [](TSchool& S) { S.StandIn(vaKein, vmAenderung, vlmMehrfach).FNeu.Add(S["N"]); }},
      {"somebody is missing", "M", [](TSchool& S) { S.StandIn(vaKein, vmKein).FFehlend.Add(S["M"]); }},
      {"somebody is freed", "", [](TSchool& S) { S.StandIn(vaFreigestellt, vmKein).FFehlend.Add(S["M"]); }},
      {"a gap", "KAM",
       [](TSchool& S) {
         for (const char* Code : {"K", "A", "M"}) {
           S.StandIn(vaFehlstelle, vmKein).FFehlend.Add(S[Code]);
         }
       }},
      {"teachers are swapped", "B",
       [](TSchool& S) { S.Moved(vmLehrerRaumTausch, vlmKein, &S.Own).FTauschTerminLehrer = true; }},
      {"rooms are swapped", "2",
       [](TSchool& S) { S.Moved(vmLehrerRaumTausch, vlmKein, &S.Own).FTauschTerminRaum = true; }},
      {"a lesson moves to the place of another", "LB2",
       [](TSchool& S) { S.Moved(vmVorgezogen, vlmVerschoben, &S.Own); }},
      {"a lesson moves to no lesson's place", "LB2", [](TSchool& S) { S.Moved(vmVorgezogen, vlmKein, nullptr); }},
      {"one moves, its teacher is additional", "B", [](TSchool& S) { S.Moved(vmVorgezogen, vlmZusaetzlich, &S.Own); }},
      {"the same in no lesson's place", "LB2", [](TSchool& S) { S.Moved(vmVorgezogen, vlmZusaetzlich, nullptr); }},
      {"another lesson is additional", "LB", [](TSchool& S) { S.Moved(vmAenderung, vlmZusaetzlich, nullptr); }},
      {"another lesson takes place", "B", [](TSchool& S) { S.Moved(vmAenderung, vlmKein, nullptr); }},
      {"teachers of a moved one", "", [](TSchool& S) { S.Moved(vmAenderung, vlmVerschoben, &S.Own); }},
      {"teachers of a moved one are swapped", "B",
       [](TSchool& S) { S.Moved(vmAenderung, vlmVerschoben, &S.Own).FTauschTerminLehrer = true; }},
      {"another room", "3",
       [](TSchool& S) {
         auto& Change = S.Plan.Change<TVELRaumaenderung>(Lesson);
         Change.FATermin = &S.Own;
         Change.FNeu.Add(S["3"]);
         Change.FNeu.Add(S["2"]);
       }},
      {"a message to classes", "KLN",
       [](TSchool& S) {
         auto& Change = S.Plan.Change<TVELMitteilung>(Lesson);
         Change.FAlleKlassen = true;
         Change.FNeu.Add(S["N"]);
       }},
      {"a message to teachers", "ABNM", [](TSchool& S) { S.Plan.Change<TVELMitteilung>(Lesson).FAlleLehrer = true; }},
      {"an additional lesson", "KM3F",
       [](TSchool& S) {
         auto& Change = S.Plan.Change<TVELZusatzunterricht>(Lesson);
         Change.FOriginal.Add(S["K"]);
         Change.FNeu.Add(S["3"]);
         Change.FFehlend.Add(S["M"]);
         Change.FNeuesFach = S.Own.Fach();
       }},
      {"an assignment", "1",
       [](TSchool& S) {
         auto& Change = S.Plan.Change<TVELZuweisung>(Lesson);
         Change.FNeu.Add(S["1"]);
         Change.FOriginal.Add(S["K"]);
       }},
      {"a supervision", "", [](TSchool& S) { S.Plan.Change<TVELAufsichtsVertretung>(Lesson).FNeu.Add(S["N"]); }},
  };
  for (const TSelection& Selection : Selections) {
    TSchool School;
    Selection.Make(School);
    std::string Found;
    for (const TVELPlanobjekt* Object : School.Objects) {
      Found += uDataUtils::SelectChanges(School.Plan.Context(), *Object, Lesson).empty() ? "" : Object->FKuerzel;
    }
    EXPECT_EQ(Found, Selection.Expected) << Selection.Name;
    EXPECT_THAT(uDataUtils::SelectChanges(School.Plan.Context(), *School["N"], Span("2026-09-08", "2026-09-09")),
                IsEmpty());
  }
}

struct TListed {
  const char* Name;
  const char* Modes;             ///< in which a change without missing and new objects is shown
  const char* ModesWithObjects;  ///< in which one with such objects is
  std::function<void(TSchool&)> Make;
};

TEST(SubstitutionList, ShowsInEachModeWhatBelongsThere) {
  const auto Of = [](TVELFehlstellengrund AReason, TVELVertretungsmerkmal AFeature = vmKein,
                     TVELAenderungsStatus AStatus = aeFinished) {
    return [=](TSchool& S) { S.StandIn(AReason, AFeature).FAenderungsstatus = AStatus; };
  };
  const TListed Changes[] = {
      {"finished", "", "013", Of(vaLehrerFehlzeit)},
      {"open", "", "012", Of(vaLehrerFehlzeit, vmKein, aeOpen)},
      {"moved here", "013", "013", Of(vaVerschoben)},
      {"freed", "013", "013", Of(vaFreigestellt)},
      {"gap", "012", "012", Of(vaFehlstelle, vmKein, aeOpen)},
      {"swapped", "013", "013", Of(vaTausch)},
      {"swapped away", "", "013", Of(vaTausch, vmWeggezogen)},
      {"moved away", "03", "013", Of(vaWeggezogen, vmWeggezogen)},
      {"moved away, open", "0", "012", Of(vaWeggezogen, vmKein, aeOpen)},
      {"subject without substitutions", "", "",
       [](TSchool& S) {
         S.StandIn(vaVerschoben, vmKein);
         S.Own.Fach()->FKeineVertretung = true;
       }},
      {"readiness", "", "",
       [](TSchool& S) {
         S.StandIn(vaVerschoben, vmKein);
         S.Own.Fach()->FVertretungsbereitschaft = true;
       }},
      {"additional lesson", "013", "013", [](TSchool& S) { S.Plan.Change<TVELZusatzunterricht>(Lesson); }},
      {"room wanted", "", "", [](TSchool& S) { S.Plan.Change<TVELRaumaenderung>(Lesson); }},
      {"room found", "012", "012", [](TSchool& S) { S.Plan.Change<TVELRaumaenderung>(Lesson).FNeu.Add(S["3"]); }},
      {"supervision", "012", "012", [](TSchool& S) { S.Plan.Change<TVELAufsichtsVertretung>(Lesson); }},
      {"message", "03", "03", [](TSchool& S) { S.Plan.Change<TVELMitteilung>(Lesson); }},
      {"message of a day", "", "", [](TSchool& S) { S.Plan.Change<TVELMitteilung>(Span("2026-09-07", "2026-09-08")); }},
      {"assignment", "", "", [](TSchool& S) { S.Plan.Change<TVELZuweisung>(Lesson); }},
  };
  for (const TListed& Change : Changes) {
    TSchool School;
    Change.Make(School);
    for (const bool HasObjects : {false, true}) {
      std::string Modes;
      for (std::uint8_t Mode = 0; Mode < 6; ++Mode) {
        const auto Found = uDataUtils::AllSubstitutions(School.Plan.Context(), {.Span = Lesson, .Mode = Mode},
                                                        [&](const TVELAenderung&) { return HasObjects; });
        Modes += Found.empty() ? "" : std::to_string(Mode);
      }
      EXPECT_EQ(Modes, HasObjects ? Change.ModesWithObjects : Change.Modes) << Change.Name;
    }
  }
}

TEST(SubstitutionList, IsOfSomeObjectsAndOfThePublicIfItShallBe) {
  TSchool School;
  TVELVertretung& Second = School.StandIn(vaVerschoben, vmKein);
  Second.FNotPublic = true;
  TVELVertretung& First = School.StandIn(vaVerschoben, vmFaelltAus);
  First.FATermin = &School.Other;
  First.FStart = First.FStart - 0.01;
  School.Plan->FAenderungen.Sort();
  uDataUtils::TSubstitutionFilter Filter{.Span = Lesson};
  const auto List = [&] {
    return uDataUtils::AllSubstitutions(School.Plan.Context(), Filter, [](const TVELAenderung&) { return true; });
  };
  EXPECT_THAT(List(), ElementsAre(&First, &Second));
  std::vector<const TVELPlanobjekt*> Objects = {School["A"], School["3"]};
  Filter.Objects = Objects;
  EXPECT_THAT(List(), ElementsAre(&Second));
  School.Plan.Change<TVELAufsichtsVertretung>({Lesson.Start + 0.01, Lesson.Finish}).FNeu.Add(School["N"]);
  EXPECT_THAT(List(), ElementsAre(&Second)) << "the supervision is of another teacher";
  Objects = {School["3"]};
  Filter.Objects = Objects;
  EXPECT_THAT(List(), IsEmpty());
  Filter.Objects = {};
  First.FFehlstellengrund = vaFreigestellt;  // the search hits the middle one of the three
  EXPECT_EQ(List().size(), 3U);
  Second.FFehlstellengrund = vaFreigestellt;
  EXPECT_EQ(List().size(), 2U);
  Filter.PublishedOnly = true;
  Second.FFehlstellengrund = vaVerschoben;
  EXPECT_THAT(List(), ElementsAre(&First));
  School.Plan.Absence<TVELKlassenfehlzeit>(*School["L"], Lesson);
  EXPECT_THAT(List(), IsEmpty());
  Filter.WithAbsentClasses = true;
  EXPECT_THAT(List(), ElementsAre(&First));
}

}  // namespace
