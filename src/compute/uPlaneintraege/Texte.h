#pragma once

#include <string>
#include <string_view>

#include "uPlaneintraege/Planeintrag.h"

namespace uDataUtils {
class TPlanContext;
}

/// What is said of an entry.
namespace uPlaneintraege {

using uDataUtils::TPlanContext;

/// Abbreviations, empty ones too, joined by ", ".
template <class T>
std::string ListText(const std::vector<T*>& AnItems) {
  std::string Text;
  for (std::string_view Separator; const T* Item : AnItems) {
    Text.append(Separator).append(Item->FKuerzel);
    Separator = ", ";
  }
  return Text;
}

/// Title of a course: subject, number, and what outside systems call it.
std::string CourseTitle(const TVELVeranstaltung& ALesson);

std::string KlassenText(const TVELPlaneintrag& AnEntry);
/// "+" and the new teachers, "(...)" with the missing ones, the others; parted by blanks.
std::string LehrerText(const TVELPlaneintrag& AnEntry);
/// As LehrerText for rooms.
std::string RaumText(const TVELPlaneintrag& AnEntry);
/// What is taught: the course's title, "+" and new subjects, "(...)" with missing ones.
std::string FachText(const TVELPlaneintrag& AnEntry);

/// What became of the lesson.
/// @param AnObject in whose plan the caption stands; null for one that all read
/// @param AShort leaves out when a moved lesson takes place
std::string CaptionText(const TPlanContext& AContext, const TVELPlaneintrag& AnEntry, const TVELPlanobjekt* AnObject,
                        bool AShort);
/// The short caption for a publication; empty where it says no more than that something changed.
std::string PublicCaption(const TPlanContext& AContext, const TVELPlaneintrag& AnEntry, const TVELPlanobjekt* AnObject);

}  // namespace uPlaneintraege
