#pragma once

#include <string_view>

#include "uPlandaten/Aenderungen.h"

class TVELLehrer;
class TVELRaum;
class TVELTermin;

/// A substitution of an appointment.
class TVELVertretung : public TVELAenderung {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }
  static constexpr TChangeKind OwnKind = TChangeKind::Vertretung;
  TChangeKind Kind() const override { return OwnKind; }

  bool FFuellen = false;
  TVELFehlstellengrund FFehlstellengrund = TVELFehlstellengrund::vaKein;
  TVELVertretungsmerkmal FVertretungsmerkmal = TVELVertretungsmerkmal::vmKein;
  TVELVerrechnungsart FVerrechnungsart = TVELVerrechnungsart::vaKeine;
  bool FKonflikt = false;
  TVELTermin* FNeuerTermin = nullptr;   ///< appointment that takes the place
  TVELDateTime FNeuesTerminDatum;       ///< day on which it lies
  TVELTermin* FTauschTermin = nullptr;  ///< appointment that was moved
  bool FTauschTerminLehrer = false;     ///< teachers are swapped
  bool FTauschTerminRaum = false;       ///< rooms are swapped
  TVELVertretungslehrermerkmal FVertretungslehrermerkmal = TVELVertretungslehrermerkmal::vlmKein;
  TVELVertretungsqualitaet* FVertretungsqualitaet = nullptr;
  TVELVertretungslehrerart* FVertretungslehrerart = nullptr;

  /// Names of the reason and of the feature, empty for those that have none.
  std::string_view GetFehlstellengrund() const;
  std::string_view GetVertretungsmerkmal() const;
  /// When the moved appointment begins and ends; 0 without appointment or new date.
  TVELDateTime NeuStart() const;
  TVELDateTime NeuEnde() const;
  /// The first teacher that comes in.
  TVELLehrer* Vertreter() const;
  /// The first teacher that is missing.
  TVELLehrer* Fehlender() const;

 protected:
  /// What older releases held otherwise.
  void Upgrade();
};

/// A substitution of a supervision.
class TVELAufsichtsVertretung : public TVELAenderung {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }
  static constexpr TChangeKind OwnKind = TChangeKind::AufsichtsVertretung;
  TChangeKind Kind() const override { return OwnKind; }

  bool FKonflikt = false;
  bool FKeineVertretung = false;

  /// The first teacher that comes in.
  TVELLehrer* Lehrer() const;
};

/// Another room for an appointment.
class TVELRaumaenderung : public TVELAenderung {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }
  static constexpr TChangeKind OwnKind = TChangeKind::Raumaenderung;
  TChangeKind Kind() const override { return OwnKind; }

  bool FKonflikt = false;
  bool FEntfaellt = false;

  /// The first room that comes in.
  TVELRaum* Raum() const;
};
