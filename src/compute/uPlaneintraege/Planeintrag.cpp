#include "uPlaneintraege/Planeintrag.h"

#include <algorithm>

#include "uPlandaten/Aufsichten.h"
#include "uPlandaten/Faecher.h"
#include "uPlandaten/Termine.h"
#include "uPlandaten/Veranstaltungen.h"
#include "uPlandaten/Vertretungen.h"
#include "uPlandaten/Zeitrahmen.h"

namespace {

constexpr double MinutesPerDay = 24 * 60;

}  // namespace

void TVELPlaneintrag::ResetAnderung() {
  FNeueFaecher.clear();
  FNeueRaeume.clear();
  FNeueLehrer.clear();
  FFehlendeFaecher.clear();
  FFehlendeKlassen.clear();
  FFehlendeLehrer.clear();
  FFehlendeRaeume.clear();
  FFehlzeiten.clear();
  FAenderungen.clear();
  FZuweisung = nullptr;
  FShadow = false;
  FChanges = false;
}

const TVELVertretung* TVELPlaneintrag::Vertretung() const {
  return FAenderungen.empty() ? nullptr : FAenderungen.front()->As<TVELVertretung>();
}

TVELVeranstaltung* TVELPlaneintrag::Veranstaltung() const {
  if (FTermin != nullptr) {
    return FTermin->Veranstaltung();
  }
  const TVELTermin* const Changed = FAenderungen.empty() ? nullptr : FAenderungen.front()->Termin();
  return Changed != nullptr ? Changed->Veranstaltung() : nullptr;
}

const TVELZeitrahmen* TVELPlaneintrag::Zeitrahmen() const {
  if (FPlanobjekt != nullptr) {
    return FPlanobjekt->Timeframe();
  }
  const TVELAbstrakterTermin* const Slot =
      FTermin != nullptr ? static_cast<const TVELAbstrakterTermin*>(FTermin) : FAufsicht;
  return Slot != nullptr ? Slot->Zeitrahmen() : nullptr;
}

TVELFach* TVELPlaneintrag::Fach() const {
  const TVELAenderung* const Change = Aenderung();
  if (Change != nullptr && Change->Kind() == TChangeKind::Zusatzunterricht) {
    return Change->FNeuesFach;
  }
  if (!FNeueFaecher.empty()) {
    return FNeueFaecher.front();
  }
  return FTermin != nullptr ? FTermin->Fach() : nullptr;
}

TVELAenderung* TVELPlaneintrag::GetAenderung(const TVELFehlzeit* AFehlzeit) const {
  const auto Found = std::ranges::find_if(FAenderungen, [&](const TVELAenderung* AChange) {
    return AChange->Kind() == TChangeKind::Vertretung && AChange->FFehlzeit == AFehlzeit;
  });
  return Found != FAenderungen.end() ? *Found : nullptr;
}

bool TVELPlaneintrag::StatistikRelevant() const {
  const TVELVeranstaltung* const Lesson = Veranstaltung();
  return !FShadow && (FPlanobjekt == nullptr || !FPlanobjekt->FKeineStatistik) &&
         (Lesson == nullptr || !Lesson->FVeranstaltungsattribute.Contains(vmIgnoriereStatistik));
}

double TVELPlaneintrag::Lektionen() const {
  const TVELZeitrahmen* const Frame = Zeitrahmen();
  return Frame != nullptr && Frame->FMinutenProStd > 0 ? (FFinish - FStart) * MinutesPerDay / Frame->FMinutenProStd : 0;
}

TVELUnterrichtsart* TVELPlaneintrag::LessonArt() const {
  const TVELAenderung* const Change = Aenderung();
  if (const auto* const Additional = Change != nullptr ? Change->As<TVELZusatzunterricht>() : nullptr) {
    return Additional->FKursart;
  }
  const TVELVeranstaltung* const Lesson = Veranstaltung();
  return Lesson != nullptr ? Lesson->FUnterrichtsart : nullptr;
}

int TVELPlanEintragListe::FindTermin(const TVELTermin* ATermin) const {
  const auto Found = std::ranges::find_if(FItems, [&](const auto& AnEntry) { return AnEntry->FTermin == ATermin; });
  return Found != FItems.end() ? static_cast<int>(Found - FItems.begin()) : -1;
}
