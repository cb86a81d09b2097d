#include "uPlaneintraege/Texte.h"

#include "uPlandaten/Faecher.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Raeume.h"
#include "uPlandaten/Termine.h"
#include "uPlandaten/Veranstaltungen.h"
#include "uPlandaten/Vertretungen.h"
#include "uPlaneintraege/Mengen.h"

namespace uPlaneintraege {

namespace {

void Append(std::string& AText, const std::string& APart, const char* APrefix = "", const char* ASuffix = "") {
  if (!APart.empty()) {
    AText.append(AText.empty() ? "" : " ").append(APrefix).append(APart).append(ASuffix);
  }
}

/// The new ones, the missing ones, the others.
template <class T>
std::string PartiesText(const std::vector<T*>& AnAll, const std::vector<T*>& ANew, const std::vector<T*>& AMissing) {
  std::vector<T*> Told = ANew;
  Merge(Told, AMissing);
  std::vector<T*> Others;
  Merge(Others, AnAll, Told);
  std::string Text;
  Append(Text, ListText(ANew), "+");
  Append(Text, ListText(AMissing), "(", ")");
  Append(Text, ListText(Others));
  return Text;
}

std::string TitleOf(const TVELPlaneintrag& AnEntry) {
  const TVELVeranstaltung* const Lesson = AnEntry.FTermin != nullptr ? AnEntry.FTermin->Veranstaltung() : nullptr;
  return Lesson != nullptr ? CourseTitle(*Lesson) : std::string();
}

std::string CompressedSubjects(const TVELPlaneintrag& AnEntry) {
  std::vector<TVELFach*> Subjects;
  for (const TVELTermin* const Termin : AnEntry.FCompressed) {
    Join(Subjects, Termin->Fach());
  }
  return ListText(Subjects);
}

}  // namespace

std::string CourseTitle(const TVELVeranstaltung& ALesson) { return ALesson.PlainKursTitel() + ALesson.FExtern; }

std::string KlassenText(const TVELPlaneintrag& AnEntry) { return ListText(AnEntry.FKlassen); }

std::string LehrerText(const TVELPlaneintrag& AnEntry) {
  return PartiesText(AnEntry.FLehrer, AnEntry.FNeueLehrer, AnEntry.FFehlendeLehrer);
}

std::string RaumText(const TVELPlaneintrag& AnEntry) {
  std::vector<TVELRaum*> Missing;
  Merge(Missing, AnEntry.FFehlendeRaeume, AnEntry.FNeueRaeume);
  return PartiesText(AnEntry.FRaeume, AnEntry.FNeueRaeume, Missing);
}

std::string FachText(const TVELPlaneintrag& AnEntry) {
  const std::vector<TVELFach*>& Missing = AnEntry.FFehlendeFaecher;
  const TVELFach* const Own = AnEntry.FTermin != nullptr ? AnEntry.FTermin->Fach() : nullptr;
  const std::string Title = TitleOf(AnEntry);
  const TVELVertretung* const Substitution = AnEntry.Vertretung();
  std::string Text;
  if (Substitution != nullptr && Substitution->FNeuerTermin != nullptr && Substitution->FNeuesFach == nullptr) {
    Append(Text, Title);
    Append(Text, ListText(Missing), "(", ")");
    return Text;
  }
  const TVELAenderung* const Change = AnEntry.Aenderung();
  const TVELFach* const New = Change != nullptr ? Change->FNeuesFach : nullptr;
  if (New != nullptr && !Holds(AnEntry.FNeueFaecher, New)) {
    Append(Text, New->FKuerzel);
  }
  Append(Text, ListText(AnEntry.FNeueFaecher), "+");
  Append(Text, !Missing.empty() && Missing.front() == Own ? Title : ListText(Missing), "(", ")");
  if (!AnEntry.FCompressed.empty()) {
    Append(Text, CompressedSubjects(AnEntry));
  } else if (Own == nullptr || !Holds(Missing, Own)) {
    Append(Text, Title);
  }
  return Text;
}

}  // namespace uPlaneintraege
