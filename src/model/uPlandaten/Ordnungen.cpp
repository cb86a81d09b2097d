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
  const auto& TotalA = static_cast<const TVELAnrechnung&>(A);
  const auto& TotalB = static_cast<const TVELAnrechnung&>(B);
  if (const int Order = CompareDescending(TotalA.FStart, TotalB.FStart); Order != 0) {
    return Order;
  }
  return QuillonText::CompareIgnoreCase(CodeOf(TotalA.FLehrer), CodeOf(TotalB.FLehrer));
}

int TVELKalenderEintragList::CompareItems(const TQuillonDataObject& A, const TQuillonDataObject& B) {
  const auto& EntryA = static_cast<const TVELKalendereintrag&>(A);
  const auto& EntryB = static_cast<const TVELKalendereintrag&>(B);
  if (const int Order = CompareDescending(EntryA.Ende(), EntryB.Ende()); Order != 0) {
    return Order;
  }
  return QuillonText::CompareOrdinal(EntryA.Beschreibung(), EntryB.Beschreibung());
}

void TVELTerminliste::SortByTime() {
  std::vector<TQuillonDataObject*> Wanted(Items().begin(), Items().end());
  const auto Place = [](const TQuillonDataObject* AnItem) {
    const auto* const Appointment = static_cast<const TVELTermin*>(AnItem);
    return std::pair(
        !Appointment->Scheduled(),
        Appointment->Scheduled() ? Appointment->Ende() + static_cast<double>(Appointment->Wochentag()) : 0.0);
  };
  std::ranges::stable_sort(Wanted, {}, Place);
  for (int I = 0; I < Count(); ++I) {
    Move(Wanted[static_cast<std::size_t>(I)], I);
  }
}

namespace uPlandaten {

void MarkPlaces(const std::vector<TVELVeranstaltungsliste*>& ALists) {
  struct TEntry {
    std::string Text;
    TVELVeranstaltung* Lesson;
  };
  constexpr std::int32_t Unseen = -1;
  std::vector<TEntry> Entries;
  for (const TVELVeranstaltungsliste* List : ALists) {
    for (TVELVeranstaltung* Lesson : *List) {
      Lesson->FTag = Unseen;
    }
  }
  for (const TVELVeranstaltungsliste* List : ALists) {
    for (TVELVeranstaltung* Lesson : *List) {
      if (Lesson->FTag == Unseen) {
        Lesson->FTag = 0;
        Entries.push_back({Lesson->SortText(), Lesson});
      }
    }
  }
  const auto Compare = [](const TEntry& A, const TEntry& B) {
    return A.Lesson->FBlockIndex != B.Lesson->FBlockIndex
               ? CompareAscending(A.Lesson->FBlockIndex, B.Lesson->FBlockIndex)
               : QuillonText::CompareOrdinal(A.Text, B.Text);
  };
  std::ranges::sort(Entries, [&](const TEntry& A, const TEntry& B) { return Compare(A, B) < 0; });
  std::int32_t Place = 0;
  for (std::size_t I = 0; I < Entries.size(); ++I) {
    Place += I > 0 && Compare(Entries[I - 1], Entries[I]) != 0 ? 1 : 0;
    Entries[I].Lesson->FTag = Place;
  }
}

int ComparePlaces(const TQuillonDataObject& A, const TQuillonDataObject& B) {
  return static_cast<const TVELVeranstaltung&>(A).FTag - static_cast<const TVELVeranstaltung&>(B).FTag;
}

}  // namespace uPlandaten
