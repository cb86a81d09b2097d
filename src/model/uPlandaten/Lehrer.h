#pragma once

#include <cstdint>
#include <string>

#include "uPlandaten/Basis.h"
#include "uPlandaten/Listen.h"
#include "uSchluessel/Schluessel.h"

class TVELFach;
class TVELRaum;

/// A teacher.
class TVELLehrer : public TVELPlanobjekt {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }

  TVELTeamsliste FTeams{this};           ///< departments
  TVELAufsichtsliste FAufsichten{this};  ///< break duties; owned by their areas
  TVELDate FAustritt;                    ///< last day at the school
  TVELDate FEintritt;                    ///< first day at the school
  std::string FEmail;
  TVELLehrerfachliste FFaecher{this, TQuillonDataList::TItems::Owned};               ///< subjects the teacher may teach
  TVELGeschlecht FGeschlecht = TVELGeschlecht::gUnbekannt;                           ///< gender
  TVELDate FGebDatum;                                                                ///< date of birth
  TVELLehrerSollAenderungsListe FLehrersoll{this, TQuillonDataList::TItems::Owned};  ///< changes of the target hours
  TVELLehrertyp* FLehrertyp = nullptr;
  std::int32_t FMaxAufsichtsAnzahl = 0;
  std::int32_t FMaxAufsichtsDauer = 0;  ///< minutes a week
  std::int32_t FMaxSpringStdAnzahl = 0;
  std::int32_t FMaxStdAnzahl = 0;
  std::int32_t FMinStdAnzahl = 0;
  std::int32_t FMittagspauseDauer = 0;   ///< lunch break, minutes
  std::int32_t FMittagspauseMaxStd = 0;  ///< latest row of the lunch break
  std::int32_t FMittagspauseMinStd = 0;  ///< earliest row of the lunch break
  std::string FMittelname;
  std::string FNachname;
  std::string FPersonalnummer;
  TVELRaum* FRaum = nullptr;
  std::string FSchulnummer;
  TQuillonGraphic FSymbol;  ///< picture, as it stands in the file
  std::string FTelefon;
  std::string FTitel;  ///< form of address
  std::string FUsername;
  std::int32_t FVertretungseinschraenkung = 0;
  std::string FVorname;
  std::int32_t FMaxWochentage = 0;
  std::int32_t FMinWochentage = 0;

  /// Results of a computation that nothing here makes: of the running program only.
  double FSoll = 0;
  double FIst = 0;
  double AnrechenStdPositivJahr = 0;
  double AnrechenStdNegativJahr = 0;
  double AnrechenStdPositivMonat = 0;
  double AnrechenStdNegativMonat = 0;

  bool FKeineAufsicht = false;  ///< stands beside the field of the same name in the base
};

/// A subject that a teacher may teach between two levels.
class TVELLehrerfach : public TVELBasisObject {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }

  std::int32_t FStufeVon = 0;  ///< lowest level
  std::int32_t FStufeBis = 0;  ///< highest level
  TVELFach* FFach = nullptr;

 protected:
  std::string DisplayArgument() const override;
};

/// A change of a teacher's target hours over a stretch of time.
class TVELLehrerSollAenderung : public TVELBasisObject {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }

  bool FAnDienststelle = true;  ///< done at the own site
  TVELLehrerSollAenderungsgrund* FAenderungsgrund = nullptr;
  bool FAusDrittsystem = false;
  std::string FBemerkung;
  TVELDienststelle* FDienststelle = nullptr;
  TVELDate FGueltigVon;
  TVELDate FGueltigBis;
  TVELSchultyp* FSchultyp = nullptr;
  TVELSchulzweig* FSchulzweig = nullptr;
  TVELLehrerSollAenderungsArt* FSollArt1 = nullptr;
  TVELLehrerSollAenderungsArt* FSollArt2 = nullptr;
  TVELLehrerSollAenderungsSchluessel* FSollSchluessel = nullptr;
  double FStdAnzahl = 0;  ///< hours a week
};
