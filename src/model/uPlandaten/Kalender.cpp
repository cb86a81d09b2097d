#include "uPlandaten/Kalender.h"

#include "uPlandaten/Klassen.h"
#include "uPlandaten/Plan.h"
#include "uPlandaten/Raeume.h"
#include "uPlandaten/Zeitrahmen.h"

const TQuillonDataClass& TVELKalender::Class() {
  using T = TVELKalender;
  // clang-format off
  static const TQuillonDataClass Class = DescribeClass<T, TVELBasisObject>("Calendar", "Kalender")
      .List<&T::FEintraege>("Entries")
      .List<&T::FAufgaben>("Tasks")
      .Byte<&T::FWochenendeErsterTag>("WeekendFirstDay")
      .Byte<&T::FWochenendeLetzterTag>("WeekendLastDay");
  // clang-format on
  return Class;
}

std::string TVELKalender::GetDisplayName() const {
  const TVELPlan* const Owner = Plan();
  return Owner != nullptr && Owner->FKalender.Get() == this ? "Hauptkalender" : TVELBasisObject::GetDisplayName();
}

void TVELKalender::Clear() {
  FEintraege.Clear();
  FAufgaben.Clear();
}

const TQuillonDataClass& TVELKalendereintrag::Class() {
  using T = TVELKalendereintrag;
  // clang-format off
  static const TQuillonDataClass Class = DescribeClass<T, TVELAbstrakterTermin>("CalendarEvent", "Kalendereintrag")
      .Boolean<&T::FGanztaegig>("AllDay")
      .Reference<&T::FKategorie>("Category")
      .String<&T::FAnzeige>("Display")
      .StringArray<&T::FBeschreibung>("Description").Since("6.0.140")
      .Line<&T::FBeschreibung>("Description").Until("6.0.140")
      .String<&T::FPruefung>("Audit")
      .String<&T::FBlock>("Block")
      .List<&T::FTeilnehmer>("Member")
      .List<&T::FRessourcen>("Resources")
      .Reference<&T::FRaum>("Room")
      .Reference<&T::FKlasse>("Class")
      .Byte<&T::FStufe>("Level")
      .StringArray<&T::FAdresse>("Address").Since("6.0.140")
      .Line<&T::FAdresse>("Address").Until("6.0.140")
      .ShortInt<&T::FErfuellt>("Completed")
      .Single<&T::FDauer>("Duration").AlwaysWritten()
      .ShortInt<&T::FStatus>("State")
      .ShortInt<&T::FVisibility>("Visibility")
      .DateTime<&T::FModified>("Modified")
      .LongInt<&T::FPrioritaet>("Priority")
      .Boolean<&T::FUnterrichtsfrei>("FreePeriod", true)
      .Reference<&T::FZeitkonto>("TimeAccount");
  // clang-format on
  return Class;
}

namespace {

std::string JoinLines(const std::vector<std::string>& ALines) {
  std::string Text;
  for (std::size_t I = 0; I < ALines.size(); ++I) {
    Text.append(I > 0 ? "\r\n" : "").append(ALines[I]);
  }
  return Text;
}

}  // namespace

TVELZeitrahmen* TVELKalendereintrag::Zeitrahmen() const { return StandardTimeframe(); }

void TVELKalendereintrag::AfterStamp() { FModified = FChanged; }

std::string TVELKalendereintrag::Ort() const { return FRaum != nullptr ? FRaum->FKuerzel : JoinLines(FAdresse); }

std::string TVELKalendereintrag::Beschreibung() const { return JoinLines(FBeschreibung); }

const TQuillonDataClass& TVELAufgabe::Class() {
  // clang-format off
  static const TQuillonDataClass Class = DescribeClass<TVELAufgabe, TVELKalendereintrag>("Task", "Aufgabe");
  // clang-format on
  return Class;
}

const TQuillonDataClass& TVELTeilnehmer::Class() {
  using T = TVELTeilnehmer;
  // clang-format off
  static const TQuillonDataClass Class = DescribeClass<T, TVELBasisObject>("Member", "Teilnehmer \"%s\"")
      .Byte<&T::FArt>("Type").AlwaysWritten()
      .String<&T::FName>("Name").Required()
      .String<&T::FBeschreibung>("Description")
      .String<&T::FEmail>("Email")
      .Reference<&T::FDataObject>("DataObject").Essential()
      .Guid<&T::FDataobjectID>("DataObjectID").KeepsCurrent()
      .Reference<&T::FRolle>("Role")
      .DateTime<&T::FStart>("Start")
      .DateTime<&T::FEnde>("End");
  // clang-format on
  return Class;
}

std::string TVELTeilnehmer::DisplayArgument() const { return FName; }

void TVELTeilnehmerListe::RemoveReference(const TVELDataObject& AnObject) {
  for (int I = Count() - 1; I >= 0; --I) {
    if (GetItem(I)->FDataObject == &AnObject) {
      Delete(I);
    }
  }
}
