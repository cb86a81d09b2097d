#pragma once

#include <span>
#include <utility>

class TQuillonDataAbstractObject;
class TQuillonDataObject;
class TVELPlan;
class TVELPlanobjekt;
class TVELTermin;
class TVELVeranstaltung;

/// Back references: master data knows the lessons it takes part in and its absences, and a teacher his supervisions.
///
/// They are derived data. The lists of lessons and appointments and the setters of references keep them; a file tells
/// them itself, or in part. Without storage, and while the storage is read, cleared or destroyed, nothing here does
/// anything.
namespace uPlandaten {

/// True while changes of the owner are followed.
bool FollowsRelations(const TQuillonDataAbstractObject& AnOwner);

/// Tells the item, if that takes part in the timetable, that a lesson, an appointment or an absence refers to it.
void AddRelation(TQuillonDataAbstractObject& AnOwner, TQuillonDataObject* AnItem);
/// Tells it that the reference goes.
void RemoveRelation(TQuillonDataAbstractObject& AnOwner, TQuillonDataObject* AnItem);
/// For a list that is replaced as a whole. What is in both keeps its back reference all the time.
void SetRelations(TQuillonDataAbstractObject& AnOwner, std::span<TQuillonDataObject* const> AnOld,
                  std::span<TQuillonDataObject* const> ANew);

/// True if the object is the lesson's subject, in its classes, teachers, rooms or students, or in the teachers, rooms
/// or resources of one of its appointments. The lesson's own resources do not count.
/// @param AnExcepted appointment that is passed over; may be null
bool LessonUses(const TVELVeranstaltung& ALesson, const TVELPlanobjekt& AnObject, const TVELTermin* AnExcepted);

/// Enters every lesson in the FVeranstaltungen of all that it and its appointments use, where the file that was read
/// does not tell so. At the end of each list, without hooks, in one walk over the plan.
void EnterLessons(TVELPlan& APlan);

/// Setter of a reference that the object it points to is told of.
template <class TOwner, class TItem>
void SetRelated(TOwner& AnOwner, TItem*& AField, TItem* AValue) {
  if (AField != AValue) {
    TItem* const Old = std::exchange(AField, AValue);
    AddRelation(AnOwner, AValue);
    RemoveRelation(AnOwner, Old);
    AnOwner.Change();
  }
}

}  // namespace uPlandaten
