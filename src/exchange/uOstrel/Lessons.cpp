#include "uOstrel/Lessons.h"

#include <algorithm>
#include <span>
#include <unordered_set>

#include "uDataUtils/Context.h"
#include "uDataUtils/ItemSet.h"
#include "uDataUtils/Spans.h"
#include "uOstrel/Values.h"
#include "uPlandaten/Fehlzeiten.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Perioden.h"
#include "uPlandaten/Raeume.h"
#include "uPlandaten/Termine.h"
#include "uPlandaten/Veranstaltungen.h"
#include "uPlandaten/Vertretungen.h"

namespace uOstrel {

namespace {

using TDoubles = TIdList::TDoubles;

constexpr int DaysPerWeek = 7;

/// Adds the items of class T that a test lets pass; true if there was one.
template <class T, class TTest>
bool AddItems(TIdList& AnIds, const TQuillonDataList& AList, const TTest& ATest) {
  bool IsAdded = false;
  for (const TQuillonDataObject* Item : AList.Items()) {
    if (uDataObjects::As<T>(Item) != nullptr && ATest(Item)) {
      AnIds.Add(Item->ID());
      IsAdded = true;
    }
  }
  return IsAdded;
}

template <class T>
bool AddItems(TIdList& AnIds, const TQuillonDataList* AList) {
  return AList != nullptr && AddItems<T>(AnIds, *AList, [](const TQuillonDataObject*) { return true; });
}

std::string AllItems(const TQuillonDataList& AList, TDoubles ADoubles) {
  TIdList Ids(ADoubles);
  AddItems<TQuillonDataObject>(Ids, &AList);
  return Ids.Text();
}

/// The items of class T of the second list, each once; else those of the first.
template <class T>
std::vector<const T*> ItemsOfEither(const TVELPlanobjektliste* AFirst, const TVELPlanobjektliste* ASecond) {
  std::vector<const T*> Found;
  std::unordered_set<const T*> Seen;
  for (const TVELPlanobjektliste* List : {ASecond, AFirst}) {
    for (const TQuillonDataObject* Item :
         Found.empty() && List != nullptr ? List->Items() : std::span<TQuillonDataObject* const>()) {
      const auto* const Wanted = uDataObjects::As<T>(Item);
      if (Wanted != nullptr && Seen.insert(Wanted).second) {
        Found.push_back(Wanted);
      }
    }
  }
  return Found;
}

template <class T>
std::string IdsOf(const std::vector<const T*>& AnItems) {
  TIdList Ids(TDoubles::Kept);
  for (const T* Item : AnItems) {
    Ids.Add(Item->ID());
  }
  return Ids.Text();
}

/// What a change takes away: the missing objects, and the one whose absence of class TAbsence caused it.
template <class TAbsence>
class TGone {
 public:
  explicit TGone(const TVELAenderung& AChange) : FMissing(AChange.FFehlend) {
    if (AChange.FFehlzeit != nullptr && AChange.FFehlzeit->Kind() == TAbsence::OwnKind) {
      FAbsent = AChange.FFehlzeit->Objekt();
    }
  }

  bool Contains(const TQuillonDataObject* AnItem) const { return FMissing.Contains(AnItem) || FAbsent == AnItem; }

 private:
  uDataUtils::TItemSet FMissing;
  const TQuillonDataObject* FAbsent = nullptr;
};

/// A day of the week that begins on AMonday; no day stays on the Monday.
TVELDate DayOfWeek(TVELDate AMonday, TVELDay ADay) { return AMonday + (std::max(ADay, velMonday) - velMonday); }

const TVELWeeks& WeeksOf(const TVELTermin& ATermin, const TVELVeranstaltung& ACourse) {
  if (ATermin.FPeriode != nullptr) {
    return ATermin.FPeriode->FWochen;
  }
  return ATermin.FWochen.IsEmpty() ? ACourse.FWochen : ATermin.FWochen;
}

void AppendWeekly(std::string& ATarget, double AStart, double AFinish, TVELDate AFrom, TVELDate ATo) {
  ATarget.append(R"({"_type":"Weekly","Operation":"Include","StartTimepoint":")");
  AppendTimepoint(ATarget, AStart);
  ATarget.append(R"(","EndTimepoint":")");
  AppendTimepoint(ATarget, AFinish);
  ATarget.append(R"(","ValidFrom":")");
  AppendDate(ATarget, AFrom);
  ATarget.append(R"(","ValidTo":")");
  AppendDate(ATarget, ATo);
  ATarget.append(R"("})");
}

}  // namespace

bool IsScheduled(const TVELVeranstaltung& ACourse) {
  return std::ranges::any_of(ACourse.FTermine, [](const TVELTermin* ATermin) { return ATermin->Scheduled(); });
}

bool HasSubject(const TVELTermin& ATermin) { return ATermin.Fach() != nullptr; }

std::string Rooms(const TVELTermin* ATermin) {
  return ATermin != nullptr ? AllItems(ATermin->FRaeume, TDoubles::Kept) : std::string();
}

std::string Classes(const TVELTermin* ATermin) {
  const TVELVeranstaltung* const Course = ATermin != nullptr ? ATermin->Veranstaltung() : nullptr;
  return Course != nullptr ? AllItems(Course->FKlassen, TDoubles::Dropped) : std::string();
}

std::string Teachers(const TVELTermin* ATermin) {
  // A teacher who stands twice in the list is told twice; receivers know it so.
  return ATermin != nullptr ? AllItems(ATermin->FLehrer, TDoubles::Kept) : std::string();
}

std::string LessonRooms(const TVELTermin* ATermin, const TVELAenderung& AChange) {
  if (ATermin == nullptr || ATermin->FRaeume.IsEmpty()) {
    return {};
  }
  const uDataUtils::TItemSet Planned(ATermin->FRaeume);
  TIdList Ids(TDoubles::Kept);
  if (!AddItems<TVELRaum>(Ids, AChange.FNeu,
                          [&](const TQuillonDataObject* ARoom) { return !Planned.Contains(ARoom); })) {
    const TGone<TVELRaumfehlzeit> Gone(AChange);
    AddItems<TVELRaum>(Ids, ATermin->FRaeume, [&](const TQuillonDataObject* ARoom) { return !Gone.Contains(ARoom); });
  }
  return Ids.Text();
}

std::string LessonTeachers(const TVELTermin* ATermin, const TVELAenderung& AChange) {
  if (ATermin == nullptr || ATermin->FLehrer.IsEmpty()) {
    return {};
  }
  const uDataUtils::TItemSet Planned(ATermin->FLehrer);
  const TGone<TVELLehrerfehlzeit> Gone(AChange);
  TIdList Ids(TDoubles::Kept);
  AddItems<TVELLehrer>(Ids, ATermin->FLehrer,
                       [&](const TQuillonDataObject* ATeacher) { return !Gone.Contains(ATeacher); });
  AddItems<TVELLehrer>(Ids, AChange.FNeu,
                       [&](const TQuillonDataObject* ATeacher) { return !Planned.Contains(ATeacher); });
  return Ids.Text();
}

std::string ChangeRooms(const TVELPlanobjektliste* AFirst, const TVELPlanobjektliste* ASecond) {
  TIdList Ids;
  AddItems<TVELRaum>(Ids, AFirst);
  AddItems<TVELRaum>(Ids, ASecond);
  return Ids.Text();
}

std::vector<const TVELKlasse*> ChangedClasses(const TVELPlanobjektliste* AFirst, const TVELPlanobjektliste* ASecond) {
  return ItemsOfEither<TVELKlasse>(AFirst, ASecond);
}

std::string ChangeClasses(const TVELPlanobjektliste* AFirst, const TVELPlanobjektliste* ASecond) {
  return IdsOf(ItemsOfEither<TVELKlasse>(AFirst, ASecond));
}

std::string ChangeTeachers(const TVELPlanobjektliste* AFirst, const TVELPlanobjektliste* ASecond) {
  return IdsOf(ItemsOfEither<TVELLehrer>(AFirst, ASecond));
}

std::string ChangeTime(const TVELAenderung& AChange) {
  const auto* const Substitution = AChange.As<TVELVertretung>();
  if (Substitution != nullptr && Substitution->NeuStart() != 0) {
    return OneTime(Substitution->NeuStart(), Substitution->NeuEnde());
  }
  return OneTime(AChange.FStart, AChange.FEnde);
}

std::string AppointmentTime(const uDataUtils::TPlanContext& AContext, const TVELTermin& ATermin, TVELDate AFrom,
                            TVELDate ATo) {
  const TVELVeranstaltung* const Course = ATermin.Veranstaltung();
  if (Course == nullptr || !Course->FReoccur) {
    return OneTime(ATermin.Start(), ATermin.Ende());
  }
  const TVELTime Start = uDataUtils::TimeOf(ATermin.Start());
  const TVELTime Finish = uDataUtils::TimeOf(ATermin.Ende());
  const TVELWeeks& Weeks = WeeksOf(ATermin, *Course);
  std::string Text = "[";
  if (Weeks.IsEmpty()) {
    const TVELDate Day = DayOfWeek(uDataUtils::MondayOf(AFrom), ATermin.Wochentag());
    AppendWeekly(Text, Day + Start, Day + Finish, AFrom, ATo);
  }
  TVELDate Day = DayOfWeek(AContext.FirstMonday(), ATermin.Wochentag());
  for (int Week = 1; Week <= TVELWeeks::Count; ++Week, Day = Day + DaysPerWeek) {
    if (Weeks.Contains(Week) && Day >= uDataUtils::DayOf(AFrom) && Day <= uDataUtils::DayOf(ATo)) {
      Text.append(Text.size() > 1 ? "," : "");
      AppendOccurrence(Text, Day + Start, Day + Finish);
    }
  }
  return Text + "]";
}

}  // namespace uOstrel
