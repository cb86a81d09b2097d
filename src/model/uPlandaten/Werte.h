#pragma once

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "QuillonDataObjects/Row.h"
#include "QuillonDateTime.h"

/// Dates, times and both are day numbers of one type; 0 means not set.
using TVELDate = TQuillonDateTime;
using TVELTime = TQuillonDateTime;
using TVELDateTime = TQuillonDateTime;

/// Colour of the display system: red in the low byte, then green and blue; a set high byte means an entry of the
/// system's own table.
using TColor = std::int32_t;
inline constexpr TColor NoColour = 0x1FFFFFFF;

/// Level of a class; -1 for none.
using TVELKlassenstufe = std::int32_t;

enum TVELDay : std::uint8_t {
  velNoDay,
  velMonday,
  velTuesday,
  velWednesday,
  velThursday,
  velFriday,
  velSaturday,
  velSunday
};
/// An ordinary class, or a course year.
enum TVELKlassenmodus : std::uint8_t { cmClass, cmCourse };
enum TVELTagesabstand : std::int32_t { velDefault, vel1day, vel2Days, vel3Days, velWeekend1day };
enum TVELGeschlecht : std::uint8_t { gUnbekannt, gMaennlich, gWeiblich };
/// Members that are not used any more keep their values.
enum TVELFachkategorie : std::uint8_t {
  fkKeine,
  fkFremdsprache,
  fkReligionEthik,
  fkDeutsch,
  fkMathematik,
  fkKunst,
  fkMusik,
  fkSport,
  fkNatur_notused,
  fkGK_notused,
  fkInformatik,
  fkPhilosophie,
  fkGeschichte,
  fkPhysik,
  fkChemie,
  fkBiologie,
  fkErdkunde,
  fkSozialkunde,
  fkWirtschaft,
  fkPolitik,
  fkDarstellendesSpiel,
  fkReligionEvang,
  fkReligionKath,
  fkEnglisch_notused,
  fkFranzoesisch_notused,
  fkGriechisch_notused,
  fkLatein_notused,
  fkTechnik,
  fkPaedagogik,
  fkSportTheorie,
  fkBWLRW,
  fkBWLVWL,
  fkVWL,
  fkSeminar,
  fkGesundheit,
  fkPsychologie,
  fkRecht,
  fkLiteratur
};
enum TVELTerminattribut : std::uint8_t {
  tmFix,
  tmRaumFix,
  tmNichtTeilbar,
  tmVonAutomatikErzeugt,
  tmNew,
  tmPauseZaehlt
};
enum TVELVeranstaltungsattribut : std::uint8_t {
  vmRaumIstFix,
  vmFaktorAutomBerechnen,
  vmGleicherFaktor,
  vmVerschiedeneLehrer,
  vmFaktorBeachten,
  vmBlockUnabhaengig,
  vmLehrerAuto,
  vmIgnoriereStatistik,
  vmIgnoriereAutomatik,
  vmRaumAuto,
  vmZuweisungBlockUnabhaengig
};
enum TVELEckStdPosition : std::uint8_t { espKeineAngabe, espAnfangOderEnde, espAnfang, espEnde };
enum TVELTagesposition : std::uint8_t { dpGanztags, dpVormittags, dpNachmittags, dpUserdefined };
enum TVELAenderungsStatus : std::uint8_t {
  aeOpen,
  aeFinished,
  aePublished,
  aeNotPublic,
  aeNotPublicAbsence,
  aeInvalid,
  aeClosed,
  aeNotified
};
/// Why there is a gap in the plan.
enum TVELFehlstellengrund : std::uint8_t {
  vaKein,
  vaLehrerFehlzeit,
  vaKlassenFehlzeit,
  vaRaumFehlzeit,
  vaWeggezogen,
  vaVerschoben,
  vaFreigestellt,
  vaFehlstelle,
  vaLehrerRaumTausch,
  vaTausch,
  vaPruefung
};
/// What a substitution does.
enum TVELVertretungsmerkmal : std::uint8_t {
  vmKein,
  vmAenderung,
  vmLehrerRaumTausch,
  vmLehrerTausch,
  vmRaumTausch,
  vmVorgezogen,
  vmZusaetzlich,
  vmFaelltAus,
  vmKlasseFrei,
  vmEntfaellt,
  vmWeggezogen,
  vmKlasseFehlt
};
enum TVELVertretungslehrermerkmal : std::uint8_t {
  vlmKein,
  vlmVerschoben,
  vlmZusaetzlich,
  vlmFreigestellt,
  vlmMehrfach
};
enum TVELVerrechnungsart : std::uint8_t { vaKeine, vaAusfallstunde, vaVertretungsstunde };
enum TVELErfuellt : std::int8_t {
  velNotStarted,
  vel25Complete,
  vel50Complete,
  vel75Complete,
  velCompleted,
  velCancelled
};
enum TVELKalenderEintragStatus : std::int8_t { esBestaetigt, esVorlaeufig, esAbgebrochen };
enum TVELVisibility : std::int8_t { velPublic, velMembersOnly };
enum TVELTeilnehmerArt : std::uint8_t { tnPerson, tnGruppe, tnLehrer, tnSchueler, tnRaum, tnRessource, tnKurs };
enum TVELStatistikkontrolle : std::uint8_t { skStandard, skRLP };
/// How a place in the day is shown; only the standard value has a name here.
enum TVELStundenanzeige : std::uint8_t { dtStdPosUndZeit = 2 };
enum TVELStatistikArt : std::uint8_t { saTagesbezogen, saWochenbezogen, saFaktorbezogen };
enum TVELPublishAbsences : std::uint8_t { paAll, paAbsent };
enum TVELUnterrichtseinheit : std::uint8_t { ueStunden, ueStundenUndMinuten, ueEinheiten, ueMinuten };

using TVELDays = TQuillonSet<TVELDay, std::uint8_t>;
using TVELTerminattribute = TQuillonSet<TVELTerminattribut, std::uint8_t>;
using TVELVeranstaltungsattribute = TQuillonSet<TVELVeranstaltungsattribut, std::uint16_t>;

/// A set of numbers from 1 to ACount, stored as a text of ACount characters "0" and "1", number 1 first.
/// A text of any other length is the empty set.
template <std::size_t ACount>
class TVELNumberSet {
 public:
  static constexpr int Count = static_cast<int>(ACount);

  static TVELNumberSet All() {
    TVELNumberSet Set;
    Set.FBits.set();
    return Set;
  }
  bool IsEmpty() const { return FBits.none(); }
  bool Contains(int ANumber) const { return ANumber >= 1 && ANumber <= Count && FBits[Place(ANumber)]; }
  void Include(int ANumber) { FBits.set(Place(ANumber)); }
  void Exclude(int ANumber) { FBits.reset(Place(ANumber)); }
  /// The numbers that stand in both sets.
  friend TVELNumberSet operator&(TVELNumberSet A, const TVELNumberSet& B) {
    A.FBits &= B.FBits;
    return A;
  }
  friend bool operator==(const TVELNumberSet&, const TVELNumberSet&) = default;

  friend std::string_view ToText(const TVELNumberSet& AValue, std::string& AScratch) {
    AScratch.assign(ACount, '0');
    for (std::size_t I = 0; I < ACount; ++I) {
      AScratch[I] = AValue.FBits[I] ? '1' : '0';
    }
    return AScratch;
  }
  friend void FromText(TVELNumberSet& AValue, std::string_view AText) {
    AValue.FBits.reset();
    for (std::size_t I = 0; AText.size() == ACount && I < ACount; ++I) {
      AValue.FBits[I] = AText[I] == '1';
    }
  }

 private:
  static std::size_t Place(int ANumber) { return static_cast<std::size_t>(ANumber - 1); }

  std::bitset<ACount> FBits;
};

/// Weeks of a school year.
using TVELWeeks = TVELNumberSet<56>;
/// Half-years in which a course is chosen.
using TVELGewaehlt = TVELNumberSet<6>;
