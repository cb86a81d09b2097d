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
  EXPECT_EQ(Context.Changes().Assignments(Termin, Lesson), Assignments);
  EXPECT_LT(Assignments.front()->FStart, Assignments.back()->FStart);
  EXPECT_THAT(Context.Changes().Assignments(Termin, {Lesson.Start + 7, Lesson.Finish + 7}), IsEmpty());
}

/// Teacher A teaches class K in room 1, and B class L in room 2, as does C in room 3 the subject F; N is new.
struct TSchool {
  TPlanFixture Plan{"2026-08-03", "2027-07-01"};
  std::vector<TVELPlanobjekt*> Objects;
  TVELTermin& Own = Plan.Weekly(velMonday);
  TVELTermin& Other = Plan.Weekly(velTuesday);

  TSchool() {
    Make<TVELKlasse>(Plan->FKlassen, "KL");
    Make<TVELLehrer>(Plan->FLehrer, "ABNM");
    Make<TVELRaum>(Plan->FRaeume, "123");
    Make<TVELFach>(Plan->FFaecher, "F");
    Own.Veranstaltung()->FFach = Plan->FFaecher.GetItem(0);
    Enter(Own, "K", "A", "1");
    Enter(Other, "L", "B", "2");
  }

  template <class T>
  void Make(TQuillonDataList& AList, std::string_view ACodes) {
    for (const char Code : ACodes) {
      Objects.push_back(&Plan.Add<T>(AList));
      Objects.back()->FKuerzel = Code;
    }
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
  void Fill(TVELPlanobjektliste& AList, std::string_view ACodes) const {
    for (const char& Code : ACodes) {
      AList.Add((*this)[{&Code, 1}]);
    }
  }
  /// Whose plans the changes enter.
  std::string Selected(const TSpan& ASpan = Lesson) const {
    const uDataUtils::TPlanContext& Context = Plan.Context();
    std::string Found;
    for (const TVELPlanobjekt* Object : Objects) {
      Found += uDataUtils::SelectChanges(Context, *Object, ASpan).empty() ? "" : Object->FKuerzel;
    }
    return Found;
  }
};

TEST(Changes, OfLessonsEnterThePlansOfThoseWhoseLessonsTheyAreNot) {
  enum TPlace { Own, OtherInOwn, OtherInNone };
  enum TSwapped { None, Teachers, Rooms };
  const struct {
    const char* Name;
    TVELFehlstellengrund Reason;
    TVELVertretungsmerkmal Feature;
    TVELVertretungslehrermerkmal Mark;
    TPlace Place;
    TSwapped Swapped;
    const char *New, *Missing, *Expected;
  } Cases[] = {
      {"one stands in, in another room", vaLehrerFehlzeit, vmKein, vlmKein, Own, None, "N3", "A", "N3"},
      {"a room stays", vaKein, vmKein, vlmKein, Own, None, "1", "", ""},
      {"one stands in beside a moved lesson", vaKein, vmKein, vlmVerschoben, Own, None, "N", "", ""},
      {"one more teacher", vaKein, vmAenderung, vlmZusaetzlich, Own, None, "N", "", "N"},
      {"one of several", vaKein, vmAenderung, vlmMehrfach, Own, None, "N", "", "N"},
      {"somebody is missing", vaKein, vmKein, vlmKein, Own, None, "", "M", "M"},
      {"somebody is freed", vaFreigestellt, vmKein, vlmKein, Own, None, "", "M", ""},
      {"a gap", vaFehlstelle, vmKein, vlmKein, Own, None, "", "KAM", "KAM"},
      {"teachers are swapped", vaKein, vmLehrerRaumTausch, vlmKein, OtherInOwn, Teachers, "", "", "B"},
      {"rooms are swapped", vaKein, vmLehrerRaumTausch, vlmKein, OtherInOwn, Rooms, "", "", "2"},
      {"a lesson moves to another's place", vaKein, vmVorgezogen, vlmVerschoben, OtherInOwn, None, "", "", "LB2"},
      {"a lesson moves to no lesson's place", vaKein, vmVorgezogen, vlmKein, OtherInNone, None, "", "", "LB2"},
      {"its teacher is additional", vaKein, vmVorgezogen, vlmZusaetzlich, OtherInOwn, None, "", "", "B"},
      {"the same in no lesson's place", vaKein, vmVorgezogen, vlmZusaetzlich, OtherInNone, None, "", "", "LB2"},
      {"another lesson is additional", vaKein, vmAenderung, vlmZusaetzlich, OtherInNone, None, "", "", "LB"},
      {"another lesson takes place", vaKein, vmAenderung, vlmKein, OtherInNone, None, "", "", "B"},
      {"teachers of a moved one", vaKein, vmAenderung, vlmVerschoben, OtherInOwn, None, "", "", ""},
      {"they are swapped", vaKein, vmAenderung, vlmVerschoben, OtherInOwn, Teachers, "", "", "B"},
  };
  for (const auto& Case : Cases) {
    TSchool School;
    TVELVertretung& Change = School.StandIn(Case.Reason, Case.Feature, Case.Mark);
    Change.FATermin = Case.Place == OtherInNone ? nullptr : &School.Own;
    Change.FNeuerTermin = Case.Place == Own ? nullptr : &School.Other;
    Change.FTauschTerminLehrer = Case.Swapped == Teachers;
    Change.FTauschTerminRaum = Case.Swapped == Rooms;
    School.Fill(Change.FNeu, Case.New);
    School.Fill(Change.FFehlend, Case.Missing);
    EXPECT_EQ(School.Selected(), Case.Expected) << Case.Name;
  }
}

/// Whose plans a change of the class enters.
template <class T>
std::string SelectedOf(std::string_view ANew, const std::function<void(TSchool&, T&)>& APrepare = nullptr) {
  TSchool School;
  T& Change = School.Plan.Change<T>(Lesson);
  School.Fill(Change.FNeu, ANew);
  if (APrepare) {
    APrepare(School, Change);
  }
  EXPECT_EQ(School.Selected(Span("2026-09-08", "2026-09-09")), "");
  return School.Selected();
}

TEST(Changes, OfOtherKindsEnterThePlansOfThoseWhomTheyName) {
  EXPECT_EQ(SelectedOf<TVELRaumaenderung>("32"), "3");
  EXPECT_EQ(SelectedOf<TVELZuweisung>("1", [](TSchool& S, auto& C) { S.Fill(C.FOriginal, "K"); }), "1");
  EXPECT_EQ(SelectedOf<TVELAufsichtsVertretung>("N"), "");
  EXPECT_EQ(SelectedOf<TVELMitteilung>("N", [](TSchool&, auto& C) { C.FAlleKlassen = true; }), "KLN");
  EXPECT_EQ(SelectedOf<TVELMitteilung>("", [](TSchool&, auto& C) { C.FAlleLehrer = true; }), "ABNM");
  EXPECT_EQ(SelectedOf<TVELZusatzunterricht>("3",
                                             [](TSchool& S, auto& C) {
                                               S.Fill(C.FOriginal, "K");
                                               S.Fill(C.FFehlend, "M");
                                               C.FNeuesFach = S.Own.Fach();
                                             }),
            "KM3F");
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
