#include "uPlandaten/Vertretungen.h"

#include "uPlandaten/Aufsichten.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Plan.h"
#include "uPlandaten/Raeume.h"
#include "uPlandaten/Termine.h"

const TQuillonDataClass& TVELVertretung::Class() {
  using T = TVELVertretung;
  // clang-format off
  static const TQuillonDataClass Class = DescribeClass<T, TVELAenderung>("Stand-in", "Vertretung")
      .ReferenceInto<&T::FNeu, TVELLehrer>("Teacher").Until("6.0.114")
      .ReferenceInto<&T::FNeu, TVELRaum>("Room").Until("6.0.114")
      .Boolean<&T::FFuellen>("Fill")
      .Byte<&T::FFehlstellengrund>("GapReason")
      .List<&T::FFehlend>("GapObjects").Until("6.0.114").Merged()
      .Byte<&T::FVertretungsmerkmal>("StandInFeature")
      .Byte<&T::FVerrechnungsart>("SettlementType")
      .Boolean<&T::FKonflikt>("Conflict")
      .Reference<&T::FNeuerTermin>("NewTime")
      .DateTime<&T::FNeuesTerminDatum>("NewTimeDate")
      .Reference<&T::FTauschTermin>("MovedTime")
      .Boolean<&T::FTauschTerminLehrer>("ChangeTeacher")
      .Boolean<&T::FTauschTerminRaum>("ChangeRoom")
      .Byte<&T::FVertretungslehrermerkmal>("StandInTeacherFeature")
      .Reference<&T::FVertretungsqualitaet>("StandInQuality")
      .Reference<&T::FVertretungslehrerart>("StandInTeacherType")
      .Hook<&T::Upgrade>();
  // clang-format on
  return Class;
}

std::string_view TVELVertretung::GetFehlstellengrund() const {
  switch (FFehlstellengrund) {
    case vaLehrerFehlzeit:
      return "Lehrer-Fehlzeit";
    case vaKlassenFehlzeit:
      return "Klassen-Fehlzeit";
    case vaRaumFehlzeit:
      return "Raumfehlzeit";
    case vaVerschoben:
      return "Verschiebung";
    case vaFreigestellt:
      return "Freigestellt";
    case vaFehlstelle:
      return "Fehlstelle";
    default:
      return {};
  }
}

std::string_view TVELVertretung::GetVertretungsmerkmal() const {
  switch (FVertretungsmerkmal) {
    case vmAenderung:
      return "Änderung";
    case vmVorgezogen:
      return "Verschoben von";
    case vmZusaetzlich:
      return "Zusätzlich";
    case vmFaelltAus:
      return "Fällt aus";
    case vmKlasseFrei:
      return "Klasse frei";
    case vmWeggezogen:
      return "Verschoben auf";
    case vmKlasseFehlt:
      return "Klasse fehlt";
    default:
      return {};
  }
}

TVELDateTime TVELVertretung::NeuStart() const { return Termin() != nullptr ? FNeuesTerminDatum : TVELDateTime(0); }

TVELDateTime TVELVertretung::NeuEnde() const {
  return NeuStart() != 0 ? TVELDateTime(FNeuesTerminDatum + (FEnde - FStart)) : TVELDateTime(0);
}

TVELLehrer* TVELVertretung::Vertreter() const { return FNeu.First<TVELLehrer>(); }

TVELLehrer* TVELVertretung::Fehlender() const { return FFehlend.First<TVELLehrer>(); }

void TVELVertretung::Upgrade() {
  const TVELPlan* const Owner = Plan();
  if (Owner != nullptr && Owner->FDataformatVersion.empty()) {
    if (FVertretungslehrermerkmal > vlmMehrfach) {
      FVertretungslehrermerkmal = vlmZusaetzlich;
      FVertretungsmerkmal = vmAenderung;
    }
    if (FNeuerTermin != nullptr) {
      FVertretungsmerkmal = vmAenderung;
    }
  }
  if (FileRelease() < "6.0.120") {
    const bool SwapsBoth = FVertretungsmerkmal == vmLehrerRaumTausch;
    FTauschTerminLehrer = FTauschTerminLehrer || SwapsBoth || FVertretungsmerkmal == vmLehrerTausch;
    FTauschTerminRaum = FTauschTerminRaum || SwapsBoth || FVertretungsmerkmal == vmRaumTausch;
    if ((FTauschTerminLehrer || FTauschTerminRaum) && FVertretungsmerkmal == vmKein) {
      FVertretungsmerkmal = vmLehrerRaumTausch;
    }
  }
}

const TQuillonDataClass& TVELAufsichtsVertretung::Class() {
  using T = TVELAufsichtsVertretung;
  // clang-format off
  static const TQuillonDataClass Class = DescribeClass<T, TVELAenderung>("SupervisionStandIn", "Aufsichtsvertretung")
      .ReferenceInto<&T::FNeu, TVELLehrer>("Teacher").Until("6.0.114")
      .Boolean<&T::FKonflikt>("Conflict")
      .Boolean<&T::FKeineVertretung>("NoStand-In")
      .Reference<&T::FATermin>("Supervision").Until("6.0.114").KeepsCurrent();
  // clang-format on
  return Class;
}

TVELLehrer* TVELAufsichtsVertretung::Lehrer() const { return FNeu.First<TVELLehrer>(); }

const TQuillonDataClass& TVELRaumaenderung::Class() {
  using T = TVELRaumaenderung;
  // clang-format off
  static const TQuillonDataClass Class = DescribeClass<T, TVELAenderung>("RoomChange", "Raumänderung")
      .ReferenceInto<&T::FNeu, TVELRaum>("Room").Until("6.0.114")
      .Boolean<&T::FKonflikt>("Conflict")
      .Boolean<&T::FEntfaellt>("NoStand-In");
  // clang-format on
  return Class;
}

TVELRaum* TVELRaumaenderung::Raum() const { return FNeu.First<TVELRaum>(); }
