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

void RegisterClasses(TQuillonDataClassRegistry& ARegistry) {
  uSchluessel::RegisterClasses(ARegistry);
  ARegistry.AddClass(TVELAnrechnung::Class());
  ARegistry.AddClass(TVELAufgabe::Class());
  ARegistry.AddClass(TVELAufsicht::Class());
  ARegistry.AddClass(TVELAufsichtsVertretung::Class());
  ARegistry.AddClass(TVELAufsichtsbereich::Class());
  ARegistry.AddClass(TVELAusstattung::Class());
  ARegistry.AddClass(TVELAutomatikparameter::Class());
  ARegistry.AddClass(TVELBesitzer::Class());
  ARegistry.AddClass(TVELBlock::Class());
  ARegistry.AddClass(TVELBlockInfo::Class());
  ARegistry.AddClass(TVELEinstellungen::Class());
  ARegistry.AddClass(TVELFach::Class());
  ARegistry.AddClass(TVELFachkombination::Class());
  ARegistry.AddClass(TVELFachkombinationEintrag::Class());
  ARegistry.AddClass(TVELGebaeude::Class());
  ARegistry.AddClass(TVELKalender::Class());
  ARegistry.AddClass(TVELKalendereintrag::Class());
  ARegistry.AddClass(TVELKlasse::Class());
  ARegistry.AddClass(TVELKlassenfehlzeit::Class());
  ARegistry.AddClass(TVELKurswahl::Class());
  ARegistry.AddClass(TVELLehrer::Class());
  ARegistry.AddClass(TVELLehrerSollAenderung::Class());
  ARegistry.AddClass(TVELLehrerfach::Class());
  ARegistry.AddClass(TVELLehrerfehlzeit::Class());
  ARegistry.AddClass(TVELMitteilung::Class());
  ARegistry.AddClass(TVELPeriode::Class());
  ARegistry.AddClass(TVELPositionsschema::Class());
  ARegistry.AddClass(TVELRaum::Class());
  ARegistry.AddClass(TVELRaumaenderung::Class());
  ARegistry.AddClass(TVELRaumfehlzeit::Class());
  ARegistry.AddClass(TVELRessource::Class());
  ARegistry.AddClass(TVELRessourcenvorgabe::Class());
  ARegistry.AddClass(TVELSchueler::Class());
  ARegistry.AddClass(TVELSperrung::Class());
  ARegistry.AddClass(TVELStundentafel::Class());
  ARegistry.AddClass(TVELStundentafelEintrag::Class());
  ARegistry.AddClass(TVELTeam::Class());
  ARegistry.AddClass(TVELTeilnehmer::Class());
  ARegistry.AddClass(TVELTermin::Class());
  ARegistry.AddClass(TVELTermininhalt::Class());
  ARegistry.AddClass(TVELTermininhalte::Class());
  ARegistry.AddClass(TVELVeranstaltung::Class());
  ARegistry.AddClass(TVELVertretung::Class());
  ARegistry.AddClass(TVELZeitpraeferenz::Class());
  ARegistry.AddClass(TVELZeitrahmen::Class());
  ARegistry.AddClass(TVELZeitrahmenmarkierung::Class());
  ARegistry.AddClass(TVELZeitrahmenzeile::Class());
  ARegistry.AddClass(TVELZeitraum::Class());
  ARegistry.AddClass(TVELZusatzunterricht::Class());
  ARegistry.AddClass(TVELZuweisung::Class());
  ARegistry.AddClass(TVELPlan::Class());
}

}  // namespace uPlandaten
