#include "uDataUtils/Absences.h"

#include <unordered_set>

#include "uDataUtils/Publishing.h"
#include "uJSONExport/Run.h"
#include "uPlandaten/Fehlzeiten.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Plan.h"
#include "uPlandaten/Raeume.h"

namespace uJSONExport {

namespace {

/// What stands for a teacher's reason that is not told.
constexpr std::string_view HiddenReason = "abwesend";

using TAbsenceSet = std::unordered_set<const TVELFehlzeit*>;

const TVELFehlgrund* ReasonOf(const TVELFehlzeit& AnAbsence) {
  switch (AnAbsence.Kind()) {
    case TAbsenceKind::Lehrer:
      return static_cast<const TVELLehrerfehlzeit&>(AnAbsence).FFehlgrund;
    case TAbsenceKind::Klasse:
      return static_cast<const TVELKlassenfehlzeit&>(AnAbsence).FFehlgrund;
    case TAbsenceKind::Raum:
      return static_cast<const TVELRaumfehlzeit&>(AnAbsence).FFehlgrund;
  }
  return nullptr;
}

bool HidesReason(const TRun& ARun, const TVELFehlzeit& AnAbsence) {
  return AnAbsence.Kind() == TAbsenceKind::Lehrer && !ARun.ShowsTeacherReasons();
}

/// The absences that have a change which nobody has dealt with.
TAbsenceSet OpenAbsences(const TRun& ARun) {
  TAbsenceSet Open;
  for (const TVELAenderung* Change : ARun.Plan.FAenderungen) {
    if (Change->FFehlzeit != nullptr && uDataUtils::IsOpen(ARun.Context, *Change)) {
      Open.insert(Change->FFehlzeit);
    }
  }
  return Open;
}

/// @param AReference key of the absent object
TNode Absence(const TRun& ARun, std::string_view AReference, const TVELPlanobjekt& AnObject,
              const TVELFehlzeit& AnAbsence) {
  TNode Node;
  Node.Reference("id", &AnAbsence);
  WritePeriod(Node, AnAbsence.FStart, AnAbsence.FEnde);
  Node.Text("note", AnAbsence.FBemerkung);
  Node.Reference(AReference, &AnObject);
  if (!HidesReason(ARun, AnAbsence)) {
    Node.Reference("reasonRef", ReasonOf(AnAbsence));
  }
  return Node;
}

/// The absences of those objects of a list that stand in the document.
void WriteList(TNode& ANode, const TRun& ARun, const TAbsenceSet& AHidden, std::string_view AKind,
               const TVELPlanobjektliste& AList) {
  const std::string Reference = std::string(AKind) + "Ref";
  TNodes List;
  for (const TQuillonDataObject* Item : AList.Items()) {
    const auto& Object = *static_cast<const TVELPlanobjekt*>(Item);
    if (Object.FTag == 0 || !ARun.Teams.Passes(Object)) {
      continue;
    }
    ARun.Context.Absences().Visit(Object, ARun.Range(), [&](const TVELFehlzeit& AnAbsence) {
      if (!AnAbsence.FNotPublic && !AHidden.contains(&AnAbsence)) {
        List.Add(Absence(ARun, Reference, Object, AnAbsence));
      }
      return false;
    });
  }
  ANode.WholeList(std::string(AKind) + "Absences", List);
}

}  // namespace

std::string ReasonCode(const TRun& ARun, const TVELFehlzeit& AnAbsence) {
  if (AnAbsence.FNotPublic) {
    return {};
  }
  return std::string(HidesReason(ARun, AnAbsence) ? HiddenReason : CodeOf(ReasonOf(AnAbsence)));
}

void WriteAbsences(TNode& ANode, const TRun& ARun) {
  if (!ARun.Has(xmlAbsences) || ARun.Export.AlleWochen) {
    return;
  }
  const TAbsenceSet Hidden = ARun.Export.OffeneFehlzeiten ? TAbsenceSet() : OpenAbsences(ARun);
  WriteList(ANode, ARun, Hidden, "class", ARun.Plan.FKlassen);
  WriteList(ANode, ARun, Hidden, "room", ARun.Plan.FRaeume);
  WriteList(ANode, ARun, Hidden, "teacher", ARun.Plan.FLehrer);
}

}  // namespace uJSONExport
