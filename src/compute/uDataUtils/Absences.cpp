#include "uDataUtils/Absences.h"

#include <algorithm>
#include <initializer_list>
#include <span>
#include <unordered_set>

#include "uDataUtils/Context.h"
#include "uPlandaten/Fehlzeiten.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Plan.h"
#include "uPlandaten/Raeume.h"
#include "uPlandaten/Termine.h"
#include "uPlandaten/Vertretungen.h"

namespace uDataUtils {

namespace {

enum class TFreed : std::uint8_t { Skipped, Counted };

bool Counts(const TVELFehlzeit& AnAbsence, const TVELVeranstaltung* ACourse, TFreed AFreed) {
  if (const auto* const OfClass = AnAbsence.As<TVELKlassenfehlzeit>()) {
    return OfClass->FKurs == nullptr || OfClass->FKurs == ACourse;
  }
  const auto* const OfTeacher = AnAbsence.As<TVELLehrerfehlzeit>();
  return OfTeacher == nullptr || AFreed == TFreed::Counted || !OfTeacher->FFreistellung;
}

void AddAbsences(std::vector<TVELFehlzeit*>& AFound, const TAbsences& AnAbsences, const TVELPlanobjekt& AnObject,
                 const TVELVeranstaltung* ACourse, TFreed AFreed, bool APublicOnly, const TSpan& ASpan) {
  AnAbsences.Visit(AnObject, ASpan, [&](TVELFehlzeit& AnAbsence) {
    if (Counts(AnAbsence, ACourse, AFreed) && (!APublicOnly || !AnAbsence.FNotPublic)) {
      AFound.push_back(&AnAbsence);
    }
    return false;
  });
}

}  // namespace

TAbsences::TAbsences(const TVELPlan& APlan) {
  std::unordered_set<const TQuillonDataObject*> Seen;  // a damaged file may list an object twice
  for (const TQuillonDataList* List : std::initializer_list<const TQuillonDataList*>{
           &APlan.FKlassen, &APlan.FLehrer, &APlan.FRaeume, &APlan.FFaecher, &APlan.FSchueler, &APlan.FRessourcen}) {
    for (const TQuillonDataObject* Object : List->Items()) {
      const auto& Absences = static_cast<const TVELPlanobjekt*>(Object)->FFehlzeiten;
      if (Absences.IsEmpty() || !Seen.insert(Object).second) {
        continue;
      }
      for (TVELFehlzeit* Absence : Absences) {
        // One that ends ahead of its start counts as a moment.
        FOfObject.Add(Object, {Absence->FStart, std::max<double>(Absence->FStart, Absence->FEnde)}, Absence);
      }
    }
  }
  FOfObject.Make();
}

bool TAbsences::OverlapsWith(const TVELFehlzeit& AnAbsence, const TSpan& ASpan) {
  return Overlap({AnAbsence.FStart, AnAbsence.FEnde}, ASpan);
}

std::vector<TVELFehlzeit*> FindFehlzeiten(const TPlanContext& AContext, const TVELPlanobjekt& AnObject,
                                          const TVELVeranstaltung* ACourse, bool APublicOnly, const TSpan& ASpan) {
  std::vector<TVELFehlzeit*> Found;
  AddAbsences(Found, AContext.Absences(), AnObject, ACourse, TFreed::Skipped, APublicOnly, ASpan);
  return Found;
}

std::vector<TVELFehlzeit*> FindFehlzeiten(const TPlanContext& AContext, const TVELTermin& ATermin, bool APublicOnly,
                                          const TSpan& ASpan) {
  std::vector<TVELFehlzeit*> Found;
  for (const std::span<TQuillonDataObject* const> Objects :
       {ATermin.Klassen(), ATermin.FLehrer.Items(), ATermin.FRaeume.Items()}) {
    for (const TQuillonDataObject* Object : Objects) {
      AddAbsences(Found, AContext.Absences(), static_cast<const TVELPlanobjekt&>(*Object), ATermin.Veranstaltung(),
                  TFreed::Counted, APublicOnly, ASpan);
    }
  }
  return Found;
}

TVELFehlzeit* HasAbsence(const TPlanContext& AContext, const TVELPlanobjekt& AnObject, const TVELVeranstaltung* ACourse,
                         const TSpan& ASpan) {
  TVELFehlzeit* Found = nullptr;
  AContext.Absences().Visit(AnObject, ASpan, [&](TVELFehlzeit& AnAbsence) {
    const auto* const OfRoom = AnAbsence.As<TVELRaumfehlzeit>();
    if (Counts(AnAbsence, ACourse, TFreed::Skipped) && (OfRoom == nullptr || OfRoom->FNichtVerfuegbar)) {
      Found = &AnAbsence;
    }
    return Found != nullptr;
  });
  return Found;
}

bool AllClassesAbsent(const TPlanContext& AContext, const TVELTermin& ATermin, const TVELKlasse* AnExcluded,
                      const TSpan& ASpan) {
  const TVELVeranstaltung* const Lesson = ATermin.Veranstaltung();
  const std::span<TQuillonDataObject* const> Classes = ATermin.Klassen();
  return !Classes.empty() && std::ranges::all_of(Classes, [&](const TQuillonDataObject* AnObject) {
    const auto& Class = static_cast<const TVELKlasse&>(*AnObject);
    return &Class == AnExcluded || HasAbsence(AContext, Class, Lesson, ASpan) != nullptr;
  });
}

bool AllClassesAbsent(const TPlanContext& AContext, const TVELAenderung& AChange, const TVELKlasse* AnExcluded) {
  const TVELTermin* Appointment = nullptr;
  if (const auto* const Substitution = AChange.As<TVELVertretung>()) {
    Appointment = Substitution->FNeuerTermin != nullptr ? Substitution->FNeuerTermin : AChange.Termin();
  } else if (AChange.Kind() == TChangeKind::Raumaenderung) {
    Appointment = AChange.Termin();
  }
  return Appointment != nullptr &&
         AllClassesAbsent(AContext, *Appointment, AnExcluded, {AChange.FStart, AChange.FEnde});
}

}  // namespace uDataUtils
