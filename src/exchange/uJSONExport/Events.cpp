#include <algorithm>

#include "uDataUtils/SchoolDays.h"
#include "uJSONExport/Run.h"
#include "uPlandaten/Kalender.h"
#include "uPlandaten/Plan.h"
#include "uPlandaten/Schueler.h"

namespace uJSONExport {

namespace {

/// True if the readers of the document may see the event, and it is of the category that was asked for.
bool IsShown(const TRun& ARun, const TVELKalendereintrag& AnEvent) {
  const TVELSchluessel* const Category = ARun.Export.Kategorie;
  const bool IsForReader = AnEvent.FVisibility == velPublic || ARun.Export.Admin ||
                           std::ranges::any_of(ARun.Objects, [&](const TVELPlanobjekt* AnObject) {
                             return uDataUtils::AppliesTo(AnEvent, AnObject);
                           });
  return IsForReader && (Category == nullptr || AnEvent.FKategorie == Category);
}

TNodes Participants(const TRun& ARun, const TVELKalendereintrag& AnEvent) {
  TNodes List;
  for (const TVELTeilnehmer* Member : AnEvent.FTeilnehmer) {
    if (ARun.Export.StudentNames || uDataObjects::As<TVELSchueler>(Member->FDataObject) == nullptr) {
      List.Text(Identifier(Member->FDataObject));
    }
  }
  return List;
}

TNode Event(const TRun& ARun, const TVELKalendereintrag& AnEvent) {
  constexpr int Unset = -1;
  const TVELKalendereintragKategorie* const Category = AnEvent.FKategorie;
  TNode Node;
  Node.Reference("eventRef", &AnEvent);
  WritePeriod(Node, AnEvent.Start(), AnEvent.Ende());
  Node.Text("eventCaption", AnEvent.FAnzeige);
  Node.Text("eventDescription", AnEvent.Beschreibung());
  Node.Text("eventLocation", AnEvent.Ort());
  Node.Number("eventStatus", AnEvent.FStatus, Unset);
  Node.Text("eventCategory", CodeOf(Category));
  Node.Text("eventType", Category != nullptr ? std::string_view(Category->FSchluessel) : std::string_view());
  Node.True("noLessons", AnEvent.FUnterrichtsfrei);
  Node.True("wholeDay", AnEvent.FGanztaegig);
  Node.List("participants", Participants(ARun, AnEvent));
  return Node;
}

}  // namespace

void WritePeriod(TNode& ANode, TVELDateTime AStart, TVELDateTime AFinish) {
  ANode.Date("startDate", AStart);
  ANode.Text("startTime", AStart != 0 ? Time(AStart) : "");
  ANode.Date("endDate", AFinish);
  ANode.Text("endTime", AFinish != 0 ? Time(AFinish) : "");
}

void WriteEvents(TNode& ANode, const TRun& ARun) {
  TNodes Events;
  if (ARun.Plan.FKalender) {
    for (const TVELKalendereintrag* Entry : ARun.Plan.FKalender->FEintraege) {
      if (IsShown(ARun, *Entry)) {
        Events.Add(Event(ARun, *Entry));
      }
    }
  }
  ANode.WholeList("eventTimes", std::move(Events));
}

}  // namespace uJSONExport
