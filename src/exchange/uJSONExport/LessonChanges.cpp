#include <array>

#include "uJSONExport/Run.h"
#include "uPlandaten/Fehlzeiten.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Raeume.h"
#include "uPlandaten/Termine.h"
#include "uPlandaten/Vertretungen.h"
#include "uPlaneintraege/Texte.h"

namespace uJSONExport {

namespace {

struct TCodeList {
  std::string_view Name;
  void (*Write)(TNode& ANode, std::string_view AName, const TVELPlaneintrag& AnEntry);
};

template <auto Member>
constexpr TCodeList CodeList(std::string_view AName) {
  return {AName, [](TNode& ANode, std::string_view AnOwnName, const TVELPlaneintrag& AnEntry) {
            ANode.Codes(AnOwnName, AnEntry.*Member);
          }};
}

constexpr std::array<TCodeList, 6> CodeLists = {{
    CodeList<&TVELPlaneintrag::FNeueKlassen>("newClassCodes"),
    CodeList<&TVELPlaneintrag::FFehlendeKlassen>("absentClassCodes"),
    CodeList<&TVELPlaneintrag::FNeueLehrer>("newTeacherCodes"),
    CodeList<&TVELPlaneintrag::FFehlendeLehrer>("absentTeacherCodes"),
    CodeList<&TVELPlaneintrag::FNeueRaeume>("newRoomCodes"),
    CodeList<&TVELPlaneintrag::FFehlendeRaeume>("absentRoomCodes"),
}};

/// By TAbsenceKind.
constexpr std::array<std::string_view, 3> ReasonTypes = {"teacherAbsence", "classAbsence", "roomAbsence"};

/// The moment of the other half of a move.
void WriteMove(TNode& ANode, const TVELVertretung& ASubstitution) {
  const bool IsHere = ASubstitution.FVertretungsmerkmal == vmVorgezogen;
  const bool IsAway = ASubstitution.FVertretungsmerkmal == vmWeggezogen;
  if (!(IsHere || IsAway) || ASubstitution.FNeuesTerminDatum == 0) {
    return;
  }
  ANode.Date(IsHere ? "oldDate" : "newDate", ASubstitution.FNeuesTerminDatum);
  ANode.Time(IsHere ? "oldStartTime" : "newStartTime", ASubstitution.FNeuesTerminDatum);
}

void WriteReason(TNode& ANode, const TRun& ARun, const TVELVertretung& ASubstitution) {
  const TVELFehlzeit* const Absence = ASubstitution.FFehlzeit;
  if (Absence != nullptr && !Absence->FNotPublic) {
    ANode.Text("reasonType", ReasonTypes.at(static_cast<std::size_t>(Absence->Kind())));
    ANode.Text("reasonCode", ReasonCode(ARun, *Absence));
  }
}

std::string_view Cancelled(const TVELAenderung& AChange) {
  constexpr std::string_view Supervision = "substitutionCancelled";
  if (const auto* const OfSupervision = AChange.As<TVELAufsichtsVertretung>()) {
    return OfSupervision->FKeineVertretung ? Supervision : "";
  }
  if (const auto* const OfRoom = AChange.As<TVELRaumaenderung>()) {
    return OfRoom->FEntfaellt ? Supervision : "";
  }
  const auto* const Substitution = AChange.As<TVELVertretung>();
  if (Substitution == nullptr) {
    return "";
  }
  if (Substitution->FFehlstellengrund == vaWeggezogen) {
    return "movedAway";
  }
  switch (Substitution->FVertretungsmerkmal) {
    case vmFaelltAus:
      return "lessonCancelled";
    case vmKlasseFrei:
      return "classFree";
    case vmEntfaellt:
      return "substititonCancelled";
    case vmWeggezogen:
      return "movedAway";
    default:
      return "";
  }
}

}  // namespace

void WriteCancelled(TNode& ANode, const TVELAenderung& AChange) {
  const std::string_view Text = Cancelled(AChange);
  ANode.Text("cancelled", Text);
  if (!Text.empty()) {
    ANode.Text("cancelReasonCode", CodeOf(AChange.FVertretungsentfall));
  }
}

TNode LessonChanges(const TRun& ARun, const TVELPlaneintrag& AnEntry) {
  constexpr int Unset = -1;
  const TVELAenderung* const Change = AnEntry.Aenderung();
  const TVELVertretung* const Substitution = AnEntry.Vertretung();
  TNode Changes;
  if (ARun.Export.Art) {
    Changes.Text("caption", uPlaneintraege::PublicCaption(ARun.Context, AnEntry, ARun.Reader()));
  }
  Changes.Number("changeType", ChangeType(ARun, AnEntry), Unset);
  for (const TCodeList& List : CodeLists) {
    List.Write(Changes, List.Name, AnEntry);
  }
  if (Substitution != nullptr) {
    WriteMove(Changes, *Substitution);
    WriteReason(Changes, ARun, *Substitution);
  }
  if (Change != nullptr && ARun.Export.Information) {
    Changes.Text("information", Change->FInformation);
  }
  if (Change != nullptr && ARun.Export.Mitteilung) {
    Changes.Text("message", Change->FMitteilung);
  }
  Changes.Text("lessonTitle", uPlaneintraege::FachText(AnEntry));
  if (Change != nullptr) {
    WriteCancelled(Changes, *Change);
  }
  Changes.Modified(AnEntry.FModified);
  return Changes;
}

}  // namespace uJSONExport
