#include "uDataUtils/Absences.h"

#include <algorithm>
#include <span>

#include "uPlandaten/Fehlzeiten.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Raeume.h"
#include "uPlandaten/Termine.h"
#include "uPlandaten/Vertretungen.h"

namespace uDataUtils {

namespace {

enum class TFreed : std::uint8_t { Skipped, Counted };

bool Counts(const TVELFehlzeit& AnAbsence, const TVELVeranstaltung* ACourse, TFreed AFreed) {
  if (const auto* const OfClass = dynamic_cast<const TVELKlassenfehlzeit*>(&AnAbsence)) {
    return OfClass->FKurs == nullptr || OfClass->FKurs == ACourse;
  }
  const auto* const OfTeacher = dynamic_cast<const TVELLehrerfehlzeit*>(&AnAbsence);
  return OfTeacher == nullptr || AFreed == TFreed::Counted || !OfTeacher->FFreistellung;
}

/// Calls AVisit with each absence of the object that overlaps the span and counts, until it answers true.
template <class TVisit>
void Visit(const TVELPlanobjekt& AnObject, const TVELVeranstaltung* ACourse, TFreed AFreed, const TSpan& ASpan,
           const TVisit& AVisit) {
  for (TVELFehlzeit* Absence : AnObject.FFehlzeiten.Around(ASpan.Start, ASpan.Finish)) {
    if (Overlap({Absence->FStart, Absence->FEnde}, ASpan) && Counts(*Absence, ACourse, AFreed) && AVisit(*Absence)) {
      return;
    }
  }
}

void AddAbsences(std::vector<TVELFehlzeit*>& AFound, const TVELPlanobjekt& AnObject, const TVELVeranstaltung* ACourse,
                 TFreed AFreed, bool APublicOnly, const TSpan& ASpan) {
  Visit(AnObject, ACourse, AFreed, ASpan, [&](TVELFehlzeit& AnAbsence) {
    if (!APublicOnly || !AnAbsence.FNotPublic) {
      AFound.push_back(&AnAbsence);
    }
    return false;
  });
}

}  // namespace

std::vector<TVELFehlzeit*> FindFehlzeiten(const TVELPlanobjekt& AnObject, const TVELVeranstaltung* ACourse,
                                          bool APublicOnly, const TSpan& ASpan) {
  std::vector<TVELFehlzeit*> Found;
  AddAbsences(Found, AnObject, ACourse, TFreed::Skipped, APublicOnly, ASpan);
  return Found;
}

std::vector<TVELFehlzeit*> FindFehlzeiten(const TVELTermin& ATermin, bool APublicOnly, const TSpan& ASpan) {
  std::vector<TVELFehlzeit*> Found;
  for (const std::span<TQuillonDataObject* const> Objects :
       {ATermin.Klassen(), ATermin.FLehrer.Items(), ATermin.FRaeume.Items()}) {
    for (const TQuillonDataObject* Object : Objects) {
      AddAbsences(Found, static_cast<const TVELPlanobjekt&>(*Object), ATermin.Veranstaltung(), TFreed::Counted,
                  APublicOnly, ASpan);
    }
  }
  return Found;
}

TVELFehlzeit* HasAbsence(const TVELPlanobjekt& AnObject, const TVELVeranstaltung* ACourse, const TSpan& ASpan) {
  TVELFehlzeit* Found = nullptr;
  Visit(AnObject, ACourse, TFreed::Skipped, ASpan, [&](TVELFehlzeit& AnAbsence) {
    const auto* const OfRoom = dynamic_cast<const TVELRaumfehlzeit*>(&AnAbsence);
    Found = OfRoom == nullptr || OfRoom->FNichtVerfuegbar ? &AnAbsence : nullptr;
    return Found != nullptr;
  });
  return Found;
}

bool AllClassesAbsent(const TVELTermin& ATermin, const TVELKlasse* AnExcluded, const TSpan& ASpan) {
  const std::span<TQuillonDataObject* const> Classes = ATermin.Klassen();
  return !Classes.empty() && std::ranges::all_of(Classes, [&](const TQuillonDataObject* AnObject) {
    const auto& Class = static_cast<const TVELKlasse&>(*AnObject);
    return &Class == AnExcluded || HasAbsence(Class, ATermin.Veranstaltung(), ASpan) != nullptr;
  });
}

bool AllClassesAbsent(const TVELAenderung& AChange, const TVELKlasse* AnExcluded) {
  const TVELTermin* Appointment = nullptr;
  if (const auto* const Substitution = dynamic_cast<const TVELVertretung*>(&AChange)) {
    Appointment = Substitution->FNeuerTermin != nullptr ? Substitution->FNeuerTermin : AChange.Termin();
  } else if (dynamic_cast<const TVELRaumaenderung*>(&AChange) != nullptr) {
    Appointment = AChange.Termin();
  }
  return Appointment != nullptr && AllClassesAbsent(*Appointment, AnExcluded, {AChange.FStart, AChange.FEnde});
}

}  // namespace uDataUtils
