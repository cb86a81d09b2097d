#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

#include "QuillonDateTimeFormat.h"
#include "uDataUtils/Absences.h"
#include "uDataUtils/Context.h"
#include "uDataUtils/Publishing.h"
#include "uDataUtils/Spans.h"
#include "uPlandaten/Einstellungen.h"
#include "uPlandaten/Fehlzeiten.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Plan.h"
#include "uPlandaten/Raeume.h"
#include "uPlandaten/Termine.h"
#include "uPlandaten/Veranstaltungen.h"
#include "uPlandaten/Vertretungen.h"
#include "uPlaneintraege/Texte.h"

namespace uPlaneintraege {

namespace {

constexpr std::string_view Changed = "Geändert";
constexpr std::string_view Open = "Offen";

/// "Fehlend: " and what is missing; empty if nothing is.
std::string MissingText(const std::string& AMissing) { return AMissing.empty() ? "" : "Fehlend: " + AMissing; }

std::string MissingText(const TVELPlaneintrag& AnEntry) {
  std::string All;
  for (const std::string& Part :
       {ListText(AnEntry.FFehlendeKlassen), ListText(AnEntry.FFehlendeLehrer), ListText(AnEntry.FFehlendeRaeume)}) {
    All.append(All.empty() || Part.empty() ? "" : ", ").append(Part);
  }
  return MissingText(All);
}

std::string KeyText(const TVELVertretungsentfall& AKey, bool AShort) {
  return AShort || AKey.FBezeichnung.empty() ? AKey.FKuerzel : AKey.FBezeichnung;
}

/// When the other half of a move or swap takes place: weekday, date, and from when to when.
std::string MomentText(const TVELVertretung& AChange) {
  const TVELDateTime Start = AChange.FNeuesTerminDatum;
  if (Start == 0) {
    return {};
  }
  TVELDateTime Finish = Start + (AChange.FEnde - AChange.FStart);
  if (const TVELTermin* const Partner = AChange.FNeuerTermin) {
    Finish = std::max<double>(Finish, uDataUtils::DayOf(Start) + uDataUtils::TimeOf(Partner->Ende()));
  }
  return QuillonDateTimeFormat::Format("ddd dd/mm/yyyy hh:nn", Start) + "-" +
         QuillonDateTimeFormat::Format("hh:nn", Finish);
}

/// The words around the moment; those without it where the change does not tell any.
std::string WithMoment(const TVELVertretung& AChange, std::string_view ABefore, std::string_view ABehind,
                       std::string_view AWithout) {
  const std::string Moment = MomentText(AChange);
  return Moment.empty() ? std::string(AWithout) : std::string(ABefore) + Moment + std::string(ABehind);
}

std::string_view ReasonText(TVELFehlstellengrund AReason) {
  switch (AReason) {
    case vaLehrerFehlzeit:
      return "Lehrer fehlt";
    case vaKlassenFehlzeit:
      return "Klasse fehlt";
    case vaRaumFehlzeit:
      return "Raum nicht verfügbar";
    case vaWeggezogen:
      return "Weggezogen";
    case vaVerschoben:
      return "Verschoben";
    case vaFreigestellt:
      return "Freigestellt";
    case vaFehlstelle:
      return "Fehlstelle";
    case vaLehrerRaumTausch:
      return "Lehrer-Raum-Tausch";
    case vaTausch:
      return "Termin-Tausch";
    default:
      return {};
  }
}

/// The caption of one entry.
class TCaption {
 public:
  TCaption(const TPlanContext& AContext, const TVELPlaneintrag& AnEntry, const TVELPlanobjekt* AnObject, bool AShort)
      : FContext(AContext), FEntry(AnEntry), FObject(AnObject), FShort(AShort) {}

  std::string Text() const {
    const TVELAenderung* const Change = FEntry.Aenderung();
    if (Change == nullptr) {
      return {};
    }
    switch (Change->Kind()) {
      case TChangeKind::Vertretung:
        return Of(*Change->As<TVELVertretung>());
      case TChangeKind::AufsichtsVertretung:
        return Of(*Change->As<TVELAufsichtsVertretung>());
      case TChangeKind::Raumaenderung:
        return Of(*Change->As<TVELRaumaenderung>());
      case TChangeKind::Mitteilung:
        return Change->FInformation;
      case TChangeKind::Zusatzunterricht:
        return OfAdditional(*Change);
      case TChangeKind::Zuweisung:
        return "Zuweisung";
    }
    return {};
  }

 private:
  std::string Of(const TVELVertretung& AChange) const;
  std::string Of(const TVELAufsichtsVertretung& AChange) const;
  std::string Of(const TVELRaumaenderung& AChange) const;
  std::string OfAdditional(const TVELAenderung& AChange) const;
  std::string OfGap(const TVELVertretung& AChange) const;
  std::string OfSwap(const TVELVertretung& AChange) const;
  std::string OfTeacherRoomSwap(const TVELVertretung& AChange) const;
  std::string OfReason(const TVELVertretung& AChange) const;
  std::optional<std::string> OfFeature(const TVELVertretung& AChange) const;
  std::optional<std::string> OfReplacement(const TVELVertretung& AChange) const;

  const TPlanContext& FContext;
  const TVELPlaneintrag& FEntry;
  const TVELPlanobjekt* FObject;
  bool FShort;
};

/// A gap that no lesson of the timetable has.
std::string TCaption::OfGap(const TVELVertretung& AChange) const {
  constexpr std::array Settled = {aeFinished, aePublished, aeClosed};
  if (std::ranges::find(Settled, AChange.Status()) != Settled.end()) {
    switch (AChange.FVertretungsmerkmal) {
      case vmVorgezogen:
        return WithMoment(AChange, "Von ", " verschoben", "Verschoben");
      case vmWeggezogen:
        return WithMoment(AChange, "Auf ", " getauscht", "Getauscht");
      case vmKein:
        break;
      default:
        return "Zusätzlich";
    }
  }
  return "Fehlstelle";
}

std::string TCaption::OfSwap(const TVELVertretung& AChange) const {
  if (AChange.FVertretungsmerkmal == vmWeggezogen) {
    return FShort ? "Anstatt" : WithMoment(AChange, "Auf ", " getauscht", "Anstatt");
  }
  return FShort ? "Getauscht" : WithMoment(AChange, "Getauscht mit ", "", "Getauscht");
}

/// Empty if neither is swapped.
std::string TCaption::OfTeacherRoomSwap(const TVELVertretung& AChange) const {
  struct TForm {
    bool Applies;
    std::string_view Long;
    std::string_view Short;
  };
  const bool Teacher = AChange.FTauschTerminLehrer;
  const bool Room = AChange.FTauschTerminRaum;
  for (const TForm& Form :
       {TForm{Teacher && Room, "Lehrer/Raumtausch mit", "Lehrer-Raum-Tausch"},
        TForm{Teacher, "Lehrertausch mit", "Lehrer-Tausch"}, TForm{Room, "Raumtausch mit", "Raum-Tausch"}}) {
    if (!Form.Applies) {
      continue;
    }
    if (FShort) {
      return std::string(Form.Short);
    }
    std::string Text(Form.Long);
    const TVELVeranstaltung* const Lesson =
        AChange.FNeuerTermin != nullptr ? AChange.FNeuerTermin->Veranstaltung() : nullptr;
    for (const std::string& Part : {MomentText(AChange), Lesson != nullptr ? CourseTitle(*Lesson) : std::string()}) {
      Text.append(Part.empty() ? "" : " ").append(Part);
    }
    return Text;
  }
  return {};
}

/// What the reason of the gap tells; empty if that is nothing.
std::string TCaption::OfReason(const TVELVertretung& AChange) const {
  const bool HasAppointment = AChange.Termin() != nullptr;
  switch (AChange.FFehlstellengrund) {
    case vaFreigestellt:
      if (HasAppointment && uDataUtils::IsOpen(FContext, AChange)) {
        const std::string Missing = AChange.FFehlend.JoinCodes();
        return Missing.empty() ? "Freigestellt" : "Freigestellt: " + Missing;
      }
      return {};
    case vaTausch:
      return OfSwap(AChange);
    case vaVerschoben:
      if (HasAppointment) {
        return FShort ? "Verschoben" : WithMoment(AChange, "Von ", " verschoben", "Verschoben");
      }
      return {};
    case vaWeggezogen:
      if (HasAppointment) {
        return FShort ? "Weggezogen" : WithMoment(AChange, "Auf ", " verschoben", "Weggezogen");
      }
      return {};
    case vaLehrerRaumTausch:
      return HasAppointment ? OfTeacherRoomSwap(AChange) : std::string();
    default:
      return {};
  }
}

std::optional<std::string> TCaption::OfReplacement(const TVELVertretung& AChange) const {
  if (FObject != nullptr) {
    const bool IsReplaced =
        (AChange.FFehlzeit != nullptr && AChange.FFehlzeit->Objekt() == FObject) || AChange.FFehlend.Contains(FObject);
    if (IsReplaced) {
      return "Vertreten";
    }
    if (uDataObjects::As<TVELLehrer>(FObject) != nullptr && AChange.FNeu.Contains(FObject)) {
      return "Zusätzlich";
    }
  }
  if (AChange.FNeu.IsEmpty()) {
    return AChange.FNeuesFach != nullptr ? "Fachänderung" : std::string(ReasonText(AChange.FFehlstellengrund));
  }
  if (AChange.Vertreter() != nullptr) {
    return "Vertreten";
  }
  return AChange.FNeu.First<TVELRaum>() != nullptr ? std::optional("Raumänderung") : std::nullopt;
}

/// What the feature tells, an empty text too; none if it tells nothing.
std::optional<std::string> TCaption::OfFeature(const TVELVertretung& AChange) const {
  const auto OfAppointment = [&](const char* AText) {
    return AChange.Termin() != nullptr ? std::optional<std::string>(AText) : std::nullopt;
  };
  switch (AChange.FVertretungsmerkmal) {
    case vmVorgezogen:
      if (AChange.FNeuerTermin != nullptr) {
        return FShort ? "Verschoben" : WithMoment(AChange, "Von ", " verschoben", "Verschoben");
      }
      return std::nullopt;
    case vmKlasseFehlt: {
      const auto* const Absence = AChange.FFehlzeit != nullptr ? AChange.FFehlzeit->As<TVELKlassenfehlzeit>() : nullptr;
      return OfAppointment(Absence != nullptr && Absence->FKurs != nullptr ? "Kurs fehlt" : "Klasse fehlt");
    }
    case vmKlasseFrei:
      return OfAppointment("Klasse frei");
    case vmEntfaellt:
      return OfAppointment("Keine Vertretung");
    case vmAenderung:
      return OfReplacement(AChange);
    default:
      return std::nullopt;
  }
}

std::string TCaption::Of(const TVELVertretung& AChange) const {
  const bool HasAppointment = AChange.Termin() != nullptr;
  if (HasAppointment && AChange.FVertretungsentfall != nullptr) {
    return KeyText(*AChange.FVertretungsentfall, FShort);
  }
  if (HasAppointment && AChange.FVertretungsmerkmal == vmFaelltAus) {
    return "Fällt aus";
  }
  if (!HasAppointment && AChange.FFehlstellengrund == vaFehlstelle) {
    return OfGap(AChange);
  }
  if (std::string Text = OfReason(AChange); !Text.empty()) {
    return Text;
  }
  if (std::optional<std::string> Text = OfFeature(AChange)) {
    return *Text;
  }
  return HasAppointment && AChange.FVertretungslehrermerkmal == vlmZusaetzlich && AChange.FFehlstellengrund == vaKein
             ? "Zusatzlehrer"
             : MissingText(FEntry);
}

std::string TCaption::Of(const TVELAufsichtsVertretung& AChange) const {
  if (AChange.Lehrer() != nullptr) {
    return "Aufsicht geändert";
  }
  if (AChange.FVertretungsentfall != nullptr) {
    return KeyText(*AChange.FVertretungsentfall, FShort);
  }
  return AChange.FKeineVertretung ? "Keine Vertretung" : "Aufsicht fehlt";
}

std::string TCaption::Of(const TVELRaumaenderung& AChange) const {
  if (AChange.Raum() != nullptr) {
    return "Raumänderung";
  }
  if (AChange.FVertretungsentfall != nullptr) {
    return KeyText(*AChange.FVertretungsentfall, FShort);
  }
  if (AChange.FEntfaellt) {
    return "Ersatzraum entfällt";
  }
  const auto* const Absence = AChange.FFehlzeit != nullptr ? AChange.FFehlzeit->As<TVELRaumfehlzeit>() : nullptr;
  if (Absence != nullptr && Absence->FNichtVerfuegbar) {
    return "Raum nicht verfügbar";
  }
  return uDataUtils::AllClassesAbsent(FContext, AChange) ? "Fällt aus" : "Raum fehlt";
}

std::string TCaption::OfAdditional(const TVELAenderung& AChange) const {
  if (AChange.FNeuesFach == nullptr) {
    return AChange.FInformation;
  }
  std::string Text =
      AChange.FVertretungsentfall != nullptr ? AChange.FVertretungsentfall->FKuerzel : "Zusatzunterricht";
  const TVELPlanobjekt* const Missing = AChange.FFehlzeit != nullptr ? AChange.FFehlzeit->Objekt() : nullptr;
  if (AChange.Status() == aeOpen && Missing != nullptr && !Missing->FKuerzel.empty()) {
    Text.append(" ").append(MissingText(Missing->FKuerzel));
  }
  return Text;
}

/// What stands before the caption if the school tells why a teacher is missing; empty if it does not.
std::string AbsenceText(const TPlanContext& AContext, const TVELPlaneintrag& AnEntry) {
  const TVELEinstellungen& Settings = *AContext.Plan().FEinstellungen;
  const TVELAenderung* const Change = AnEntry.Aenderung();
  const auto* const Absence = Settings.FFehlgrundInCaption && Change != nullptr && Change->FFehlzeit != nullptr
                                  ? Change->FFehlzeit->As<TVELLehrerfehlzeit>()
                                  : nullptr;
  if (Absence == nullptr) {
    return {};
  }
  if (Settings.FFehlgruendeAnzeigen != paAll) {
    return "Abwesend";
  }
  if (Absence->FFehlgrund == nullptr) {
    return {};
  }
  const TVELLehrerfehlgrund& Reason = *Absence->FFehlgrund;
  return Reason.FBezeichnung.empty() ? Reason.FKuerzel : Reason.FBezeichnung;
}

}  // namespace

std::string CaptionText(const TPlanContext& AContext, const TVELPlaneintrag& AnEntry, const TVELPlanobjekt* AnObject,
                        bool AShort) {
  std::string Text = TCaption(AContext, AnEntry, AnObject, AShort).Text();
  if ((Text.empty() || Text == Open) && AnEntry.Geaendert() && AnEntry.FKlasseFehlt) {
    Text = Changed;
  }
  const std::string Absence = AShort ? AbsenceText(AContext, AnEntry) : std::string();
  if (!Absence.empty()) {
    Text = Text.empty() ? Absence : Absence + ": " + Text;
  }
  return Text;
}

std::string PublicCaption(const TPlanContext& AContext, const TVELPlaneintrag& AnEntry,
                          const TVELPlanobjekt* AnObject) {
  constexpr bool Short = true;
  std::string Text = CaptionText(AContext, AnEntry, AnObject, Short);
  return Text == Changed ? std::string() : Text;
}

}  // namespace uPlaneintraege
