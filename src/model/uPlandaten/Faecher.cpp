#include "uPlandaten/Faecher.h"

const TQuillonDataClass& TVELFach::Class() {
  using T = TVELFach;
  // clang-format off
  static const TQuillonDataClass Class = DescribeClass<T, TVELPlanobjekt>("Subject", "Fach \"%s\"")
      .Boolean<&T::FHintergrundfarbe>("BackgroundColor")
      .Boolean<&T::FVertretungsbereitschaft>("ReadyToStandIn")
      .LongInt<&T::FMaxNachmittagsStdAnzahl>("MaxAfternoonLessonsCount")
      .LongInt<&T::FMinNachmittagsStdAnzahl>("MinAfternoonLessonsCount")
      .Boolean<&T::FKeineAusfallstunde>("LessonNotCanceled")
      .Boolean<&T::FKeineVertretung>("NoStand-In")
      .List<&T::FRaeume>("Rooms")
      .List<&T::FTeams>("Groups")
      .Reference<&T::FLehrerSollSchluessel>("TeacherSetKey")
      .String<&T::FSchluessel>("Key")
      .Byte<&T::FFachkategorie>("SubjectCategory")
      .LongInt<&T::FFachfolge>("SubjectOrder")
      .Single<&T::FFaktor>("Factor", 1)
      .LongInt<&T::FAufgabenbereich>("SubjectArea")
      .Reference<&T::FFachstatus>("SubjectStatus");
  // clang-format on
  return Class;
}
