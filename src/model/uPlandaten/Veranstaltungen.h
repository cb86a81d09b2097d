#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <vector>

#include "uPlandaten/Basis.h"
#include "uPlandaten/Listen.h"
#include "uPlandaten/Werte.h"
#include "uSchluessel/Schluessel.h"

class TVELBlock;
class TVELFach;
class TVELLehrer;
class TVELPeriode;
class TVELRaum;
class TVELZeitrahmen;
class TVELZeitraum;

/// A lesson: what is taught, to whom and by whom. It owns its appointments.
class TVELVeranstaltung : public TVELBasisObject {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }

  TVELTerminliste FTermine{this, TQuillonDataList::TItems::Owned};  ///< the appointments, in the order of the user
  std::int32_t FDoppelstundenMin = 0;
  std::int32_t FDoppelstundenMax = 0;
  std::int32_t FBand = 0;
  TVELBlock* FBlock = nullptr;
  std::string FBlockID;  ///< name of the block
  std::int32_t FBlockIndex = 0;
  TVELVeranstaltung* FBlockNext = nullptr;  ///< next lesson of the block, in a ring
  bool FReoccur = true;                     ///< every week, not once
  TVELKlassenliste FKlassen{this};
  std::string FInfo;                            ///< title
  std::vector<std::int32_t> FJahresverteilung;  ///< lessons in each week of a year
  TVELPeriode* FPeriode = nullptr;
  std::string FBemerkung;
  TVELFach* FFach = nullptr;
  std::string FGruppe;
  TVELLehrerliste FLehrer{this};  ///< teachers of the lesson
  std::int32_t FSchiene = 0;      ///< column of the display
  TVELWeeks FWochen;              ///< weeks; empty means all
  std::string FAttribute;
  double FKlassenfaktor = 1;
  TVELEckStdPosition FEckStdPosition = TVELEckStdPosition::espKeineAngabe;
  std::int32_t FKursNr = 0;  ///< number of the course; 0 for none
  std::string FDifferenzierung;
  TVELVeranstaltungskategorie* FKategorie = nullptr;
  TVELVeranstaltungsmerkmal* FMerkmal = nullptr;
  TVELUnterrichtsart* FUnterrichtsart = nullptr;
  TVELUnterrichtsform* FUnterrichtsform = nullptr;
  TVELVeranstaltungsattribute FVeranstaltungsattribute{vmFaktorAutomBerechnen, vmGleicherFaktor,
                                                       vmZuweisungBlockUnabhaengig};
  std::string FVeranstaltungsNr;  ///< the school's own number
  std::string FLink;
  std::string FExtern;  ///< last part of the title
  std::string FIntern;
  std::int32_t FMaxSchuelerAnzahl = 0;
  std::int32_t FMinSchuelerAnzahl = 0;
  TVELRaumliste FRaeume{this};
  TVELTeamsliste FJoker{this};
  TVELRessourcenliste FRessourcen{this};
  TVELRessourcenvorgaben FRessourcenvorgaben{this, TQuillonDataList::TItems::Owned};
  std::string FRaum;  ///< abbreviation of the wanted room; "/" for none at all
  TVELRaumtyp* FRaumtyp = nullptr;
  TVELSchuelerliste FSchueler{this};
  TVELSchulform* FSchulform = nullptr;
  std::int32_t FSchuelerAnzahl = 0;
  std::int32_t FFachfolge = 0;  ///< order of subjects
  TVELFachstatus* FFachstatus = nullptr;
  TVELFachschwerpunkt* FFachschwerpunkt = nullptr;
  double FLehrerfaktor = 1;
  TVELZeitPraeferenzenliste FZeitpraeferenzen{this, TQuillonDataList::TItems::Owned};
  TVELZeitraum* FZeitraum = nullptr;  ///< time window of the lesson
  TVELTagesposition FTagesposition = TVELTagesposition::dpGanztags;
  TVELDays FGueltigeTage;  ///< days on which it may lie
  TVELDate FGueltigVon;    ///< first valid day
  TVELDate FGueltigBis;    ///< last valid day
  std::uint16_t FProvider = 0;

  /// Of the running program only.
  mutable std::atomic<TVELRaum*> FDefaultRoom = nullptr;  ///< several readers may come to remember it
  std::int32_t FTag = 0;                                  ///< scratch value
  std::int32_t Temperature = 0;
  double Optimum = 0;
  std::int32_t BlockBand = 0;

  /// The number of the course is the first that changes: its rule goes by the subject and the students of before.
  void Assign(const TQuillonObject& AnObject) override;
  /// Changes the number of the course, and that of the choices of its students that name it.
  void SetKursNr(std::int32_t AKursNr);
  /// Changes the subject; the lesson moves into the FVeranstaltungen of the new one.
  void SetFach(TVELFach* AValue);
  /// Those of the period, else its own; all weeks if that gives none.
  TVELWeeks Weeks() const;
  /// True if the lesson needs no room at all.
  bool IgnoreRoom() const { return FRaum == "/"; }
  /// The room that is wanted, or the first one; remembered until the wish changes.
  TVELRaum* DefaultRoom() const;
  /// Band of the block that the lesson belongs to, or its own; remembered in BlockBand.
  std::int32_t GetBlockBand();
  /// That of the first class; the plan's standard frame without class.
  TVELZeitrahmen* Zeitrahmen() const;
  /// Title of the course without its external part: subject and number, in the case that its type asks for.
  std::string KursTitel() const;
  /// As KursTitel in the case in which the subject's code is written.
  std::string PlainKursTitel() const;
  /// Text that decides between lessons of one block index: codes of the classes, title, external part.
  std::string SortText() const;
  /// Empties the lists of teachers, rooms, resources and wildcards.
  void Clear();
  /// Takes all objects of a list out of these.
  void Clear(const TQuillonDataList& AValues);
  void ClearRoom(const TVELRaum* AValue);
  void ClearTeacher(const TVELLehrer* AValue);

 protected:
  /// Closes the gap that the lesson leaves in its block.
  void FreeProperties() override;
  /// What older releases held otherwise.
  void Upgrade();
};
