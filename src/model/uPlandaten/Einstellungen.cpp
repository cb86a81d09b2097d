#include "uPlandaten/Einstellungen.h"

#include "uPlandaten/Zeitrahmen.h"

const TQuillonDataClass& TVELEinstellungen::Class() {
  using T = TVELEinstellungen;
  // clang-format off
  static const TQuillonDataClass Class = DescribeClass<T, TVELBasisObject>("Settings", "Einstellungen")
      .Boolean<&T::FAutomWochenfaktor>("AutoWeekfactor", true)
      .LongInt<&T::FPublishDaysScope>("PublishDaysScope").AlwaysWritten()
      .StringArray<&T::FBemerkung>("Comments")
      .StringArray<&T::FBezeichnungen>("Names")
      .Hook<&T::UpgradeNames>()
      .String<&T::FFachwahlskript>("ALevelScript")
      .Date<&T::FGueltigVon>("ValidFrom")
      .Date<&T::FGueltigBis>("ValidTo")
      .String<&T::FWochenAusgenommen>("LessonWeeks").Required()
      .Boolean<&T::FLehrerWertFaktoren>("TeacherValueFactors")
      .LongInt<&T::FBrenmarkMandant>("BrenmarkClient").Required()
      .LongInt<&T::FBrenmarkZeitraum>("BrenmarkTimePeriod").Required()
      .ShortInt<&T::FNachkommastellen>("PlacesAfterDecimalPoint").AlwaysWritten()
      .Byte<&T::FStatistikkontrolle>("StatisticsCheck").Required()
      .Single<&T::FMinProDefaultStd>("MinProDefaultLessons", 45)
      .LongInt<&T::FMinLKSchuelerAnzahl>("MinLKStudentCount", 5).AlwaysWritten()
      .LongInt<&T::FMaxLKSchuelerAnzahl>("MaxLKStudentCount", 25).AlwaysWritten()
      .LongInt<&T::FMinGKSchuelerAnzahl>("MinGKStudentCount", 5).AlwaysWritten()
      .LongInt<&T::FMaxGKSchuelerAnzahl>("MaxGKStudentCount", 25).AlwaysWritten()
      .Reference<&T::FLKUnterrichtsart1>("LKLessonType1")
      .Reference<&T::FLKUnterrichtsart2>("LKLessonType2")
      .Reference<&T::FStandardUnterrichtsart>("LessonType")
      .Single<&T::FStatistikWochenAnzahl>("StatisticsWeeksCount").Required()
      .Byte<&T::FStdAnzeige>("LessonsDisplay").Required()
      .SmallInt<&T::FStundenplanAbschnitt>("PeriodSectionNr")
      .LongInt<&T::FStundenplanID>("TimetableID", -1)
      .String<&T::FStundenplantitel>("TimetableTitle")
      .LongInt<&T::FStundenplanvariante>("TimetableVariant")
      .Date<&T::FStundenplanZeitraumVon>("TimetablePeriodFrom")
      .Date<&T::FStundenplanZeitraumBis>("TimetablePeriodTo")
      .Object<&T::FTerminInhalte>("LessonLayout")
      .LongInt<&T::FTerminfarbe>("TimeColor").Required()
      .LongInt<&T::FTerminfarbverlauf>("TimeColorGradient").Required()
      .Byte<&T::FWochenende>("Weekend").Required()
      .Byte<&T::FWochenstart>("WeekStart").Required()
      .Byte<&T::FStatistikArt>("StatisticsType")
      .Byte<&T::FFehlgruendeAnzeigen>("ShowAbsences")
      .Boolean<&T::FFehlgrundInCaption>("ShowAbsenceReason")
      .Boolean<&T::FLineWrap>("LineWrap")
      .Boolean<&T::FNullWocheEinmalige>("ZeroWeekNonReocurring")
      .Boolean<&T::FZeigeAufsichten>("ShowSupervisions")
      .String<&T::FZeigeWochen>("WeekFmt").AlwaysWritten()
      .String<&T::FWochenPrefix>("WeekPrefix").AlwaysWritten().Since("6.0.172").KeepsCurrent()
      .Boolean<&T::FZeigeBemerkung>("ShowComment")
      .Boolean<&T::FZeigeLehrersymbole>("ShowTeacherIcons")
      .Object<&T::FZeitrahmen>("TimeFrame")
      .Boolean<&T::FStandardDauerRechnen>("CalculateStandardLesson");
  // clang-format on
  return Class;
}

void TVELEinstellungen::InitProperties() {
  TVELBasisObject::InitProperties();
  FTerminInhalte.Take(QuillonDataObjects::Create<TVELTermininhalte>(this), *this);
  FZeitrahmen.Take(QuillonDataObjects::Create<TVELZeitrahmen>(this), *this);
}

void TVELEinstellungen::Clear() {
  const auto Fresh = TQuillonDataHandle<TVELEinstellungen>(QuillonDataObjects::Create<TVELEinstellungen>(nullptr));
  for (const TQuillonDataRow& Row : Class().Rows()) {
    if (Row.Kind != TQuillonRowKind::Object && Row.Kind != TQuillonRowKind::Hook && !Row.IsStamp &&
        Row.Name != "AutoWeekfactor") {
      QuillonDataObjects::AssignRow(Row, *this, *Fresh);
    }
  }
  FLineWrap = true;
  FStandardKursartLowerCase = Fresh->FStandardKursartLowerCase;
  FNonStandardKursartUpperCase = Fresh->FNonStandardKursartUpperCase;
  FAenderungenFreigeben = Fresh->FAenderungenFreigeben;
  FShowAlwaysTime = Fresh->FShowAlwaysTime;
  FNoMessage = Fresh->FNoMessage;
}

void TVELEinstellungen::UpgradeNames() {
  if (FileRelease() < "6.0.124") {
    for (const char* Name : {"Klasse", "Lehrer", "Raum"}) {
      FBezeichnungen.emplace_back(Name);
    }
  }
}

const TQuillonDataClass& TVELTermininhalte::Class() {
  using T = TVELTermininhalte;
  // clang-format off
  static const TQuillonDataClass Class = DescribeClass<T, TVELBasisObject>("LessonLayout", "Termininhalte")
      .Object<&T::FKlasse>("Class")
      .Object<&T::FLehrer>("Teacher")
      .Object<&T::FRaum>("Room")
      .Object<&T::FFach>("Subject")
      .Object<&T::FWoche>("Week")
      .Object<&T::FVeranstaltung>("Event")
      .Object<&T::FBlock>("Block")
      .Object<&T::FPeriode>("Period")
      .Object<&T::FZeit>("Time")
      .Object<&T::FTitel>("Title")
      .Object<&T::FBemerkung>("Comment");
  // clang-format on
  return Class;
}

void TVELTermininhalte::InitProperties() {
  TVELBasisObject::InitProperties();
  for (auto* Part : {&FKlasse, &FLehrer, &FRaum, &FFach, &FWoche, &FVeranstaltung, &FBlock, &FPeriode, &FZeit, &FTitel,
                     &FBemerkung}) {
    Part->Take(QuillonDataObjects::Create<TVELTermininhalt>(this), *this);
  }
}

const TQuillonDataClass& TVELTermininhalt::Class() {
  using T = TVELTermininhalt;
  // clang-format off
  static const TQuillonDataClass Class = DescribeClass<T, TVELBasisObject>("LessonContent", "Termininhalt")
      .LongInt<&T::FSchriftfarbe>("LessonFontColor").Required()
      .Byte<&T::FSchriftstil>("LessonFontStyle").Required();
  // clang-format on
  return Class;
}
