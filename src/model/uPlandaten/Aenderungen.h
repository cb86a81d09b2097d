#pragma once

#include <cstdint>
#include <string>

#include "uPlandaten/Basis.h"
#include "uPlandaten/Listen.h"
#include "uPlandaten/Werte.h"
#include "uSchluessel/Schluessel.h"

class TVELAbstrakterTermin;
class TVELAufsicht;
class TVELFach;
class TVELFehlzeit;
class TVELTermin;
class TVELZeitrahmen;

/// Which class a change is of. Those that have no appointment of their own stand last.
enum class TChangeKind : std::uint8_t {
  Vertretung,
  AufsichtsVertretung,
  Raumaenderung,
  Mitteilung,
  Zusatzunterricht,
  Zuweisung
};

/// A deviation from the timetable on a day.
class TVELAenderung : public TVELBasisObject {
 public:
  static const TQuillonDataClass& Class();

  virtual TChangeKind Kind() const = 0;
  /// True for a TVELZusatzAenderung.
  bool IsAddition() const { return Kind() >= TChangeKind::Mitteilung; }
  /// The change as one of the class, which is one of those that TChangeKind names; null if it is of another.
  template <class T>
  const T* As() const {
    return Kind() == T::OwnKind ? static_cast<const T*>(this) : nullptr;
  }

  TVELAbstrakterTermin* FATermin = nullptr;  ///< changed appointment or supervision
  std::string FInformation;                  ///< title
  std::string FMitteilung;                   ///< text
  std::string FBemerkung;
  TVELDateTime FEnde;
  TVELDateTime FStart;
  TVELAenderungsStatus FAenderungsstatus = TVELAenderungsStatus::aeOpen;
  bool FNotPublic = false;
  TVELAenderung* FSpiegelAenderung = nullptr;             ///< other half of a swap
  double FVerrechneteStd = 0;                             ///< hours set off
  TVELDateTime FModified;                                 ///< last change of the content
  TVELVertretungsentfall* FVertretungsentfall = nullptr;  ///< reason for no substitution
  TVELFehlgrund* FFehlgrund = nullptr;
  TVELPlanobjektliste FNeu{this};  ///< objects that come in
  TVELFach* FNeuesFach = nullptr;
  TVELPlanobjektliste FOriginal{this};  ///< objects of the timetable
  TVELFach* FOriginalFach = nullptr;
  TVELPlanobjektliste FFehlend{this};  ///< objects that are missing
  TVELFehlzeit* FFehlzeit = nullptr;   ///< absence that caused the change

  /// The changed appointment; null if a supervision was changed, or nothing.
  TVELTermin* Termin() const;
  /// The changed supervision; null if an appointment was changed, or nothing.
  TVELAufsicht* Aufsicht() const;
  /// The status that counts: what is not public, itself or by its absence, is aeNotPublic or aeNotPublicAbsence.
  virtual TVELAenderungsStatus Status() const;

 protected:
  /// What older releases held otherwise.
  void UpgradeStatus();
};

/// A change with no appointment of its own.
class TVELZusatzAenderung : public TVELAenderung {
 public:
  static const TQuillonDataClass& Class();

 protected:
  void InitProperties() override;
};

/// A message to all or some.
class TVELMitteilung : public TVELZusatzAenderung {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }
  static constexpr TChangeKind OwnKind = TChangeKind::Mitteilung;
  TChangeKind Kind() const override { return OwnKind; }

  bool FAlleKlassen = false;
  bool FAlleLehrer = false;

  /// True if it has no time of day.
  bool Ganztaegig() const;
};

/// A lesson that stands in no timetable.
class TVELZusatzunterricht : public TVELZusatzAenderung {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }
  static constexpr TChangeKind OwnKind = TChangeKind::Zusatzunterricht;
  TChangeKind Kind() const override { return OwnKind; }

  TVELUnterrichtsart* FKursart = nullptr;
  std::int8_t FKursNr = -1;  ///< -1 for none

  /// That of the first class of the lesson; the standard one without class.
  TVELZeitrahmen* Zeitrahmen() const;
  /// Names of those who take part, joined by ", ".
  std::string Member() const;

 protected:
  /// What older releases held otherwise.
  void UpgradeOriginal();
};

/// An assignment of resources or rooms.
class TVELZuweisung : public TVELZusatzAenderung {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }
  static constexpr TChangeKind OwnKind = TChangeKind::Zuweisung;
  TChangeKind Kind() const override { return OwnKind; }
};
