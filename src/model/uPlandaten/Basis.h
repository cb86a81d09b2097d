#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "uDataObjects/DataObjects.h"
#include "uPlandaten/Listen.h"
#include "uPlandaten/Werte.h"

class TVELPlan;
class TVELZeitrahmen;

/// Base of all objects of a plan but the keys.
class TVELBasisObject : public TVELDataObject {
 public:
  static const TQuillonDataClass& Class();

  /// The plan that the object belongs to; null for an object without storage.
  TVELPlan* Plan() const;

 protected:
  /// The plan's standard time frame; null without plan.
  TVELZeitrahmen* StandardTimeframe() const;
};

/// Master data: an object that is told by an abbreviation.
class TVELStammobjekt : public TVELBasisObject {
 public:
  static const TQuillonDataClass& Class();

  std::string FKuerzel;          ///< abbreviation, the name shown everywhere
  std::string FBezeichnung;      ///< long name
  std::int32_t FBrenmarkID = 0;  ///< number in an outside administration system
  std::string FOstrelID;         ///< identifier on the data platform

  /// The plan's standard time frame; null if there is none.
  virtual TVELZeitrahmen* Timeframe() const;
  /// Two items of a list must not have one abbreviation. Without AList the list that owns the object counts.
  void CheckConflict(TQuillonDataOperationKind AKind, const TQuillonDataList* AList) const override;
  /// Name in links of a publication: the web form of the abbreviation without blanks.
  std::string WebName() const;

 protected:
  std::string DisplayArgument() const override { return FKuerzel; }
};

/// Master data that takes part in the timetable.
class TVELPlanobjekt : public TVELStammobjekt {
 public:
  static const TQuillonDataClass& Class();

  std::string FBemerkung;
  TColor FFarbe = NoColour;                        ///< display colour
  TVELVeranstaltungsliste FVeranstaltungen{this};  ///< lessons it takes part in, in their order
  TVELDateTime FVertretungsplanAenderung;          ///< last change of its substitutions
  TVELZeitPraeferenzenliste FZeitpraeferenzen{this, TQuillonDataList::TItems::Owned};
  bool FNichtVerfuegbar = false;
  bool FKeineStatistik = false;
  bool FKeinBrenmarkAbgleich = false;
  bool FKeineAufsicht = false;
  TVELFehlzeitenliste FFehlzeiten{this};  ///< its absences; owned by the plan
  TVELZeitrahmen* FZeitrahmen = nullptr;  ///< own time frame; the plan's if none

  TVELZeitrahmen* Timeframe() const override;
  /// Enters a lesson that refers to this object, the lesson of an appointment that does, or an absence of it.
  void AddReference(TVELDataObject& AReferrer);
  /// As AddReference the other way round. The lesson of an appointment stays while anything else of it refers to this
  /// object, see uPlandaten::LessonUses.
  void RemoveReference(TVELDataObject& AReferrer);

 protected:
  void InitProperties() override;
  void FreeProperties() override;
};

namespace uPlandaten {

/// Umlauts as two letters, the rest encoded as in a URL (RFC 3986): all but unreserved characters as "%XX".
std::string WebForm(std::string_view AText);

}  // namespace uPlandaten
