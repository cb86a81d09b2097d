#pragma once

#include <cstdint>
#include <string>

#include "uPlandaten/Basis.h"
#include "uSchluessel/Schluessel.h"

class TVELKalendereintrag;
class TVELKlasse;
class TVELKlassenfehlzeit;
class TVELLehrer;
class TVELRaum;
class TVELVeranstaltung;

/// Which class an absence is of.
enum class TAbsenceKind : std::uint8_t { Lehrer, Klasse, Raum };

/// Who or what is missing, and when.
class TVELFehlzeit : public TVELBasisObject {
 public:
  static const TQuillonDataClass& Class();

  virtual TAbsenceKind Kind() const = 0;
  /// The absence as one of the class; null if it is of another.
  template <class T>
  const T* As() const {
    return Kind() == T::OwnKind ? static_cast<const T*>(this) : nullptr;
  }

  TVELDateTime FStart;
  TVELDateTime FEnde;
  std::string FBemerkung;
  TVELKalendereintrag* FTermin = nullptr;  ///< calendar entry behind the absence
  TVELDateTime FModified;                  ///< last change of the content
  bool FNotPublic = false;                 ///< not for the public

  /// An absence that another list than the plan's owns must not overlap others there.
  void CheckConflict(TQuillonDataOperationKind AKind, const TQuillonDataList* AList) const override;
  /// Who or what is missing; null if the file does not tell.
  virtual TVELPlanobjekt* Objekt() const = 0;

 protected:
  /// Stamps the change of the content.
  void AfterStamp() override;
};

/// Absence of a teacher.
class TVELLehrerfehlzeit : public TVELFehlzeit {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }
  static constexpr TAbsenceKind OwnKind = TAbsenceKind::Lehrer;
  TAbsenceKind Kind() const override { return OwnKind; }

  TVELLehrerfehlgrund* FFehlgrund = nullptr;
  TVELLehrerfehlgrunddetail* FFehlgrundDetail = nullptr;
  TVELKlassenfehlzeit* FKlassenfehlzeit = nullptr;  ///< absence of the class that the teacher goes with
  TVELLehrer* FLehrer = nullptr;
  bool FFreistellung = false;  ///< freed, not missing
  bool FVerrechnung = false;   ///< set off against the hours
  double FAnrechenStd = 0;     ///< hours set off

  TVELPlanobjekt* Objekt() const override;
  /// Changes who is missing; the absence moves into the FFehlzeiten of the new one.
  void SetLehrer(TVELLehrer* AValue);
};

/// Absence of a class, or of one lesson of it.
class TVELKlassenfehlzeit : public TVELFehlzeit {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }
  static constexpr TAbsenceKind OwnKind = TAbsenceKind::Klasse;
  TAbsenceKind Kind() const override { return OwnKind; }

  TVELKlassenfehlgrund* FFehlgrund = nullptr;
  TVELKlasse* FKlasse = nullptr;
  TVELVeranstaltung* FKurs = nullptr;  ///< only this lesson of the class is missing

  TVELPlanobjekt* Objekt() const override;
  /// Changes who is missing; the absence moves into the FFehlzeiten of the new one.
  void SetKlasse(TVELKlasse* AValue);
};

/// A room that cannot be used.
class TVELRaumfehlzeit : public TVELFehlzeit {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }
  static constexpr TAbsenceKind OwnKind = TAbsenceKind::Raum;
  TAbsenceKind Kind() const override { return OwnKind; }

  TVELRaumfehlgrund* FFehlgrund = nullptr;
  TVELRaum* FNeuerRaum = nullptr;  ///< room to take instead
  TVELRaum* FRaum = nullptr;
  bool FNichtVerfuegbar = false;  ///< nothing at all may take place

  TVELPlanobjekt* Objekt() const override;
  /// Changes what cannot be used; the absence moves into the FFehlzeiten of the new one.
  void SetRaum(TVELRaum* AValue);
};
