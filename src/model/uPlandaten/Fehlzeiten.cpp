#include "uPlandaten/Fehlzeiten.h"

#include "uPlandaten/Kalender.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Plan.h"
#include "uPlandaten/Raeume.h"
#include "uPlandaten/Relationen.h"
#include "uPlandaten/Veranstaltungen.h"

const TQuillonDataClass& TVELFehlzeit::Class() {
  using T = TVELFehlzeit;
  // clang-format off
  static const TQuillonDataClass Class = DescribeAbstractClass<T, TVELBasisObject>("TVELFehlzeit")
      .DateTime<&T::FStart>("Start")
      .DateTime<&T::FEnde>("End")
      .String<&T::FBemerkung>("Comment")
      .Reference<&T::FTermin>("CalendarEvent")
      .DateTime<&T::FModified>("Modified")
      .Boolean<&T::FNotPublic>("NotPublic");
  // clang-format on
  return Class;
}

void TVELFehlzeit::CheckConflict(TQuillonDataOperationKind AKind, const TQuillonDataList* /*AList*/) const {
  const auto* const List = dynamic_cast<const TVELFehlzeitenliste*>(FOwner);
  const TVELPlan* const Owner = Plan();
  if (!MayConflict(AKind) || List == nullptr || (Owner != nullptr && List == &Owner->FFehlzeiten)) {
    return;
  }
  for (const TVELFehlzeit* Other : *List) {
    if (Other != this && Other->FStart < FEnde && FStart < Other->FEnde) {
      throw EQuillonDataConflict(ctSemanticConflict, "Die Fehlzeit überschneidet sich mit einer anderen.");
    }
  }
}

void TVELFehlzeit::AfterStamp() { FModified = FChanged; }

const TQuillonDataClass& TVELLehrerfehlzeit::Class() {
  using T = TVELLehrerfehlzeit;
  // clang-format off
  static const TQuillonDataClass Class = DescribeClass<T, TVELFehlzeit>("TeacherAbsenceTime", "Lehrerfehlzeit")
      .Reference<&T::FFehlgrund>("AbsenceReason")
      .Reference<&T::FFehlgrundDetail>("TeacherAbsenceReasonDetail")
      .Reference<&T::FKlassenfehlzeit>("ClassAbsenceTime")
      .Reference<&T::FLehrer, &T::SetLehrer>("Teacher").Essential()
      .Boolean<&T::FFreistellung>("Exemption")
      .Boolean<&T::FVerrechnung>("Settlement")
      .Single<&T::FAnrechenStd>("LessonsSettled").Required();
  // clang-format on
  return Class;
}

TVELPlanobjekt* TVELLehrerfehlzeit::Objekt() const { return FLehrer; }

void TVELLehrerfehlzeit::SetLehrer(TVELLehrer* AValue) { uPlandaten::SetRelated(*this, FLehrer, AValue); }

const TQuillonDataClass& TVELKlassenfehlzeit::Class() {
  using T = TVELKlassenfehlzeit;
  // clang-format off
  static const TQuillonDataClass Class = DescribeClass<T, TVELFehlzeit>("ClassAbsenceTime", "Klassenfehlzeit")
      .Reference<&T::FFehlgrund>("AbsenceReason")
      .Reference<&T::FKlasse, &T::SetKlasse>("Class").Essential()
      .Reference<&T::FKurs>("Event");
  // clang-format on
  return Class;
}

TVELPlanobjekt* TVELKlassenfehlzeit::Objekt() const { return FKlasse; }

void TVELKlassenfehlzeit::SetKlasse(TVELKlasse* AValue) { uPlandaten::SetRelated(*this, FKlasse, AValue); }

const TQuillonDataClass& TVELRaumfehlzeit::Class() {
  using T = TVELRaumfehlzeit;
  // clang-format off
  static const TQuillonDataClass Class = DescribeClass<T, TVELFehlzeit>("RoomUnavailableTime", "Raumfehlzeit")
      .Reference<&T::FFehlgrund>("AbsenceReason")
      .Reference<&T::FNeuerRaum>("NewRoom")
      .Reference<&T::FRaum, &T::SetRaum>("Room").Essential()
      .Boolean<&T::FNichtVerfuegbar>("NotAvailable");
  // clang-format on
  return Class;
}

TVELPlanobjekt* TVELRaumfehlzeit::Objekt() const { return FRaum; }

void TVELRaumfehlzeit::SetRaum(TVELRaum* AValue) { uPlandaten::SetRelated(*this, FRaum, AValue); }
