#include "Names.h"

#include <array>
#include <utility>

#include "QuillonText.h"

namespace SchoolGenerator {

namespace {

constexpr std::array<std::string_view, 32> Girls = {
    "Anna",    "Bärbel", "Clara",     "Dörte", "Emilia", "Frieda",    "Gülşen",      "Hanna",
    "Ida",     "Jördis", "Käthe",     "Lena",  "Mia",    "Nele",      "Ömür",        "Paula",
    "Rosalie", "Sofia",  "Thea",      "Ülkü",  "Verena", "Wiebke",    "Yasmin",      "Zoë",
    "Amélie",  "Britta", "Charlotte", "Elif",  "Greta",  "Anna-Lena", "Marie Luise", "Leonie"};

constexpr std::array<std::string_view, 32> Boys = {
    "Aaron",  "Björn",    "Christoph", "David",  "Emil",     "Finn",       "Günther", "Henri",
    "Ilyas",  "Jürgen",   "Karl",      "Lukas",  "Max",      "Noah",       "Oskar",   "Philipp",
    "Rafaël", "Sören",    "Tobias",    "Umut",   "Valentin", "Willi",      "Yannik",  "Zacharias",
    "Ali",    "Benedikt", "Dominik",   "Fabian", "Jörg",     "Karl-Heinz", "Łukasz",  "Mehmet"};

constexpr std::array<std::string_view, 60> Families = {
    "Müller",   "Schmidt",    "Schneider", "Fischer",  "Weber",         "Meyer",    "Wagner",  "Becker",   "Schulz",
    "Hoffmann", "Schäfer",    "Koch",      "Bauer",    "Richter",       "Klein",    "Wolf",    "Schröder", "Neumann",
    "Schwarz",  "Zimmermann", "Braun",     "Krüger",   "Hofmann",       "Hartmann", "Lange",   "Schmitt",  "Werner",
    "Krause",   "Meier",      "Lehmann",   "Köhler",   "Herrmann",      "König",    "Walter",  "Mayer",    "Huber",
    "Kaiser",   "Fuchs",      "Peters",    "Lang",     "Scholz",        "Möller",   "Weiß",    "Jung",     "Hahn",
    "Schubert", "Yıldız",     "Friedrich", "Keller",   "Günther",       "Berger",   "Winkler", "Roth",     "Beck",
    "Lorenz",   "Baumann",    "Öztürk",    "Albrecht", "von der Heide", "D'Angelo"};

constexpr std::array<std::string_view, 12> StreetNames = {"Hauptstraße",  "Bahnhofstraße", "Gartenweg", "Am Mühlbach",
                                                          "Schlossallee", "Königsplatz",   "Rosenweg",  "Lange Gasse",
                                                          "Im Grünen",    "Uferstraße",    "Ahornring", "Zur Höhe"};

constexpr std::array<std::string_view, 8> TownNames = {"Münster", "Köln",      "Düren",  "Soest",
                                                       "Lünen",   "Warendorf", "Höxter", "Brühl"};

constexpr std::array<std::string_view, 8> RemarkTexts = {"Bitte \"Handouts\" mitbringen; Kopien liegen im Sekretariat.",
                                                         "Erste Zeile\nZweite Zeile; mit Semikolon",
                                                         "Absprache: Lehrkraft & Klasse < 30 Personen",
                                                         "Material im Schrank, Fach \"3b\"",
                                                         "Größere Gruppe – Stühle reichen nicht!",
                                                         "\tEingerückt; 'einfach' und \"doppelt\" zitiert",
                                                         "Elternbrief vom 12.09.;\r\nRückmeldung bis Freitag",
                                                         "Prüfungsraum: Ruhe bitte 🤫"};

constexpr std::array<std::pair<std::string_view, std::string_view>, 14> Letters = {{{"ä", "ae"},
                                                                                    {"ö", "oe"},
                                                                                    {"ü", "ue"},
                                                                                    {"ß", "ss"},
                                                                                    {"é", "e"},
                                                                                    {"ë", "e"},
                                                                                    {"ı", "i"},
                                                                                    {"ş", "s"},
                                                                                    {"ł", "l"},
                                                                                    {" ", "."},
                                                                                    {"'", ""},
                                                                                    {"á", "a"},
                                                                                    {"ç", "c"},
                                                                                    {"ğ", "g"}}};

}  // namespace

const std::span<const std::string_view> GirlNames = Girls;
const std::span<const std::string_view> BoyNames = Boys;
const std::span<const std::string_view> Surnames = Families;
const std::span<const std::string_view> Streets = StreetNames;
const std::span<const std::string_view> Towns = TownNames;
const std::span<const std::string_view> Remarks = RemarkTexts;

std::string PlainName(std::string_view AName) {
  std::string Name = QuillonText::ToLower(AName);
  for (const auto& [Letter, Plain] : Letters) {
    for (std::size_t Place = Name.find(Letter); Place != std::string::npos; Place = Name.find(Letter, Place)) {
      Name.replace(Place, Letter.size(), Plain);
      Place += Plain.size();
    }
  }
  return Name;
}

}  // namespace SchoolGenerator
