#include <unordered_set>
#include <utility>

#include "QuillonDateTime.h"
#include "QuillonNumbers.h"
#include "uDataUtils/Weeks.h"
#include "uJSONExport/Run.h"
#include "uPlandaten/Faecher.h"
#include "uPlandaten/Gebaeude.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Perioden.h"
#include "uPlandaten/Raeume.h"
#include "uPlandaten/Schueler.h"
#include "uPlandaten/Termine.h"
#include "uPlandaten/Veranstaltungen.h"
#include "uPlandaten/Vertretungen.h"
#include "uPlaneintraege/Texte.h"

namespace uJSONExport {

namespace {

const TVELMitteilung* MessageOf(const TVELPlaneintrag& AnEntry) {
  const TVELAenderung* const Change = AnEntry.Aenderung();
  return Change != nullptr ? Change->As<TVELMitteilung>() : nullptr;
}

const TVELVeranstaltung* LessonOf(const TVELTermin* ATermin) {
  return ATermin != nullptr ? ATermin->Veranstaltung() : nullptr;
}

/// The title of the lesson that takes place.
std::string_view Description(const TVELPlaneintrag& AnEntry) {
  const TVELVertretung* const Substitution = AnEntry.Vertretung();
  const TVELVeranstaltung* const Other = Substitution != nullptr ? LessonOf(Substitution->FNeuerTermin) : nullptr;
  const TVELVeranstaltung* const Lesson = Other != nullptr ? Other : LessonOf(AnEntry.FTermin);
  return Lesson != nullptr ? std::string_view(Lesson->FInfo) : std::string_view();
}

/// 1 to 7, that of the appointment for an entry without date; 0 for none.
int WeekdayOf(const TVELPlaneintrag& AnEntry) {
  if (AnEntry.FStart != 0) {
    return QuillonDateTime::DayOfWeek(AnEntry.FStart);
  }
  return AnEntry.FTermin != nullptr ? AnEntry.FTermin->Wochentag() : velNoDay;
}

TNodes DatesOf(const TRun& ARun, const TVELPlaneintrag& AnEntry) {
  TNodes Dates;
  if (AnEntry.Geaendert()) {
    Dates.Text(Date(AnEntry.FStart));
    return Dates;
  }
  const auto Weekday = static_cast<TVELDay>(WeekdayOf(AnEntry));
  for (int Week = 1; AnEntry.FTermin != nullptr && Week <= TVELWeeks::Count; ++Week) {
    if (AnEntry.FWochen.Contains(Week)) {
      Dates.Text(Date(uDataUtils::WeekDate(ARun.Context, Week, Weekday)));
    }
  }
  return Dates;
}

void WriteTime(TNode& ANode, const TRun& ARun, const TVELPlaneintrag& AnEntry) {
  if (ARun.Export.AlleWochen) {
    if (const int Weekday = WeekdayOf(AnEntry); Weekday != velNoDay) {
      std::string Text;
      QuillonNumbers::AppendInteger(Text, Weekday);
      ANode.Text("weekday", Text);
    }
  } else {
    ANode.List("dates", DatesOf(ARun, AnEntry));
  }
  const TVELMitteilung* const Message = MessageOf(AnEntry);
  ANode.Time("startTime", AnEntry.FStart);
  ANode.Text("endTime", Message != nullptr && Message->Ganztaegig() ? "2400" : Time(AnEntry.FFinish));
}

TNodes BuildingsOf(const std::vector<TVELRaum*>& ARooms) {
  TNodes Codes;
  std::unordered_set<const TVELGebaeude*> Seen;
  for (const TVELRaum* Room : ARooms) {
    if (Seen.insert(Room->FGebaeude).second) {
      Codes.Text(CodeOf(Room->FGebaeude));
    }
  }
  return Codes;
}

void WriteMembers(TNode& ANode, const TVELPlaneintrag& AnEntry) {
  const TVELMitteilung* const Message = MessageOf(AnEntry);
  ANode.Text("subjectCode", AnEntry.FTermin != nullptr ? std::string(CodeOf(AnEntry.FTermin->Fach()))
                                                       : uPlaneintraege::ListText(AnEntry.FFaecher));
  if (Message == nullptr || !Message->FAlleKlassen) {
    ANode.Codes("classCodes", AnEntry.FKlassen);
  }
  if (Message == nullptr || !Message->FAlleLehrer) {
    ANode.Codes("teacherCodes", AnEntry.FLehrer);
  }
  ANode.Codes("roomCodes", AnEntry.FRaeume);
  ANode.List("buildingCodes", BuildingsOf(AnEntry.FRaeume));
  ANode.List("studentRefs", References(AnEntry.FSchueler));
  ANode.Text("newSubjectCode", uPlaneintraege::ListText(AnEntry.FNeueFaecher));
}

TNode LessonItem(const TRun& ARun, const TVELPlaneintrag& AnEntry) {
  const TVELTermin* const Termin = AnEntry.FTermin;
  const TVELVeranstaltung* const Lesson = LessonOf(Termin);
  TNode Item;
  Item.Text("courseTitle", uPlaneintraege::FachText(AnEntry));
  Item.Reference("lessonRef", Termin);
  Item.Text("courseDescription", Description(AnEntry));
  if (Termin != nullptr) {
    Item.Text("periodCode", CodeOf(Termin->FPeriode));
    Item.Number("level", Lesson != nullptr ? Lesson->FSchiene : 0, 0);
    Item.Text("lessonBlock", Termin->FBlockID);
    Item.Reference("courseRef", Lesson);
  }
  WriteTime(Item, ARun, AnEntry);
  WriteMembers(Item, AnEntry);
  if (AnEntry.Geaendert()) {
    Item.Object("changes", LessonChanges(ARun, AnEntry));
  }
  return Item;
}

void AddItem(TNodes& AnItems, const TRun& ARun, const TVELPlaneintrag& AnEntry) {
  AnItems.Add(LessonItem(ARun, AnEntry));
  Mark(AnEntry);
}

}  // namespace

void WriteLessons(TNode& ANode, const TRun& ARun) {
  TNodes Items;
  for (auto& Next : ARun.Export.PlaneintragListe.Items()) {
    const auto Entry = std::move(Next);  // goes as soon as it is written
    if (const TVELMitteilung* const Message = MessageOf(*Entry)) {
      const TVELTime TimeOfDay = uDataUtils::TimeOf(Entry->FStart);
      for (const TVELDate Day : MessageDays(ARun.Context, *Message)) {
        Entry->FStart = Day + TimeOfDay;
        AddItem(Items, ARun, *Entry);
      }
    } else if (Entry->Geaendert() || !ARun.Export.SubstitutionsOnly) {
      AddItem(Items, ARun, *Entry);
    }
  }
  ARun.Export.PlaneintragListe.Clear();
  ANode.List("lessonTimes", Items);
}

}  // namespace uJSONExport
