"""The plan of a data file for the second implementation of the publication: its objects, times and texts.

A moment is a number of milliseconds since 1899-12-30, 0 one that is not set.
"""

import functools
import re
import xml.etree.ElementTree as ElementTree
from datetime import datetime, timedelta

from ocf_reference import BASE, NO_COLOUR, SYSTEM_COLOURS, code_units, identifier

DAY = 86_400_000
WINDOW_COLOUR = 5


def quicksort(found, compare):
    """The library's own sort, which is not stable."""
    def sort(low, high):
        while low < high:
            left, right, pivot = low, high, (low + high) // 2
            while left <= right:
                while compare(found[left], found[pivot]) < 0:
                    left += 1
                while compare(found[right], found[pivot]) > 0:
                    right -= 1
                if left <= right:
                    found[left], found[right] = found[right], found[left]
                    pivot = right if pivot == left else left if pivot == right else pivot
                    left, right = left + 1, right - 1
            sort(low, right)
            low = left
    sort(0, len(found) - 1)
    return found


def compared(first, second):
    return (first > second) - (first < second)


def folded(text):
    """The order of a text, upper and lower case of ASCII alike."""
    return code_units("".join(c.upper() if "a" <= c <= "z" else c for c in text))


def moment_of(text):
    text = text.rstrip("Z")
    if not text.strip("0-T:."):
        return 0
    return round((datetime.fromisoformat(text) - BASE) / timedelta(milliseconds=1))


def as_date(moment):
    return BASE + timedelta(milliseconds=moment)


def day(moment):
    return moment - moment % DAY


def weekday(moment):
    """1 for a Monday."""
    return (moment // DAY + 5) % 7 + 1


def monday(moment):
    return day(moment) - (weekday(moment) - 1) * DAY


def overlap(first, second):
    return second[0] <= first[0] < second[1] or first[0] <= second[0] < first[1]


def days_overlap(first, second):
    (start, end), (from_, until) = map(lambda span: map(day, span), (first, second))
    return from_ <= start <= until or start <= from_ <= end


def until_midnight(start, finish):
    return finish + DAY if finish == day(start) else finish


def names(found):
    return ", ".join(thing.code for thing in found)


class Thing:
    """An object of the plan."""

    def __init__(self, plan, element, owner=None):
        self.plan, self.element, self.owner = plan, element, owner
        self.kind, self.guid = element.get("Class"), element.get("ID").upper()
        self.id, self.known = identifier(element), len(element) > 0
        self.values = {}
        for child in element:
            self.values.setdefault(child.tag, child)

    def text(self, name, default=""):
        child = self.values.get(name)
        return default if child is None else child.text or ""

    def number(self, name, default=0):
        return int(self.text(name) or default)

    def flag(self, name, default=0):
        return self.number(name, default) != 0

    def moment(self, name):
        return moment_of(self.text(name))

    def ref(self, name):
        child = self.values.get(name)
        return None if child is None else self.plan.thing(child)

    @functools.lru_cache(maxsize=None)
    def things(self, name):
        child = self.values.get(name)
        found = [] if child is None else child.findall("./Items[1]/Item")
        return [self.plan.thing(element, self) for element in found]

    def members(self, name, kind):
        return [thing for thing in self.things(name) if thing.kind == kind]

    def lines(self, name):
        found = re.findall(r'(?:^|,)(?:"((?:[^"]|"")*)"|([^,]+))', self.text(name))
        return "\n".join(quoted.replace('""', '"') or plain for quoted, plain in found)

    def colour(self, name="Color"):
        value = self.number(name, NO_COLOUR)
        if value == NO_COLOUR or value < 0 and value & 0xFF == WINDOW_COLOUR:
            return ""
        if value < 0:
            return "#" + (SYSTEM_COLOURS + ["000000"] * 256)[value & 0xFF]
        return "#%02x%02x%02x" % (value & 255, value >> 8 & 255, value >> 16 & 255)

    @functools.cached_property
    def code(self):
        return self.text("Code")

    @functools.cached_property
    def span(self):
        return self.moment("Start"), self.moment("End")

    # A lesson and its appointments.

    @property
    def lesson(self):
        """The lesson of an appointment."""
        return self.owner if self.kind == "Time" else None

    @property
    def title(self):
        number, subject = self.number("CourseNo"), self.ref("Subject")
        return (subject.code if subject else "") + (str(number) if number > 0 else "") + self.text("External")

    @property
    def frame(self):
        if self.kind == "Student":
            return self.ref("Class").frame if self.ref("Class") else self.plan.frame
        return self.ref("TimeFrame") or self.plan.frame

    def takes_part(self, who):
        """Whether an object is among those of an appointment."""
        if who.kind == "Subject":
            return self.lesson is not None and self.lesson.ref("Subject") is who
        holder = self.lesson if who.kind in ("Class", "Student") else self
        name = {"Class": "Classes", "Student": "Student", "Teacher": "Teacher", "Room": "Rooms"}.get(who.kind,
                                                                      "Resources")
        return holder is not None and who in holder.things(name)


class Plan:
    """A document, with its lists in the order that they have once it is loaded."""

    def __init__(self, file_name, sorted_again):
        self.root = ElementTree.parse(file_name).getroot()
        self.cache = {}
        self.defined = {(e.get("Class"), e.get("ID").upper()): e for e in self.root.iter("Item") if len(e)}
        storage = ElementTree.Element("Storage", Class="Storage", ID="{}")
        storage.extend(list(self.root))
        self.storage = Thing(self, storage)
        self.settings = self.thing(self.root.find("Settings"))
        self.frame = self.settings.ref("TimeFrame")
        self.valid = self.settings.moment("ValidFrom"), self.settings.moment("ValidTo")
        self.term = self.settings.moment("TimetablePeriodFrom"), self.settings.moment("TimetablePeriodTo")
        self.first_day, self.last_day = self.settings.number("WeekStart"), self.settings.number("Weekend")
        self.weeks = weeks_of(self.settings.text("LessonWeeks"))
        self.lessons = sorted(self.list("Events"), key=lambda lesson: (lesson.number("BlockIndex"), code_units(
            names(lesson.things("Classes")) + self.cased_title(lesson))))
        for lesson in self.lessons:
            for appointment in lesson.things("Times"):
                appointment.owner = lesson
        for area in self.list("SupervisionAreas"):
            for supervision in area.things("SupervisionList"):
                supervision.owner = area
        self.changes, self.assignments = self.list("Changes"), self.list("AssignmentList")
        for _ in range(2 if sorted_again else 1):
            for found in (self.changes, self.assignments):
                quicksort(found, compare_changes)
        self.absences = sorted(self.list("AbsenceTimes"), key=lambda absence: -absence.span[0])
        self.place = {id(absence): -place for place, absence in enumerate(self.absences)}
        self.calendar = self.storage.ref("Calendar")
        entries = self.calendar.things("Entries") if self.calendar else []
        self.entries = sorted(entries, key=lambda e: (-e.span[1], code_units(e.lines("Description").replace("\n",
                                                                      "\r\n"))))
        self.free = [entry for entry in self.entries if entry.flag("FreePeriod", 1)]
        self.directories = self.storage.ref("Directories")

    def list(self, name):
        """The objects of a list of the plan, an object that stands there twice once."""
        return list(dict.fromkeys(self.storage.things(name)))

    def thing(self, element, owner=None):
        key = element.get("Class"), element.get("ID").upper()
        if key not in self.cache:
            self.cache[key] = Thing(self, self.defined.get(key, element), owner)
        return self.cache[key]

    def cased_title(self, lesson):
        kind, plain = lesson.ref("LessonType"), lesson.title[:len(lesson.title) - len(lesson.text("External"))]
        if kind and kind is self.settings.ref("LessonType"):
            plain = plain.lower()
        elif kind and kind in (self.settings.ref("LKLessonType1"), self.settings.ref("LKLessonType2")):
            plain = "".join(c.upper() if len(c.upper()) == 1 else c for c in plain)
        return plain + lesson.text("External")

    # Weeks.

    def week(self, moment):
        first, last, this = map(monday, (*self.term, moment))
        return (this - first) // DAY // 7 + 1 if first <= this <= last else 0

    def in_week(self, date_of, week):
        return monday(self.term[0]) + (week - 1) * 7 * DAY + (weekday(date_of) - 1) * DAY

    def effective(self, weeks):
        if not weeks or len(weeks) == 56 or weeks == self.weeks:
            return self.weeks
        return weeks & self.weeks if self.weeks else weeks

    def weeks_of_appointment(self, appointment):
        lesson = appointment.lesson
        holder = appointment.ref("Period")
        if holder is None:
            own = weeks_of(appointment.text("Weeks"))
            if own:
                return own
            holder = lesson.ref("Period") or lesson
            return weeks_of(holder.text("Weeks")) or weeks_of("1" * 56)
        return weeks_of(holder.text("Weeks"))

    # School days.

    def school_day(self, moment):
        if (weekday(moment) - self.first_day) % 7 > (self.last_day - self.first_day) % 7:
            return False
        return not any(entry.flag("AllDay") and not entry.things("Member") and entry.span[0] < moment - moment % DAY + DAY
                       and moment - moment % DAY < entry.span[1] for entry in self.free)

    def next_school_day(self, moment):
        found = moment
        while self.term[0] <= found + DAY <= self.term[1]:
            found += DAY
            if self.school_day(found):
                return found
        return None


def weeks_of(text):
    return frozenset(n for n, mark in enumerate(text, 1) if mark == "1") if len(text) == 56 else frozenset()


def compare_changes(first, second):
    for one, other in zip(first.span, second.span):
        if one != other:
            return compared(other, one)
    if first.kind == second.kind == "Stand-in":
        features = first.number("StandInFeature"), second.number("StandInFeature")
        if features[0] != features[1]:
            return compared(*features)
    return compared(first.guid, second.guid)
