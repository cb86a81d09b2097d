"""Courses, attendances and scheduled lessons of an OCF set, computed a second time."""

import itertools
from datetime import datetime, timedelta

import ocf_reference
from ocf_reference import BASE, code_units, compact, day_number, derived, identifier

STAND_IN, EXTRA = "Stand-in", "AdditionalLesson"
VA_FEHLSTELLE, VLM_ZUSAETZLICH = 7, 2

# Columns of a file: name, kind of value, element in the data file or the text itself; name, kind, ...
COURSES = """Id id . Title title . Description text Title Notes text Comments CourseUrl text Href SubjectId ref Subject
    CourseNo integer CourseNo CourseRef text EventNo StartDate timepoint ValidFrom EndDate timepoint ValidTo
    CourseGroup text Group Block text BlockID SchedulePattern pattern Reoccur SubjectFocusId ref SubjectTopicArea
    RoomIdList ids Rooms SchoolClassIdList ids Classes"""
EXTRA_COURSES = """Id id . Title text Information Description text Comment Notes empty . CourseUrl empty .
    SubjectId ref Subject CourseNo extra_number CourseNo CourseRef empty . StartDate empty . EndDate empty .
    CourseGroup empty . Block empty . SchedulePattern constant OneTimeEvents SubjectFocusId empty .
    RoomIdList extra_rooms . SchoolClassIdList extra_newest Class"""
LESSONS = """Id id . Description text Comment CourseId course . Block text Block RoomIdList every Rooms
    SchoolClassIdList classes . TeacherIdList every Teacher TemporalExpressions lesson_time .
    Relevance constant Scheduled"""
EXTRA_LESSONS = """Id id . Description empty . CourseId id . Block empty . RoomIdList extra_rooms .
    SchoolClassIdList extra_newest Class TeacherIdList extra_newest Teacher TemporalExpressions change_time .
    Relevance constant Additional"""


def key(element):
    return element.get("Class"), element.get("ID").upper()


def listed(elements):
    """An id list that may name an object twice."""
    return compact(list(filter(None, map(identifier, elements))))


def unique(elements):
    return compact(list(filter(None, dict.fromkeys(map(identifier, elements)))))


def without(elements, *others):
    keys = set(map(key, filter(lambda other: other is not None, others)))
    return [element for element in elements if key(element) not in keys]


class Timetable(ocf_reference.OcfSet):
    """Master data and timetable, with the filters of an export."""

    def __init__(self, file_name, saved_name, zone, only_courses=True, only_lessons=True):
        super().__init__(file_name, saved_name, zone)
        self.only_courses, self.only_lessons = only_courses, only_lessons
        self.all_courses = self.ordered("Events", self.place)
        self.course_of = {key(lesson): course for course in self.all_courses for lesson in self.items(course, "Times")}
        self.courses = [course for course in self.all_courses if self.told(course)]
        self.changes = self.ordered("Changes", self.span)
        self.judge_changes_of_a_span()

    def place(self, course):
        codes = ", ".join(self.text(school_class, "Code") for school_class in self.items(course, "Classes"))
        return int(self.text(course, "BlockIndex", "0")), code_units(codes + self.title(course))

    def span(self, change):
        return tuple(-day_number(self.moment(change, name)) for name in ("Start", "End"))

    def judge_changes_of_a_span(self):
        """Stand-ins stand by feature and identifier, others by identifier. Where they meet there is no strict order."""
        for _, group in itertools.groupby(self.changes, self.span):
            places = [(self.number(change, "StandInFeature") if change.get("Class") == STAND_IN else None,
                       change.get("ID").upper()) for change in group]
            if len({feature is None for feature, _ in places}) == 1:
                assert places == sorted(places), places

    # What an element holds.

    def number(self, element, name):
        return int(self.text(element, name, "0"))

    def flag(self, element, name):
        return self.number(element, name) != 0

    def object(self, element, name):
        found = None if element is None else element.find(name)
        return None if found is None else self.resolve(found)

    def kind_of(self, change, *names, kind):
        return [e for name in names for e in self.items(change, name) if e.get("Class") == kind]

    def lesson_of(self, change):
        found = self.object(change, "Time")
        return found if found is not None and found.get("Class") == "Time" else None

    def owner(self, lesson):
        return None if lesson is None else self.course_of.get(key(lesson))

    def subject_of(self, lesson):
        return self.object(self.owner(lesson), "Subject")

    def scheduled(self, lesson):
        return lesson is not None and self.moment(lesson, "Start") != BASE

    def course_scheduled(self, course):
        return any(map(self.scheduled, self.items(course, "Times")))

    def told(self, course):
        return course.find("Subject") is not None and (not self.only_courses or self.course_scheduled(course))

    # The kinds of values, each of an element and the name of its child.

    def empty(self, *_):
        return ""

    def constant(self, _, text):
        return text

    def every(self, element, name):
        return listed(self.items(element, name))

    def title(self, course, _=None):
        number, kind = self.number(course, "CourseNo"), self.ref(course, "LessonType")
        text = self.text(self.object(course, "Subject"), "Code") if course.find("Subject") is not None else ""
        text += str(number) if number > 0 else ""
        if kind and kind == self.ref(self.settings, "LessonType"):
            text = text.lower()
        elif kind and kind in (self.ref(self.settings, "LKLessonType1"), self.ref(self.settings, "LKLessonType2")):
            text = "".join(c.upper() if len(c.upper()) == 1 else c for c in text)
        return text + self.text(course, "External")

    def pattern(self, course, name):
        return "WeeklyEvents" if int(self.text(course, name, "1")) else "OneTimeEvents"

    def course(self, lesson, _=None):
        return identifier(self.owner(lesson))

    def classes(self, lesson, _=None):
        return self.ids(self.owner(lesson), "Classes")

    def lesson_time(self, lesson, _):
        course = self.owner(lesson)
        if self.pattern(course, "Reoccur") == "OneTimeEvents":
            return self.occurrence(lesson, _)

        def on(monday):
            day = monday + timedelta(max(self.number(lesson, "Weekday") - 1, 0))
            return day, [datetime.combine(day, self.moment(lesson, name).time()) for name in ("Start", "End")]

        def monday(moment):
            return moment - timedelta(moment.weekday())
        holder = self.object(lesson, "Period")
        weeks = [self.text(e, "Weeks") for e in ([lesson, course] if holder is None else [holder])]
        weeks = next((text for text in weeks if len(text) == 56 and "1" in text), "")
        if not weeks:
            weekly = self.once(*on(monday(self.valid_from))[1], "Weekly")
            return compact([weekly | {"ValidFrom": self.day(self.valid_from), "ValidTo": self.day(self.valid_to)}])
        first = monday(self.moment(self.settings, "TimetablePeriodFrom"))
        days = [on(first + timedelta(7 * n)) for n, mark in enumerate(weeks) if mark == "1"]
        return compact([self.once(*times) for day, times in days if self.valid_from <= day <= self.valid_to]) or "[]"

    def change_time(self, change, _=None):
        start, end = self.moment(change, "Start"), self.moment(change, "End")
        moved = self.moment(change, "NewTimeDate")
        if change.get("Class") == STAND_IN and self.lesson_of(change) is not None and moved != BASE:
            start, end = moved, moved + (end - start)
        return compact([self.once(start, end)])

    # Changes.

    def newest(self, change, old, new, kind):
        return unique((new and self.kind_of(change, new, kind=kind)) or self.kind_of(change, old, kind=kind))

    def is_extra(self, change):
        return change.find("Subject") is not None and (change.get("Class") == EXTRA or (
            change.get("Class") == STAND_IN and self.number(change, "GapReason") == VA_FEHLSTELLE
            and self.number(change, "StandInTeacherFeature") == VLM_ZUSAETZLICH))

    def extra_number(self, change, name):
        return self.text(change, name, "-1") if change.get("Class") == EXTRA else ""

    def extra_rooms(self, change, _):
        lists = ["Original"] if change.get("Class") == EXTRA else ["Absent", "New"]
        return unique(self.kind_of(change, *lists, kind="Room"))

    def extra_newest(self, change, kind):
        return self.newest(change, "Original", "" if change.get("Class") == EXTRA else "New", kind)

    def extra_students(self, change):
        found = self.kind_of(change, "Original", kind="Student")
        if not found:
            groups = self.kind_of(change, "New", kind="Class") or self.kind_of(change, "Original", kind="Class")
            distinct = {key(group): group for group in groups}
            found = [student for group in distinct.values() for student in self.items(group, "Students")]
        return found

    # Files.

    def attendance_table(self, column, of_course, of_extra):
        rows = [["Id", column, "CourseId"]]
        for element, members in [*((course, of_course(course)) for course in self.courses),
                                 *((change, of_extra(change)) for change in self.changes if self.is_extra(change))]:
            rows += [[derived(element, member), identifier(member), identifier(element)] for member in members]
        return rows

    def tables(self):
        found, extras = super().tables(), list(filter(self.is_extra, self.changes))
        if self.all_courses:
            lessons = [lesson for course in self.courses for lesson in self.items(course, "Times")
                       if not self.only_lessons or self.scheduled(lesson)]
            found["Courses"] = self.table(COURSES, self.courses) + self.table(EXTRA_COURSES, extras)[1:]
            found["ScheduledLessons"] = self.table(LESSONS, lessons) + self.table(EXTRA_LESSONS, extras)[1:]
        if self.all_courses and "Students" in found:
            found["StudentCourseAttendances"] = self.attendance_table(
                "StudentId", lambda course: self.items(course, "Student"), self.extra_students)
            found["TeacherCourseAttendances"] = self.attendance_table(
                "TeacherId", lambda course: self.items(course, "Teacher"),
                lambda change: self.kind_of(change, "Original", kind="Teacher"))
        return found
