#pragma once

#include <span>
#include <unordered_map>
#include <unordered_set>
#include <vector>

class TQuillonDataObject;
class TVELPlan;
class TVELPlanobjekt;
class TVELTermin;
class TVELVeranstaltung;

/// Who takes part in what.
namespace uDataUtils {

class TPlanContext;

/// The participants of appointments: classes, students and subject of the lesson, teachers, rooms and resources of the
/// appointment. Long lists and lessons with many appointments are no slower to ask than short ones.
class TParticipants {
 public:
  explicit TParticipants(const TVELPlan& APlan);

  bool Contains(const TVELTermin& ATermin, const TVELPlanobjekt& AnObject) const;
  /// The appointments of the lesson in which the object takes part, in their order.
  std::vector<TVELTermin*> Appointments(const TVELVeranstaltung& ALesson, const TVELPlanobjekt& AnObject) const;

 private:
  bool Contains(const TVELVeranstaltung& ALesson, const TVELPlanobjekt& AnObject) const;
  bool Holds(std::span<TQuillonDataObject* const> AList, const TVELPlanobjekt& AnObject) const;

  using TItems = std::unordered_set<const TQuillonDataObject*>;
  using TAppointments = std::unordered_map<const TQuillonDataObject*, std::vector<TVELTermin*>>;

  std::unordered_map<const void*, TItems> FLongLists;  ///< by where the list's items lie
  std::unordered_map<const TVELVeranstaltung*, TAppointments> FLongLessons;
};

/// TParticipants::Contains of the plan.
bool TakesPart(const TPlanContext& AContext, const TVELTermin& ATermin, const TVELPlanobjekt& AnObject);

}  // namespace uDataUtils
