#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "uPlandaten/Basis.h"
#include "uPlandaten/Listen.h"
#include "uPlandaten/Werte.h"
#include "uSchluessel/Schluessel.h"

class TVELFach;
class TVELLehrer;
class TVELMolecule;
class TVELPeriode;
class TVELRaum;
class TVELVeranstaltung;
class TVELZeitrahmen;

/// The time of anything in the plan.
class TVELAbstrakterTermin : public TVELBasisObject {
 public:
  static const TQuillonDataClass& Class();

  TVELDateTime FAltStart;                     ///< start in the alternative timing
  TVELDateTime FAltEnde;                      ///< end in the alternative timing
  TVELDay FAltWochentag = TVELDay::velNoDay;  ///< day in the alternative timing; none if there is no such timing
  TVELDateTime FStart;  ///< start; a recurring appointment counts its time of day only; 0 while unscheduled
  TVELDateTime FEnde;   ///< end, as the start
  TVELDay FWochentag = TVELDay::velNoDay;
  /// Of the running program only: timings that somebody puts aside while he tries others.
  TVELDay FOrgWochentag = TVELDay::velNoDay;
  TVELDay FOriginalWochentag = TVELDay::velNoDay;
  bool FExtern = false;   ///< kept by another system
  std::int32_t FTag = 0;  ///< scratch value of the running program
  TVELDateTime FOrgStart;
  TVELDateTime FOrgEnde;
  TVELDateTime FOriginalStart;
  TVELDateTime FOriginalEnde;
  std::string FGID;  ///< identifier in another system
  std::string FOID;  ///< identifier in another system

  /// The timing that counts: the alternative one while the plan has it switched on.
  TVELDateTime Start() const;
  TVELDateTime Ende() const;
  TVELDay Wochentag() const;
  bool Scheduled() const { return FStart != 0; }
  void ClearSchedule();
  /// True if there is an alternative timing that differs from the planned one.
  bool AltTiming() const;
  /// Sorts the list of appointments that owns this one.
  void Sort();
  /// True if it takes place every week, false if once.
  virtual bool Reoccur() const = 0;
  virtual TVELZeitrahmen* Zeitrahmen() const = 0;
};

/// One place of a lesson in the timetable. Classes, students and the subject are the lesson's.
class TVELTermin : public TVELAbstrakterTermin {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }

  TVELTerminattribute FAttribute;
  std::string FBemerkung;
  std::string FBlockID;  ///< the lesson's block, a dot, and the place in it
  std::string FIntern;
  TVELTeamsliste FJoker{this};  ///< groups in place of a person
  TVELRaumliste FRaeume{this};
  TVELLehrerliste FLehrer{this};
  TVELRessourcenliste FRessourcen{this};
  std::int32_t FSchiene = 0;        ///< column of the display
  TVELPeriode* FPeriode = nullptr;  ///< weeks of a period; the appointment's own weeks do not count then
  double FSollDauer = 0;            ///< wanted length, in lessons
  TVELWeeks FWochen;                ///< own weeks; the lesson's if empty

  /// Of the running program only: the molecule as it was made last, see Molecule.
  TVELMolecule* FMolecule = nullptr;
  std::int32_t FMoleculePlace = 0;  ///< among its atoms

  /// The appointments that it is bound to; null outside of a plan.
  TVELMolecule* Molecule();

  /// The lesson that owns the appointment; null for one that stands in no list.
  TVELVeranstaltung* Veranstaltung() const;
  TVELFach* Fach() const;
  /// The lesson's; empty without lesson.
  std::span<TQuillonDataObject* const> Klassen() const;
  std::span<TQuillonDataObject* const> Schueler() const;
  TVELRaumtyp* Raumtyp() const;
  bool Reoccur() const override;
  /// The lesson's; the plan's standard frame without lesson.
  TVELZeitrahmen* Zeitrahmen() const override;
  /// Its own, or the lesson's.
  TVELPeriode* GetPeriode() const;
  /// Those of its period; else its own; else the lesson's.
  TVELWeeks Weeks() const;
  /// Abbreviations of the rooms, joined by ", ".
  std::string Raum() const;
  /// Comments of the lesson and of the appointment, joined by a blank.
  std::string KursBemerkung() const;
  bool IgnoreRoom() const;
  /// Empties the lists of rooms, teachers, resources and wildcards.
  void Clear();
  /// Takes all objects of a list out of these.
  void Clear(const TQuillonDataList& AValues);
  void ClearLehrer() { FLehrer.Clear(); }
  void ClearRaeume() { FRaeume.Clear(); }
  void ClearRoom(const TVELRaum* AValue);
  void ClearTeacher(const TVELLehrer* AValue);
  /// Tells teachers, rooms and resources of it that they take part in its lesson, or no longer do.
  void AddRelations();
  void RemoveRelations();

 protected:
  void FreeProperties() override;
};
