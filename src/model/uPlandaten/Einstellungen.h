#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "uPlandaten/Basis.h"
#include "uPlandaten/Werte.h"
#include "uSchluessel/Schluessel.h"

class TVELTermininhalt;
class TVELTermininhalte;
class TVELZeitrahmen;

/// Settings of a plan.
class TVELEinstellungen : public TVELBasisObject {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }

  bool FAutomWochenfaktor = true;
  std::int32_t FPublishDaysScope = 0;  ///< school days ahead that are published; 0 for all
  std::vector<std::string> FBemerkung;
  std::vector<std::string> FBezeichnungen;
  std::string FFachwahlskript;
  TVELDateTime FGueltigVon;                         ///< first day of the plan
  TVELDateTime FGueltigBis;                         ///< last day of the plan
  TVELWeeks FWochenAusgenommen = TVELWeeks::All();  ///< weeks with lessons
  bool FLehrerWertFaktoren = false;
  std::int32_t FBrenmarkMandant = 0;
  std::int32_t FBrenmarkZeitraum = 0;
  std::int8_t FNachkommastellen = 0;
  TVELStatistikkontrolle FStatistikkontrolle = TVELStatistikkontrolle::skStandard;
  double FMinProDefaultStd = 45;  ///< minutes of a standard lesson
  std::int32_t FMinLKSchuelerAnzahl = 5;
  std::int32_t FMaxLKSchuelerAnzahl = 25;
  std::int32_t FMinGKSchuelerAnzahl = 5;
  std::int32_t FMaxGKSchuelerAnzahl = 25;
  TVELUnterrichtsart* FLKUnterrichtsart1 = nullptr;       ///< type of an advanced course
  TVELUnterrichtsart* FLKUnterrichtsart2 = nullptr;       ///< second type of an advanced course
  TVELUnterrichtsart* FStandardUnterrichtsart = nullptr;  ///< type of an ordinary course
  double FStatistikWochenAnzahl = 1;
  TVELStundenanzeige FStdAnzeige = TVELStundenanzeige::dtStdPosUndZeit;
  std::int16_t FStundenplanAbschnitt = 0;
  std::int32_t FStundenplanID = -1;
  std::string FStundenplantitel;
  std::int32_t FStundenplanvariante = 0;
  TVELDate FStundenplanZeitraumVon;  ///< a day of week 1
  TVELDate FStundenplanZeitraumBis;  ///< a day of the last week
  TQuillonOwned<TVELTermininhalte> FTerminInhalte;
  std::int32_t FTerminfarbe = 0;
  std::int32_t FTerminfarbverlauf = 0;
  TVELDay FWochenende = velFriday;   ///< last school day
  TVELDay FWochenstart = velMonday;  ///< first school day
  TVELStatistikArt FStatistikArt = TVELStatistikArt::saTagesbezogen;
  TVELPublishAbsences FFehlgruendeAnzeigen = TVELPublishAbsences::paAll;
  bool FFehlgrundInCaption = false;
  bool FLineWrap = false;
  bool FNullWocheEinmalige = false;
  bool FZeigeAufsichten = true;
  std::string FZeigeWochen = "W";
  std::string FWochenPrefix = "[KW %s]";  ///< "%s" stands for the week
  bool FZeigeBemerkung = false;
  bool FZeigeLehrersymbole = true;
  TQuillonOwned<TVELZeitrahmen> FZeitrahmen;  ///< standard time frame of the plan
  bool FStandardDauerRechnen = false;

  /// Settings of the running program, not stored.
  bool FStandardKursartLowerCase = true;
  bool FNonStandardKursartUpperCase = true;
  bool FAenderungenFreigeben = false;
  bool FShowAlwaysTime = false;
  bool FNoMessage = false;

  /// Back to the values of a new plan, but wrapped lines; the nested objects and the factor of weeks stay.
  void Clear();

 protected:
  void InitProperties() override;
  /// What older releases held otherwise.
  void UpgradeNames();
};

/// How the parts of a lesson are shown.
class TVELTermininhalte : public TVELBasisObject {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }

  TQuillonOwned<TVELTermininhalt> FKlasse;
  TQuillonOwned<TVELTermininhalt> FLehrer;
  TQuillonOwned<TVELTermininhalt> FRaum;
  TQuillonOwned<TVELTermininhalt> FFach;
  TQuillonOwned<TVELTermininhalt> FWoche;
  TQuillonOwned<TVELTermininhalt> FVeranstaltung;
  TQuillonOwned<TVELTermininhalt> FBlock;
  TQuillonOwned<TVELTermininhalt> FPeriode;
  TQuillonOwned<TVELTermininhalt> FZeit;
  TQuillonOwned<TVELTermininhalt> FTitel;
  TQuillonOwned<TVELTermininhalt> FBemerkung;

 protected:
  void InitProperties() override;
};

/// Colour and style of one part.
class TVELTermininhalt : public TVELBasisObject {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }

  TColor FSchriftfarbe = NoColour;
  std::uint8_t FSchriftstil = 0;  ///< bits of the display system: bold, italic, underlined, struck out
};
