#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>
#include <set>
#include <vector>

#include "model/PlanDocument.h"
#include "uPlandaten/Aufsichten.h"
#include "uPlandaten/Faecher.h"
#include "uPlandaten/Fehlzeiten.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Raeume.h"
#include "uPlandaten/Relationen.h"
#include "uPlandaten/Ressourcen.h"
#include "uPlandaten/Schueler.h"
#include "uPlandaten/Termine.h"
#include "uPlandaten/Veranstaltungen.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

template <class T, class TList>
T* Add(TVELPlan& APlan, TList& AList) {
  T* const Object = Create<T>(&APlan);
  AList.Add(Object);
  return Object;
}

/// A plan with lessons, their appointments, and objects of every class.
struct TSchool {
  static constexpr int Many = 8;

  static TPlan Make() {
    TPlan Made = CreateStorage<TVELPlan>();
    for (int I = 0; I < Many; ++I) {
      Add<TVELFach>(*Made, Made->FFaecher);
      Add<TVELKlasse>(*Made, Made->FKlassen);
      Add<TVELLehrer>(*Made, Made->FLehrer);
      Add<TVELRaum>(*Made, Made->FRaeume);
      Add<TVELRessource>(*Made, Made->FRessourcen);
      Add<TVELSchueler>(*Made, Made->FSchueler);
    }
    for (int I = 0; I < 4; ++I) {
      AddLesson(*Made);
    }
    return Made;
  }

  static void AddLesson(TVELPlan& APlan) {
    auto* const Added = Add<TVELVeranstaltung>(APlan, APlan.FVeranstaltungen);
    Add<TVELTermin>(APlan, Added->FTermine);
    Add<TVELTermin>(APlan, Added->FTermine);
  }

  TPlan Plan = Make();
  TVELVeranstaltung& Lesson = *Plan->FVeranstaltungen.GetItem(0);
  TVELTermin& First = *Lesson.FTermine.GetItem(0);
  TVELTermin& Second = *Lesson.FTermine.GetItem(1);
  TVELLehrer& Teacher = *Plan->FLehrer.GetItem(0);
};

using TLessons = std::set<const TQuillonDataObject*>;

/// The lessons that refer to the object, found by looking at them all.
TLessons LessonsThatUse(const TVELPlan& APlan, const TVELPlanobjekt* AnObject) {
  TLessons Found;
  for (const TVELVeranstaltung* Lesson : APlan.FVeranstaltungen) {
    bool Uses = Lesson->FFach == AnObject || Lesson->FKlassen.Holds(AnObject) || Lesson->FLehrer.Holds(AnObject) ||
                Lesson->FRaeume.Holds(AnObject) || Lesson->FRessourcen.Holds(AnObject) ||
                Lesson->FSchueler.Holds(AnObject);
    for (const TVELTermin* Termin : Lesson->FTermine) {
      Uses = Uses || Termin->FLehrer.Holds(AnObject) || Termin->FRaeume.Holds(AnObject) ||
             Termin->FRessourcen.Holds(AnObject);
    }
    if (Uses) {
      Found.insert(Lesson);
    }
  }
  return Found;
}

void ExpectBackReferences(const TVELPlan& APlan, const std::string& AStep) {
  const std::vector<const TQuillonDataList*> Lists = {&APlan.FFaecher, &APlan.FKlassen,    &APlan.FLehrer,
                                                      &APlan.FRaeume,  &APlan.FRessourcen, &APlan.FSchueler};
  for (const TQuillonDataList* List : Lists) {
    for (const TQuillonDataObject* Item : List->Items()) {
      const auto* const Object = static_cast<const TVELPlanobjekt*>(Item);
      const auto Known = Object->FVeranstaltungen.Items();
      ASSERT_EQ(TLessons(Known.begin(), Known.end()), LessonsThatUse(APlan, Object)) << AStep;
      ASSERT_EQ(Known.size(), TLessons(Known.begin(), Known.end()).size()) << AStep;
    }
  }
}

// Lessons and appointments draw from two halves here: what both may use is told in the tests below.
TEST(BackReferences, FollowEveryOperationOfEveryList) {
  const TPlan Owner = TSchool::Make();
  TVELPlan& Plan = *Owner;
  std::mt19937 Random(7);
  const auto Pick = [&](int ACount) { return static_cast<int>(Random() % static_cast<unsigned>(ACount)); };
  for (int Step = 0; Step < 4000; ++Step) {
    if (Plan.FVeranstaltungen.Count() < 4) {
      TSchool::AddLesson(Plan);
    }
    TVELVeranstaltung& Lesson = *Plan.FVeranstaltungen.GetItem(Pick(Plan.FVeranstaltungen.Count()));
    TVELVeranstaltung& Other = *Plan.FVeranstaltungen.GetItem(Pick(Plan.FVeranstaltungen.Count()));
    struct TChoice {
      TVELStammobjektliste* List;
      TVELStammobjektliste* Peer;  ///< the same list of another lesson
      TVELStammobjektliste* Pool;
      int Offset;
    };
    std::vector<TChoice> Choices = {{&Lesson.FKlassen, &Other.FKlassen, &Plan.FKlassen, 0},
                                    {&Lesson.FLehrer, &Other.FLehrer, &Plan.FLehrer, 0},
                                    {&Lesson.FRaeume, &Other.FRaeume, &Plan.FRaeume, 0},
                                    {&Lesson.FRessourcen, &Other.FRessourcen, &Plan.FRessourcen, 0},
                                    {&Lesson.FSchueler, &Other.FSchueler, &Plan.FSchueler, 0}};
    if (!Lesson.FTermine.IsEmpty() && !Other.FTermine.IsEmpty()) {
      TVELTermin& Time = *Lesson.FTermine.GetItem(Pick(Lesson.FTermine.Count()));
      TVELTermin& Peer = *Other.FTermine.GetItem(Pick(Other.FTermine.Count()));
      Choices.push_back({&Time.FLehrer, &Peer.FLehrer, &Plan.FLehrer, 4});
      Choices.push_back({&Time.FRaeume, &Peer.FRaeume, &Plan.FRaeume, 4});
      Choices.push_back({&Time.FRessourcen, &Peer.FRessourcen, &Plan.FRessourcen, 4});
    }
    const TChoice Choice = Choices[static_cast<std::size_t>(Pick(static_cast<int>(Choices.size())))];
    TVELStammobjektliste& List = *Choice.List;
    TQuillonDataObject* const Item = Choice.Pool->GetItem(Choice.Offset + Pick(4));
    const int Place = Pick(List.Count() + 1);
    const bool HasItem = Place < List.Count();
    const std::vector<std::pair<const char*, std::function<void()>>> Operations = {
        {"Add", [&] { List.Add(Item); }},
        {"Insert", [&] { List.Insert(Place, Item); }},
        {"Merge", [&] { List.Merge(Item); }},
        {"Remove", [&] { List.Remove(Item); }},
        {"Delete", [&] { HasItem ? List.Delete(Place) : List.Clear(); }},
        {"Delete by ID", [&] { List.Delete(Item->ID()); }},
        {"Extract", [&] { HasItem ? static_cast<void>(List.Extract(Place)) : List.MoveToLastIndex(0); }},
        {"Extract by item", [&] { List.Extract(Item); }},
        {"Clear", [&] { List.Clear(); }},
        {"Assign", [&] { List.Assign(*Choice.Peer); }},
        {"AddAll", [&] { List.Count() < 20 ? static_cast<void>(List.AddAll(*Choice.Peer)) : List.Clear(); }},
        {"InsertAll", [&] { List.InsertAll(Place, *Choice.Peer); }},
        {"MergeAll", [&] { List.Merge(*Choice.Peer); }},
        {"RemoveAll", [&] { List.RemoveAll(*Choice.Peer); }},
        {"RetainAll", [&] { List.RetainAll(*Choice.Peer); }},
        {"SetFach", [&] { Lesson.SetFach(Pick(3) == 0 ? nullptr : Plan.FFaecher.GetItem(Pick(TSchool::Many))); }},
        {"Clear the appointments", [&] { Pick(4) == 0 ? Lesson.FTermine.Clear() : Lesson.Clear(); }},
        {"Clear what another lesson has", [&] { Lesson.Clear(*Choice.Peer); }},
        {"Add an appointment", [&] { Lesson.FTermine.Add(Create<TVELTermin>(&Plan)); }},
        {"Free an appointment", [&] { Lesson.FTermine.IsEmpty() ? List.Clear() : Lesson.FTermine.Delete(0); }},
        {"Move the appointments",
         [&] {
           if (&Lesson != &Other) {
             Lesson.FTermine.MergeEx(Other.FTermine);
           }
         }},
        {"Free a lesson", [&] { Pick(8) == 0 ? Plan.FVeranstaltungen.Remove(&Lesson) : List.Clear(); }},
    };
    const auto& [Name, Operate] = Operations[static_cast<std::size_t>(Pick(static_cast<int>(Operations.size())))];
    if (List.IsEmpty() && std::string(Name) == "Extract") {
      continue;
    }
    Operate();
    ASSERT_NO_FATAL_FAILURE(ExpectBackReferences(Plan, std::to_string(Step) + " " + Name));
  }
}

TEST(BackReferences, ALessonStaysWhileAnyAppointmentOfItUsesTheObject) {
  TSchool School;
  const auto& Known = School.Teacher.FVeranstaltungen;
  School.First.FLehrer.Add(&School.Teacher);
  School.Second.FLehrer.Add(&School.Teacher);
  School.Lesson.FLehrer.Add(&School.Teacher);
  EXPECT_THAT(Known.Items(), ElementsAre(&School.Lesson));
  School.First.FLehrer.Clear();
  School.Second.FLehrer.Remove(&School.Teacher);
  EXPECT_THAT(Known.Items(), ElementsAre(&School.Lesson)) << "the lesson's own teacher";
  School.First.FLehrer.Add(&School.Teacher);
  School.Second.FLehrer.Add(&School.Teacher);
  School.Lesson.FLehrer.Clear();
  EXPECT_THAT(Known.Items(), IsEmpty()) << "the lesson's own list decides when it lets go";
  School.First.FLehrer.Remove(&School.Teacher);
  School.First.FLehrer.Add(&School.Teacher);
  EXPECT_THAT(Known.Items(), ElementsAre(&School.Lesson));
  School.Lesson.FTermine.Remove(&School.First);
  EXPECT_THAT(Known.Items(), ElementsAre(&School.Lesson)) << "the second appointment's";
  School.Lesson.FTermine.Clear();
  EXPECT_THAT(Known.Items(), IsEmpty());

  TVELRessource* const Thing = School.Plan->FRessourcen.GetItem(0);
  EXPECT_FALSE(uPlandaten::LessonUses(School.Lesson, *Thing, nullptr));
  School.Lesson.FRessourcen.Add(Thing);
  EXPECT_FALSE(uPlandaten::LessonUses(School.Lesson, *Thing, nullptr)) << "its own resources do not count";
  TVELTermin* const Time = Add<TVELTermin>(*School.Plan, School.Lesson.FTermine);
  Time->FRessourcen.Add(Thing);
  EXPECT_TRUE(uPlandaten::LessonUses(School.Lesson, *Thing, nullptr));
  EXPECT_FALSE(uPlandaten::LessonUses(School.Lesson, *Thing, Time));
}

TEST(BackReferences, AListReplacedAsAWholeNeverLosesWhatStays) {
  TSchool School;
  TVELPlan& Plan = *School.Plan;
  TQuillonDataObject* const Stays = Plan.FKlassen.GetItem(0);
  TQuillonDataObject* const Goes = Plan.FKlassen.GetItem(1);
  TQuillonDataObject* const Comes = Plan.FKlassen.GetItem(2);
  const auto Lessons = [](TQuillonDataObject* AnObject) {
    return static_cast<TVELKlasse*>(AnObject)->FVeranstaltungen.Count();
  };
  const std::vector<TQuillonDataObject*> Old = {Stays, Goes};
  const std::vector<TQuillonDataObject*> New = {Comes, Stays};
  uPlandaten::SetRelations(School.Lesson, {}, Old);
  EXPECT_EQ(std::vector({Lessons(Stays), Lessons(Goes), Lessons(Comes)}), std::vector({1, 1, 0}));
  const auto Version = static_cast<TVELKlasse*>(Stays)->FVeranstaltungen.FChanged;
  uPlandaten::SetRelations(School.Lesson, Old, New);
  EXPECT_EQ(std::vector({Lessons(Stays), Lessons(Goes), Lessons(Comes)}), std::vector({1, 0, 1}));
  EXPECT_EQ(static_cast<TVELKlasse*>(Stays)->FVeranstaltungen.FChanged, Version);
  const std::uint64_t Changes = Plan.ChangeCount();
  uPlandaten::SetRelations(School.Lesson, New, New);
  EXPECT_EQ(Plan.ChangeCount(), Changes) << "nothing moved";
}

TEST(BackReferences, OfLessonsAreWhatTheFileTellsAndWhatItForgot) {
  const TPlan Plan = Load(
      "6.0.172",
      List("Teacher", Item("Teacher", 61, "<Code>T</Code><Gender>0</Gender>" + List("Events", Item("Event", 2))) +
                          Item("Teacher", 62, "<Code>U</Code><Gender>0</Gender>")) +
          List("Subjects", Item("Subject", 63, "<Code>S</Code>")) +
          List("AbsenceTimes", Item("TeacherAbsenceTime", 71,
                                    Element("Teacher", "Teacher", 62) + "<LessonsSettled>0</LessonsSettled>")) +
          List("Events", Item("Event", 1, Element("Subject", "Subject", 63) + List("Teacher", Item("Teacher", 61))) +
                             Item("Event", 2)));
  auto& First = Find<TVELVeranstaltung>(*Plan, 1);
  EXPECT_THAT(Find<TVELLehrer>(*Plan, 61).FVeranstaltungen.Items(),
              ElementsAre(&Find<TVELVeranstaltung>(*Plan, 2), &First));
  EXPECT_THAT(Find<TVELFach>(*Plan, 63).FVeranstaltungen.Items(), ElementsAre(&First));
  EXPECT_THAT(Find<TVELLehrer>(*Plan, 62).FFehlzeiten.Items(), IsEmpty());
}

TEST(BackReferences, ManyLessonsOfOneSubjectStayInOrder) {
  const auto Plan = CreateStorage<TVELPlan>();
  auto* const Subject = Add<TVELFach>(*Plan, Plan->FFaecher);
  auto* const Later = Add<TVELFach>(*Plan, Plan->FFaecher);
  constexpr int Many = 10000;
  std::mt19937 Random(3);
  for (int I = 0; I < Many; ++I) {
    auto* const Lesson = Create<TVELVeranstaltung>(Plan.get());
    Lesson->FKursNr = static_cast<int>(Random() % Many);
    Plan->FVeranstaltungen.Append(Lesson);
    Lesson->SetFach(Subject);
  }
  const auto IsOrdered = [](const TVELFach& ASubject) {
    return std::ranges::is_sorted(ASubject.FVeranstaltungen.Items(), [](const auto* A, const auto* B) {
      return TVELVeranstaltungsliste::CompareItems(*A, *B) < 0;
    });
  };
  EXPECT_EQ(Subject->FVeranstaltungen.Count(), Many);
  EXPECT_TRUE(IsOrdered(*Subject));
  for (TVELVeranstaltung* Lesson : Plan->FVeranstaltungen) {
    Lesson->SetFach(Later);
  }
  EXPECT_TRUE(Subject->FVeranstaltungen.IsEmpty());
  EXPECT_EQ(Later->FVeranstaltungen.Count(), Many);
  EXPECT_TRUE(IsOrdered(*Later));
}

TEST(BackReferences, AbsencesAndSupervisionsMoveWithTheirObjects) {
  TSchool School;
  TVELPlan& Plan = *School.Plan;
  TVELLehrer& Other = *Plan.FLehrer.GetItem(1);
  auto* const Absence = Add<TVELLehrerfehlzeit>(Plan, Plan.FFehlzeiten);
  Absence->SetLehrer(&School.Teacher);
  EXPECT_THAT(School.Teacher.FFehlzeiten.Items(), ElementsAre(Absence));
  Absence->SetLehrer(&Other);
  EXPECT_THAT(School.Teacher.FFehlzeiten.Items(), IsEmpty());
  EXPECT_THAT(Other.FFehlzeiten.Items(), ElementsAre(Absence));
  auto* const Copy = Add<TVELLehrerfehlzeit>(Plan, Plan.FFehlzeiten);
  Copy->Assign(*Absence);
  EXPECT_EQ(Other.FFehlzeiten.Count(), 2) << "a copy is set by the setter";
  Plan.FFehlzeiten.Remove(Absence);
  EXPECT_THAT(Other.FFehlzeiten.Items(), ElementsAre(Copy));
  Add<TVELKlassenfehlzeit>(Plan, Plan.FFehlzeiten)->SetKlasse(Plan.FKlassen.GetItem(0));
  Add<TVELRaumfehlzeit>(Plan, Plan.FFehlzeiten)->SetRaum(Plan.FRaeume.GetItem(0));
  EXPECT_EQ(Plan.FKlassen.GetItem(0)->FFehlzeiten.Count(), 1);
  EXPECT_EQ(Plan.FRaeume.GetItem(0)->FFehlzeiten.Count(), 1);

  auto* const Area = Add<TVELAufsichtsbereich>(Plan, Plan.FAufsichtsbereiche);
  auto* const Duty = Add<TVELAufsicht>(Plan, Area->FAufsichten);
  Duty->SetLehrer(&School.Teacher);
  EXPECT_THAT(School.Teacher.FAufsichten.Items(), ElementsAre(Duty));
  Duty->SetLehrer(&Other);
  EXPECT_THAT(School.Teacher.FAufsichten.Items(), IsEmpty());
  EXPECT_THAT(Other.FAufsichten.Items(), ElementsAre(Duty));
  Plan.FAufsichtsbereiche.Clear();
  EXPECT_THAT(Other.FAufsichten.Items(), IsEmpty());
  Plan.FLehrer.Remove(&Other);
  EXPECT_EQ(Plan.FFehlzeiten.Count(), 2) << "an absence goes with its teacher";
}

}  // namespace
