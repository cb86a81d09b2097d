#pragma once

#include <cstdint>
#include <string>

#include "uPlandaten/Basis.h"
#include "uPlandaten/Listen.h"
#include "uSchluessel/Schluessel.h"

class TVELGebaeude;
class TVELLehrer;
class TVELPeriode;
class TVELRaum;
class TVELStundentafel;
class TVELTeam;
class TVELZeitraum;

/// A class of the school, or a course year.
class TVELKlasse : public TVELPlanobjekt {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }

  bool FJahressummen = false;
  TVELKlasse* FAssoziierteKlasse = nullptr;  ///< a class that goes with this one
  std::string FAttribute;
  TVELBildungsgang* FBildungsgang = nullptr;
  std::int32_t FDauer = 0;
  std::string FFachwahlskript;  ///< script for the choice of subjects
  double FFaktor = 1;
  std::int32_t FJahr = 0;      ///< start of the upper-school years
  std::int32_t FHalbjahr = 0;  ///< half-year of that start
  TVELGebaeude* FGebaeude = nullptr;
  TVELBlockInfoListe FBlockInfos{this, TQuillonDataList::TItems::Owned};
  TVELKlassenmerkmal* FKlassenmerkmal = nullptr;
  TVELVeranstaltungsmerkmal* FKursmerkmal = nullptr;
  TVELTeam* FTeam = nullptr;                 ///< department
  TVELKlasse* FIntegrierteKlasse = nullptr;  ///< a class that is taught within this one
  TVELKlassenstufe FStufe = -1;              ///< level; -1 for none
  std::int32_t FMittagspauseDauer = 0;       ///< lunch break, minutes
  std::int32_t FMittagspauseMaxStd = 0;      ///< latest row of the lunch break
  std::int32_t FMittagspauseMinStd = 0;      ///< earliest row of the lunch break
  std::int32_t FMaxSpringStdAnzahl = 0;
  std::int32_t FMaxStdAnzahl = 0;
  std::int32_t FMinStdAnzahl = 0;
  TVELKlassenmodus FModus = TVELKlassenmodus::cmClass;
  TVELPeriode* FPeriode = nullptr;
  TVELRaum* FRaum = nullptr;  ///< the class's own room
  TVELSchulform* FSchulform = nullptr;
  std::string FSchulnummer;
  TVELSchulstelle* FSchulstelle = nullptr;
  TVELSchuelerliste FSchueler{this};  ///< students of the class
  std::int32_t FSchuelerAnzahl = 0;
  TVELStundentafel* FStundentafel = nullptr;
  TVELTagesabstand FTagesabstand = TVELTagesabstand::velDefault;
  TVELLehrer* FLehrer1 = nullptr;  ///< class teacher
  TVELLehrer* FLehrer2 = nullptr;  ///< second class teacher
  std::string FVerordnungstyp;
  std::string FUsername;
  std::int32_t FWochentage = 0;       ///< school days a week
  TVELZeitraum* FZeitraum = nullptr;  ///< time window in which the class exists
  TVELDate FZeitraumStart;            ///< first valid day
  TVELDate FZeitraumEnde;             ///< last valid day
};

/// A part of a class's day that is kept for blocks.
class TVELBlockInfo : public TVELBasisObject {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }

  std::int32_t FStd = 0;        ///< row of the time frame
  std::int32_t FStdAnzahl = 1;  ///< number of rows
  TColor FFarbe = NoColour;     ///< display colour

  std::string GetDisplayName() const override;
};
