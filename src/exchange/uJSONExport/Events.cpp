#include "uJSONExport/Run.h"
#include "uPlandaten/Kalender.h"
#include "uPlandaten/Plan.h"

namespace uJSONExport {

namespace {

TNodes Participants(const TVELKalendereintrag& AnEvent) {
  TNodes List;
  for (const TVELTeilnehmer* Member : AnEvent.FTeilnehmer) {
    List.Text(Identifier(Member->FDataObject));
  }
  return List;
}

TNode Event(const TVELKalendereintrag& AnEvent) {
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
  Node.List("participants", Participants(AnEvent));
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
  const TVELSchluessel* const Category = ARun.Export.Kategorie;
  TNodes Events;
  if (ARun.Plan.FKalender) {
    for (const TVELKalendereintrag* Entry : ARun.Plan.FKalender->FEintraege) {
      if (Category == nullptr || Entry->FKategorie == Category) {
        Events.Add(Event(*Entry));
      }
    }
  }
  ANode.WholeList("eventTimes", Events);
}

}  // namespace uJSONExport
