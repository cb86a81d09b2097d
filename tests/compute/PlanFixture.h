#pragma once

#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "QuillonDateTime.h"
#include "uDataUtils/Context.h"
#include "uPlandaten/Einstellungen.h"
#include "uPlandaten/Fehlzeiten.h"
#include "uPlandaten/Kalender.h"
#include "uPlandaten/Plan.h"
#include "uPlandaten/Termine.h"
#include "uPlandaten/Veranstaltungen.h"

using uDataUtils::TSpan;

/// "2026-08-03", or "2026-08-03T08:00".
inline TVELDateTime At(std::string_view AText) { return QuillonDateTime::ParseDateTime(AText); }

inline TSpan Span(std::string_view AStart, std::string_view AFinish) { return {At(AStart), At(AFinish)}; }

/// As At takes it.
inline std::string Show(TVELDateTime AValue) {
  std::string Text;
  QuillonDateTime::AppendDateTime(Text, AValue);
  return Text.substr(0, AValue == uDataUtils::DayOf(AValue) ? 10 : 16);
}

inline std::string Show(const std::optional<TSpan>& ASpan) {
  return ASpan ? Show(ASpan->Start) + "/" + Show(ASpan->Finish) : "none";
}

inline TVELWeeks Weeks(std::initializer_list<int> AWeeks) {
  TVELWeeks Set;
  for (const int Week : AWeeks) {
    Set.Include(Week);
  }
  return Set;
}

/// A plan that a test fills. There is school from Monday to Friday in all weeks of the timetable.
class TPlanFixture {
 public:
  TPlanFixture(std::string_view AFirst, std::string_view ALast) : FPlan(QuillonDataObjects::CreateStorage<TVELPlan>()) {
    FPlan->FEinstellungen->FStundenplanZeitraumVon = At(AFirst);
    FPlan->FEinstellungen->FStundenplanZeitraumBis = At(ALast);
  }

  TVELPlan& operator*() { return *FPlan; }
  TVELPlan* operator->() { return FPlan.get(); }
  TVELEinstellungen& Settings() { return *FPlan->FEinstellungen; }
  /// The plan as it is now.
  uDataUtils::TPlanContext Context(TVELDate AToday = 0) const { return {*FPlan, AToday}; }

  template <class T>
  T& Add(TQuillonDataList& AList) {
    T* const Object = QuillonDataObjects::Create<T>(&*FPlan);
    AList.Add(Object);
    return *Object;
  }

  TVELVeranstaltung& Lesson() { return Add<TVELVeranstaltung>(FPlan->FVeranstaltungen); }

  /// A recurring appointment with the times of day of the two texts "08:00".
  TVELTermin& Weekly(TVELVeranstaltung& ALesson, TVELDay ADay, const std::string& AStart = "08:00",
                     const std::string& AFinish = "08:45") {
    TVELTermin& Termin = Once(ALesson, "2020-01-06T" + AStart, "2020-01-06T" + AFinish);
    Termin.FWochentag = ADay;
    return Termin;
  }
  TVELTermin& Weekly(TVELDay ADay) { return Weekly(Lesson(), ADay); }

  TVELTermin& Once(TVELVeranstaltung& ALesson, std::string_view AStart, std::string_view AFinish) {
    TVELTermin& Termin = Add<TVELTermin>(ALesson.FTermine);
    Termin.FStart = At(AStart);
    Termin.FEnde = At(AFinish);
    return Termin;
  }

  /// A public entry without lessons, for all.
  TVELKalendereintrag& Free(std::string_view AStart, std::string_view AFinish, bool AnIsWholeDay = true) {
    TVELKalendereintrag& Entry = Add<TVELKalendereintrag>(FPlan->FKalender->FEintraege);
    Entry.FStart = At(AStart);
    Entry.FEnde = At(AFinish);
    Entry.FGanztaegig = AnIsWholeDay;
    return Entry;
  }

  void Invite(TVELKalendereintrag& AnEntry, TVELDataObject& AMember) {
    Add<TVELTeilnehmer>(AnEntry.FTeilnehmer).FDataObject = &AMember;
  }

  template <class T>
  T& Absence(TVELPlanobjekt& AnObject, const TSpan& ASpan) {
    T& Absence = Add<T>(FPlan->FFehlzeiten);
    Absence.FStart = ASpan.Start;
    Absence.FEnde = ASpan.Finish;
    AnObject.FFehlzeiten.Add(&Absence);
    return Absence;
  }

  /// A change in its place of the list.
  template <class T>
  T& Change(const TSpan& ASpan) {
    T* const Change = QuillonDataObjects::Create<T>(&*FPlan);
    Change->FStart = ASpan.Start;
    Change->FEnde = ASpan.Finish;
    FPlan->FAenderungen.Add(Change);
    return *Change;
  }

 private:
  TQuillonDataHandle<TVELPlan> FPlan;
};
