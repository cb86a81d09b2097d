#include "uPlandaten/Veranstaltungen.h"

#include <initializer_list>

#include "QuillonNumbers.h"
#include "QuillonText.h"
#include "uPlandaten/Bloecke.h"
#include "uPlandaten/Einstellungen.h"
#include "uPlandaten/Faecher.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Perioden.h"
#include "uPlandaten/Plan.h"
#include "uPlandaten/Raeume.h"
#include "uPlandaten/Relationen.h"
#include "uPlandaten/Schueler.h"

const TQuillonDataClass& TVELVeranstaltung::Class() {
  using T = TVELVeranstaltung;
  // clang-format off
  static const TQuillonDataClass Class = DescribeClass<T, TVELBasisObject>("Event", "Veranstaltung")
      .List<&T::FTermine>("Times")
      .LongInt<&T::FDoppelstundenMin>("DoubleBlocksMin")
      .LongInt<&T::FDoppelstundenMax>("DoubleBlocksMax")
      .LongInt<&T::FBand>("Band")
      .Reference<&T::FBlock>("Block")
      .String<&T::FBlockID>("BlockID")
      .LongInt<&T::FBlockIndex>("BlockIndex")
      .Reference<&T::FBlockNext>("BlockNext")
      .Boolean<&T::FReoccur>("Reoccur", true)
      .List<&T::FKlassen>("Classes")
      .String<&T::FInfo>("Title")
      .IntegerArray<&T::FJahresverteilung>("WeeklyLessons")
      .Reference<&T::FPeriode>("Period")
      .String<&T::FBemerkung>("Comments")
      .Reference<&T::FFach, &T::SetFach>("Subject")
      .String<&T::FGruppe>("Group")
      .List<&T::FLehrer>("Teacher")
      .LongInt<&T::FSchiene>("Focus")
      .String<&T::FWochen>("Weeks").AlwaysWritten()
      .String<&T::FAttribute>("Attributes")
      .Single<&T::FKlassenfaktor>("ClassFactor", 1)
      .Byte<&T::FEckStdPosition>("BasicHourItem").AlwaysWritten()
      .LongInt<&T::FKursNr, &T::SetKursNr>("CourseNo")
      .String<&T::FDifferenzierung>("Differentiation")
      .Reference<&T::FKategorie>("Category")
      .Reference<&T::FMerkmal>("Feature")
      .Reference<&T::FUnterrichtsart>("LessonType")
      .Reference<&T::FUnterrichtsform>("LessonForm")
      .Word<&T::FVeranstaltungsattribute>("EventAttributes")
      .String<&T::FVeranstaltungsNr>("EventNo")
      .String<&T::FLink>("Href")
      .String<&T::FExtern>("External")
      .String<&T::FIntern>("Internal")
      .LongInt<&T::FMaxSchuelerAnzahl>("MaxStudentsCount")
      .LongInt<&T::FMinSchuelerAnzahl>("MinStudentsCount")
      .List<&T::FRaeume>("Rooms")
      .List<&T::FJoker>("Wildcard")
      .List<&T::FRessourcen>("Resources")
      .List<&T::FRessourcenvorgaben>("SpecifiedResources")
      .String<&T::FRaum>("Room")
      .Reference<&T::FRaumtyp>("RoomType")
      .List<&T::FSchueler>("Student")
      .Reference<&T::FSchulform>("SchoolType")
      .LongInt<&T::FSchuelerAnzahl>("StudentsCount")
      .LongInt<&T::FFachfolge>("SubjectOrder")
      .Reference<&T::FFachstatus>("SubjectStatus")
      .Reference<&T::FFachschwerpunkt>("SubjectTopicArea")
      .Single<&T::FLehrerfaktor>("TeacherFactor", 1)
      .List<&T::FZeitpraeferenzen>("TimePreferences")
      .Reference<&T::FZeitraum>("TimeWindow")
      .Byte<&T::FTagesposition>("DayPos").AlwaysWritten()
      .Byte<&T::FGueltigeTage>("DaysValid")
      .DateTime<&T::FGueltigVon>("ValidFrom")
      .DateTime<&T::FGueltigBis>("ValidTo")
      .Word<&T::FProvider>("Provider").AlwaysWritten()
      .Hook<&T::Upgrade>();
  // clang-format on
  return Class;
}

void TVELVeranstaltung::Assign(const TQuillonObject& AnObject) {
  if (const auto* const Source = dynamic_cast<const TVELVeranstaltung*>(&AnObject)) {
    SetKursNr(Source->FKursNr);
  }
  TVELBasisObject::Assign(AnObject);
}

void TVELVeranstaltung::SetKursNr(std::int32_t AKursNr) {
  if (AKursNr == FKursNr) {
    return;
  }
  if (uPlandaten::FollowsRelations(*this)) {
    for (const TVELSchueler* Student : FSchueler) {
      for (TVELKurswahl* Choice : Student->FKurswahl) {
        if (Choice->FFach == FFach && Choice->FKursNr == FKursNr) {
          Choice->Set(Choice->FKursNr, AKursNr);
        }
      }
    }
  }
  Set(FKursNr, AKursNr);
}

void TVELVeranstaltung::SetFach(TVELFach* AValue) { uPlandaten::SetRelated(*this, FFach, AValue); }

void TVELVeranstaltung::FreeProperties() {
  if (const TVELPlan* const Owner = Plan(); Owner != nullptr && uPlandaten::FollowsRelations(*this)) {
    for (TVELVeranstaltung* Lesson : Owner->FVeranstaltungen) {
      if (Lesson->FBlockNext == this) {
        // The last one of a block gets no link to itself.
        Lesson->Set(Lesson->FBlockNext, FBlockNext != Lesson ? FBlockNext : nullptr);
      }
    }
  }
  TVELBasisObject::FreeProperties();
}

TVELWeeks TVELVeranstaltung::Weeks() const {
  const TVELWeeks& Own = FPeriode != nullptr ? FPeriode->FWochen : FWochen;
  return Own.IsEmpty() ? TVELWeeks::All() : Own;
}

TVELRaum* TVELVeranstaltung::DefaultRoom() const {
  if (IgnoreRoom()) {
    return nullptr;
  }
  TVELRaum* Room = FDefaultRoom;
  if (FRaum.empty()) {
    Room = FRaeume.IsEmpty() ? nullptr : FRaeume.GetItem(0);
  } else if (Room == nullptr || Room->FKuerzel != FRaum) {
    const TVELPlan* const Owner = Plan();
    Room = Owner != nullptr ? Owner->FRaeume.FindAs<TVELRaum>(FRaum, false, true) : nullptr;
  }
  FDefaultRoom = Room;
  return Room;
}

std::int32_t TVELVeranstaltung::GetBlockBand() {
  BlockBand = FBand;
  if (const TVELPlan* const Owner = Plan(); Owner != nullptr && !FBlockID.empty()) {
    if (const TVELBlock* const Block = Owner->FBlockungen.FindBlock(FBlockID)) {
      BlockBand = Block->FBand;
    }
  }
  return BlockBand;
}

TVELZeitrahmen* TVELVeranstaltung::Zeitrahmen() const {
  if (!FKlassen.IsEmpty()) {
    return FKlassen.GetItem(0)->Timeframe();
  }
  return StandardTimeframe();
}

std::string TVELVeranstaltung::PlainKursTitel() const {
  std::string Title = FFach != nullptr ? FFach->FKuerzel : std::string();
  if (FKursNr > 0) {
    QuillonNumbers::AppendInteger(Title, FKursNr);
  }
  return Title;
}

std::string TVELVeranstaltung::KursTitel() const {
  std::string Title = PlainKursTitel();
  const TVELPlan* const Owner = Plan();
  if (FUnterrichtsart == nullptr || Owner == nullptr || !Owner->FEinstellungen) {
    return Title;
  }
  const TVELEinstellungen& Settings = *Owner->FEinstellungen;
  if (FUnterrichtsart == Settings.FStandardUnterrichtsart && Settings.FStandardKursartLowerCase) {
    return QuillonText::ToLower(Title);
  }
  if ((FUnterrichtsart == Settings.FLKUnterrichtsart1 || FUnterrichtsart == Settings.FLKUnterrichtsart2) &&
      Settings.FNonStandardKursartUpperCase) {
    return QuillonText::ToUpper(Title);
  }
  return Title;
}

std::string TVELVeranstaltung::SortText() const { return FKlassen.JoinCodes() + KursTitel() + FExtern; }

void TVELVeranstaltung::Clear() {
  FLehrer.Clear();
  FRaeume.Clear();
  FRessourcen.Clear();
  FJoker.Clear();
}

void TVELVeranstaltung::Clear(const TQuillonDataList& AValues) {
  for (TQuillonDataList* List : std::initializer_list<TQuillonDataList*>{&FLehrer, &FRaeume, &FRessourcen, &FJoker}) {
    List->RemoveAll(AValues);
  }
}

void TVELVeranstaltung::ClearRoom(const TVELRaum* AValue) { FRaeume.Remove(AValue); }

void TVELVeranstaltung::ClearTeacher(const TVELLehrer* AValue) { FLehrer.Remove(AValue); }

void TVELVeranstaltung::Upgrade() {
  const TQuillonRelease Release = FileRelease();
  if (Release < "6.0.101" && !FVeranstaltungsattribute.Contains(vmRaumAuto)) {
    FGruppe = "G";
  }
  if (Release < "6.0.165" && FKursNr == -1) {
    FKursNr = 0;
  }
}
