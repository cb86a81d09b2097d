#pragma once

#include <string>
#include <vector>

#include "uPlandaten/Werte.h"

class TVELAenderung;
class TVELKlasse;
class TVELPlanobjektliste;
class TVELTermin;
class TVELVeranstaltung;

namespace uDataUtils {
class TPlanContext;
}

/// Cells about lessons: who takes part, and when. Each answers the text of its cell, empty where there is nothing to
/// tell; an appointment or list may be null.
namespace uOstrel {

/// True if at least one appointment of the course has a place in the week.
bool IsScheduled(const TVELVeranstaltung& ACourse);
/// True if the appointment's course has a subject; one without stands in no file.
bool HasSubject(const TVELTermin& ATermin);

/// Rooms of an appointment, doubles included.
std::string Rooms(const TVELTermin* ATermin);
/// Classes of its course.
std::string Classes(const TVELTermin* ATermin);
/// Teachers of an appointment, doubles included.
std::string Teachers(const TVELTermin* ATermin);
/// Rooms that the change brings in; if it brings none, those that remain.
std::string LessonRooms(const TVELTermin* ATermin, const TVELAenderung& AChange);
/// Teachers that remain, then those that the change brings in.
std::string LessonTeachers(const TVELTermin* ATermin, const TVELAenderung& AChange);

/// The rooms of both lists.
std::string ChangeRooms(const TVELPlanobjektliste* AFirst, const TVELPlanobjektliste* ASecond);
/// The classes of the second list, each once; if it holds none, those of the first.
std::vector<const TVELKlasse*> ChangedClasses(const TVELPlanobjektliste* AFirst, const TVELPlanobjektliste* ASecond);
/// Their identifiers.
std::string ChangeClasses(const TVELPlanobjektliste* AFirst, const TVELPlanobjektliste* ASecond);
/// The teachers of the second list; if it holds none, those of the first.
std::string ChangeTeachers(const TVELPlanobjektliste* AFirst, const TVELPlanobjektliste* ASecond);

/// When a changed lesson takes place: on its new date, if it has one.
std::string ChangeTime(const TVELAenderung& AChange);
/// When a lesson takes place: its one date; or the dates of its weeks within the range, both days included; or, where
/// no weeks are named anywhere, each week of the range.
std::string AppointmentTime(const uDataUtils::TPlanContext& AContext, const TVELTermin& ATermin, TVELDate AFrom,
                            TVELDate ATo);

}  // namespace uOstrel
