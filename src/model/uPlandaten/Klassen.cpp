#include "uPlandaten/Klassen.h"

#include "uPlandaten/Gebaeude.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Perioden.h"
#include "uPlandaten/Raeume.h"
#include "uPlandaten/Stundentafeln.h"
#include "uPlandaten/Teams.h"

const TQuillonDataClass& TVELKlasse::Class() {
  using T = TVELKlasse;
  // clang-format off
  static const TQuillonDataClass Class = DescribeClass<T, TVELPlanobjekt>("Class", "Klasse \"%s\"")
      .Boolean<&T::FJahressummen>("AnnualTotals")
      .Reference<&T::FAssoziierteKlasse>("AssociatedClass")
      .String<&T::FAttribute>("Attributes")
      .Reference<&T::FBildungsgang>("ProfessionalTrainingCourse")
      .LongInt<&T::FDauer>("Duration")
      .String<&T::FFachwahlskript>("ALevelScript")
      .Single<&T::FFaktor>("Factor", 1)
      .LongInt<&T::FJahr>("ALevelStartYear")
      .LongInt<&T::FHalbjahr>("ALevelSemester")
      .Reference<&T::FGebaeude>("Building")
      .Reference<&T::FBildungsgang>("ProfessionalTrainingCourse")
      .List<&T::FBlockInfos>("BlockInfos")
      .Reference<&T::FKlassenmerkmal>("ClassFeature")
      .Reference<&T::FKursmerkmal>("EventFeature")
      .Reference<&T::FTeam>("Group")
      .Reference<&T::FIntegrierteKlasse>("IntegratedClass")
      .LongInt<&T::FStufe>("Level", -1)
      .LongInt<&T::FMittagspauseDauer>("LengthOfLunchBreak")
      .LongInt<&T::FMittagspauseMaxStd>("LunchBreakMax")
      .LongInt<&T::FMittagspauseMinStd>("LunchBreakMin")
      .LongInt<&T::FMaxSpringStdAnzahl>("MaxLeapLessonsCount")
      .LongInt<&T::FMaxStdAnzahl>("MaxLessonsCount")
      .LongInt<&T::FMinStdAnzahl>("MinHoursCount")
      .Byte<&T::FModus>("ClassMode")
      .Reference<&T::FPeriode>("Period")
      .Reference<&T::FRaum>("Room")
      .Reference<&T::FSchulform>("SchoolType")
      .String<&T::FSchulnummer>("SchoolNumber")
      .Reference<&T::FSchulstelle>("SchoolSite")
      .List<&T::FSchueler>("Students")
      .LongInt<&T::FSchuelerAnzahl>("StudentsCount")
      .Reference<&T::FStundentafel>("LessonsTable")
      .LongInt<&T::FTagesabstand>("WorkdaysBetween")
      .Reference<&T::FLehrer1>("Teacher1")
      .Reference<&T::FLehrer2>("Teacher2")
      .String<&T::FVerordnungstyp>("Verordnungstyp")
      .String<&T::FUsername>("Username")
      .LongInt<&T::FWochentage>("Weekdays")
      .Reference<&T::FZeitraum>("TimeWindow")
      .Date<&T::FZeitraumStart>("ValidFrom")
      .Date<&T::FZeitraumEnde>("ValidTo");
  // clang-format on
  return Class;
}

const TQuillonDataClass& TVELBlockInfo::Class() {
  using T = TVELBlockInfo;
  // clang-format off
  static const TQuillonDataClass Class = DescribeClass<T, TVELBasisObject>("BlockInfo", "Blockinformation")
      .LongInt<&T::FStd>("Lesson").Required()
      .LongInt<&T::FStdAnzahl>("LessonsCount", 1)
      .LongInt<&T::FFarbe>("Color", NoColour);
  // clang-format on
  return Class;
}

std::string TVELBlockInfo::GetDisplayName() const {
  return "Blockinformation für Stunde " + std::to_string(FStd) + " (Stundenanzahl: " + std::to_string(FStdAnzahl) + ")";
}
