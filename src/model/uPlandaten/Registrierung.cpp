#include "QuillonDataObjects/Registry.h"
#include "uPlandaten/Aenderungen.h"
#include "uPlandaten/Anrechnungen.h"
#include "uPlandaten/Aufsichten.h"
#include "uPlandaten/Automatik.h"
#include "uPlandaten/Besitzer.h"
#include "uPlandaten/Bloecke.h"
#include "uPlandaten/Einstellungen.h"
#include "uPlandaten/Faecher.h"
#include "uPlandaten/Fehlzeiten.h"
#include "uPlandaten/Gebaeude.h"
#include "uPlandaten/Kalender.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Perioden.h"
#include "uPlandaten/Plan.h"
#include "uPlandaten/Raeume.h"
#include "uPlandaten/Ressourcen.h"
#include "uPlandaten/Schueler.h"
#include "uPlandaten/Stundentafeln.h"
#include "uPlandaten/Teams.h"
#include "uPlandaten/Termine.h"
#include "uPlandaten/Veranstaltungen.h"
#include "uPlandaten/Vertretungen.h"
#include "uPlandaten/Zeitpraeferenzen.h"
#include "uPlandaten/Zeitrahmen.h"
#include "uSchluessel/Verzeichnisse.h"

namespace uPlandaten {

template <class TItem>
const TQuillonDataClass& ItemClassOf() {
  return TItem::Class();
}

namespace {

// The lists know their items by name only: this is where what they hold is known.
template <class... TLists>
void RegisterLists(TQuillonDataClassRegistry& ARegistry) {
  (ARegistry.AddListClass(TLists::Class(), &ItemClassOf<typename TLists::TItemClass>), ...);
}

}  // namespace

void RegisterClasses(TQuillonDataClassRegistry& ARegistry) {
  uSchluessel::RegisterClasses(ARegistry);
  ARegistry.AddClasses<TVELAnrechnung, TVELAufgabe, TVELAufsicht, TVELAufsichtsVertretung, TVELAufsichtsbereich,
                       TVELAusstattung, TVELAutomatikparameter, TVELBesitzer, TVELBlock, TVELBlockInfo,
                       TVELEinstellungen, TVELFach, TVELFachkombination, TVELFachkombinationEintrag, TVELGebaeude,
                       TVELKalender, TVELKalendereintrag, TVELKlasse, TVELKlassenfehlzeit, TVELKurswahl, TVELLehrer,
                       TVELLehrerSollAenderung, TVELLehrerfach, TVELLehrerfehlzeit, TVELMitteilung, TVELPeriode,
                       TVELPositionsschema, TVELRaum, TVELRaumaenderung, TVELRaumfehlzeit, TVELRessource,
                       TVELRessourcenvorgabe, TVELSchueler, TVELSperrung, TVELStundentafel, TVELStundentafelEintrag,
                       TVELTeam, TVELTeilnehmer, TVELTermin, TVELTermininhalt, TVELTermininhalte, TVELVeranstaltung,
                       TVELVertretung, TVELZeitpraeferenz, TVELZeitrahmen, TVELZeitrahmenmarkierung,
                       TVELZeitrahmenzeile, TVELZeitraum, TVELZusatzunterricht, TVELZuweisung, TVELPlan>();
  RegisterLists<TVELStammobjektliste, TVELPlanobjektliste, TVELTeamsliste, TVELGebaeudeliste,
                TVELAufsichtsbereichsliste, TVELPeriodenliste, TVELZeitraumliste, TVELStundentafelliste, TVELFachliste,
                TVELRessourcenliste, TVELLehrerfachliste, TVELLehrerSollAenderungsListe, TVELRessourcenvorgaben,
                TVELAusstattungsliste, TVELAufsichtsliste, TVELZeitrahmenzeilenliste, TVELZeitrahmenmarkierungsliste,
                TVELPositionsschemata, TVELAbstraktePraeferenzenliste, TVELZeitPraeferenzenliste, TVELZuweisungsliste,
                TVELAufgabenListe, TVELTeilnehmerListe, TVELKurswahlliste, TVELFachkombinationeintragliste,
                TVELStundentafelEintragsliste, TVELKlassenliste, TVELLehrerliste, TVELRaumliste, TVELSchuelerliste,
                TVELVeranstaltungsliste, TVELTerminliste, TVELBlockliste, TVELBlockInfoListe, TVELZeitrahmenliste,
                TVELAnrechnungsliste, TVELFehlzeitenliste, TVELAenderungsliste, TVELKalenderEintragList>(ARegistry);
}

}  // namespace uPlandaten
