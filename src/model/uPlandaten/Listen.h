#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "QuillonDataObjects/Literal.h"
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

namespace uPlandaten {

/// The description of a class that lists hold, where the class itself is only named.
template <class TItem>
const TQuillonDataClass& ItemClassOf();

}  // namespace uPlandaten

/// A list of items of one class, told from others by its name.
template <class TItem, TQuillonLiteral AName, class TBase = TVELDataList>
class TVELListe : public TQuillonListOf<TItem, TBase> {
 public:
  using TQuillonListOf<TItem, TBase>::TQuillonListOf;

  static const TQuillonDataClass& Class() {
    static const TQuillonDataClass Description = DescribeAbstractClass<TVELListe, TBase>(AName.View());
    return Description;
  }
  const TQuillonDataClass& DataClass() const override { return Class(); }
  const TQuillonDataClass& ItemClass() const override { return uPlandaten::ItemClassOf<TItem>(); }
};

/// Master data: objects that are told by an abbreviation.
class TVELStammobjektliste : public TVELListe<TVELStammobjekt, "TVELStammobjektliste"> {
 public:
  using TVELListe::TVELListe;

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
class TVELPlanobjektliste : public TVELListe<TVELPlanobjekt, "TVELPlanobjektliste", TVELStammobjektliste> {
 public:
  using TVELListe::TVELListe;

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

// The lists of single families with look-ups or rules of their own.

class TVELKlassenliste : public TVELListe<TVELKlasse, "TVELKlassenliste", TVELPlanobjektliste> {
 public:
  using TVELListe::TVELListe;
  /// The first item with the name, an empty one included; null if there is none.
  TVELKlasse* FindUser(std::string_view AUserName, bool ACaseSensitive, const TVELKlasse* AnExcluded = nullptr) const;
};

class TVELLehrerliste : public TVELListe<TVELLehrer, "TVELLehrerliste", TVELPlanobjektliste> {
 public:
  using TVELListe::TVELListe;
  /// The first item with the name, an empty one included; null if there is none.
  TVELLehrer* FindUser(std::string_view AUserName, bool ACaseSensitive, const TVELLehrer* AnExcluded = nullptr) const;
};

class TVELRaumliste : public TVELListe<TVELRaum, "TVELRaumliste", TVELPlanobjektliste> {
 public:
  using TVELListe::TVELListe;
  /// The first item with the name, an empty one included; null if there is none.
  TVELRaum* FindUser(std::string_view AUserName, bool ACaseSensitive, const TVELRaum* AnExcluded = nullptr) const;
};

class TVELSchuelerliste : public TVELListe<TVELSchueler, "TVELSchuelerliste", TVELPlanobjektliste> {
 public:
  using TVELListe::TVELListe;
  /// The first item with the name, an empty one included; null if there is none.
  TVELSchueler* FindUser(std::string_view AUserName, bool ACaseSensitive,
                         const TVELSchueler* AnExcluded = nullptr) const;
  TVELSchueler* FindName(std::string_view AVorname, std::string_view ANachname, bool ACaseSensitive) const;
  TVELSchueler* FindSchuelerNr(std::string_view ASchuelerNr) const;
  /// By the student's number as it stands, else by the web name.
  TVELStammobjekt* WebFind(std::string_view AKuerzel, bool ACaseSensitive) const;
};

class TVELVeranstaltungsliste : public TVELListe<TVELVeranstaltung, "TVELVeranstaltungsliste"> {
 public:
  using TVELListe::TVELListe;
  static int CompareItems(const TQuillonDataObject& A, const TQuillonDataObject& B);
};

class TVELTerminliste : public TVELListe<TVELTermin, "TVELTerminliste"> {
 public:
  using TVELListe::TVELListe;
  /// Unscheduled appointments behind scheduled ones, these by the end of their place in the week; equal ones by their
  /// places in the lists that own them, which is a walk for each.
  static int CompareItems(const TQuillonDataObject& A, const TQuillonDataObject& B);
  /// Sorts by that order.
  void SortByTime();
  /// Removes the appointment, and frees it in an owning list.
  void RemoveItem(const TVELTermin& AnAppointment);

 protected:
  // Those of an appointment that comes or is taken out. One that is freed sees to it itself.
  void AfterInsert(int AnIndex) override;
  void BeforeExtract(int AnIndex) override;
};

class TVELTeilnehmerListe : public TVELListe<TVELTeilnehmer, "TVELTeilnehmerListe"> {
 public:
  using TVELListe::TVELListe;
  /// Removes the participants who are the object.
  void RemoveReference(const TVELDataObject& AnObject);
};

class TVELBlockliste : public TVELListe<TVELBlock, "TVELBlockliste"> {
 public:
  using TVELListe::TVELListe;
  /// The first block with the name; null if there is none.
  TVELBlock* FindBlock(std::string_view ABlockID) const;
};

class TVELBlockInfoListe : public TVELListe<TVELBlockInfo, "TVELBlockInfoListe"> {
 public:
  using TVELListe::TVELListe;

 protected:
  std::string GetBaseDisplayName() const override { return "Blockinfoliste"; }
};

class TVELZeitrahmenliste : public TVELListe<TVELZeitrahmen, "TVELZeitrahmenliste"> {
 public:
  using TVELListe::TVELListe;
  /// The first frame with the abbreviation, compared exactly; null if there is none.
  TVELZeitrahmen* FindKuerzel(std::string_view AKuerzel) const;
};

class TVELAnrechnungsliste : public TVELListe<TVELAnrechnung, "TVELAnrechnungsliste"> {
 public:
  using TVELListe::TVELListe;
  static int CompareItems(const TQuillonDataObject& A, const TQuillonDataObject& B);
};

class TVELFehlzeitenliste : public TVELListe<TVELFehlzeit, "TVELFehlzeitenliste"> {
 public:
  using TVELListe::TVELListe;
  static int CompareItems(const TQuillonDataObject& A, const TQuillonDataObject& B);
};

class TVELAenderungsliste : public TVELListe<TVELAenderung, "TVELAenderungsliste"> {
 public:
  using TVELListe::TVELListe;
  static int CompareItems(const TQuillonDataObject& A, const TQuillonDataObject& B);
};

class TVELKalenderEintragList : public TVELListe<TVELKalendereintrag, "TVELKalenderEintragList"> {
 public:
  using TVELListe::TVELListe;
  static int CompareItems(const TQuillonDataObject& A, const TQuillonDataObject& B);
};

// The lists of single families that have nothing of their own: each is named after the class that it holds.

// clang-format off
using TVELTeamsliste = TVELListe<TVELTeam, "TVELTeamsliste", TVELStammobjektliste>;
using TVELGebaeudeliste = TVELListe<TVELGebaeude, "TVELGebaeudeliste", TVELStammobjektliste>;
using TVELAufsichtsbereichsliste = TVELListe<TVELAufsichtsbereich, "TVELAufsichtsbereichsliste", TVELStammobjektliste>;
using TVELPeriodenliste = TVELListe<TVELPeriode, "TVELPeriodenliste", TVELStammobjektliste>;
using TVELZeitraumliste = TVELListe<TVELZeitraum, "TVELZeitraumliste", TVELStammobjektliste>;
using TVELStundentafelliste = TVELListe<TVELStundentafel, "TVELStundentafelliste", TVELStammobjektliste>;
using TVELFachliste = TVELListe<TVELFach, "TVELFachliste", TVELPlanobjektliste>;
using TVELRessourcenliste = TVELListe<TVELRessource, "TVELRessourcenliste", TVELPlanobjektliste>;
using TVELLehrerfachliste = TVELListe<TVELLehrerfach, "TVELLehrerfachliste">;
using TVELLehrerSollAenderungsListe = TVELListe<TVELLehrerSollAenderung, "TVELLehrerSollAenderungsListe">;
using TVELRessourcenvorgaben = TVELListe<TVELRessourcenvorgabe, "TVELRessourcenvorgaben">;
using TVELAusstattungsliste = TVELListe<TVELAusstattung, "TVELAusstattungsliste">;
using TVELAufsichtsliste = TVELListe<TVELAufsicht, "TVELAufsichtsliste">;
using TVELZeitrahmenzeilenliste = TVELListe<TVELZeitrahmenzeile, "TVELZeitrahmenzeilenliste">;
using TVELZeitrahmenmarkierungsliste = TVELListe<TVELZeitrahmenmarkierung, "TVELZeitrahmenmarkierungsliste">;
using TVELPositionsschemata = TVELListe<TVELPositionsschema, "TVELPositionsschemata">;
using TVELAbstraktePraeferenzenliste = TVELListe<TVELAbstraktePraeferenz, "TVELAbstraktePraeferenzenliste">;
using TVELZeitPraeferenzenliste = TVELListe<TVELAbstraktePraeferenz, "TVELZeitPraeferenzenliste">;
using TVELZuweisungsliste = TVELListe<TVELZuweisung, "TVELZuweisungsliste">;
using TVELAufgabenListe = TVELListe<TVELAufgabe, "TVELAufgabenListe", TVELKalenderEintragList>;
using TVELKurswahlliste = TVELListe<TVELKurswahl, "TVELKurswahlliste">;
using TVELFachkombinationeintragliste = TVELListe<TVELFachkombinationEintrag, "TVELFachkombinationeintragliste">;
using TVELStundentafelEintragsliste = TVELListe<TVELStundentafelEintrag, "TVELStundentafelEintragsliste">;
// clang-format on
