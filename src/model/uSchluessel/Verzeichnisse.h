#pragma once

#include <string_view>

#include "uSchluessel/Schluessel.h"

/// A list of keys of one class, which it owns.
class TVELSchluesselverzeichnis : public TQuillonListOf<TVELSchluessel, TVELDataList> {
 public:
  TVELSchluesselverzeichnis(TQuillonDataAbstractObject* AnOwner, const TQuillonDataClass& AKeyClass)
      : TQuillonListOf(AnOwner, TItems::Owned), FKeyClass(AKeyClass) {}

  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }
  const TQuillonDataClass& ItemClass() const override { return FKeyClass; }

  /// The first key with the text, compared exactly; null if there is none.
  TVELSchluessel* FindBezeichnung(std::string_view ABezeichnung) const;
  TVELSchluessel* FindKuerzel(std::string_view AKuerzel) const;
  TVELSchluessel* FindSchluessel(std::string_view ASchluessel) const;
  TVELSchluessel* FindCustomID(std::string_view ACustomID) const;
  TVELSchluessel* FindBrenmarkID(std::int32_t ABrenmarkID) const;

 protected:
  std::string GetBaseDisplayName() const override { return "Schlüsselverzeichnis"; }

 private:
  const TQuillonDataClass& FKeyClass;
};

/// A directory whose keys are of class TKey.
template <class TKey>
class TVELSchluesselverzeichnisOf : public TQuillonListOf<TKey, TVELSchluesselverzeichnis> {
 public:
  explicit TVELSchluesselverzeichnisOf(TQuillonDataAbstractObject* AnOwner)
      : TQuillonListOf<TKey, TVELSchluesselverzeichnis>(AnOwner, TKey::Class()) {}
};

/// All key directories of a plan.
class TVELVerzeichnisse : public TVELDataObject {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }

  TVELSchluesselverzeichnisOf<TVELFehlgrund> FAusfallgruende{this};
  TVELSchluesselverzeichnisOf<TVELBildungsgang> FBildungsgaenge{this};
  TVELSchluesselverzeichnisOf<TVELDienststelle> FDienststellen{this};
  TVELSchluesselverzeichnisOf<TVELFachschwerpunkt> FFachschwerpunkte{this};
  TVELSchluesselverzeichnisOf<TVELFachstatus> FFachstatus{this};
  TVELSchluesselverzeichnisOf<TVELKalendereintragKategorie> FKalendereintragKategorien{this};
  TVELSchluesselverzeichnisOf<TVELKlassenfehlgrund> FKlassenfehlgruende{this};
  TVELSchluesselverzeichnisOf<TVELKlassenmerkmal> FKlassenmerkmale{this};
  TVELSchluesselverzeichnisOf<TVELLehrbereich> FLehrbereiche{this};
  TVELSchluesselverzeichnisOf<TVELLehrerfehlgrund> FLehrerfehlgruende{this};
  TVELSchluesselverzeichnisOf<TVELLehrerfehlgrunddetail> FLehrerfehlgrundDetails{this};
  TVELSchluesselverzeichnisOf<TVELLehrerSollAenderungsgrund> FLehrerSollAenderungsgruende{this};
  TVELSchluesselverzeichnisOf<TVELLehrerSollAenderungsArt> FLehrerSollArten{this};
  TVELSchluesselverzeichnisOf<TVELLehrerSollAenderungsSchluessel> FLehrerSollSchluessel{this};
  TVELSchluesselverzeichnisOf<TVELLehrertyp> FLehrertypen{this};
  TVELSchluesselverzeichnisOf<TVELProfil> FProfile{this};
  TVELSchluesselverzeichnisOf<TVELRaumfehlgrund> FRaumfehlgruende{this};
  TVELSchluesselverzeichnisOf<TVELRaumtyp> FRaumtypen{this};
  TVELSchluesselverzeichnisOf<TVELRessourcenkategorie> FRessourcenkategorien{this};
  TVELSchluesselverzeichnisOf<TVELRessourcenmerkmal> FRessourcenmerkmale{this};
  TVELSchluesselverzeichnisOf<TVELRolle> FRollen{this};
  TVELSchluesselverzeichnisOf<TVELSchulform> FSchulformen{this};
  TVELSchluesselverzeichnisOf<TVELSchulstelle> FSchulstellen{this};
  TVELSchluesselverzeichnisOf<TVELSchultyp> FSchultypen{this};
  TVELSchluesselverzeichnisOf<TVELSchulzweig> FSchulzweige{this};
  /// Categories of blocked times; imports bring features of resources into it, for that is what their format has here.
  TVELSchluesselverzeichnisOf<TVELSchluessel> FSperrungskategorien{this};
  TVELSchluesselverzeichnisOf<TVELUnterrichtsart> FUnterrichtsarten{this};
  TVELSchluesselverzeichnisOf<TVELUnterrichtsform> FUnterrichtsformen{this};
  TVELSchluesselverzeichnisOf<TVELVeranstaltungskategorie> FVeranstaltungskategorien{this};
  TVELSchluesselverzeichnisOf<TVELVeranstaltungsmerkmal> FVeranstaltungsmerkmale{this};
  TVELSchluesselverzeichnisOf<TVELVertretungsentfall> FVertretungsentfaelle{this};
  TVELSchluesselverzeichnisOf<TVELVertretungslehrerart> FVertretungslehrerarten{this};
  TVELSchluesselverzeichnisOf<TVELVertretungsqualitaet> FVertretungsqualitaeten{this};
  TVELSchluesselverzeichnisOf<TVELZeitpraeferenzkategorie> FZeitpraeferenzkategorien{this};

  /// Clears every directory.
  void Clear();
};

namespace uSchluessel {

/// Makes the classes of this unit known to readers.
void RegisterClasses(TQuillonDataClassRegistry& ARegistry);

}  // namespace uSchluessel
