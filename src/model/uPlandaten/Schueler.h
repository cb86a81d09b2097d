#pragma once

#include <cstdint>
#include <string>

#include "uPlandaten/Basis.h"
#include "uPlandaten/Listen.h"
#include "uPlandaten/Werte.h"
#include "uSchluessel/Schluessel.h"

class TVELFach;
class TVELKlasse;
class TVELLehrer;
class TVELVeranstaltung;

/// A student.
class TVELSchueler : public TVELPlanobjekt {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }

  std::int32_t FAttribute = 0;
  TVELGeschlecht FGeschlecht = TVELGeschlecht::gUnbekannt;  ///< gender
  TVELDate FGebDatum;                                       ///< date of birth
  TVELKurswahlliste FKurswahl{this, TQuillonDataList::TItems::Owned};
  TVELKlasse* FKlasse = nullptr;
  std::string FSchluessel;
  std::string FMittelname;
  std::string FNachname;
  std::int32_t FLerngruppe = 0;  ///< study group
  std::string FVorname;
  std::string FSchulnummer;
  std::string FSchuelerNr;
  TVELLehrer* FTutor = nullptr;
  std::string FPostleitzahl;
  std::string FOrt;
  std::string FStrasse;
  std::string FEmail;
  std::string FTelefon;
  std::string FPruefung;  ///< examination
  std::string FHinweis;
  std::string FUsername;
  bool FKeineFachwahl = false;
  TVELKlassenstufe FStufe = -1;  ///< level; the class's counts if there is one; -1 for none

  std::int32_t Temperature = 0;  ///< of the search for course assignments; of the running program only

  /// Moves the student from the list of the one class to that of the other; null for no class. A file tells the lists
  /// itself.
  void SetKlasse(TVELKlasse* AKlasse);
  /// That of the class; the plan's without class.
  TVELZeitrahmen* Timeframe() const override;
  /// Level of the class, or the own one without class.
  TVELKlassenstufe Klassenstufe() const;

 protected:
  std::string DisplayArgument() const override;
};

/// One of a student's choices of subjects.
class TVELKurswahl : public TVELBasisObject {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }

  std::string FAttribute;
  std::string FBemerkung;
  TVELFach* FFach = nullptr;
  TVELFachschwerpunkt* FFachschwerpunkt = nullptr;
  TVELFachstatus* FFachstatus = nullptr;
  bool FFix = false;
  TVELGewaehlt FGewaehlt;  ///< half-years in which the course is chosen
  TVELVeranstaltung* FKurs = nullptr;
  std::int32_t FKursNr = -1;  ///< -1 for none
  std::int32_t FPflicht = 0;  ///< number of obligatory half-years
  std::int32_t FStunden = 0;  ///< hours a week
  TVELUnterrichtsart* FUnterrichtsart = nullptr;

  std::int32_t Temperature = 0;  ///< of the search for course assignments; of the running program only

  /// The student who chose; null for a choice that stands in no list.
  TVELSchueler* Schueler() const;

 protected:
  std::string DisplayArgument() const override;
};
