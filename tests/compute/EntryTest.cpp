#include <gmock/gmock.h>

#include <cstdlib>

#include "PlanFixture.h"
#include "uPlandaten/Aufsichten.h"
#include "uPlandaten/Faecher.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Raeume.h"
#include "uPlandaten/Vertretungen.h"
#include "uPlandaten/Zeitrahmen.h"
#include "uPlaneintraege/Eintraege.h"
#include "uPlaneintraege/Ordnungen.h"
#include "uPlaneintraege/Texte.h"
#include "uPlaneintraege/Vorkommen.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// Teacher A teaches class K the subject M in room 1, on Mondays from 8:00 to 9:40 with a break at 8:45. B is another
/// teacher, 2 another room, D another subject.
struct TEntrySchool {
  TPlanFixture Plan{"2026-08-03", "2026-09-13"};
  TVELVeranstaltung& Lesson = Plan.Lesson();
  TVELTermin& Termin = Plan.Weekly(Lesson, velMonday, "08:00", "09:40");
  TVELLehrer& A = Named(Plan.Add<TVELLehrer>(Plan->FLehrer), "A");
  TVELLehrer& B = Named(Plan.Add<TVELLehrer>(Plan->FLehrer), "B");
  TVELKlasse& K = Named(Plan.Add<TVELKlasse>(Plan->FKlassen), "K");
  TVELRaum& Room1 = Named(Plan.Add<TVELRaum>(Plan->FRaeume), "1");
  TVELRaum& Room2 = Named(Plan.Add<TVELRaum>(Plan->FRaeume), "2");
  TVELFach& M = Named(Plan.Add<TVELFach>(Plan->FFaecher), "M");
  TVELFach& D = Named(Plan.Add<TVELFach>(Plan->FFaecher), "D");

  TEntrySchool() {
    Lesson.FFach = &M;
    Lesson.FKursNr = 1;
    Lesson.FKlassen.Add(&K);
    Termin.FLehrer.Add(&A);
    Termin.FRaeume.Add(&Room1);
    Plan.Settings().FGueltigVon = At("2026-08-03");
    Plan.Settings().FGueltigBis = At("2026-09-13");
    for (const auto& [Start, Finish] : {std::pair{"08:00", "08:45"}, {"08:55", "09:40"}}) {
      auto& Row = Plan.Add<TVELZeitrahmenzeile>(Plan.Settings().FZeitrahmen->FZeilen);
      Row.FStart = uDataUtils::TimeOf(At("2026-01-01T" + std::string(Start)));
      Row.FEnde = uDataUtils::TimeOf(At("2026-01-01T" + std::string(Finish)));
    }
  }

  template <class T>
  static T& Named(T& AnObject, const char* AName) {
    AnObject.FKuerzel = AName;
    return AnObject;
  }

  /// A change of the lesson that the public sees.
  template <class T = TVELVertretung>
  T& Change(const TSpan& ASpan) {
    T& Change = Plan.Change<T>(ASpan);
    Change.FATermin = &Termin;
    Change.FAenderungsstatus = aePublished;
    return Change;
  }

  /// "start/finish", with "*" behind a changed entry and the number of weeks behind a merged one.
  static std::vector<std::string> Show(const TVELPlanEintragListe& AList) {
    std::vector<std::string> Texts;
    for (const auto& Entry : AList.Items()) {
      int WeekCount = 0;
      for (int Week = 1; Week <= TVELWeeks::Count; ++Week) {
        WeekCount += Entry->FWochen.Contains(Week) ? 1 : 0;
      }
      Texts.push_back(::Show(TSpan{Entry->FStart, Entry->FFinish}).substr(5) + (Entry->FChanges ? "*" : "") +
                      (WeekCount > 1 ? "x" + std::to_string(WeekCount) : ""));
    }
    return Texts;
  }

  std::vector<std::string> Expand(bool AKeepGaps = false) {
    TVELPlanEintragListe List;
    uPlaneintraege::ExpandOccurrence(Plan.Context(), &K, Termin, true, AKeepGaps, List, Monday);
    return Show(List);
  }

  std::vector<std::string> Range(TVELPlanobjekt& AnObject) {
    TVELPlanEintragListe List;
    uPlaneintraege::TSeen Seen;
    uPlaneintraege::GetBereichEintraege(Plan.Context(), &AnObject,
                                        {.WithChanges = true, .PublicOnly = true, .Merge = true}, Seen, List,
                                        ::Span("2026-08-03", "2026-09-14"));
    return Show(List);
  }

  TVELPlaneintrag Entry(TVELAenderung& AChange, TVELPlanobjekt* AnObject = nullptr) {
    TVELPlanEintragListe List;
    return uPlaneintraege::CreateEintrag(Plan.Context(), AnObject, AChange.Termin(), true, List,
                                         {AChange.FStart, AChange.FEnde}, nullptr, &AChange);
  }

  std::string Caption(TVELAenderung& AChange, TVELPlanobjekt* AnObject = nullptr, bool AShort = true) {
    return uPlaneintraege::CaptionText(Plan.Context(), Entry(AChange), AnObject, AShort);
  }

  TSpan Monday = ::Span("2026-08-10T08:00", "2026-08-10T09:40");
};

TEST(Entries, AnOccurrenceIsPartedByItsChanges) {
  TEntrySchool School;
  EXPECT_THAT(School.Expand(), ElementsAre("08-10T08:00/2026-08-10T09:40"));
  TVELVertretung& Second = School.Change(Span("2026-08-10T08:55", "2026-08-10T09:40"));
  Second.FNeu.Add(&School.B);
  EXPECT_THAT(School.Expand(), ElementsAre("08-10T08:00/2026-08-10T08:45", "08-10T08:55/2026-08-10T09:40*"))
      << "the rest ahead ends before the break";
  EXPECT_THAT(School.Expand(true), ElementsAre("08-10T08:55/2026-08-10T09:40*"));
  School.Change(Span("2026-08-10T08:00", "2026-08-10T08:45")).FNeu.Add(&School.B);
  EXPECT_THAT(School.Expand(), ElementsAre("08-10T08:00/2026-08-10T08:45*", "08-10T08:55/2026-08-10T09:40*"))
      << "nothing for the break";
  Second.FNotPublic = true;
  EXPECT_THAT(School.Expand(), ElementsAre("08-10T08:00/2026-08-10T08:45*", "08-10T08:55/2026-08-10T09:40"))
      << "what is not public stands as planned";
}

TEST(Entries, AnOccurrenceIsPartedByAbsencesOnce) {
  TEntrySchool School;
  School.Plan.Absence<TVELLehrerfehlzeit>(School.A, Span("2026-08-10T08:00", "2026-08-10T08:45"));
  School.Plan.Absence<TVELRaumfehlzeit>(School.Room1, Span("2026-08-10", "2026-08-10T08:45"));
  EXPECT_THAT(School.Expand(), ElementsAre("08-10T08:00/2026-08-10T08:45*", "08-10T08:55/2026-08-10T09:40"));
  School.Plan.Absence<TVELKlassenfehlzeit>(School.K, Span("2026-08-10", "2026-08-11"));
  TVELPlanEintragListe List;
  uPlaneintraege::ExpandOccurrence(School.Plan.Context(), &School.K, School.Termin, true, false, List, School.Monday);
  EXPECT_TRUE(List.GetItem(0).FKlasseFehlt);
  EXPECT_TRUE(List.GetItem(0).FShadow);
}

TEST(Entries, OccurrencesWithoutChangesShareAnEntry) {
  TEntrySchool School;
  School.Change(Span("2026-08-03T08:00", "2026-08-03T08:45")).FNeu.Add(&School.B);
  auto& Assignment = School.Plan.Add<TVELZuweisung>(School.Plan->FZuweisungen);
  Assignment.FATermin = &School.Termin;
  Assignment.FStart = At("2026-08-17T08:00");
  Assignment.FEnde = At("2026-08-17T09:40");
  Assignment.FNeu.Add(&School.Room2);
  EXPECT_THAT(School.Range(School.K), ElementsAre("08-03T08:00/2026-08-03T08:45*", "08-03T08:55/2026-08-03T09:40",
                                                  "08-10T08:00/2026-08-10T09:40x4", "08-17T08:00/2026-08-17T09:40*"));
  EXPECT_THAT(School.Range(School.B), ElementsAre("08-03T08:00/2026-08-03T08:45*"));
  EXPECT_THAT(School.Range(School.Room2), ElementsAre("08-17T08:00/2026-08-17T09:40*"));
}

TEST(Entries, ListsTellWhoComesAndWhoIsMissing) {
  TEntrySchool School;
  School.Plan.Absence<TVELLehrerfehlzeit>(School.A, School.Monday);
  TVELVertretung& Change = School.Change(School.Monday);
  Change.FVertretungsmerkmal = vmAenderung;
  Change.FNeu.Add(&School.B);
  Change.FNeu.Add(&School.Room2);
  Change.FNeuesFach = &School.D;
  const TVELPlaneintrag Entry = School.Entry(Change, &School.A);
  EXPECT_THAT(Entry.FLehrer, ElementsAre(&School.A, &School.B));
  EXPECT_THAT(Entry.FFehlendeLehrer, ElementsAre(&School.A));
  EXPECT_THAT(Entry.FRaeume, ElementsAre(&School.Room2));
  EXPECT_THAT(Entry.FFehlendeRaeume, ElementsAre(&School.Room1));
  EXPECT_THAT(Entry.FFaecher, ElementsAre(&School.D));
  EXPECT_TRUE(Entry.FShadow) << "not for the teacher who is missing";
  EXPECT_FALSE(School.Entry(Change, &School.B).FShadow);
  EXPECT_EQ(uPlaneintraege::FachText(Entry), "+D (M1)");
  EXPECT_EQ(uPlaneintraege::LehrerText(Entry), "+B (A)");
  EXPECT_EQ(uPlaneintraege::RaumText(Entry), "+2 (1)");
}

TEST(Entries, ASwapPutsTheOtherLessonInThePlace) {
  TEntrySchool School;
  TVELVeranstaltung& OtherLesson = School.Plan.Lesson();
  OtherLesson.FFach = &School.D;
  TVELTermin& Other = School.Plan.Weekly(OtherLesson, velTuesday, "10:00", "11:40");
  Other.FLehrer.Add(&School.B);
  Other.FRaeume.Add(&School.Room2);
  TVELVertretung& Change = School.Change(School.Monday);
  Change.FVertretungsmerkmal = vmVorgezogen;
  Change.FFehlstellengrund = vaVerschoben;
  Change.FNeuerTermin = &Other;
  Change.FNeuesTerminDatum = At("2026-08-11T10:00");
  const TVELPlaneintrag Entry = School.Entry(Change);
  EXPECT_EQ(Entry.FTermin, &Other);
  EXPECT_THAT(Entry.FLehrer, ElementsAre(&School.A, &School.B));
  EXPECT_THAT(Entry.FRaeume, ElementsAre(&School.Room1, &School.Room2));
  EXPECT_EQ(uPlaneintraege::FachText(Entry), "D (M)");
  EXPECT_EQ(School.Caption(Change), "Verschoben");
  EXPECT_EQ(School.Caption(Change, nullptr, false), "Von Di 11.08.2026 10:00-11:40 verschoben");
}

TEST(Entries, CaptionsGoByTheFirstRuleThatFits) {
  TEntrySchool School;
  TVELVertretung& Change = School.Change(School.Monday);
  Change.FVertretungsmerkmal = vmAenderung;
  Change.FFehlstellengrund = vaLehrerFehlzeit;
  EXPECT_EQ(School.Caption(Change), "Lehrer fehlt");
  Change.FNeu.Add(&School.Room2);
  EXPECT_EQ(School.Caption(Change), "Raumänderung");
  Change.FNeu.Add(&School.B);
  Change.FFehlend.Add(&School.A);
  EXPECT_EQ(School.Caption(Change), "Vertreten");
  EXPECT_EQ(School.Caption(Change, &School.A), "Vertreten");
  EXPECT_EQ(School.Caption(Change, &School.B), "Zusätzlich");
  Change.FVertretungsmerkmal = vmEntfaellt;
  EXPECT_EQ(School.Caption(Change), "Keine Vertretung");
  Change.FVertretungsmerkmal = vmFaelltAus;
  EXPECT_EQ(School.Caption(Change), "Fällt aus");
  auto& Absence = School.Plan.Absence<TVELLehrerfehlzeit>(School.A, School.Monday);
  Change.FFehlzeit = &Absence;
  School.Plan.Settings().FFehlgrundInCaption = true;
  School.Plan.Settings().FFehlgruendeAnzeigen = paAbsent;
  EXPECT_EQ(School.Caption(Change), "Abwesend: Fällt aus");
  EXPECT_EQ(School.Caption(Change, nullptr, false), "Fällt aus");
}

TEST(Entries, OnlyTheFirstEntryWithTwoRoomsTellsWhatIsNotPublic) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        TEntrySchool School;
        School.Termin.FRaeume.Add(&School.Room2);
        School.Plan.Absence<TVELLehrerfehlzeit>(School.A, School.Monday).FNotPublic = true;
        TVELPlanEintragListe List;
        for (int I = 0; I < 2; ++I) {
          uPlaneintraege::CreateEintrag(School.Plan.Context(), &School.K, &School.Termin, true, List, School.Monday,
                                        nullptr, nullptr);
        }
        std::exit(List.GetItem(0).FChanges && !List.GetItem(1).FChanges ? 0 : 1);
      },
      testing::ExitedWithCode(0), "");
}

TEST(Entries, SupervisionsTellWhoStandsIn) {
  TEntrySchool School;
  auto& Area = School.Plan.Add<TVELAufsichtsbereich>(School.Plan->FAufsichtsbereiche);
  auto& Supervision = School.Plan.Add<TVELAufsicht>(Area.FAufsichten);
  Supervision.FWochentag = velMonday;
  Supervision.FStart = At("2020-01-06T08:45");
  Supervision.FEnde = At("2020-01-06T08:55");
  Supervision.SetLehrer(&School.A);
  auto& Change = School.Plan.Change<TVELAufsichtsVertretung>(Span("2026-08-10T08:45", "2026-08-10T08:55"));
  Change.FATermin = &Supervision;
  Change.FAenderungsstatus = aePublished;
  Change.FNeu.Add(&School.B);
  const auto Tell = [&](auto&& AGet) {
    TVELPlanEintragListe List;
    AGet(List);
    return TEntrySchool::Show(List);
  };
  const TSpan Range = Span("2026-08-03", "2026-08-18");
  const auto Context = [&] { return School.Plan.Context(); };
  using namespace uPlaneintraege;
  EXPECT_THAT(
      Tell([&](auto& AList) { GetAlleAufsichten(Context(), smEvery, true, AList, Range); }),
      ElementsAre("08-03T08:45/2026-08-03T08:55", "08-10T08:45/2026-08-10T08:55*", "08-17T08:45/2026-08-17T08:55"));
  EXPECT_THAT(Tell([&](auto& AList) { GetAufsichtEintraege(Context(), School.B, smEvery, true, AList, Range); }),
              ElementsAre("08-10T08:45/2026-08-10T08:55*"));
  Change.FAenderungsstatus = aeOpen;
  EXPECT_THAT(Tell([&](auto& AList) { GetAlleAufsichten(Context(), smChangedOnly, true, AList, Range); }), IsEmpty());
}

TEST(Entries, AnUndatedTimetableHoldsAppointmentsWithoutOccurrence) {
  TEntrySchool School;
  School.Plan.Weekly(School.Lesson, velTuesday);
  School.Lesson.FGueltigVon = At("2026-09-08");
  TVELPlanEintragListe List;
  uPlaneintraege::GetWochenEintraege(School.Plan.Context(), &School.K, {}, List);
  EXPECT_THAT(TEntrySchool::Show(List), ElementsAre("12-30/1899-12-30x56", "09-08T08:00/2026-09-08T08:45x56"));
  List.Clear();
  uPlaneintraege::GetWochenEintraege(School.Plan.Context(), &School.K, {.Max = uPlaneintraege::MaxEntries + 1}, List);
  EXPECT_TRUE(List.IsEmpty());
}

}  // namespace
