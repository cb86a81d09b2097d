#include "Subjects.h"

#include <algorithm>
#include <cassert>

#include "School.h"
#include "uPlandaten/Faecher.h"
#include "uPlandaten/Teams.h"
#include "uSchluessel/Verzeichnisse.h"

namespace SchoolGenerator {

// clang-format off
const std::vector<TSubject> SubjectTable = {
    {"D", "Deutsch", fkDeutsch, 0, 0, 4, 5, TTeaching::Whole, true},
    {"E", "Englisch", fkFremdsprache, 0, 0, 4, 5, TTeaching::Whole, true},
    {"M", "Mathematik", fkMathematik, 0, 1, 4, 5, TTeaching::Whole, true},
    {"F", "Französisch", fkFremdsprache, 0, 0, 3, 7, TTeaching::Choice, true},
    {"L", "Latein", fkFremdsprache, 0, 0, 3, 7, TTeaching::Choice, true},
    {"S", "Spanisch", fkFremdsprache, 0, 0, 3, 7, TTeaching::Choice, true},
    {"BI", "Biologie", fkBiologie, 3, 1, 2, 5, TTeaching::Whole, true},
    {"PH", "Physik", fkPhysik, 1, 1, 2, 6, TTeaching::Whole, true},
    {"CH", "Chemie", fkChemie, 2, 1, 2, 7, TTeaching::Whole, true},
    {"IF", "Informatik", fkInformatik, 4, 1, 2, 8, TTeaching::Whole, true},
    {"EK", "Erdkunde", fkErdkunde, 0, 2, 2, 5, TTeaching::Whole, true},
    {"GE", "Geschichte", fkGeschichte, 0, 2, 2, 6, TTeaching::Whole, true},
    {"PK", "Politik", fkPolitik, 0, 2, 2, 5, TTeaching::Whole, false},
    {"SW", "Sozialwissenschaften", fkSozialkunde, 0, 2, 3, 11, TTeaching::None, true},
    {"PA", "Pädagogik", fkPaedagogik, 0, 2, 3, 11, TTeaching::None, true},
    {"PL", "Philosophie", fkPhilosophie, 0, 2, 2, 11, TTeaching::None, true},
    {"KR", "Religion, katholisch", fkReligionKath, 0, 2, 2, 5, TTeaching::Choice, true},
    {"ER", "Religion, evangelisch", fkReligionEvang, 0, 2, 2, 5, TTeaching::Choice, true},
    {"PP", "Praktische Philosophie", fkReligionEthik, 0, 2, 2, 5, TTeaching::Choice, false},
    {"MU", "Musik", fkMusik, 5, 3, 2, 5, TTeaching::Whole, true},
    {"KU", "Kunst", fkKunst, 6, 3, 2, 5, TTeaching::Whole, true},
    {"LI", "Literatur", fkLiteratur, 8, 3, 3, 11, TTeaching::None, true},
    {"DS", "Darstellendes Spiel", fkDarstellendesSpiel, 8, 3, 2, 11, TTeaching::None, false},
    {"SP", "Sport", fkSport, 7, 4, 3, 5, TTeaching::Groups, true},
    {"SPT", "Sporttheorie", fkSportTheorie, 0, 4, 2, 11, TTeaching::None, false},
    {"WI", "Wirtschaft", fkWirtschaft, 0, 2, 2, 11, TTeaching::None, false},
    {"PSY", "Psychologie", fkPsychologie, 0, 2, 2, 11, TTeaching::None, false},
    {"RE", "Recht", fkRecht, 0, 2, 2, 11, TTeaching::None, false},
    {"FÖD", "Förderung Deutsch", fkDeutsch, 0, 0, 1, 5, TTeaching::Whole, false},
    {"FÖM", "Förderung Mathematik", fkMathematik, 0, 1, 1, 5, TTeaching::Whole, false},
    {"KL", "Klassenstunde", fkKeine, 0, 5, 1, 5, TTeaching::Whole, false},
    {"AG", "Arbeitsgemeinschaft; \"nachmittags\"", fkKeine, 8, 3, 2, 5, TTeaching::None, false},
    {"VB", "Vertretungsbereitschaft", fkKeine, 0, 5, 1, 5, TTeaching::None, false},
    {"KO", "Konferenz", fkKeine, 8, 5, 1, 5, TTeaching::None, false}};
// clang-format on

std::size_t SubjectOf(std::string_view ACode) {
  const auto Found = std::ranges::find(SubjectTable, ACode, &TSubject::Code);
  assert(Found != SubjectTable.end());
  return static_cast<std::size_t>(Found - SubjectTable.begin());
}

void MakeSubjects(TSchool& ASchool) {
  constexpr std::array<TColor, 6> Colours = {0x80D0FF, 0xA0E0A0, 0xE0C090, 0xC0A0F0, 0x90F0F0, NoColour};
  TVELVerzeichnisse& Keys = *ASchool.Plan.FVerzeichnisse;
  for (const TSubject& Row : SubjectTable) {
    auto& Subject = ASchool.Add<TVELFach>(ASchool.Plan.FFaecher);
    ASchool.Subjects.push_back(&Subject);
    Subject.FKuerzel = Row.Code;
    Subject.FBezeichnung = Row.Name;
    Subject.FBrenmarkID = 100 + ASchool.Plan.FFaecher.Count();
    Subject.FFarbe = Colours.at(static_cast<std::size_t>(Row.Team));
    Subject.FHintergrundfarbe = Row.Team == 1;
    Subject.FFachkategorie = Row.Category;
    Subject.FFachfolge = ASchool.Plan.FFaecher.Count();
    Subject.FSchluessel = "F" + std::string(Row.Code);
    Subject.FTeams.Append(ASchool.Plan.FTeams.GetItem(Row.Team));
    Subject.FFachstatus = Keys.FFachstatus.GetItem(Row.Teaching == TTeaching::Choice ? 1 : 0);
    Subject.FVertretungsbereitschaft = Row.Code == "VB";
    Subject.FKeineVertretung = Row.Code == "VB" || Row.Code == "AG";
    Subject.FKeineAusfallstunde = Row.Code == "KO";
    Subject.FMaxNachmittagsStdAnzahl = Row.Hours > 3 ? 1 : 2;
    Subject.FLehrerSollSchluessel = Row.Code == "KO" ? Keys.FLehrerSollSchluessel.GetItem(1) : nullptr;
    Subject.FFaktor = Row.Code == "VB" ? 0.25 : 1;
    Subject.FBemerkung = ASchool.SomeRemark(10);
  }
}

}  // namespace SchoolGenerator
