#pragma once

#include <set>
#include <utility>

#include "School.h"
#include "uPlandaten/Aenderungen.h"
#include "uPlandaten/Vertretungen.h"

namespace SchoolGenerator {

/// An appointment on a day.
struct TOccurrence {
  const TPlace* Place = nullptr;
  int Day = 0;

  TVELTermin& Termin() const { return *Place->Termin; }
  TVELVeranstaltung& Lesson() const;
  TVELKlasse* Class() const;  ///< null for lessons of teachers alone
  TVELLehrer* Teacher() const;
  TVELRaum* Room() const;
  TQuillonDateTime Start() const;
  TQuillonDateTime End() const;
  bool IsIn(const TVELFehlzeit& AnAbsence) const;
};

/// The occurrences of one section that were not changed yet.
class TOccurrences {
 public:
  TOccurrences(TSchool& ASchool, TSection& ASection) : FSchool(ASchool), FSection(ASection) {}

  /// Any with a class. What was handed out once does not come again.
  TOccurrence Any();
  /// Those that fit ATest on the school days of an absence, at most AMax.
  template <class TTest>
  std::vector<TOccurrence> During(const TVELFehlzeit& AnAbsence, int AMax, const TTest& ATest);
  /// Another appointment of the same class, on the same day or within the next days; no place if there is none.
  TOccurrence OtherOf(const TOccurrence& AnOccurrence, int ADays);

 private:
  bool Claim(const TOccurrence& AnOccurrence);

  TSchool& FSchool;
  TSection& FSection;
  std::set<std::pair<const TVELTermin*, int>> FTaken;
};

/// The days on which an absence begins and ends.
std::pair<int, int> DaysOf(const TVELFehlzeit& AnAbsence);

template <class TTest>
std::vector<TOccurrence> TOccurrences::During(const TVELFehlzeit& AnAbsence, int AMax, const TTest& ATest) {
  std::vector<TOccurrence> Found;
  const auto [First, Last] = DaysOf(AnAbsence);
  for (int Day = First; Day <= Last; ++Day) {
    for (const TPlace& Place : FSection.Places) {
      const TOccurrence Occurrence{&Place, Day};
      if (static_cast<int>(Found.size()) < AMax && Place.Slot.Day == WeekdayOf(Day) && Occurrence.IsIn(AnAbsence) &&
          ATest(Occurrence) && Claim(Occurrence)) {
        Found.push_back(Occurrence);
      }
    }
  }
  return Found;
}

/// Adds a change and sets its times, status and remark.
///
/// The order of changes compares the features of substitutions only among themselves, and identities otherwise. The
/// first digit of the identities made here follows the feature, so that the order is one of the whole list.
template <class T>
T& AddChange(TSchool& ASchool, TQuillonDataList& AList, TVELVertretungsmerkmal AFeature = vmKlasseFehlt) {
  TGUID Guid = ASchool.Random.Guid();
  constexpr int FeatureCount = vmKlasseFehlt + 1;
  const int Digit = std::is_same_v<T, TVELVertretung> ? AFeature : FeatureCount + (Guid.Bytes[0] >> 4) % 4;
  Guid.Bytes[0] = static_cast<std::uint8_t>((Digit << 4) | (Guid.Bytes[0] & 0xF));
  return ASchool.AddAs<T>(AList, Guid);
}

/// Times, status, remark and the like.
void Describe(TSchool& ASchool, TVELAenderung& AChange, const TQuillonDateTime& AStart, const TQuillonDateTime& AnEnd);
/// What a change of an appointment has from it.
void Describe(TSchool& ASchool, TVELAenderung& AChange, const TOccurrence& AnOccurrence);
/// A teacher who is free then and is not the appointment's own.
TVELLehrer* ChooseSubstitute(TSchool& ASchool, TSection& ASection, const TOccurrence& AnOccurrence);
TVELRaum* ChooseFreeRoom(TSchool& ASchool, TSection& ASection, const TOccurrence& AnOccurrence);

}  // namespace SchoolGenerator
