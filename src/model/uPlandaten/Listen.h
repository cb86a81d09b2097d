#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "uDataObjects/DataObjects.h"

class TVELAbstraktePraeferenz;
class TVELAenderung;
class TVELAnrechnung;
class TVELAufgabe;
class TVELAufsicht;
class TVELAufsichtsbereich;
class TVELAusstattung;
class TVELBlock;
class TVELBlockInfo;
class TVELFach;
class TVELFachkombinationEintrag;
class TVELFehlzeit;
class TVELGebaeude;
class TVELKalendereintrag;
class TVELKlasse;
class TVELKurswahl;
class TVELLehrer;
class TVELLehrerSollAenderung;
class TVELLehrerfach;
class TVELPeriode;
class TVELPlanobjekt;
class TVELPositionsschema;
class TVELRaum;
class TVELRessource;
class TVELRessourcenvorgabe;
class TVELSchueler;
class TVELStammobjekt;
class TVELStundentafel;
class TVELStundentafelEintrag;
class TVELTeam;
class TVELTeilnehmer;
class TVELTermin;
class TVELVeranstaltung;
class TVELZeitrahmen;
class TVELZeitrahmenmarkierung;
class TVELZeitrahmenzeile;
class TVELZeitraum;
class TVELZuweisung;

/// Master data: objects that are told by an abbreviation.
class TVELStammobjektliste : public TQuillonListOf<TVELStammobjekt, TVELDataList> {
 public:
  using TQuillonListOf::TQuillonListOf;
  const TQuillonDataClass& ItemClass() const override;

  /// Frees every item of the class or a descendant of it.
  void ClearAll(const TQuillonDataClass& AClass);
  using TQuillonDataList::Contains;
  bool Contains(std::string_view AKuerzel, bool ACaseSensitive, const TVELStammobjekt* AnExcluded = nullptr) const;
  using TQuillonDataList::Find;
  /// The first item with the abbreviation; blanks do not count on either side.
  /// @param APartial the search text may be the begin of the abbreviation
  /// @param AnExcluded passed over
  TVELStammobjekt* Find(std::string_view AKuerzel, bool APartial, bool ACaseSensitive,
                        const TVELStammobjekt* AnExcluded = nullptr) const;
  template <class TItem>
  TItem* FindAs(std::string_view AKuerzel, bool APartial, bool ACaseSensitive) const {
    return static_cast<TItem*>(Find(AKuerzel, APartial, ACaseSensitive));
  }
  /// As Find for a text from a link: tried against the abbreviations, then their web forms, then the web names.
  TVELStammobjekt* WebFind(std::string_view AKuerzel, bool ACaseSensitive) const;
  /// The first item with the number; null if there is none.
  TVELStammobjekt* FindBrenmarkID(std::int32_t ABrenmarkID) const;
  /// "Neu" and the first number that makes it new.
  std::string GetUniqueKuerzel() const;
  /// True if no other item than AnObject has the abbreviation, compared exactly; an empty one is always free.
  bool Validate(const TVELStammobjekt* AnObject, std::string_view AKuerzel) const;
  /// Abbreviations of the items, joined by ", ".
  std::string JoinCodes() const;

 protected:
  // The items are told what refers to them.
  void AfterInsert(int AnIndex) override;
  void BeforeClear() override;
  void BeforeDelete(int AnIndex) override { Leave(AnIndex); }
  void BeforeExtract(int AnIndex) override { Leave(AnIndex); }
  TVELStammobjekt* FindWebName(std::string_view AName) const;

 private:
  void Leave(int AnIndex);
};

/// Master data that takes part in the timetable, of one class or of several.
class TVELPlanobjektliste : public TQuillonListOf<TVELPlanobjekt, TVELStammobjektliste> {
 public:
  using TQuillonListOf::TQuillonListOf;
  const TQuillonDataClass& ItemClass() const override;

  /// The first item of the class; null if there is none.
  template <class TItem>
  TItem* First() const {
    for (TQuillonDataObject* Item : Items()) {
      if (auto* const Found = uDataObjects::As<TItem>(Item)) {
        return Found;
      }
    }
    return nullptr;
  }
};

// The lists of the single families: each is named after the class that it holds.

class TVELTeamsliste : public TQuillonListOf<TVELTeam, TVELStammobjektliste> {
 public:
  using TQuillonListOf::TQuillonListOf;
  const TQuillonDataClass& ItemClass() const override;
};

class TVELGebaeudeliste : public TQuillonListOf<TVELGebaeude, TVELStammobjektliste> {
 public:
  using TQuillonListOf::TQuillonListOf;
  const TQuillonDataClass& ItemClass() const override;
};

class TVELAufsichtsbereichsliste : public TQuillonListOf<TVELAufsichtsbereich, TVELStammobjektliste> {
 public:
  using TQuillonListOf::TQuillonListOf;
  const TQuillonDataClass& ItemClass() const override;
};

class TVELPeriodenliste : public TQuillonListOf<TVELPeriode, TVELStammobjektliste> {
 public:
  using TQuillonListOf::TQuillonListOf;
  const TQuillonDataClass& ItemClass() const override;
};

class TVELZeitraumliste : public TQuillonListOf<TVELZeitraum, TVELStammobjektliste> {
 public:
  using TQuillonListOf::TQuillonListOf;
  const TQuillonDataClass& ItemClass() const override;
};

class TVELStundentafelliste : public TQuillonListOf<TVELStundentafel, TVELStammobjektliste> {
 public:
  using TQuillonListOf::TQuillonListOf;
  const TQuillonDataClass& ItemClass() const override;
};

class TVELKlassenliste : public TQuillonListOf<TVELKlasse, TVELPlanobjektliste> {
 public:
  using TQuillonListOf::TQuillonListOf;
  const TQuillonDataClass& ItemClass() const override;
  /// The first item with the name, an empty one included; null if there is none.
  TVELKlasse* FindUser(std::string_view AUserName, bool ACaseSensitive, const TVELKlasse* AnExcluded = nullptr) const;
};

class TVELLehrerliste : public TQuillonListOf<TVELLehrer, TVELPlanobjektliste> {
 public:
  using TQuillonListOf::TQuillonListOf;
  const TQuillonDataClass& ItemClass() const override;
  /// The first item with the name, an empty one included; null if there is none.
  TVELLehrer* FindUser(std::string_view AUserName, bool ACaseSensitive, const TVELLehrer* AnExcluded = nullptr) const;
};

class TVELRaumliste : public TQuillonListOf<TVELRaum, TVELPlanobjektliste> {
 public:
  using TQuillonListOf::TQuillonListOf;
  const TQuillonDataClass& ItemClass() const override;
  /// The first item with the name, an empty one included; null if there is none.
  TVELRaum* FindUser(std::string_view AUserName, bool ACaseSensitive, const TVELRaum* AnExcluded = nullptr) const;
};

class TVELFachliste : public TQuillonListOf<TVELFach, TVELPlanobjektliste> {
 public:
  using TQuillonListOf::TQuillonListOf;
  const TQuillonDataClass& ItemClass() const override;
};

class TVELRessourcenliste : public TQuillonListOf<TVELRessource, TVELPlanobjektliste> {
 public:
  using TQuillonListOf::TQuillonListOf;
  const TQuillonDataClass& ItemClass() const override;
};

class TVELSchuelerliste : public TQuillonListOf<TVELSchueler, TVELPlanobjektliste> {
 public:
  using TQuillonListOf::TQuillonListOf;
  const TQuillonDataClass& ItemClass() const override;
  /// The first item with the name, an empty one included; null if there is none.
  TVELSchueler* FindUser(std::string_view AUserName, bool ACaseSensitive,
                         const TVELSchueler* AnExcluded = nullptr) const;
  TVELSchueler* FindName(std::string_view AVorname, std::string_view ANachname, bool ACaseSensitive) const;
  TVELSchueler* FindSchuelerNr(std::string_view ASchuelerNr) const;
  /// By the student's number as it stands, else by the web name.
  TVELStammobjekt* WebFind(std::string_view AKuerzel, bool ACaseSensitive) const;
};

class TVELVeranstaltungsliste : public TQuillonListOf<TVELVeranstaltung, TVELDataList> {
 public:
  using TQuillonListOf::TQuillonListOf;
  const TQuillonDataClass& ItemClass() const override;
  static int CompareItems(const TQuillonDataObject& A, const TQuillonDataObject& B);
};

class TVELTerminliste : public TQuillonListOf<TVELTermin, TVELDataList> {
 public:
  using TQuillonListOf::TQuillonListOf;
  const TQuillonDataClass& ItemClass() const override;
  /// Unscheduled appointments behind scheduled ones, these by the end of their place in the week.
  void SortByTime();

 protected:
  // Those of an appointment that comes or is taken out. One that is freed sees to it itself.
  void AfterInsert(int AnIndex) override;
  void BeforeExtract(int AnIndex) override;
};

class TVELBlockliste : public TQuillonListOf<TVELBlock, TVELDataList> {
 public:
  using TQuillonListOf::TQuillonListOf;
  const TQuillonDataClass& ItemClass() const override;
  /// The first block with the name; null if there is none.
  TVELBlock* FindBlock(std::string_view ABlockID) const;
};

class TVELBlockInfoListe : public TQuillonListOf<TVELBlockInfo, TVELDataList> {
 public:
  using TQuillonListOf::TQuillonListOf;
  const TQuillonDataClass& ItemClass() const override;

 protected:
  std::string GetBaseDisplayName() const override { return "Blockinfoliste"; }
};

class TVELLehrerfachliste : public TQuillonListOf<TVELLehrerfach, TVELDataList> {
 public:
  using TQuillonListOf::TQuillonListOf;
  const TQuillonDataClass& ItemClass() const override;
};

class TVELLehrerSollAenderungsListe : public TQuillonListOf<TVELLehrerSollAenderung, TVELDataList> {
 public:
  using TQuillonListOf::TQuillonListOf;
  const TQuillonDataClass& ItemClass() const override;
};

class TVELRessourcenvorgaben : public TQuillonListOf<TVELRessourcenvorgabe, TVELDataList> {
 public:
  using TQuillonListOf::TQuillonListOf;
  const TQuillonDataClass& ItemClass() const override;
};

class TVELAusstattungsliste : public TQuillonListOf<TVELAusstattung, TVELDataList> {
 public:
  using TQuillonListOf::TQuillonListOf;
  const TQuillonDataClass& ItemClass() const override;
};

class TVELAufsichtsliste : public TQuillonListOf<TVELAufsicht, TVELDataList> {
 public:
  using TQuillonListOf::TQuillonListOf;
  const TQuillonDataClass& ItemClass() const override;
};

class TVELZeitrahmenliste : public TQuillonListOf<TVELZeitrahmen, TVELDataList> {
 public:
  using TQuillonListOf::TQuillonListOf;
  const TQuillonDataClass& ItemClass() const override;
  /// The first frame with the abbreviation, compared exactly; null if there is none.
  TVELZeitrahmen* FindKuerzel(std::string_view AKuerzel) const;
};

class TVELZeitrahmenzeilenliste : public TQuillonListOf<TVELZeitrahmenzeile, TVELDataList> {
 public:
  using TQuillonListOf::TQuillonListOf;
  const TQuillonDataClass& ItemClass() const override;
};

class TVELZeitrahmenmarkierungsliste : public TQuillonListOf<TVELZeitrahmenmarkierung, TVELDataList> {
 public:
  using TQuillonListOf::TQuillonListOf;
  const TQuillonDataClass& ItemClass() const override;
};

class TVELPositionsschemata : public TQuillonListOf<TVELPositionsschema, TVELDataList> {
 public:
  using TQuillonListOf::TQuillonListOf;
  const TQuillonDataClass& ItemClass() const override;
};

class TVELAbstraktePraeferenzenliste : public TQuillonListOf<TVELAbstraktePraeferenz, TVELDataList> {
 public:
  using TQuillonListOf::TQuillonListOf;
  const TQuillonDataClass& ItemClass() const override;
};

class TVELZeitPraeferenzenliste : public TQuillonListOf<TVELAbstraktePraeferenz, TVELDataList> {
 public:
  using TQuillonListOf::TQuillonListOf;
  const TQuillonDataClass& ItemClass() const override;
};

class TVELAnrechnungsliste : public TQuillonListOf<TVELAnrechnung, TVELDataList> {
 public:
  using TQuillonListOf::TQuillonListOf;
  const TQuillonDataClass& ItemClass() const override;
  static int CompareItems(const TQuillonDataObject& A, const TQuillonDataObject& B);
};

class TVELFehlzeitenliste : public TQuillonListOf<TVELFehlzeit, TVELDataList> {
 public:
  using TQuillonListOf::TQuillonListOf;
  const TQuillonDataClass& ItemClass() const override;
  static int CompareItems(const TQuillonDataObject& A, const TQuillonDataObject& B);
};

class TVELAenderungsliste : public TQuillonListOf<TVELAenderung, TVELDataList> {
 public:
  using TQuillonListOf::TQuillonListOf;
  const TQuillonDataClass& ItemClass() const override;
  static int CompareItems(const TQuillonDataObject& A, const TQuillonDataObject& B);
};

class TVELZuweisungsliste : public TQuillonListOf<TVELZuweisung, TVELDataList> {
 public:
  using TQuillonListOf::TQuillonListOf;
  const TQuillonDataClass& ItemClass() const override;
};

class TVELKalenderEintragList : public TQuillonListOf<TVELKalendereintrag, TVELDataList> {
 public:
  using TQuillonListOf::TQuillonListOf;
  const TQuillonDataClass& ItemClass() const override;
  static int CompareItems(const TQuillonDataObject& A, const TQuillonDataObject& B);
};

class TVELAufgabenListe : public TQuillonListOf<TVELAufgabe, TVELKalenderEintragList> {
 public:
  using TQuillonListOf::TQuillonListOf;
  const TQuillonDataClass& ItemClass() const override;
};

class TVELTeilnehmerListe : public TQuillonListOf<TVELTeilnehmer, TVELDataList> {
 public:
  using TQuillonListOf::TQuillonListOf;
  const TQuillonDataClass& ItemClass() const override;
};

class TVELKurswahlliste : public TQuillonListOf<TVELKurswahl, TVELDataList> {
 public:
  using TQuillonListOf::TQuillonListOf;
  const TQuillonDataClass& ItemClass() const override;
};

class TVELFachkombinationeintragliste : public TQuillonListOf<TVELFachkombinationEintrag, TVELDataList> {
 public:
  using TQuillonListOf::TQuillonListOf;
  const TQuillonDataClass& ItemClass() const override;
};

class TVELStundentafelEintragsliste : public TQuillonListOf<TVELStundentafelEintrag, TVELDataList> {
 public:
  using TQuillonListOf::TQuillonListOf;
  const TQuillonDataClass& ItemClass() const override;
};
