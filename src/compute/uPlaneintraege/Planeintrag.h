#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "uPlandaten/Aenderungen.h"
#include "uPlandaten/Werte.h"

class TVELAufsicht;
class TVELFach;
class TVELFehlzeit;
class TVELKlasse;
class TVELLehrer;
class TVELPlanobjekt;
class TVELRaum;
class TVELSchueler;
class TVELTermin;
class TVELVeranstaltung;
class TVELVertretung;
class TVELZeitrahmen;

/// One line of a dated timetable: an occurrence, or the occurrences of several weeks, of an appointment or supervision,
/// with all that changes and absences make of it, in the plan of one object. Made on demand, never stored.
///
/// It owns its lists and nothing that they hold. Each list holds an item once.
class TVELPlaneintrag {
 public:
  TVELAufsicht* FAufsicht = nullptr;  ///< the supervision, if it is one
  TVELTermin* FTermin = nullptr;
  std::vector<TVELKlasse*> FKlassen;
  std::vector<TVELLehrer*> FLehrer;
  std::vector<TVELFach*> FFaecher;
  std::vector<TVELRaum*> FRaeume;
  std::vector<TVELSchueler*> FSchueler;
  std::vector<TVELRaum*> FNeueRaeume;  ///< added by the change, as the next three
  std::vector<TVELFach*> FNeueFaecher;
  std::vector<TVELKlasse*> FNeueKlassen;
  std::vector<TVELLehrer*> FNeueLehrer;
  std::vector<TVELFach*> FFehlendeFaecher;  ///< missing in this occurrence, as the next three
  std::vector<TVELKlasse*> FFehlendeKlassen;
  std::vector<TVELLehrer*> FFehlendeLehrer;
  std::vector<TVELRaum*> FFehlendeRaeume;
  std::vector<TVELTermin*> FCompressed;      ///< appointments folded into this entry
  TVELZuweisung* FZuweisung = nullptr;       ///< the assignment in force
  std::vector<TVELAenderung*> FAenderungen;  ///< item 0 is "the" change; an assignment in force, if there is no other
  std::vector<TVELFehlzeit*> FFehlzeiten;    ///< absences found for this occurrence
  TVELDateTime FStart;                       ///< with FFinish half-open
  TVELDateTime FFinish;
  std::string FBemerkung;
  bool FChanges = false;              ///< differs from the plain plan
  bool FShadow = false;               ///< does not take place for its plan object
  bool FMirror = false;               ///< the other half of a move or swap
  bool FMissing = false;              ///< something of it is missing
  bool FKlasseFehlt = false;          ///< all its classes are absent
  TVELWeeks FWochen;                  ///< weeks in which it occurs
  std::int32_t FWochenSortIndex = 0;  ///< 56 times the sum of the weeks of the lesson
  TVELDateTime FModified;             ///< latest modification of change or absence
  std::int32_t FSidebySide = 0;       ///< places in a display, as the next two; none here
  std::int32_t FSidebyIndex = 0;
  std::int32_t FTopIndex = 0;
  TVELPlanobjekt* FPlanobjekt = nullptr;  ///< whose plan this is

  void Clear() { *this = {}; }
  /// Takes back what changes and absences made of the entry; new classes and the plain lists stay.
  void ResetAnderung();

  /// The change; null if there is none.
  TVELAenderung* Aenderung() const { return FAenderungen.empty() ? nullptr : FAenderungen.front(); }
  /// The change, if it is a substitution.
  const TVELVertretung* Vertretung() const;
  TVELFehlzeit* Fehlzeit() const { return FFehlzeiten.empty() ? nullptr : FFehlzeiten.front(); }
  /// The lesson of the appointment, else of the changed one.
  TVELVeranstaltung* Veranstaltung() const;
  /// That of the plan object, else of the appointment or supervision; null without any.
  const TVELZeitrahmen* Zeitrahmen() const;
  /// The subject that is taught: that of an additional lesson, the first new one, that of the appointment.
  TVELFach* Fach() const;
  bool Geaendert() const { return FChanges || !FAenderungen.empty(); }
  /// The first substitution because of the absence; null if there is none.
  TVELAenderung* GetAenderung(const TVELFehlzeit* AFehlzeit) const;
  /// True if statistics count it: it takes place, and neither its lesson nor its plan object stays out of them.
  bool StatistikRelevant() const;
  /// Length in lessons of the time frame; 0 without one.
  double Lektionen() const;
  /// The type of its lesson, of an additional one too; may be null.
  TVELUnterrichtsart* LessonArt() const;
};

/// Entries, which the list owns.
class TVELPlanEintragListe {
 public:
  /// A new entry at the end.
  TVELPlaneintrag& Add() { return *FItems.emplace_back(std::make_unique<TVELPlaneintrag>()); }
  void Add(std::unique_ptr<TVELPlaneintrag> AnEntry) { FItems.push_back(std::move(AnEntry)); }
  void Clear() { FItems.clear(); }
  bool IsEmpty() const { return FItems.empty(); }
  int Count() const { return static_cast<int>(FItems.size()); }
  TVELPlaneintrag& GetItem(int AnIndex) const { return *FItems[static_cast<std::size_t>(AnIndex)]; }
  /// Place of the first entry with the appointment, or -1.
  int FindTermin(const TVELTermin* ATermin) const;

  /// The entries themselves, for those that move them from list to list or sort them.
  std::vector<std::unique_ptr<TVELPlaneintrag>>& Items() { return FItems; }
  const std::vector<std::unique_ptr<TVELPlaneintrag>>& Items() const { return FItems; }

 private:
  std::vector<std::unique_ptr<TVELPlaneintrag>> FItems;
};
