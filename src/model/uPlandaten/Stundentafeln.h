#pragma once

#include <cstdint>
#include <string>

#include "uPlandaten/Basis.h"
#include "uPlandaten/Listen.h"
#include "uPlandaten/Werte.h"
#include "uSchluessel/Schluessel.h"

class TVELFach;
class TVELPeriode;
class TVELTeam;

/// A combination of subjects.
class TVELFachkombination : public TVELStammobjekt {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }

  TVELFachkombinationeintragliste FFaecher{this, TQuillonDataList::TItems::Owned};
};

/// A subject of a combination.
class TVELFachkombinationEintrag : public TVELBasisObject {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }

  TVELUnterrichtsart* FUnterrichtsart = nullptr;
  TVELFach* FFach = nullptr;

 protected:
  std::string DisplayArgument() const override;
};

/// A curriculum.
class TVELStundentafel : public TVELStammobjekt {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }

  TVELBildungsgang* FBildungsgang = nullptr;
  TVELStundentafelEintragsliste FEintraege{this, TQuillonDataList::TItems::Owned};
  TVELPeriode* FPeriode = nullptr;
  TVELProfil* FProfil = nullptr;
  TVELTeam* FTeam = nullptr;
  TVELUnterrichtseinheit FUnterrichtseinheit = TVELUnterrichtseinheit::ueStunden;
  std::int32_t FKlassenstufe = -1;
};

/// What a curriculum demands of a subject.
class TVELStundentafelEintrag : public TVELBasisObject {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }

  std::string FBemerkung;
  TVELFach* FFach = nullptr;
  TVELFachstatus* FFachstatus = nullptr;
  std::string FGruppe;
  std::int32_t FKursanzahl = 0;
  TVELLehrbereich* FLehrbereich = nullptr;
  double FMaxSollStdAnzahl = 0;
  double FMinSollStdAnzahl = 0;
  std::int32_t FDoppelstundenMin = 0;
  std::int32_t FDoppelstundenMax = 0;
  bool FReoccur = true;
  double FSollDifferenz = 0;
  double FSollStdAnzahl = 0;  ///< hours a week
  double FStufenSoll = 0;
  double FStufe1Soll = 0;
  double FStufe2Soll = 0;
  double FStufe3Soll = 0;
  double FStufe4Soll = 0;
  std::string FTermine;  ///< text of the times
  TVELUnterrichtsart* FUnterrichtsart = nullptr;
  TVELUnterrichtsform* FUnterrichtsform = nullptr;
  TVELVeranstaltungskategorie* FVeranstaltungskategorie = nullptr;
  double FWertfaktor = 1;

 protected:
  std::string DisplayArgument() const override;
  /// Older files tell only whether the whole class takes part.
  void SetWholeClass(bool AnIsWhole);
};
