#include "uPlandaten/Termine.h"

#include <initializer_list>

#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Perioden.h"
#include "uPlandaten/Plan.h"
#include "uPlandaten/Raeume.h"
#include "uPlandaten/Relationen.h"
#include "uPlandaten/Ressourcen.h"
#include "uPlandaten/Veranstaltungen.h"

const TQuillonDataClass& TVELAbstrakterTermin::Class() {
  using T = TVELAbstrakterTermin;
  // clang-format off
  static const TQuillonDataClass Class = DescribeAbstractClass<T, TVELBasisObject>("TVELAbstrakterTermin")
      .DateTime<&T::FAltStart>("AltStart")
      .DateTime<&T::FAltEnde>("AltEnd")
      .LongInt<&T::FAltWochentag>("AltWeekday")
      .DateTime<&T::FStart>("Start")
      .DateTime<&T::FEnde>("End")
      .LongInt<&T::FWochentag>("Weekday")
      .Boolean<&T::FExtern>("External")
      .String<&T::FGID>("GID")
      .String<&T::FOID>("OID");
  // clang-format on
  return Class;
}

namespace {

bool HasAlternativeTiming(const TVELPlan* APlan) { return APlan != nullptr && APlan->FAlternativeTiming; }

}  // namespace

TVELDateTime TVELAbstrakterTermin::Start() const { return HasAlternativeTiming(Plan()) ? FAltStart : FStart; }

TVELDateTime TVELAbstrakterTermin::Ende() const { return HasAlternativeTiming(Plan()) ? FAltEnde : FEnde; }

TVELDay TVELAbstrakterTermin::Wochentag() const { return HasAlternativeTiming(Plan()) ? FAltWochentag : FWochentag; }

void TVELAbstrakterTermin::ClearSchedule() {
  Set(FStart, TVELDateTime(0));
  Set(FEnde, TVELDateTime(0));
  Set(FWochentag, velNoDay);
}

bool TVELAbstrakterTermin::AltTiming() const {
  return FAltWochentag != velNoDay && (FAltWochentag != FWochentag || FAltEnde != FEnde || FAltStart != FStart);
}

void TVELAbstrakterTermin::Sort() {
  if (auto* const List = dynamic_cast<TVELTerminliste*>(FOwner)) {
    List->SortByTime();
  }
}

const TQuillonDataClass& TVELTermin::Class() {
  using T = TVELTermin;
  // clang-format off
  static const TQuillonDataClass Class = DescribeClass<T, TVELAbstrakterTermin>("Time", "Termin")
      .Byte<&T::FAttribute>("Attributes").AlwaysWritten()
      .String<&T::FBemerkung>("Comment")
      .String<&T::FBlockID>("Block")
      .String<&T::FIntern>("Internal")
      .List<&T::FJoker>("Wildcard")
      .List<&T::FRaeume>("Rooms")
      .List<&T::FLehrer>("Teacher")
      .List<&T::FRessourcen>("Resources")
      .LongInt<&T::FSchiene>("Focus")
      .Reference<&T::FPeriode>("Period")
      .Single<&T::FSollDauer>("SetDuration").Required()
      .String<&T::FWochen>("Weeks").AlwaysWritten();
  // clang-format on
  return Class;
}

void TVELTermin::FreeProperties() {
  TVELMoleculeList::RemoveTermin(*this);
  if (uPlandaten::FollowsRelations(*this)) {
    RemoveRelations();
  }
  TVELAbstrakterTermin::FreeProperties();
}

void TVELTermin::AddRelations() {
  for (const TQuillonDataList* List :
       std::initializer_list<const TQuillonDataList*>{&FLehrer, &FRaeume, &FRessourcen}) {
    uPlandaten::SetRelations(*this, {}, List->Items());
  }
}

void TVELTermin::RemoveRelations() {
  for (const TQuillonDataList* List :
       std::initializer_list<const TQuillonDataList*>{&FLehrer, &FRaeume, &FRessourcen}) {
    uPlandaten::SetRelations(*this, List->Items(), {});
  }
}

TVELMolecule* TVELTermin::Molecule() {
  TVELPlan* const Owner = Plan();
  return Owner != nullptr ? Owner->FMolecules.Find(*this) : nullptr;
}

TVELVeranstaltung* TVELTermin::Veranstaltung() const {
  return dynamic_cast<TVELVeranstaltung*>(HasOwner() ? FOwner->FOwner : nullptr);
}

TVELFach* TVELTermin::Fach() const {
  const TVELVeranstaltung* const Lesson = Veranstaltung();
  return Lesson != nullptr ? Lesson->FFach : nullptr;
}

std::span<TQuillonDataObject* const> TVELTermin::Klassen() const {
  const TVELVeranstaltung* const Lesson = Veranstaltung();
  return Lesson != nullptr ? Lesson->FKlassen.Items() : std::span<TQuillonDataObject* const>();
}

std::span<TQuillonDataObject* const> TVELTermin::Schueler() const {
  const TVELVeranstaltung* const Lesson = Veranstaltung();
  return Lesson != nullptr ? Lesson->FSchueler.Items() : std::span<TQuillonDataObject* const>();
}

TVELRaumtyp* TVELTermin::Raumtyp() const {
  const TVELVeranstaltung* const Lesson = Veranstaltung();
  return Lesson != nullptr ? Lesson->FRaumtyp : nullptr;
}

bool TVELTermin::Reoccur() const {
  const TVELVeranstaltung* const Lesson = Veranstaltung();
  return Lesson != nullptr && Lesson->FReoccur;
}

TVELZeitrahmen* TVELTermin::Zeitrahmen() const {
  if (const TVELVeranstaltung* const Lesson = Veranstaltung()) {
    return Lesson->Zeitrahmen();
  }
  return StandardTimeframe();
}

TVELPeriode* TVELTermin::GetPeriode() const {
  const TVELVeranstaltung* const Lesson = Veranstaltung();
  return FPeriode != nullptr || Lesson == nullptr ? FPeriode : Lesson->FPeriode;
}

TVELWeeks TVELTermin::Weeks() const {
  if (FPeriode != nullptr) {
    return FPeriode->FWochen;
  }
  const TVELVeranstaltung* const Lesson = Veranstaltung();
  return !FWochen.IsEmpty() || Lesson == nullptr ? FWochen : Lesson->Weeks();
}

std::string TVELTermin::Raum() const { return FRaeume.JoinCodes(); }

std::string TVELTermin::KursBemerkung() const {
  const TVELVeranstaltung* const Lesson = Veranstaltung();
  if (Lesson == nullptr || Lesson->FBemerkung.empty()) {
    return FBemerkung;
  }
  return FBemerkung.empty() ? Lesson->FBemerkung : Lesson->FBemerkung + " " + FBemerkung;
}

bool TVELTermin::IgnoreRoom() const {
  const TVELVeranstaltung* const Lesson = Veranstaltung();
  return Lesson != nullptr && Lesson->IgnoreRoom();
}

void TVELTermin::Clear() {
  FLehrer.Clear();
  FRaeume.Clear();
  FRessourcen.Clear();
  FJoker.Clear();
}

void TVELTermin::Clear(const TQuillonDataList& AValues) {
  for (TQuillonDataList* List : std::initializer_list<TQuillonDataList*>{&FLehrer, &FRaeume, &FRessourcen, &FJoker}) {
    List->RemoveAll(AValues);
  }
}

void TVELTermin::ClearRoom(const TVELRaum* AValue) { FRaeume.Remove(AValue); }

void TVELTermin::ClearTeacher(const TVELLehrer* AValue) { FLehrer.Remove(AValue); }
