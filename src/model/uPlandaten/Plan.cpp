#include "uPlandaten/Plan.h"

#include <algorithm>
#include <unordered_set>
#include <vector>

#include "QuillonText.h"
#include "uPlandaten/Aufsichten.h"
#include "uPlandaten/Automatik.h"
#include "uPlandaten/Besitzer.h"
#include "uPlandaten/Einstellungen.h"
#include "uPlandaten/Faecher.h"
#include "uPlandaten/Kalender.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Ordnungen.h"
#include "uPlandaten/Raeume.h"
#include "uPlandaten/Relationen.h"
#include "uPlandaten/Ressourcen.h"
#include "uPlandaten/Schueler.h"
#include "uPlandaten/Upgrades.h"
#include "uPlandaten/Zeitrahmen.h"
#include "uSchluessel/Verzeichnisse.h"

namespace {

/// A release that went out by mistake, with a number higher than the current one.
constexpr std::string_view StrayRelease = "7.0.163";

}  // namespace

const TQuillonDataClass& TVELPlan::Class() {
  using T = TVELPlan;
  // clang-format off
  static const TQuillonDataClass Class = DescribeClass<T, TVELDataStorage>("TVELPlan")
      .String<&T::FDataformatVersion>("DataformatRelease").WrittenAs(CurrentRelease)
      .Hook<&T::CheckRelease>()
      .String<&T::FProductVersion>("ProductRelease").WrittenAs(VELMORA_PRODUCT_RELEASE)
      .String<&T::FInternalVersion>("InternalRelease").AlwaysWritten()
      .List<&T::FTeams>("Groups")
      .List<&T::FAenderungen>("Changes")
      .List<&T::FAnrechnungen>("Totals")
      .List<&T::FAufsichtsbereiche>("SupervisionAreas")
      .Object<&T::FAutomatik>("AutomaticScheduling")
      .List<&T::FGebaeude>("Building")
      .Object<&T::FBesitzer>("Owner")
      .List<&T::FBlockungen>("Blocks")
      .Object<&T::FEinstellungen>("Settings")
      .List<&T::FFaecher>("Subjects")
      .List<&T::FFehlzeiten>("AbsenceTimes")
      .Object<&T::FKalender>("Calendar")
      .List<&T::FKlassen>("Classes")
      .List<&T::FLehrer>("Teacher")
      .List<&T::FPerioden>("Periods")
      .List<&T::FRaeume>("Rooms")
      .List<&T::FRessourcen>("Resources")
      .List<&T::FZeitpraeferenzvorlagen>("TimePreferenceTemplates")
      .List<&T::FSchueler>("Students")
      .List<&T::FStundentafeln>("LessonsTable")
      .List<&T::FVeranstaltungen>("Events")
      .Object<&T::FVerzeichnisse>("Directories")
      .List<&T::FZeitraeume>("TimeWindowList")
      .List<&T::FZeitrahmen>("TimeFrame")
      .List<&T::FZuweisungen>("AssignmentList");
  // clang-format on
  return Class;
}

void TVELPlan::InitProperties() {
  TVELDataStorage::InitProperties();
  FDataformatVersion = CurrentRelease;
  FProductVersion = VELMORA_PRODUCT_RELEASE;
  FAutomatik.Take(QuillonDataObjects::Create<TVELAutomatikparameter>(this), *this);
  FBesitzer.Take(QuillonDataObjects::Create<TVELBesitzer>(this), *this);
  FEinstellungen.Take(QuillonDataObjects::Create<TVELEinstellungen>(this), *this);
  FKalender.Take(QuillonDataObjects::Create<TVELKalender>(this), *this);
  FVerzeichnisse.Take(QuillonDataObjects::Create<TVELVerzeichnisse>(this), *this);
  InitObjectEvents();
}

void TVELPlan::ClearProperties() {
  TVELDataStorage::ClearProperties();
  FDataformatVersion = CurrentRelease;
  FProductVersion = VELMORA_PRODUCT_RELEASE;
  FMolecules.Clear();
  // The owner and the automatic parameters keep their values.
  const auto ClearAll = [](auto&... AParts) { (AParts.Clear(), ...); };
  ClearAll(FAenderungen, FAnrechnungen, FAufsichtsbereiche, FGebaeude, FBlockungen, *FEinstellungen, FFaecher,
           FFehlzeiten, *FKalender, FKlassen, FLehrer, FPerioden, FRaeume, FRessourcen, FTeams, FZeitpraeferenzvorlagen,
           FSchueler, FStundentafeln, FVeranstaltungen, *FVerzeichnisse, FZeitrahmen, FZeitraeume, FZuweisungen);
}

void TVELPlan::FreeProperties() {
  // Ahead of the appointments, which they look at.
  FMolecules.Clear();
  TVELDataStorage::FreeProperties();
}

TVELZeitrahmen* TVELPlan::StandardTimeframe() const {
  return FEinstellungen ? FEinstellungen->FZeitrahmen.Get() : nullptr;
}

void TVELPlan::CheckRelease() {
  if (!IsRestoring()) {
    FLoadedRelease = FDataformatVersion;
  }
  if (FDataformatVersion == StrayRelease) {
    FDataformatVersion = CurrentRelease;
  }
  FFileRelease = TQuillonRelease(FDataformatVersion);
  if (FFileRelease > CurrentRelease) {
    throw EDataFormatError("Neues Datenformat " + QuillonText::Quoted(FDataformatVersion) +
                           " erkannt, aber diese Velmora Version erwartet Datenformat \"" +
                           std::string(CurrentRelease) + "\". Bitte updaten Sie Velmora.");
  }
}

void TVELPlan::ReadProperties(TQuillonDataObjectReader& AReader) {
  FLogging = false;
  // Left also by an exception: what was read so far counts as a plan of the current release.
  struct TEnd {
    TVELPlan& Plan;
    ~TEnd() {
      Plan.FFileRelease = CurrentRelease;
      Plan.FLogging = true;
    }
  } const End{*this};
  for (TQuillonDataList* List : SortedLists()) {
    List->SetSorted(false);
  }
  TVELDataStorage::ReadProperties(AReader);
  // A state of a program of before may lie in a file.
  if (!IsRestoring() || FFileRelease < CurrentRelease) {
    EnterSupervisions();
    uPlandaten::UpgradePlan(*this, FFileRelease);
    uPlandaten::EnterLessons(*this);
    SortAfterLoad();
  }
  // The calendar is another object now: the one of the file.
  FKalender->FEintraege.SetCompare(TVELKalenderEintragList::CompareItems);
  for (TQuillonDataList* List : SortedLists()) {
    List->TakeAsSorted();
  }
  FDataformatVersion = CurrentRelease;
}

void TVELPlan::InitObjectEvents() {
  FVeranstaltungen.SetCompare(TVELVeranstaltungsliste::CompareItems);
  FKalender->FEintraege.SetCompare(TVELKalenderEintragList::CompareItems);
  FAenderungen.SetCompare(TVELAenderungsliste::CompareItems);
  FFehlzeiten.SetCompare(TVELFehlzeitenliste::CompareItems);
  FAnrechnungen.SetCompare(TVELAnrechnungsliste::CompareItems);
  FZuweisungen.SetCompare(TVELAenderungsliste::CompareItems);
  for (TQuillonDataList* List : SortedLists()) {
    List->SetSorted(true);
  }
}

void TVELPlan::SortLists() {
  uPlandaten::TLessonPlaces({&FVeranstaltungen}).Sort(FVeranstaltungen);
  SortDatedLists();
}

/// The large lists but that of the lessons.
void TVELPlan::SortDatedLists() {
  uPlandaten::SortByTexts(FKalender->FEintraege);
  FAenderungen.Sort();
  FFehlzeiten.Sort();
  uPlandaten::SortByTexts(FAnrechnungen);
  FZuweisungen.Sort();
}

std::array<TQuillonDataList*, 6> TVELPlan::SortedLists() {
  return {&FVeranstaltungen, &FKalender->FEintraege, &FAenderungen, &FFehlzeiten, &FAnrechnungen, &FZuweisungen};
}

/// A supervision with a teacher stands in the teacher's list, whether the file tells so or not.
void TVELPlan::EnterSupervisions() {
  std::unordered_set<const TVELAufsicht*> Entered;
  for (const TVELLehrer* Teacher : FLehrer) {
    for (const TVELAufsicht* Supervision : Teacher->FAufsichten) {
      if (Supervision->FLehrer == Teacher) {
        Entered.insert(Supervision);
      }
    }
  }
  for (const TVELAufsichtsbereich* Area : FAufsichtsbereiche) {
    for (TVELAufsicht* Supervision : Area->FAufsichten) {
      if (Supervision->FLehrer != nullptr && Entered.insert(Supervision).second) {
        Supervision->FLehrer->FAufsichten.Append(Supervision);
      }
    }
  }
}

std::vector<TVELVeranstaltungsliste*> TVELPlan::LessonLists() {
  std::vector<TVELVeranstaltungsliste*> Lists = {&FVeranstaltungen};
  for (const TQuillonDataList* Objects :
       {static_cast<const TQuillonDataList*>(&FKlassen), static_cast<const TQuillonDataList*>(&FLehrer),
        static_cast<const TQuillonDataList*>(&FRaeume), static_cast<const TQuillonDataList*>(&FFaecher),
        static_cast<const TQuillonDataList*>(&FSchueler), static_cast<const TQuillonDataList*>(&FRessourcen)}) {
    for (TQuillonDataObject* Object : Objects->Items()) {
      Lists.push_back(&static_cast<TVELPlanobjekt*>(Object)->FVeranstaltungen);
    }
  }
  return Lists;
}

void TVELPlan::SortAfterLoad() {
  const std::vector<TVELVeranstaltungsliste*> Lists = LessonLists();
  const uPlandaten::TLessonPlaces Places({Lists.begin(), Lists.end()});
  // The lists of single objects are sorted now and not while they were read: the lessons in them were still bare then.
  for (TQuillonDataList* List : Lists) {
    Places.Sort(*List);
  }
  SortDatedLists();
}
