#pragma once

#include <array>
#include <string>
#include <string_view>

#include "uPlandaten/Listen.h"
#include "uPlandaten/Molekuele.h"

class TVELAutomatikparameter;
class TVELBesitzer;
class TVELEinstellungen;
class TVELKalender;
class TVELSammelaenderung;
class TVELVerzeichnisse;

/// A data file of a newer release than this program knows.
class EDataFormatError : public EQuillonException {
 public:
  using EQuillonException::EQuillonException;
};

/// A school's timetable: the root of everything that its data file holds.
class TVELPlan : public TVELDataStorage {
 public:
  /// Release of the data format that is written.
  static constexpr std::string_view CurrentRelease = "6.0.172";

  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }

  bool FAlternativeTiming = false;  ///< appointments answer with their alternative timing
  bool FIntegriereKlassen = false;
  bool FLogModification = true;
  bool FLogging = false;           ///< false while a file is read
  std::string FDataformatVersion;  ///< of the file while it is read, the current release afterwards
  std::string FLoadedRelease;      ///< as the file that was read has it; empty for none
  std::string FProductVersion;     ///< of the program that wrote the file that was read
  std::string FInternalVersion;

  TVELTeamsliste FTeams{this, TQuillonDataList::TItems::Owned};
  TVELAenderungsliste FAenderungen{this, TQuillonDataList::TItems::Owned};
  TVELAnrechnungsliste FAnrechnungen{this, TQuillonDataList::TItems::Owned};
  TVELAufsichtsbereichsliste FAufsichtsbereiche{this, TQuillonDataList::TItems::Owned};
  TQuillonOwned<TVELAutomatikparameter> FAutomatik;
  TVELGebaeudeliste FGebaeude{this, TQuillonDataList::TItems::Owned};
  TQuillonOwned<TVELBesitzer> FBesitzer;
  TVELBlockliste FBlockungen{this, TQuillonDataList::TItems::Owned};
  TQuillonOwned<TVELEinstellungen> FEinstellungen;
  TVELFachliste FFaecher{this, TQuillonDataList::TItems::Owned};
  TVELFehlzeitenliste FFehlzeiten{this, TQuillonDataList::TItems::Owned};
  TQuillonOwned<TVELKalender> FKalender;
  TVELKlassenliste FKlassen{this, TQuillonDataList::TItems::Owned};
  TVELLehrerliste FLehrer{this, TQuillonDataList::TItems::Owned};
  TVELPeriodenliste FPerioden{this, TQuillonDataList::TItems::Owned};
  TVELRaumliste FRaeume{this, TQuillonDataList::TItems::Owned};
  TVELRessourcenliste FRessourcen{this, TQuillonDataList::TItems::Owned};
  TVELAbstraktePraeferenzenliste FZeitpraeferenzvorlagen{this, TQuillonDataList::TItems::Owned};
  TVELSchuelerliste FSchueler{this, TQuillonDataList::TItems::Owned};
  TVELStundentafelliste FStundentafeln{this, TQuillonDataList::TItems::Owned};
  TVELVeranstaltungsliste FVeranstaltungen{this, TQuillonDataList::TItems::Owned};
  TQuillonOwned<TVELVerzeichnisse> FVerzeichnisse;
  TVELZeitraumliste FZeitraeume{this, TQuillonDataList::TItems::Owned};
  TVELZeitrahmenliste FZeitrahmen{this, TQuillonDataList::TItems::Owned};
  TVELZuweisungsliste FZuweisungen{this, TQuillonDataList::TItems::Owned};
  TVELMoleculeList FMolecules{*this};               ///< of the running program only
  TVELSammelaenderung* FSammelaenderung = nullptr;  ///< while many objects change at once

  /// The standard time frame of the settings; null if there is none.
  TVELZeitrahmen* StandardTimeframe() const;

  TQuillonRelease FileRelease() const override { return FFileRelease; }
  /// @throws EDataFormatError for a newer release, and what readers raise
  void ReadProperties(TQuillonDataObjectReader& AReader) override;

  void CreateNewFile() { NewFile(); }
  /// The plan's lessons, then those of each object that takes part in them.
  std::vector<TVELVeranstaltungsliste*> LessonLists();
  /// Sorts the six large lists.
  void SortLists();
  /// Gives the six large lists their orders and keeps them sorted from now on.
  void InitObjectEvents();

 protected:
  void InitProperties() override;
  void ClearProperties() override;
  void FreeProperties() override;

 private:
  void CheckRelease();
  std::array<TQuillonDataList*, 6> SortedLists();
  void EnterSupervisions();
  void SortAfterLoad();
  void SortDatedLists();

  TQuillonRelease FFileRelease = CurrentRelease;
};

namespace uPlandaten {

/// Makes the classes of this unit, and of those below, known to readers.
void RegisterClasses(TQuillonDataClassRegistry& ARegistry);

}  // namespace uPlandaten
