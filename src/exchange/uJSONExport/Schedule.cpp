#include <array>

#include "uColors.h"
#include "uJSONExport/Run.h"
#include "uPlandaten/Einstellungen.h"
#include "uPlandaten/Plan.h"

namespace uJSONExport {

namespace {

constexpr int DaysPerWeek = 7;

struct TNumber {
  std::string_view Name;
  std::int64_t (*Of)(const TVELEinstellungen& ASettings);
};

struct TColour {
  std::string_view Name;
  TColor TVELColors::*Field;
};

using TSettings = TVELEinstellungen;

constexpr std::array<TNumber, 7> DisplayNumbers = {{
    {"posLabel", [](const TSettings& S) { return std::int64_t{S.FStdAnzeige}; }},
    {"lessonColor", [](const TSettings& S) { return std::int64_t{S.FTerminfarbe}; }},
    {"lessonGradient", [](const TSettings& S) { return std::int64_t{S.FTerminfarbverlauf}; }},
    {"alwaysLessonTime", [](const TSettings& S) { return std::int64_t{S.FShowAlwaysTime ? 1 : 0}; }},
    {"absenceReasons", [](const TSettings& S) { return std::int64_t{S.FFehlgruendeAnzeigen}; }},
    {"absReasonCaption", [](const TSettings& S) { return std::int64_t{S.FFehlgrundInCaption ? 1 : 0}; }},
    {"lessonLayout", [](const TSettings& S) { return std::int64_t{S.FLineWrap ? 1 : 0}; }},
}};

constexpr std::array<TColour, 12> DisplayColours = {{
    {"backgroundColor", &TVELColors::FBackgroundColor},
    {"eventColor", &TVELColors::FEventColor},
    {"supervisionColor", &TVELColors::FSupervisionColor},
    {"supervisionChangeColor", &TVELColors::FSupervisionChangeColor},
    {"lessonChangeColor", &TVELColors::FLessonChangeColor},
    {"headerBgColor", &TVELColors::FHeaderBgColor},
    {"roomChangeColor", &TVELColors::FRoomChangeColor},
    {"messageColor", &TVELColors::FMessageColor},
    {"additionalLessonColor", &TVELColors::FAdditionalLessonColor},
    {"absenceColor", &TVELColors::FAbsenceColor},
    {"todayColor", &TVELColors::FTodayColor},
    {"todayHeaderColor", &TVELColors::FTodayHeaderColor},
}};

TNode Dates(TVELDateTime AStart, TVELDateTime AFinish) {
  TNode Node;
  Node.Date("startDate", AStart);
  Node.Date("endDate", AFinish);
  return Node;
}

TNode Display(const TVELEinstellungen& ASettings) {
  constexpr std::int64_t Unset = -1;
  TNode Node;
  for (const TNumber& Number : DisplayNumbers) {
    Node.Number(Number.Name, Number.Of(ASettings), Unset);
  }
  Node.Text("lessonWeeks", ASettings.FZeigeWochen);
  Node.Number("publishDays", ASettings.FPublishDaysScope);
  Node.True("publishSubstMessage", !ASettings.FNoMessage);
  const TVELColors& Colors = uColors::Colors();
  for (const TColour& Colour : DisplayColours) {
    Node.Colour(Colour.Name, Colors.*Colour.Field);
  }
  return Node;
}

}  // namespace

void WriteSchedule(TNode& ANode, const TRun& ARun) {
  const TVELEinstellungen& Settings = *ARun.Plan.FEinstellungen;
  TNode Weekspan;
  Weekspan.Number("weekdayStart", Settings.FWochenstart % DaysPerWeek);
  Weekspan.Number("weekdayEnd", Settings.FWochenende % DaysPerWeek);
  TNode Schedule;
  Schedule.Text("scheduleID", QuillonGuid::Plain(ARun.Plan.ID()));
  Schedule.Text("scheduleDescription", Settings.FStundenplantitel);
  Schedule.Object("session", Dates(Settings.FGueltigVon, Settings.FGueltigBis));
  Schedule.Object("effectivity", Dates(ARun.Export.Start, ARun.Export.Finish));
  Schedule.Object("weekspan", Weekspan);
  Schedule.Object("display", Display(Settings));
  if (ARun.Has(xmlLessons) || ARun.Has(xmlChanges)) {
    WriteLessons(Schedule, ARun);
    WriteSupervisions(Schedule, ARun);
  }
  WriteEvents(Schedule, ARun);
  ANode.Object("displaySchedule", Schedule);
}

}  // namespace uJSONExport
