"""Plan entries: what changes and absences make of an occurrence."""

from publication_plan import overlap, weeks_of

VA_WEGGEZOGEN, VA_VERSCHOBEN, VA_FREIGESTELLT, VA_FEHLSTELLE, VA_TEACHER_ROOM, VA_TAUSCH = 4, 5, 6, 7, 8, 9
VM_VORGEZOGEN, VM_FAELLT_AUS, VM_KLASSE_FREI, VM_ENTFAELLT, VM_WEGGEZOGEN, VM_KLASSE_FEHLT = 5, 7, 8, 9, 10, 11
VLM_VERSCHOBEN, VLM_ZUSAETZLICH, VLM_FREIGESTELLT, VLM_MEHRFACH = range(1, 5)
AE_OPEN, AE_INVALID, AE_CLOSED = 0, 5, 6
ADDITIONS = ("AdditionalLesson", "Message", "Assignment")
KINDS = {"Class": "classes", "Teacher": "teachers", "Room": "rooms", "Subject": "subjects", "Student": "students"}


def merge(found, more, but=()):
    for thing in more:
        if thing not in found and thing not in but:
            found.append(thing)


# Absences.

def absences_of(who, lesson, span, public, exempt=False):
    """By ascending start, those that begin together in the order of the plan from its end."""
    found = []
    for absence in who.things("AbsenceTimes"):
        bound = absence.ref("Event") if absence.kind == "ClassAbsenceTime" else None
        if (absence.known and overlap(absence.span, span) and not (public and absence.flag("NotPublic"))
                and (bound is None or bound is lesson)
                and (exempt or absence.kind != "TeacherAbsenceTime" or not absence.flag("Exemption"))):
            found.append(absence)
    return sorted(dict.fromkeys(found), key=lambda a: (a.span[0], who.plan.place.get(id(a), 0)))


def all_classes_away(change):
    """Of the appointment of a substitution or room change, the one that takes its place ahead."""
    if change.kind not in ("Stand-in", "RoomChange"):
        return False
    appointment = change.kind == "Stand-in" and change.ref("NewTime") or change.ref("Time")
    lesson = appointment.lesson if appointment else None
    classes = lesson.things("Classes") if lesson else []
    return bool(classes) and all(any(
        absence.kind != "RoomUnavailableTime" or absence.flag("NotAvailable")
        for absence in absences_of(each, lesson, change.span, False)) for each in classes)


def bare(change):
    """A substitution that nobody and nothing comes from."""
    absent = change.things("Absent")
    return (change.number("StandInFeature") in (0, VM_KLASSE_FEHLT) and not change.things("New")
            and not any(change.ref(name) for name in ("NewTime", "MovedTime", "Subject"))
            and not any(teacher in absent for teacher in change.members("Original", "Teacher")))


def published(change):
    absence = change.ref("AbsenceTime")
    return not (change.number("State") in (AE_OPEN, AE_INVALID)
                or change.flag("NotPublic") or absence and absence.flag("NotPublic")
                or change.kind == "Stand-in" and bare(change) and not change.ref("SkipStandInReason")
                and not all_classes_away(change))


class Entry:
    rebuilt = False  # the first one of a run with exactly two rooms is derived twice

    def __init__(self, plan, reader, start, finish, appointment=None, change=None, supervision=None):
        self.plan, self.reader, self.start, self.finish = plan, reader, start, finish
        self.appointment, self.change, self.supervision = appointment, change, supervision
        self.weeks, self.weeks_index, self.modified, self.clean = set(filter(None, [plan.week(start)])), 0, 0, False

    @property
    def substitution(self):
        return self.change is not None and self.change.kind == "Stand-in"

    @property
    def lesson(self):
        appointment = self.appointment or (self.change.ref("Time") if self.change else None)
        return appointment.lesson if appointment else None

    @property
    def subject(self):
        lesson = self.appointment.lesson if self.appointment else None
        return lesson.ref("Subject") if lesson else None

    @property
    def span(self):
        return self.start, self.finish

    def all_away(self):
        return self.change is not None and all_classes_away(self.change)

    def by_kind(self, prefix, things, *kinds):
        for thing in things:
            if thing.kind in kinds:
                merge(getattr(self, prefix + KINDS[thing.kind]), [thing])

    def clear(self):
        for prefix in ("", "new_", "missing_"):
            for kind in ("classes", "teachers", "rooms", "subjects"):
                setattr(self, prefix + kind, [])
        self.students, self.absences, self.classes_missing = [], [], False

    def build(self, with_absences, public):
        self.clear()
        if self.change is None:
            self.build_plain()
        elif self.supervision:
            self.missing_teachers = [self.supervision.ref("Teacher")] if self.supervision.ref("Teacher") else []
            self.new_teachers = self.change.members("New", "Teacher")[:1]
            self.teachers = list(self.new_teachers)
        else:
            self.build_changed()
        if with_absences:
            self.find_absences(public)
        self.changed = bool(self.change or self.missing_classes or self.missing_teachers or self.missing_rooms
                            or self.missing_subjects)
        cause = self.change or (self.absences[0] if self.absences else None)
        self.modified = max(self.modified, cause.moment("Modified") if cause else 0)
        if not Entry.rebuilt and len(self.rooms) == 2:
            Entry.rebuilt = True
            self.build(with_absences, False)
        return self

    def build_plain(self):
        if self.appointment:
            lesson = self.appointment.lesson
            merge(self.subjects, [lesson.ref("Subject")] if lesson.ref("Subject") else [])
            merge(self.classes, lesson.things("Classes"))
            merge(self.teachers, self.appointment.things("Teacher"))
            merge(self.rooms, self.appointment.things("Rooms"))
            self.weeks_index = sum(56 * week for week in weeks_of(lesson.text("Weeks")))
            merge(self.classes, [each for each in self.plan.list("Classes")
                                 if each.ref("IntegratedClass") in lesson.things("Classes")])
        elif self.supervision:
            merge(self.teachers, [self.supervision.ref("Teacher")] if self.supervision.ref("Teacher") else [])

    def build_changed(self):
        change, kind = self.change, self.change.kind
        subject = [change.ref("Subject")] if change.ref("Subject") else []
        if kind in ADDITIONS:
            merge(self.subjects, subject)
            if kind == "AdditionalLesson":
                self.by_kind("", change.things("Original"), "Class", "Teacher", "Room", "Student")
                self.by_kind("new_", change.things("New"), "Class", "Teacher", "Room")
                self.by_kind("missing_", change.things("Absent"), "Class", "Teacher", "Room")
            else:
                self.by_kind("", change.things("New"), "Class", "Teacher", "Room")
        elif kind == "Stand-in":
            self.build_substitution(subject)
        elif kind == "RoomChange":
            absence = change.ref("AbsenceTime")
            if absence and absence.kind == "RoomUnavailableTime" and absence.ref("Room"):
                merge(self.missing_rooms, [absence.ref("Room")])
            merge(self.new_subjects, subject)
            self.by_kind("new_", change.things("New"), "Room")
        merge(self.subjects, subject)
        self.merge_appointments()
        for name in KINDS.values():
            if name != "students":
                merge(getattr(self, name), getattr(self, "new_" + name))

    def build_substitution(self, subject):
        change = self.change
        other, swapped = change.ref("NewTime"), change.ref("MovedTime")
        self.appointment = self.appointment or other
        reason = change.number("GapReason")
        if reason != VA_TEACHER_ROOM:
            merge(self.new_subjects, subject)
            if subject and self.subject:
                merge(self.missing_subjects, [self.subject])
            self.by_kind("new_", change.things("New"), "Teacher", "Room", "Subject")
        if change.ref("AbsenceTime"):
            self.absences.append(change.ref("AbsenceTime"))
        if reason == VA_FREIGESTELLT and self.appointment:
            self.by_kind("missing_", change.things("Absent"), "Class", "Teacher", "Room", "Subject")
        elif reason == VA_FEHLSTELLE:
            self.by_kind("", change.things("Absent"), "Class", "Teacher", "Room", "Subject")
        for name, flag, things in (("teachers", "ChangeTeacher", "Teacher"), ("rooms", "ChangeRoom", "Rooms")):
            new, missing = getattr(self, "new_" + name), getattr(self, "missing_" + name)
            others = other.things(things) if other else []
            if reason == VA_TAUSCH and other and change.flag(flag):
                merge(new, swapped.things(things) if swapped else [])
                merge(missing, others)
            elif reason == VA_TAUSCH and other:
                merge(getattr(self, name), others)
            elif reason == VA_TEACHER_ROOM and self.appointment and change.flag(flag):
                merge(missing, change.ref("Time").things(things) if change.ref("Time") else [])
                merge(new, others)
        rooms = change.members("New", "Room")[:1]
        if rooms:
            merge(self.missing_rooms, self.rooms)
            self.rooms = list(rooms)
            merge(self.new_rooms, rooms)

    def merge_appointments(self):
        change = self.change
        other = change.ref("NewTime") if self.substitution else None
        if other is None or change.number("GapReason") == VA_TEACHER_ROOM:
            self.merge_appointment(self.appointment)
            return
        if change.ref("Time") and change.ref("Time") is not other:
            subject = change.ref("Time").lesson.ref("Subject") if change.ref("Time").lesson else None
            merge(self.missing_subjects, [subject] if subject else [])
            self.merge_appointment(change.ref("Time"))
        merge(self.classes, other.lesson.things("Classes") if other.lesson else [])
        if change.number("StandInTeacherFeature") in (VLM_FREIGESTELLT, VLM_MEHRFACH):
            return
        swapped = change.ref("MovedTime")

        def source(flag):
            return other if swapped is None or change.flag(flag) else swapped if change.ref("Time") else None
        teachers, rooms = source("ChangeTeacher"), source("ChangeRoom")
        merge(self.teachers, teachers.things("Teacher") if teachers else [], self.missing_teachers)
        if self.new_rooms:
            merge(self.missing_rooms, rooms.things("Rooms") if rooms else [], self.new_rooms)
        else:
            merge(self.rooms, rooms.things("Rooms") if rooms else [], self.missing_rooms)

    def merge_appointment(self, appointment):
        if appointment is None:
            return
        lesson, rooms = appointment.lesson, appointment.things("Rooms")
        subject = lesson.ref("Subject") if lesson else None
        merge(self.subjects, [subject] if subject else [], self.missing_subjects)
        merge(self.classes, lesson.things("Classes") if lesson else [], self.missing_classes)
        merge(self.teachers, appointment.things("Teacher"), self.missing_teachers)
        for room in rooms:
            if room not in self.new_rooms and room not in self.missing_rooms:
                merge(self.missing_rooms if self.new_rooms and len(rooms) == 1 else self.rooms, [room])

    def find_absences(self, public):
        lesson = self.lesson

        def away(who, missing):
            found = absences_of(who, lesson, self.span, public)
            merge(self.absences, found)
            merge(missing, [who] if found else [])
            return bool(found)
        for room in self.rooms:
            if room not in self.missing_rooms:
                away(room, self.missing_rooms)
        for teacher in self.teachers:
            if teacher not in self.missing_teachers:
                away(teacher, self.missing_teachers)
        if self.classes and not (self.change and self.change.kind == "Message"):
            self.classes_missing = True
            for each in self.classes:
                if each not in self.missing_classes and not away(each, self.missing_classes):
                    self.classes_missing = False

    def reset(self):
        """Takes back what changes and absences made of it."""
        for name in ("new_subjects", "new_rooms", "new_teachers", "missing_subjects", "missing_classes",
                     "missing_teachers", "missing_rooms", "absences"):
            setattr(self, name, [])
        self.change, self.changed = None, False

    def absence_only(self):
        change = self.change
        kind = change.kind if change else ""
        feature = change.number("StandInFeature") if kind == "Stand-in" else 0
        if self.classes_missing or kind == "Message" or change and (
                change.number("State") in (AE_INVALID, AE_CLOSED) or change.ref("SkipStandInReason")
                or kind in ("RoomChange", "SupervisionStandIn") and change.flag("NoStand-In")
                or feature in (VM_VORGEZOGEN, VM_KLASSE_FREI, VM_ENTFAELLT, VM_WEGGEZOGEN)):
            return False
        rooms = bool(self.missing_rooms and not self.new_rooms)
        if feature == VM_FAELLT_AUS:
            return rooms
        classes = (self.missing_classes and not self.new_classes
                   and all(each in self.missing_classes for each in self.classes))
        teachers = self.missing_teachers and not self.new_teachers
        return bool(kind != "AdditionalLesson" and (rooms or kind != "RoomChange" and (classes or teachers))
                    or change and change.number("State") == AE_OPEN)
