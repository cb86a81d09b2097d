#include "uPlandaten/Aenderungen.h"

#include <cmath>
#include <set>

#include "uPlandaten/Aufsichten.h"
#include "uPlandaten/Faecher.h"
#include "uPlandaten/Fehlzeiten.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Plan.h"
#include "uPlandaten/Raeume.h"
#include "uPlandaten/Ressourcen.h"
#include "uPlandaten/Schueler.h"
#include "uPlandaten/Termine.h"

const TQuillonDataClass& TVELAenderung::Class() {
  using T = TVELAenderung;
  // clang-format off
  static const TQuillonDataClass Class = DescribeAbstractClass<T, TVELBasisObject>("TVELAenderung")
      .Reference<&T::FATermin>("Time").Essential()
      .String<&T::FInformation>("Information")
      .String<&T::FMitteilung>("Message")
      .String<&T::FBemerkung>("Comment")
      .DateTime<&T::FEnde>("End")
      .DateTime<&T::FStart>("Start")
      .Byte<&T::FAenderungsstatus>("State")
      .Boolean<&T::FNotPublic>("NotPublic")
      .Reference<&T::FSpiegelAenderung>("MirrorChange")
      .Single<&T::FVerrechneteStd>("LessonsSettled")
      .DateTime<&T::FModified>("Modified")
      .Reference<&T::FVertretungsentfall>("SkipStandInReason")
      .Reference<&T::FFehlgrund>("AbsenceReason")
      .List<&T::FNeu>("New")
      .Reference<&T::FNeuesFach>("Subject")
      .List<&T::FOriginal>("Original")
      .Reference<&T::FOriginalFach>("OriginalSubject")
      .List<&T::FFehlend>("Absent")
      .Reference<&T::FFehlzeit>("AbsenceTime")
      .Hook<&T::UpgradeStatus>();
  // clang-format on
  return Class;
}

TVELTermin* TVELAenderung::Termin() const { return uDataObjects::As<TVELTermin>(FATermin); }

TVELAufsicht* TVELAenderung::Aufsicht() const { return uDataObjects::As<TVELAufsicht>(FATermin); }

TVELAenderungsStatus TVELAenderung::Status() const {
  if (FNotPublic) {
    return aeNotPublic;
  }
  return FFehlzeit != nullptr && FFehlzeit->FNotPublic ? aeNotPublicAbsence : FAenderungsstatus;
}

void TVELAenderung::UpgradeStatus() {
  const TQuillonRelease Release = FileRelease();
  if (Release < "6.0.53") {
    FAenderungsstatus = static_cast<TVELAenderungsStatus>(FAenderungsstatus + 1);
  }
  if (Release < "6.0.127" && FAenderungsstatus == aeNotPublic) {
    FNotPublic = false;
  }
}

const TQuillonDataClass& TVELZusatzAenderung::Class() {
  using T = TVELZusatzAenderung;
  // clang-format off
  static const TQuillonDataClass Class = DescribeAbstractClass<T, TVELAenderung>("TVELZusatzAenderung")
      .List<&T::FNeu>("Teacher").Until("6.0.114").Merged()
      .List<&T::FNeu>("Classes").Until("6.0.114").Merged()
      .List<&T::FNeu>("Rooms").Until("6.0.114").Merged()
      .List<&T::FNeu>("Resources").Until("6.0.114").Merged();
  // clang-format on
  return Class;
}

void TVELZusatzAenderung::InitProperties() {
  TVELAenderung::InitProperties();
  FAenderungsstatus = aeFinished;
}

const TQuillonDataClass& TVELMitteilung::Class() {
  using T = TVELMitteilung;
  // clang-format off
  static const TQuillonDataClass Class = DescribeClass<T, TVELZusatzAenderung>("Message", "Mitteilung")
      .Boolean<&T::FAlleKlassen>("AllClasses")
      .Boolean<&T::FAlleLehrer>("AllTeachers");
  // clang-format on
  return Class;
}

bool TVELMitteilung::Ganztaegig() const { return FStart == std::trunc(FStart) && FEnde == std::trunc(FEnde); }

const TQuillonDataClass& TVELZusatzunterricht::Class() {
  using T = TVELZusatzunterricht;
  // clang-format off
  static const TQuillonDataClass Class = DescribeClass<T, TVELZusatzAenderung>("AdditionalLesson", "Zusatzunterricht")
      .Reference<&T::FKursart>("LessonType")
      .ShortInt<&T::FKursNr>("CourseNo", -1)
      .List<&T::FNeu>("Student").Until("6.0.114").Merged()
      .Hook<&T::UpgradeOriginal>();
  // clang-format on
  return Class;
}

TVELZeitrahmen* TVELZusatzunterricht::Zeitrahmen() const {
  if (const TVELKlasse* const Class = FOriginal.First<TVELKlasse>()) {
    return Class->Timeframe();
  }
  return StandardTimeframe();
}

std::string TVELZusatzunterricht::Member() const { return FOriginal.JoinCodes(); }

void TVELZusatzunterricht::UpgradeOriginal() {
  if (FileRelease() >= "6.0.144") {
    return;
  }
  std::set<TGUID> Present;
  for (const TQuillonDataObject* Item : FOriginal.Items()) {
    Present.insert(Item->ID());
  }
  for (TQuillonDataObject* Item : FNeu.Items()) {
    if (Present.insert(Item->ID()).second) {
      FOriginal.Append(Item);
    }
  }
  FNeu.Clear();
}

const TQuillonDataClass& TVELZuweisung::Class() {
  // clang-format off
  static const TQuillonDataClass Class = DescribeClass<TVELZuweisung, TVELZusatzAenderung>("Assignment", "Zuweisung");
  // clang-format on
  return Class;
}
