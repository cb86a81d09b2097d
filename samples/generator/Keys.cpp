#include <initializer_list>

#include "School.h"
#include "uPlandaten/Besitzer.h"
#include "uSchluessel/Verzeichnisse.h"

namespace SchoolGenerator {

namespace {

/// Entries of the display system's colour table: a set high byte and a place.
constexpr TColor ButtonFace = static_cast<TColor>(0x8000000FU);
constexpr TColor Highlight = static_cast<TColor>(0x8000000DU);
constexpr std::array<TColor, 7> Colours = {0x00C0FF, 0x50B000, ButtonFace, 0xF0B0E0, NoColour, Highlight, 0x3030E0};

struct TKey {
  std::string_view Code;
  std::string_view Name;
};

template <class TKeyClass>
void FillWith(TSchool& ASchool, TVELSchluesselverzeichnis& ADirectory, std::initializer_list<TKey> AnEntries) {
  int Number = 0;
  for (const TKey& Entry : AnEntries) {
    TKeyClass& Key = ASchool.Add<TKeyClass>(ADirectory);
    Key.FKuerzel = Entry.Code;
    Key.FBezeichnung = Entry.Name;
    Key.FBrenmarkID = ++Number;
    if (Number % 2 == 0) {
      Key.FSchluessel = "0" + std::to_string(Number);
    }
    if (Number == 3) {
      Key.FGueltigVon = FirstDay;
      Key.FGueltigBis = LastDay;
    }
    if constexpr (std::is_base_of_v<TVELFarbSchluessel, TKeyClass>) {
      Key.FFarbe = ASchool.Random.Pick(Colours);
    }
    if constexpr (std::is_same_v<TKeyClass, TVELLehrerfehlgrund>) {
      Key.FVerrechnen = Number % 2 == 1;
    }
    if constexpr (std::is_same_v<TKeyClass, TVELLehrerSollAenderungsSchluessel>) {
      Key.FFaktor = Number == 1 ? 1 : 0.5 * Number;
      Key.FKategorie = Number;
      Key.FOperator = Number % 2 == 1 ? "+" : "-";
    }
  }
}

template <class TKeyClass>
void Fill(TSchool& ASchool, TVELSchluesselverzeichnisOf<TKeyClass>& ADirectory, std::initializer_list<TKey> AnEntries) {
  FillWith<TKeyClass>(ASchool, ADirectory, AnEntries);
}

void MakeKeysOfPeople(TSchool& S, TVELVerzeichnisse& D) {
  Fill(S, D.FAusfallgruende, {{"WET", "Unwetter"}, {"HZ", "Heizung ausgefallen"}, {"VERS", "Personalversammlung"}});
  Fill(S, D.FBildungsgaenge, {{"SI", "Sekundarstufe I"}, {"GOST", "Gymnasiale Oberstufe"}});
  Fill(S, D.FDienststellen, {{"HAUPT", "Hauptstelle"}, {"AUSSEN", "Außenstelle \"Am Mühlbach\""}});
  Fill(S, D.FKlassenfehlgruende,
       {{"KF", "Klassenfahrt"}, {"EX", "Exkursion; Wandertag"}, {"PR", "Praktikum"}, {"PRÜ", "Prüfung"}});
  Fill(S, D.FKlassenmerkmale, {{"BILI", "Bilingual"}, {"MUS", "Musikklasse"}, {"INK", "Inklusion"}});
  Fill(S, D.FLehrbereiche, {{"SPR", "Sprachen"}, {"NAT", "Naturwissenschaften"}, {"GES", "Gesellschaft"}});
  Fill(S, D.FLehrerfehlgruende,
       {{"K", "Krankheit"}, {"FB", "Fortbildung"}, {"KF", "Klassenfahrt"}, {"BU", "Beurlaubung"}});
  Fill(S, D.FLehrerfehlgrundDetails, {{"AT", "mit Attest"}, {"OA", "ohne Attest"}, {"EXT", "extern; ganztägig"}});
  Fill(S, D.FLehrerSollAenderungsgruende, {{"ELT", "Elternzeit"}, {"ALT", "Altersermäßigung"}});
  Fill(S, D.FLehrerSollArten, {{"ERM", "Ermäßigung"}, {"MEHR", "Mehrarbeit"}, {"FUNK", "Funktionsstunden"}});
  Fill(S, D.FLehrerSollSchluessel, {{"100", "Regelstunden"}, {"200", "Entlastung"}, {"300", "Anrechnung"}});
  Fill(S, D.FLehrertypen,
       {{"BEA", "Beamtet"}, {"ANG", "Angestellt"}, {"REF", "Referendariat"}, {"VTR", "Vertretungskraft"}});
  Fill(S, D.FRollen, {{"LTG", "Leitung"}, {"TN", "Teilnahme"}, {"GAST", "Gast"}});
  Fill(S, D.FSchulformen, {{"GY", "Gymnasium"}, {"GE", "Gesamtschule"}});
  Fill(S, D.FSchulstellen, {{"1", "Stammschule"}, {"2", "Teilstandort"}});
  Fill(S, D.FSchultypen, {{"ÖFF", "Öffentliche Schule"}, {"PRIV", "Ersatzschule"}});
  Fill(S, D.FSchulzweige, {{"MN", "Mathematisch-naturwissenschaftlich"}, {"NSP", "Neusprachlich"}});
}

void MakeKeysOfLessons(TSchool& S, TVELVerzeichnisse& D) {
  Fill(S, D.FFachschwerpunkte, {{"LIT", "Literatur"}, {"TEC", "Technik"}, {"EXP", "Experimente"}});
  Fill(S, D.FFachstatus, {{"PF", "Pflichtfach"}, {"WP", "Wahlpflichtfach"}, {"WF", "Wahlfach"}});
  Fill(S, D.FKalendereintragKategorien,
       {{"FER", "Ferien"}, {"FEI", "Feiertag"}, {"KONF", "Konferenz"}, {"ELT", "Elternabend"}, {"AUF", "Aufgabe"}});
  Fill(S, D.FProfile, {{"NAT", "Naturwissenschaftliches Profil"}, {"KUN", "Künstlerisches Profil"}});
  Fill(S, D.FRaumfehlgruende, {{"REN", "Renovierung"}, {"VERM", "Vermietung"}, {"WAS", "Wasserschaden"}});
  // The table of subjects tells room types by their places here.
  Fill(S, D.FRaumtypen,
       {{"KL", "Klassenraum"},
        {"PH", "Physikraum"},
        {"CH", "Chemieraum"},
        {"BIO", "Biologieraum"},
        {"IF", "Informatikraum"},
        {"MU", "Musikraum"},
        {"KU", "Kunstraum"},
        {"SP", "Turnhalle"},
        {"AULA", "Aula"}});
  Fill(S, D.FRessourcenkategorien, {{"TAB", "Tablets"}, {"BEA", "Beamer"}, {"WAG", "Experimentierwagen"}});
  Fill(S, D.FRessourcenmerkmale, {{"TRAG", "tragbar"}, {"FEST", "fest eingebaut"}});
  FillWith<TVELSperrungskategorie>(S, D.FSperrungskategorien, {{"TZ", "Teilzeit"}, {"FREI", "freier Tag"}});
  Fill(S, D.FUnterrichtsarten,
       {{"GK", "Grundkurs"}, {"LK1", "Leistungskurs 1"}, {"LK2", "Leistungskurs 2"}, {"AG", "Arbeitsgemeinschaft"}});
  Fill(S, D.FUnterrichtsformen, {{"KU", "Klassenunterricht"}, {"TEAM", "Team-Teaching"}, {"FÖ", "Förderunterricht"}});
  Fill(S, D.FVeranstaltungskategorien, {{"U", "Unterricht"}, {"P", "Projekt"}, {"D", "Dienst"}});
  Fill(S, D.FVeranstaltungsmerkmale, {{"WAHL", "Wahlbereich"}, {"EPO", "epochal"}});
  Fill(S, D.FVertretungsentfaelle, {{"PRÜ", "Prüfungsaufsicht"}, {"HIT", "Hitzefrei"}});
  Fill(S, D.FVertretungslehrerarten, {{"FL", "Fachlehrkraft"}, {"KL", "Klassenlehrkraft"}, {"BER", "Bereitschaft"}});
  Fill(S, D.FVertretungsqualitaeten, {{"FACH", "fachgerecht"}, {"AUFG", "mit Aufgaben"}, {"BETR", "Betreuung"}});
  Fill(S, D.FZeitpraeferenzkategorien, {{"W", "Wunsch"}, {"D", "dringend"}});
}

void MakeOwner(TVELBesitzer& AnOwner) {
  AnOwner.FEmail = "sekretariat@annette-gymnasium.example";
  AnOwner.FHomepage = "https://www.annette-gymnasium.example";
  AnOwner.FIdentifikation = "167890";
  AnOwner.FLand = "Deutschland";
  AnOwner.FDisplayName = "Annette-Gymnasium";
  AnOwner.FName1 = "Annette-von-Droste-Gymnasium";
  AnOwner.FName2 = "Städtisches Gymnasium";
  AnOwner.FName3 = "Sekundarstufen I und II";
  AnOwner.FPLZ = "48143";
  AnOwner.FRegion = "Nordrhein-Westfalen";
  AnOwner.FRemarks = "Schule \"ohne Rassismus\"; Mensa bis 14:30 geöffnet";
  // Both stand under one name in the file, of which the first is read.
  AnOwner.FDienststelle = "Hauptstelle";
  AnOwner.FSite = AnOwner.FDienststelle;
  AnOwner.FSchultyp = "GY";
  AnOwner.FStadt = "Münster";
  AnOwner.FStrasse = "Grüne Gasse 38";
  AnOwner.FName = "Annette-von-Droste-Gymnasium Münster";
  AnOwner.FVerantwortlich = "Dr. Käthe Weiß";
}

}  // namespace

void MakeKeys(TSchool& ASchool) {
  MakeOwner(*ASchool.Plan.FBesitzer);
  MakeKeysOfPeople(ASchool, *ASchool.Plan.FVerzeichnisse);
  MakeKeysOfLessons(ASchool, *ASchool.Plan.FVerzeichnisse);
}

}  // namespace SchoolGenerator
