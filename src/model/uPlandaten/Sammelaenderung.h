#pragma once

#include <cstddef>
#include <unordered_map>
#include <vector>

class TVELKlasse;
class TVELPlan;
class TVELPlanobjekt;
class TVELSchueler;
class TVELVeranstaltung;

/// Many changes of a plan at once, in linear time but for the sorting.
///
/// One by one, a student who moves is looked for among all of the class, and a lesson among all that a subject, a
/// class or a teacher has. While this object lives, such entries are gathered; Finish makes them.
class TVELSammelaenderung {
 public:
  /// A plan has one at a time.
  explicit TVELSammelaenderung(TVELPlan& APlan);
  TVELSammelaenderung(const TVELSammelaenderung&) = delete;
  TVELSammelaenderung& operator=(const TVELSammelaenderung&) = delete;
  /// Forgets what Finish has not entered.
  ~TVELSammelaenderung();

  /// As SetKlasse of the student; the lists of both classes follow at the end.
  void Move(TVELSchueler& AStudent, TVELKlasse& AClass);
  /// The plan's lessons get a new one.
  void Add(TVELVeranstaltung& ALesson) { FNewLessons.push_back(&ALesson); }
  /// The lesson has begun or ceased to use the object; the last call for the two counts.
  void Note(TVELPlanobjekt& AnObject, TVELVeranstaltung& ALesson, bool AnIsUsed);

  /// Enters what was gathered, and sorts again the lists of lessons, absences and totals whose order has changed. In
  /// them, items that are alike keep their places.
  void Finish();

 private:
  struct TMembers {
    std::vector<TVELSchueler*> Items;  ///< null for one that has left
    std::unordered_map<const TVELSchueler*, std::size_t> Places;
    bool HasLeavers = false;
  };
  struct TUse {
    TVELVeranstaltung* Lesson;
    bool IsUsed;
  };

  TMembers& MembersOf(TVELKlasse& AClass);
  void EnterMembers();
  void EnterLessons();
  static void EnterUses(TVELPlanobjekt& AnObject, const std::vector<TUse>& AUses);
  void SortLists();
  void AlignLists();

  TVELPlan& FPlan;
  std::vector<TVELKlasse*> FClasses;
  std::unordered_map<const TVELKlasse*, TMembers> FMembers;
  std::vector<TVELPlanobjekt*> FObjects;
  std::unordered_map<const TVELPlanobjekt*, std::vector<TUse>> FUses;
  std::vector<TVELVeranstaltung*> FNewLessons;
};
