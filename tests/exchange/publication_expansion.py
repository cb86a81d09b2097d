"""Finds the entries of objects: what occurs when for whom."""

from publication_entries import (KINDS, VA_FEHLSTELLE, VA_FREIGESTELLT, VA_TAUSCH, VA_VERSCHOBEN, VA_WEGGEZOGEN,
                                 VLM_VERSCHOBEN, VLM_ZUSAETZLICH, VM_VORGEZOGEN, VM_WEGGEZOGEN, Entry, absences_of,
                                 merge, published)
from publication_plan import (DAY, compared, day, days_overlap, folded, monday, names, overlap, quicksort,
                              until_midnight, weekday)
from publication_texts import room_text, subject_text, teacher_text


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


def changes_in(plan, span):
    """By ascending start."""
    return [change for change in reversed(plan.changes) if overlap(change.span, span)]


def changes_of_list(plan, span):
    """By ascending start, from the first one before which the walk back from a hit ends."""
    found = list(reversed(plan.changes))
    low, high = 0, len(found) - 1
    while low <= high:
        first = (low + high + 1) // 2
        if overlap(found[first].span, span):
            if found[first].number("GapReason") != VA_FREIGESTELLT:
                while first and overlap(found[first - 1].span, span):
                    first -= 1
            return [change for change in found[first:] if overlap(change.span, span)]
        low, high = (low, first - 1) if found[first].span[0] > span[0] else (first + 1, high)
    return []


class Expansion:
    """Finds the entries of objects in a range of dates, each appointment and foreign change once."""

    def __init__(self, plan, span, with_changes):
        self.plan, self.span, self.with_changes = plan, span, with_changes
        self.seen = set()
        self.in_range, self.in_list = changes_in(plan, span), changes_of_list(plan, span)
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
        school = max(self.span[0], self.plan.term[0]), min(self.span[1], self.plan.term[1] + DAY)
        for appointment in self.appointments(who, only_courses):
            weekly = appointment.lesson.flag("Reoccur", 1)
            if appointment not in self.seen and (not weekly or appointment.number("Weekday")
                                                 and self.next_occurrence(None, appointment, school)):
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

    def of_changes(self, chosen, who):
        found = []
        for change in chosen:
            if change not in self.seen and published(change):
                self.seen.add(change)
                supervision = change.ref("Time") if change.kind == "SupervisionStandIn" else None
                appointment = change.ref("Time") if supervision is None else None
                finish = change.span[1] if supervision else until_midnight(*change.span)
                entry = Entry(self.plan, who, change.span[0], finish, appointment, change, supervision)
                found.append(moved(entry.build(True, True)))
        return found

    def substitutions(self, who, of_student):
        chosen = [c for c in self.in_list if concerns(c, who) and not (c.kind == "Message"
                                                                      and c.span[0] % DAY == 0 == c.span[1] % DAY)]
        entries = filter(listed, self.of_changes(chosen, who))
        return [entry for entry in entries if not (of_student and self.is_of_students(entry.change.ref("Time")))]

    @staticmethod
    def is_of_students(appointment):
        return appointment is not None and appointment.lesson.things("Student")


def listed(entry):
    change = entry.change
    if change.kind != "Stand-in":
        return True
    planned = change.ref("Time") or change.ref("NewTime")
    subject = planned.lesson.ref("Subject") if planned else None
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
