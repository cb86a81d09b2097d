#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "uPlandaten/Basis.h"
#include "uPlandaten/Listen.h"
#include "uPlandaten/Termine.h"
#include "uSchluessel/Schluessel.h"

class TVELKlasse;
class TVELRaum;

/// The school's calendar.
class TVELKalender : public TVELBasisObject {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }

  TVELKalenderEintragList FEintraege{this, TQuillonDataList::TItems::Owned};
  TVELAufgabenListe FAufgaben{this, TQuillonDataList::TItems::Owned};
  TVELDay FWochenendeErsterTag = TVELDay::velNoDay;
  TVELDay FWochenendeLetzterTag = TVELDay::velNoDay;

  std::string GetDisplayName() const override;
  void Clear();
};

/// An entry of the calendar.
class TVELKalendereintrag : public TVELAbstrakterTermin {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }

  bool FGanztaegig = false;
  TVELKalendereintragKategorie* FKategorie = nullptr;
  std::string FAnzeige;  ///< title
  std::vector<std::string> FBeschreibung;
  std::string FPruefung;
  std::string FBlock;
  TVELTeilnehmerListe FTeilnehmer{this, TQuillonDataList::TItems::Owned};
  TVELRessourcenliste FRessourcen{this};
  TVELRaum* FRaum = nullptr;
  TVELKlasse* FKlasse = nullptr;
  std::uint8_t FStufe = 0;
  std::vector<std::string> FAdresse;
  TVELErfuellt FErfuellt = TVELErfuellt::velNotStarted;
  double FDauer = 0;  ///< hours
  TVELKalenderEintragStatus FStatus = TVELKalenderEintragStatus::esBestaetigt;
  TVELVisibility FVisibility = TVELVisibility::velPublic;
  TVELDateTime FModified;  ///< last change of the content
  std::int32_t FPrioritaet = 0;
  bool FUnterrichtsfrei = true;                              ///< no lessons while it lasts
  TVELLehrerSollAenderungsSchluessel* FZeitkonto = nullptr;  ///< account that the time counts for

  bool Reoccur() const override { return false; }
  TVELZeitrahmen* Zeitrahmen() const override;
  /// Name of the room, or the address.
  std::string Ort() const;
  /// The description as one text, its lines parted by CR LF.
  std::string Beschreibung() const;

 protected:
  /// Stamps the change of the content.
  void AfterStamp() override;
};

/// A task.
class TVELAufgabe : public TVELKalendereintrag {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }
};

/// A participant of a calendar entry.
class TVELTeilnehmer : public TVELBasisObject {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }

  TVELTeilnehmerArt FArt = TVELTeilnehmerArt::tnPerson;
  std::string FName;
  std::string FBeschreibung;
  std::string FEmail;
  TVELDataObject* FDataObject = nullptr;  ///< the participant, if it is one of the plan
  TGUID FDataobjectID;                    ///< its identity
  TVELRolle* FRolle = nullptr;
  TVELDateTime FStart;
  TVELDateTime FEnde;

 protected:
  std::string DisplayArgument() const override;
};
