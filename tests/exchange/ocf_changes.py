"""What the changes of a plan make of its timetable: substitute lessons, gaps, announcements. Computed a second time."""

from ocf_reference import BASE, compact, derived, identifier
from ocf_timetable import EXTRA, STAND_IN, VA_FEHLSTELLE, Timetable, key, listed, unique, without

ROOM_CHANGE, MESSAGE = "RoomChange", "Message"
FEATURES = ("vmKein vmAenderung vmLehrerRaumTausch vmLehrerTausch vmRaumTausch vmVorgezogen vmZusaetzlich vmFaelltAus "
            "vmKlasseFrei vmEntfaellt vmWeggezogen vmKlasseFehlt").split()
VA_FREIGESTELLT, AE_OPEN, AE_INVALID = 6, 0, 5
CANCELLATIONS = {"vmEntfaellt": "None", "vmKlasseFehlt": "None", "vmKlasseFrei": "StayInRoom",
                 "vmFaelltAus": "LeaveRoom"}
SWAPS = {  # What is that of the other lesson.
    "vmLehrerTausch": {"Teacher"}, "vmRaumTausch": {"Rooms"}, "vmLehrerRaumTausch": {"Teacher", "Rooms"}}
SUBSTITUTES = ("Id Title Description CourseId ScheduledLessonId SubjectId RoomIdList SchoolClassIdList TeacherIdList "
               "TemporalExpressions Quality").split()
GAPS = "Id LessonId TemporalExpressions Reasons Resolutions Description".split()
MESSAGES = """Id id . Title text Information Description text Message Visibility visibility .
    SchoolClassIdList addressed Class TeacherIdList addressed Teacher TemporalExpressions occurrence ."""


class OcfSet(Timetable):
    """The whole set."""

    def visibility(self, message, _):
        return ",".join(name for name, flag in [("AllSchoolClasses", "AllClasses"), ("AllTeachers", "AllTeachers")]
                        if self.flag(message, flag))

    def addressed(self, message, kind):
        everyone = {"Class": "AllClasses", "Teacher": "AllTeachers"}[kind]
        return "" if self.flag(message, everyone) else unique(self.kind_of(message, "New", kind=kind))

    def feature(self, change):
        number = self.number(change, "StandInFeature")
        return FEATURES[number] if number < len(FEATURES) else ""

    def in_range(self, change):
        return self.moment(change, "Start").date() >= self.valid_from.date()

    def hidden(self, change):
        absence = self.object(change, "AbsenceTime")
        return self.flag(change, "NotPublic") or absence is not None and self.flag(absence, "NotPublic")

    def state(self, change):
        """What is referred to and never told has the state it was made with."""
        return self.number(change, "State") if len(change) else int(change.get("Class") in (EXTRA, MESSAGE))

    def exportable(self, change):
        return not (self.hidden(change) or self.state(change) in (AE_OPEN, AE_INVALID) or self.without_effect(change))

    def without_effect(self, change):
        absent = set(map(key, self.items(change, "Absent")))
        return (change.get("Class") == STAND_IN and self.feature(change) in ("vmKein", "vmKlasseFehlt")
                and all(change.find(name) is None for name in ("NewTime", "MovedTime", "Subject", "SkipStandInReason"))
                and not self.items(change, "New")
                and not any(key(teacher) in absent for teacher in self.kind_of(change, "Original", kind="Teacher"))
                and not self.all_away(change))

    def all_away(self, change):
        course = self.owner(self.lesson_of(change))
        classes = self.items(course, "Classes")
        return bool(classes) and all(any(self.away(absence, course, change) for absence in
                                         self.items(school_class, "AbsenceTimes")) for school_class in classes)

    def away(self, absence, course, change):
        start, end = self.moment(absence, "Start"), self.moment(absence, "End")
        from_, until = self.moment(change, "Start"), self.moment(change, "End")
        bound = self.object(absence, "Event") if absence.get("Class") == "ClassAbsenceTime" else None
        counts = {"TeacherAbsenceTime": not self.flag(absence, "Exemption"),
                  "RoomUnavailableTime": self.flag(absence, "NotAvailable")}.get(absence.get("Class"), True)
        return counts and (bound is None or key(bound) == key(course)) and (
            start <= from_ < end or from_ <= start < until)

    def missing(self, change, name):
        """Who and what is missing by the change's list and by its absence."""
        return [*self.items(change, "Absent"), self.object(self.object(change, "AbsenceTime"), name)]

    def lesson_rooms(self, lesson, change):
        rooms = self.items(lesson, "Rooms")
        found = rooms and without(self.kind_of(change, "New", kind="Room"), *rooms)
        return listed(found or without(rooms, *self.missing(change, "Room")))

    def lesson_teachers(self, lesson, change):
        teachers = self.items(lesson, "Teacher")
        return listed(teachers and without(teachers, *self.missing(change, "Teacher"))
                      + without(self.kind_of(change, "New", kind="Teacher"), *teachers))

    # Rows of changes, each a dictionary, or nothing.

    def substitute(self, change):
        kind, lesson, absence = change.get("Class"), self.lesson_of(change), self.object(change, "AbsenceTime")
        subject = self.object(change, "Subject")
        row = {"Id": identifier(change), "Title": "" if subject is None else self.text(subject, "Code"),
               "Description": self.text(change, "Comment"), "SubjectId": identifier(subject), "Quality": "",
               "TemporalExpressions": self.change_time(change)}
        if kind == EXTRA and absence is not None and subject is not None:
            return row | {
                "Id": self.extra_lesson_id(change), "Description": "", "CourseId": identifier(change),
                "ScheduledLessonId": identifier(change),
                "RoomIdList": unique(self.kind_of(change, "Original", "New", kind="Room")),
                "SchoolClassIdList": self.newest(change, "Original", "New", "Class"),
                "TeacherIdList": self.newest(change, "Original", "New", "Teacher")}
        if kind not in (STAND_IN, ROOM_CHANGE) or not self.in_range(change):
            return None
        row |= {"CourseId": self.course(lesson), "ScheduledLessonId": identifier(lesson),
                "SchoolClassIdList": self.classes(lesson), "TeacherIdList": self.every(lesson, "Teacher")}
        if kind == ROOM_CHANGE:
            return self.scheduled(lesson) and row | {"RoomIdList": unique(self.kind_of(change, "New", kind="Room"))}
        if lesson is not None and (self.subject_of(lesson) is None or not self.scheduled(lesson)):
            return None
        return self.stand_in(change, lesson, row | {"Quality": self.ref(change, "StandInQuality")})

    def stand_in(self, change, lesson, row):
        feature, other = self.feature(change), self.object(change, "NewTime")
        if feature in SWAPS and other is not None:
            swapped = {name: other if name in SWAPS[feature] else lesson for name in ("Rooms", "Teacher")}
            return row | {"RoomIdList": self.every(swapped["Rooms"], "Rooms"),
                          "TeacherIdList": self.every(swapped["Teacher"], "Teacher"),
                          "TemporalExpressions": self.occurrence(change, "")}
        if feature == "vmVorgezogen" and (other is not None or lesson is not None):
            course = self.owner(other)
            if other is not None and self.only_courses and not (course is not None and self.course_scheduled(course)):
                return None
            lesson = lesson if other is None else other
            row |= {"TemporalExpressions": self.occurrence(change, "")}
        elif feature != "vmAenderung" or self.number(change, "GapReason") == VA_FEHLSTELLE:
            return None
        return row | {"CourseId": self.course(lesson), "ScheduledLessonId": identifier(lesson),
                      "RoomIdList": self.lesson_rooms(lesson, change), "SchoolClassIdList": self.classes(lesson),
                      "TeacherIdList": self.lesson_teachers(lesson, change)}

    def extra_lesson_id(self, change):
        return derived(change, "-1f3a9c52-7b10-4e6d-9a2e-5c0d8f42b771")

    def gap(self, change):
        kind, lesson, absence = change.get("Class"), self.lesson_of(change), self.object(change, "AbsenceTime")
        reason = [] if absence is None else [{"_type": "Absence", "AbsenceId": identifier(absence)}]
        row = {"Id": derived(change), "LessonId": identifier(lesson), "Description": self.text(change, "Comment"),
               "TemporalExpressions": self.occurrence(change, ""), "Reasons": compact(reason),
               "Resolutions": self.resolution(identifier(change))}
        if kind == EXTRA and absence is not None and change.find("Subject") is not None:
            return row | {"LessonId": identifier(change), "Description": "",
                          "Resolutions": self.resolution(self.extra_lesson_id(change))}
        if kind == ROOM_CHANGE and self.in_range(change) and self.scheduled(lesson):
            return row
        if kind != STAND_IN or not self.in_range(change) or lesson is None or not self.scheduled(lesson):
            return None
        if absence is None and self.number(change, "GapReason") == VA_FREIGESTELLT:
            row["Reasons"] = compact([{"_type": "Stash"}])
        feature, mirror = self.feature(change), self.object(change, "MirrorChange")
        row["Resolutions"] = self.resolutions(change, feature, mirror)
        other = self.object(change, "NewTime")
        if feature not in ("vmVorgezogen", "vmWeggezogen") and self.subject_of(other) is not None:
            moved = self.moment(change, "NewTimeDate") != BASE
            return (self.scheduled(other) or not (self.only_courses or self.only_lessons)) and row | {
                "LessonId": identifier(other),
                "TemporalExpressions": self.change_time(change) if moved else compact([self.once(BASE, BASE)])}
        mirrored = {"vmVorgezogen": mirror is not None and self.scheduled(self.lesson_of(mirror)),
                    "vmWeggezogen": mirror is not None}.get(feature, True)
        return row if mirrored and self.subject_of(lesson) is not None else None

    def resolution(self, substitute):
        return compact([{"_type": "Substitution", "SubstituteLessonId": substitute}])

    def resolutions(self, change, feature, mirror):
        if feature == "vmKein":
            return "[]"
        if feature in CANCELLATIONS:
            return compact([{"_type": "Cancellation", "Behaviour": CANCELLATIONS[feature]}])
        if feature != "vmWeggezogen" or mirror is None:
            return self.resolution(identifier(change))
        lesson = self.lesson_of(mirror)
        found = lesson is None or self.subject_of(lesson) is not None and self.scheduled(lesson)
        return self.resolution(identifier(mirror)) if found and self.exportable(mirror) else "[{}]"

    # Files.

    def tables(self):
        found = super().tables()
        if self.changes:
            exportable = list(filter(self.exportable, self.changes))
            for name, columns, row in (("SubstituteLessons", SUBSTITUTES, self.substitute),
                                       ("LessonGaps", GAPS, self.gap)):
                records = filter(None, map(row, exportable))
                found[name] = [columns] + [[record[column] for column in columns] for record in records]
            found["Announcements"] = self.table(MESSAGES, [change for change in self.changes if self.in_range(change)
                                                           and change.get("Class") == MESSAGE])
        return found
