#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "QuillonDataObjects/Literal.h"
#include "uDataObjects/DataObjects.h"
#include "uPlandaten/Werte.h"

/// An entry of a key directory: a value that a school keeps once and refers to.
class TVELSchluessel : public TVELDataObject {
 public:
  static const TQuillonDataClass& Class();

  std::string FKuerzel;          ///< abbreviation
  std::string FSchluessel;       ///< key text, say of a statistic
  std::string FBezeichnung;      ///< long name
  TVELDate FGueltigVon;          ///< first valid day
  TVELDate FGueltigBis;          ///< last valid day
  std::int32_t FBrenmarkID = 0;  ///< number in an outside administration system

 protected:
  std::string DisplayArgument() const override { return FKuerzel; }
};

/// A key with a colour.
class TVELFarbSchluessel : public TVELSchluessel {
 public:
  static const TQuillonDataClass& Class();

  TColor FFarbe = NoColour;  ///< display colour
};

/// A kind of key: told from others by its class tag and its display text only.
template <class TBase, TQuillonLiteral ATag, TQuillonLiteral ADisplayFormat>
class TVELSchluesselArt : public TBase {
 public:
  static const TQuillonDataClass& Class() {
    static const TQuillonDataClass Description =
        DescribeClass<TVELSchluesselArt, TBase>(ATag.View(), ADisplayFormat.View());
    return Description;
  }
  const TQuillonDataClass& DataClass() const override { return Class(); }
};

// clang-format off
using TVELFehlgrund = TVELSchluesselArt<TVELFarbSchluessel, "AbsenceReason", "Fehlgrund \"%s\"">;
using TVELBildungsgang = TVELSchluesselArt<TVELSchluessel, "ProfessionalTrainingCourse", "Bildungsgang \"%s\"">;
using TVELDienststelle = TVELSchluesselArt<TVELSchluessel, "Site", "Dienststelle \"%s\"">;
using TVELFachschwerpunkt = TVELSchluesselArt<TVELSchluessel, "SubjectTopicArea", "Fachschwerpunkt \"%s\"">;
using TVELFachstatus = TVELSchluesselArt<TVELFarbSchluessel, "SubjectStatus", "Fachstatus \"%s\"">;
using TVELKalendereintragKategorie = TVELSchluesselArt<TVELFarbSchluessel, "CalendarEventCategory", "Kalendereintragkategorie \"%s\"">;
using TVELKlassenmerkmal = TVELSchluesselArt<TVELSchluessel, "ClassFeature", "Klassenmerkmal \"%s\"">;
using TVELLehrbereich = TVELSchluesselArt<TVELSchluessel, "TeachingArea", "Lehrbereich \"%s\"">;
using TVELLehrerfehlgrunddetail = TVELSchluesselArt<TVELSchluessel, "TeacherAbsenceReasonDetails", "Lehrerfehlgrunddetails  \"%s\"">;
using TVELLehrerSollAenderungsgrund = TVELSchluesselArt<TVELSchluessel, "TeacherSetChangeReason", "Lehrer-Soll-Änderungsgrund \"%s\"">;
using TVELLehrerSollAenderungsArt = TVELSchluesselArt<TVELSchluessel, "TeacherSetChangeType", "Lehrer-Soll-Änderungsart \"%s\"">;
using TVELLehrertyp = TVELSchluesselArt<TVELSchluessel, "TeacherType", "Lehrertyp \"%s\"">;
using TVELProfil = TVELSchluesselArt<TVELSchluessel, "Profile", "Profil \"%s\"">;
using TVELRaumtyp = TVELSchluesselArt<TVELSchluessel, "RoomType", "Raumtyp \"%s\"">;
using TVELRessourcenmerkmal = TVELSchluesselArt<TVELSchluessel, "ResourceFeature", "Ressourcenmerkmal \"%s\"">;
using TVELRolle = TVELSchluesselArt<TVELSchluessel, "Role", "Rolle \"%s\"">;
using TVELSchulform = TVELSchluesselArt<TVELSchluessel, "SchoolType", "Schulform \"%s\"">;
using TVELSchulstelle = TVELSchluesselArt<TVELSchluessel, "SchoolSite", "Schulstelle \"%s\"">;
using TVELSchultyp = TVELSchluesselArt<TVELSchluessel, "SchoolType", "Schultyp \"%s\"">;
using TVELSchulzweig = TVELSchluesselArt<TVELSchluessel, "SchoolBranch", "Schulzweig \"%s\"">;
using TVELSperrungskategorie = TVELSchluesselArt<TVELFarbSchluessel, "BlockCategory", "Sperrungskategorie \"%s\"">;
using TVELUnterrichtsart = TVELSchluesselArt<TVELSchluessel, "LessonType", "Unterrichtsart \"%s\"">;
using TVELUnterrichtsform = TVELSchluesselArt<TVELSchluessel, "LessonForm", "Unterrichtsform \"%s\"">;
using TVELVeranstaltungskategorie = TVELSchluesselArt<TVELSchluessel, "EventCategory", "Veranstaltungskategorie \"%s\"">;
using TVELVeranstaltungsmerkmal = TVELSchluesselArt<TVELSchluessel, "EventFeature", "Veranstaltungsmerkmal \"%s\"">;
using TVELVertretungsentfall = TVELSchluesselArt<TVELSchluessel, "SkipStandInReason", "Vertretungsentfallgrund \"%s\"">;
using TVELVertretungslehrerart = TVELSchluesselArt<TVELSchluessel, "StandInTeacherType", "Vertretungslehrerart \"%s\"">;
using TVELVertretungsqualitaet = TVELSchluesselArt<TVELSchluessel, "StandInQuality", "Vertretungsqualitaet \"%s\"">;
using TVELZeitpraeferenzkategorie = TVELSchluesselArt<TVELFarbSchluessel, "TimePreferenceCategory", "Zeitpräferenzkategorie \"%s\"">;
using TVELKlassenfehlgrund = TVELSchluesselArt<TVELFehlgrund, "ClassAbsenceReason", "Klassenfehlgrund \"%s\"">;
using TVELRaumfehlgrund = TVELSchluesselArt<TVELFehlgrund, "RoomUnavailableReason", "Raumfehlgrund \"%s\"">;
// clang-format on

/// Why a teacher is missing.
class TVELLehrerfehlgrund : public TVELFehlgrund {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }

  bool FVerrechnen = false;  ///< such an absence is set off against the teacher's hours
};

/// How a change of target hours counts.
class TVELLehrerSollAenderungsSchluessel : public TVELSchluessel {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }

  double FFaktor = 0;
  std::int32_t FKategorie = 0;
  std::string FOperator;
};

/// A kind of resource.
class TVELRessourcenkategorie : public TVELSchluessel {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }

  std::int32_t ResGeplant = 0;  ///< of the running program only
  std::int32_t ResAnzahl = 0;   ///< of the running program only
};
