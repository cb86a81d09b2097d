#include "uPlandaten/Ordnungen.h"

#include <algorithm>
#include <string>
#include <utility>

#include "QuillonText.h"
#include "uPlandaten/Aenderungen.h"
#include "uPlandaten/Anrechnungen.h"
#include "uPlandaten/Fehlzeiten.h"
#include "uPlandaten/Kalender.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Termine.h"
#include "uPlandaten/Veranstaltungen.h"
#include "uPlandaten/Vertretungen.h"

namespace {

int CompareAscending(double A, double B) { return A < B ? -1 : (A > B ? 1 : 0); }
int CompareDescending(double A, double B) { return CompareAscending(B, A); }

std::string_view CodeOf(const TVELStammobjekt* AnObject) {
  return AnObject != nullptr ? std::string_view(AnObject->FKuerzel) : std::string_view();
}

/// What an item of a list is ordered by: a time, the latest first, then a text.
struct TTextKey {
  double Time = 0;
  std::string Text;
};

int CompareKeys(const TTextKey& A, const TTextKey& B) {
  const int Order = CompareDescending(A.Time, B.Time);
  return Order != 0 ? Order : QuillonText::CompareOrdinal(A.Text, B.Text);
}

/// Totals of one time stand in the order of their teachers, whatever the case of the letters.
TTextKey TotalKey(const TQuillonDataObject& AnItem) {
  const auto& Total = static_cast<const TVELAnrechnung&>(AnItem);
  return {Total.FStart, QuillonText::ToLower(CodeOf(Total.FLehrer))};
}

TTextKey EntryKey(const TQuillonDataObject& AnItem) {
  const auto& Entry = static_cast<const TVELKalendereintrag&>(AnItem);
  return {Entry.Ende(), Entry.Beschreibung()};
}

void SortByTextKeys(TQuillonDataList& AList, TTextKey (*AKeyOf)(const TQuillonDataObject&)) {
  std::vector<TTextKey> Keys(AList.Items().size());
  std::ranges::transform(AList.Items(), Keys.begin(), [&](const TQuillonDataObject* AnItem) {
    return AnItem != nullptr ? AKeyOf(*AnItem) : TTextKey();
  });
  AList.SortByKeys(Keys, CompareKeys);
}

/// Whether an appointment has no place in the week yet, and the end of its place.
std::pair<bool, double> WeekKey(const TQuillonDataObject& AnItem) {
  const auto& Appointment = static_cast<const TVELTermin&>(AnItem);
  const bool HasPlace = Appointment.Scheduled();
  return {!HasPlace, HasPlace ? Appointment.Ende() + static_cast<double>(Appointment.Wochentag()) : 0.0};
}

/// Index in the list that owns the item.
int PlaceOf(const TQuillonDataObject& AnItem) {
  constexpr int Missing = 9999;
  const TQuillonDataList* const List = AnItem.HasOwner() ? AnItem.FOwner->AsList() : nullptr;
  const int Index = List != nullptr ? List->IndexOf(&AnItem) : -1;
  return Index >= 0 ? Index : Missing;
}

}  // namespace

int TVELVeranstaltungsliste::CompareItems(const TQuillonDataObject& A, const TQuillonDataObject& B) {
  const auto& LessonA = static_cast<const TVELVeranstaltung&>(A);
  const auto& LessonB = static_cast<const TVELVeranstaltung&>(B);
  if (LessonA.FBlockIndex != LessonB.FBlockIndex) {
    return LessonA.FBlockIndex < LessonB.FBlockIndex ? -1 : 1;
  }
  return QuillonText::CompareOrdinal(LessonA.SortText(), LessonB.SortText());
}

int TVELAenderungsliste::CompareItems(const TQuillonDataObject& A, const TQuillonDataObject& B) {
  const auto& ChangeA = static_cast<const TVELAenderung&>(A);
  const auto& ChangeB = static_cast<const TVELAenderung&>(B);
  if (const int Order = CompareDescending(ChangeA.FStart, ChangeB.FStart); Order != 0) {
    return Order;
  }
  if (const int Order = CompareDescending(ChangeA.FEnde, ChangeB.FEnde); Order != 0) {
    return Order;
  }
  // Substitutions among themselves only, so the order is not transitive where other changes stand between them.
  if (&A.DataClass() == &TVELVertretung::Class() && &B.DataClass() == &TVELVertretung::Class()) {
    const int FeatureA = static_cast<const TVELVertretung&>(A).FVertretungsmerkmal;
    const int FeatureB = static_cast<const TVELVertretung&>(B).FVertretungsmerkmal;
    if (FeatureA != FeatureB) {
      return FeatureA - FeatureB;
    }
  }
  // The bytes stand in the order of the text form.
  return A.ID() < B.ID() ? -1 : (B.ID() < A.ID() ? 1 : 0);
}

int TVELFehlzeitenliste::CompareItems(const TQuillonDataObject& A, const TQuillonDataObject& B) {
  const auto& AbsenceA = static_cast<const TVELFehlzeit&>(A);
  const auto& AbsenceB = static_cast<const TVELFehlzeit&>(B);
  if (const int Order = CompareDescending(AbsenceA.FStart, AbsenceB.FStart); Order != 0) {
    return Order;
  }
  return QuillonText::CompareOrdinal(CodeOf(AbsenceA.Objekt()), CodeOf(AbsenceB.Objekt()));
}

int TVELAnrechnungsliste::CompareItems(const TQuillonDataObject& A, const TQuillonDataObject& B) {
  return CompareKeys(TotalKey(A), TotalKey(B));
}

int TVELKalenderEintragList::CompareItems(const TQuillonDataObject& A, const TQuillonDataObject& B) {
  return CompareKeys(EntryKey(A), EntryKey(B));
}

int TVELTerminliste::CompareItems(const TQuillonDataObject& A, const TQuillonDataObject& B) {
  const auto KeyA = WeekKey(A);
  const auto KeyB = WeekKey(B);
  return KeyA == KeyB ? PlaceOf(A) - PlaceOf(B) : (KeyA < KeyB ? -1 : 1);
}

void TVELTerminliste::SortByTime() {
  // A stable sort keeps equal ones in their places without asking for these.
  std::vector<TQuillonDataObject*> Wanted(Items().begin(), Items().end());
  std::ranges::stable_sort(Wanted, {}, [](const TQuillonDataObject* AnItem) { return WeekKey(*AnItem); });
  for (int I = 0; I < Count(); ++I) {
    Move(Wanted[static_cast<std::size_t>(I)], I);
  }
}

void TVELTerminliste::RemoveItem(const TVELTermin& AnAppointment) { Remove(&AnAppointment); }

namespace uPlandaten {

TLessonPlaces::TLessonPlaces(const std::vector<const TQuillonDataList*>& ALists) {
  struct TEntry {
    std::int32_t Block;
    std::string Text;
    const TQuillonDataObject* Lesson;
  };
  std::vector<TEntry> Entries;
  for (const TQuillonDataList* List : ALists) {
    for (const TQuillonDataObject* Item : List->Items()) {
      if (Item != nullptr && FPlaces.try_emplace(Item, 0).second) {
        const auto& Lesson = static_cast<const TVELVeranstaltung&>(*Item);
        Entries.push_back({Lesson.FBlockIndex, Lesson.SortText(), Item});
      }
    }
  }
  const auto Compare = [](const TEntry& A, const TEntry& B) {
    return A.Block != B.Block ? (A.Block < B.Block ? -1 : 1) : QuillonText::CompareOrdinal(A.Text, B.Text);
  };
  std::ranges::sort(Entries, [&](const TEntry& A, const TEntry& B) { return Compare(A, B) < 0; });
  std::int32_t Place = 0;
  for (std::size_t I = 0; I < Entries.size(); ++I) {
    Place += I > 0 && Compare(Entries[I - 1], Entries[I]) != 0 ? 1 : 0;
    FPlaces[Entries[I].Lesson] = Place;
  }
}

void TLessonPlaces::Sort(TQuillonDataList& AList) const {
  std::vector<std::int32_t> Places(AList.Items().size());
  std::ranges::transform(AList.Items(), Places.begin(), [this](const TQuillonDataObject* AnItem) {
    return AnItem != nullptr ? FPlaces.at(AnItem) : 0;
  });
  AList.SortByKeys(Places, [](std::int32_t A, std::int32_t B) { return A - B; });
}

void SortByTexts(TVELKalenderEintragList& AList) { SortByTextKeys(AList, EntryKey); }

void SortByTexts(TVELAnrechnungsliste& AList) { SortByTextKeys(AList, TotalKey); }

}  // namespace uPlandaten
