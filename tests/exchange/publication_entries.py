"""Plan entries: what occurs when for whom, and what changes and absences make of it."""

from publication_plan import (DAY, code_units, compared, day, days_overlap, folded, monday, names, overlap, quicksort,
                              until_midnight, weekday, weeks_of)
from publication_texts import room_text, subject_text, teacher_text

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
            if thing.kind in kinds or not kinds and hasattr(self, prefix + KINDS.get(thing.kind, "")):
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


def by_date_and_time(first, second):
    found = compared((first.start, first.weeks_index), (second.start, second.weeks_index))
    if not found and first.appointment and second.appointment:
        found = compared(*(entry.appointment.lesson.number("Focus") for entry in (first, second)))
    for text in (lambda e: names(e.classes), subject_text, teacher_text, room_text):
        found = found or compared(folded(text(first)), folded(text(second)))
    return found


def moved(entry):
    """An entry of the appointment that takes the place."""
    change = entry.change
    if entry.substitution and change.number("StandInFeature") not in (2, 3, 4) and change.ref("NewTime"):
        entry.appointment = change.ref("NewTime")
    return entry


def changes_in(plan, span, of_list=False):
    """By ascending start, from the first one before which the walk back from a hit ends."""
    found = list(reversed(plan.changes))
    low, high = 0, len(found) - 1
    while low <= high:
        first = (low + high + 1) // 2
        if overlap(found[first].span, span):
            if not (of_list and found[first].number("GapReason") == VA_FREIGESTELLT):
                while first and overlap(found[first - 1].span, span):
                    first -= 1
            return [change for change in found[first:] if overlap(change.span, span)]
        low, high = (low, first - 1) if found[first].span[0] > span[0] else (first + 1, high)
    return []


class Expansion:
    """Finds the entries of objects in a range of dates, each appointment and foreign change once."""

    def __init__(self, plan, span, with_changes, integrated=True):
        self.plan, self.span, self.with_changes, self.integrated = plan, span, with_changes, integrated
        self.seen = set()
        self.in_range, self.in_list = changes_in(plan, span), changes_in(plan, span, True)
        self.changes_of, self.assignments_of = {}, {}
        for found, changes in ((self.changes_of, plan.changes), (self.assignments_of, plan.assignments)):
            for change in reversed(changes):
                found.setdefault(change.ref("Time"), []).append(change)

    # Occurrences.

    def validity(self, lesson):
        spans = [self.plan.valid, (lesson.moment("ValidFrom"), lesson.moment("ValidTo"))]
        classes = lesson.things("Classes")[:1]
        for window in [each.ref("TimeWindow") for each in classes] + [lesson.ref("TimeWindow")]:
            spans.append((window.moment("ValidFrom"), window.moment("ValidTo")) if window else (0, 0))
        spans += [(each.moment("ValidFrom"), each.moment("ValidTo")) for each in classes]
        return (max(start for start, _ in spans), min((end for _, end in spans if end), default=1 << 60))

    def valid(self, lesson, span):
        window, validity = lesson.ref("TimeWindow"), self.validity(lesson)
        return day(validity[0]) <= validity[1] and days_overlap(validity, span) and not (window and any(
            each.ref("ParentTimeWindow") is window and 0 < each.moment("ValidFrom") <= each.moment("ValidTo")
            and days_overlap((each.moment("ValidFrom"), each.moment("ValidTo")), span)
            for each in self.plan.list("TimeWindowList")))

    def free(self, who, span):
        """Whether an entry of the calendar without lessons covers a span."""
        return any(entry.number("Visibility") == 0 and (who or not entry.things("Member"))
                   and entry.span[0] <= span[0] and span[1] <= entry.span[1] for entry in self.plan.free)

    def next_occurrence(self, who, appointment, limits):
        lesson, (start, end) = appointment.lesson, appointment.span
        if not lesson.flag("Reoccur", 1):
            span = start, until_midnight(start, end)
            return span if start and limits[0] <= start and overlap(limits, span) else None
        base, wanted = limits[0] or self.plan.term[0], appointment.number("Weekday")
        date = monday(base) + (wanted - 1) * DAY + (7 * DAY if weekday(base) > wanted else 0)
        span = date + start % DAY, until_midnight(date, date + end % DAY)
        if span[1] < span[0]:
            return None
        weeks = self.plan.effective(self.plan.weeks_of_appointment(appointment))
        while span[0] < limits[1]:
            if self.plan.week(span[0]) in weeks and self.valid(lesson, span) and not self.free(who, span):
                return span
            span = span[0] + 7 * DAY, span[1] + 7 * DAY
        return None

    def first_occurrence(self, who, appointment):
        return self.next_occurrence(who, appointment, (self.plan.term[0], self.plan.term[1] + DAY))

    # Undated.

    def timetable(self, who, only_courses):
        found, student = [], None
        if who.kind == "Student" and who.ref("Class"):
            who, student = who.ref("Class"), who
        for appointment in self.appointments(who, only_courses, student):
            if not appointment.lesson.flag("Reoccur", 1) and not self.plan.settings.flag("ZeroWeekNonReocurring"):
                continue
            start, finish = self.first_occurrence(who, appointment) or (0, 0)
            entry = Entry(self.plan, who, start, finish, appointment)
            found.append(entry.build(False, False))
        return quicksort(found, by_date_and_time)

    def appointments(self, who, only_courses, student=None):
        for lesson in self.plan.lessons:
            if only_courses and lesson.things("Student"):
                continue
            if student and lesson.things("Student") and student not in lesson.things("Student"):
                continue
            for appointment in lesson.things("Times"):
                if appointment.span[0] and appointment.takes_part(who):
                    yield appointment

    # Dated.

    def range(self, who, only_courses):
        found = []
        for appointment in self.appointments(who, only_courses):
            weekly = appointment.lesson.flag("Reoccur", 1)
            if appointment not in self.seen and (not weekly or appointment.number("Weekday")
                                                 and self.first_occurrence(who, appointment)):
                own = self.walk(who, appointment)
                if own is not None:
                    self.seen.add(appointment)
                    found += own
        if self.with_changes:
            found += self.foreign(who)
        return quicksort(found, by_date_and_time)

    def walk(self, who, appointment):
        found, cursor, met = [], self.span[0], False
        while span := self.next_occurrence(who, appointment, (cursor, self.span[1])):
            met = True
            own, clean = self.expand(who, appointment, span)
            first = next((e for e in found if e.clean and not e.changed and all(
                own_time % DAY == time % DAY for own_time, time in zip(e.span, span))), None)
            if clean and first:
                first.weeks.add(self.plan.week(span[0]))
            else:
                for entry in own:
                    entry.clean = clean
                found += own
            if not appointment.lesson.flag("Reoccur", 1):
                break
            cursor = day(span[0]) + 7 * DAY
        return found if met else None

    def expand(self, who, appointment, span):
        lesson = appointment.lesson
        if not self.with_changes:
            return [self.create(who, appointment, span, None)], True
        changes = [c for c in self.changes_of.get(appointment, []) if overlap(c.span, span) and published(c)]
        absences = []
        for each in [*lesson.things("Classes"), *appointment.things("Teacher"), *appointment.things("Rooms")]:
            merge(absences, absences_of(each, lesson, span, True, exempt=True))
        absences.sort(key=lambda absence: absence.span[0])
        assignments = [a for a in self.assignments_of.get(appointment, []) if overlap(a.span, span) and published(a)]
        assignment = assignments[-1] if assignments else None
        if not changes and not absences:
            return [self.create(who, appointment, span, assignment)], not assignment
        parts = ([(c.span, c) for c in changes] if changes else
                 [((max(a.span[0], span[0]), min(a.span[1], span[1])), assignment) for a in absences])
        return [self.create(who, appointment, part, change or assignment)
                for part, change in self.parts(who, span, parts)], False

    def parts(self, who, span, parts):
        cursor = span[0]
        for own, change in parts:
            if own[0] >= cursor or own == span:
                if own[0] > cursor and own != span:
                    end = self.ahead_of_break(who.frame, own[0])
                    if end > cursor:
                        yield (cursor, end), None
                yield own, change
            cursor = self.behind_break(who.frame, max(cursor, own[1]))
        if span[1] > cursor:
            yield (cursor, span[1]), None

    def units(self, frame):
        count = max(frame.number("UnitsPerHour", 1), 1)
        for row in frame.things("Rows"):
            start, end = (moment % DAY for moment in row.span)
            piece = (end - start) // 60_000 // count * 60_000
            for n in range(count):
                yield start + n * piece, end if n == count - 1 else start + (n + 1) * piece

    def ahead_of_break(self, frame, moment):
        if not frame.flag("BookAdaptive", 1):
            return moment
        units, time = list(self.units(frame)), moment % DAY
        ends = [end for _, end in units if end <= time]
        return moment if not ends or any(start < time <= end for start, end in units) else day(moment) + ends[-1]

    def behind_break(self, frame, moment):
        units = list(self.units(frame))
        for unit, following in zip(units, units[1:]):
            if unit[1] == moment % DAY:
                return day(moment) + following[0]
        return moment

    def create(self, who, appointment, span, change):
        start, finish = span[0], until_midnight(*span)
        entry = Entry(self.plan, who, start, finish, appointment, change)
        return moved(entry.build(True, True))

    # From elsewhere.

    def foreign(self, who):
        chosen = [c for c in self.in_range if concerns(c, who) and taken(c, who)]
        chosen += [a for a in reversed(self.plan.assignments) if overlap(a.span, self.span) and who in a.things("New")]
        if who.kind == "Student" and who.ref("Class"):
            chosen += [c for c in self.in_range if c.kind == "Message" and concerns(c, who.ref("Class"))]
        return self.of_changes(chosen, who)

    def of_changes(self, chosen, who, place=moved):
        found = []
        for change in chosen:
            if change not in self.seen and published(change):
                self.seen.add(change)
                supervision = change.ref("Time") if change.kind == "SupervisionStandIn" else None
                appointment = change.ref("Time") if supervision is None else None
                finish = until_midnight(*change.span) if place is moved else change.span[1]
                entry = Entry(self.plan, who, change.span[0], finish, appointment, change, supervision)
                if place is not moved:
                    entry.weeks = set()
                found.append(place(entry.build(True, True)))
        return found

    def substitutions(self, who, of_student):
        chosen = [c for c in self.in_list if concerns(c, who) and not (c.kind == "Message" and c.span[0] % DAY == 0 == c.span[1] % DAY)]
        return [entry for entry in self.of_changes(chosen, who, lambda entry: entry) if not of_student and listed(entry) or of_student
                and listed(entry) and not (entry.appointment and entry.lesson.things("Student"))]


def listed(entry):
    change = entry.change
    if change.kind != "Stand-in":
        return True
    subject = entry.lesson.ref("Subject") if entry.lesson else None
    if subject and (subject.flag("NoStand-In") or subject.flag("ReadyToStandIn")):
        return False
    lists = [getattr(entry, prefix + name) for prefix in ("new_", "missing_") for name in KINDS.values()
             if name != "students"]
    reason = change.number("GapReason")
    return any(lists) or reason in (VA_WEGGEZOGEN, VA_VERSCHOBEN, VA_TAUSCH, VA_FREIGESTELLT, VA_FEHLSTELLE) and not (
        reason == VA_TAUSCH and change.number("StandInFeature") == VM_WEGGEZOGEN)


def concerns(change, who):
    new = change.things("New")
    if change.kind == "Message":
        return who in new or change.flag({"Class": "AllClasses", "Teacher": "AllTeachers"}.get(who.kind, ""))
    if change.kind == "AdditionalLesson":
        return any(who in change.things(name) for name in ("Original", "New", "Absent")) or change.ref("Subject") is who
    if change.kind == "SupervisionStandIn":
        return who in change.members("New", "Teacher")[:1]
    if change.kind == "RoomChange":
        return who in new
    times = [time for time in (change.ref("Time"), change.ref("NewTime")) if time]
    return who in new or who in change.things("Absent") or any(time.takes_part(who) for time in times)


def taken(change, who):
    """Whether a change that concerns an object is told beside the object's own lessons."""
    if change.kind == "RoomChange":
        return who in change.members("New", "Room")[:1]
    if change.kind != "Stand-in":
        return change.kind != "SupervisionStandIn"
    appointment, other = change.ref("Time"), change.ref("NewTime")
    own, absent = bool(appointment and appointment.takes_part(who)), who in change.things("Absent")
    feature, mark, reason = (change.number(n) for n in ("StandInFeature", "StandInTeacherFeature", "GapReason"))
    ahead = feature == VM_VORGEZOGEN and mark < VLM_ZUSAETZLICH
    if ahead and not own or absent and reason == VA_FEHLSTELLE:
        return True
    if who.kind == "Teacher":
        if own or absent and reason == VA_FREIGESTELLT:
            return False
        if feature == 2:
            return change.flag("ChangeTeacher")
        if mark != VLM_VERSCHOBEN:
            return True
        return not ahead and change.flag("ChangeTeacher") and bool(other and other.takes_part(who))
    if who.kind == "Room":
        return (not own and (who in change.things("New") or change.flag("ChangeRoom") and bool(
            other and other.takes_part(who))) or feature == VM_VORGEZOGEN and not appointment)
    return not appointment and (feature == VM_VORGEZOGEN or feature == 1 and mark == VLM_ZUSAETZLICH)
