"""Data files for the tests of the OCF set: the parts of a document, and plans at random."""

import itertools
import random
import uuid
from xml.sax.saxutils import escape

ZERO = "{00000000-0000-0000-0000-000000000000}"
AWKWARD = ['say "hi"', "A;B", "two\r\nlines", "LF\nonly", "CR\ronly", "Grüße aus Łódź", "𝔘𝔫𝔦 😀", "", " ", "  padded  ",
           "\t", "'", "\\", '"', '""', ";", "a,b", "<&>", "\u007f", "\u00a0\u2028", "\ufeff", "e\u0301", "x" * 5000]


def tag(name, kind, number, body="", **values):
    """An object or a reference to one; a number makes its GUID."""
    guid = number if isinstance(number, str) else "{%s}" % str(uuid.UUID(int=number + (10 << 124))).upper()
    texts = "".join(f"<{key}>{escape(value, {chr(13): '&#13;'})}</{key}>" for key, value in values.items())
    return f'<{name} Class="{kind}" ID="{guid}">{texts}{body}</{name}>'


def item(kind, number, body="", **values):
    return tag("Item", kind, number, body, **values)


def items(name, found):
    return f"<{name}><Items>{''.join(found)}</Items></{name}>"


def refs(name, kind, numbers):
    return items(name, [item(kind, number) for number in numbers])


def frame(name, number, rows=""):
    return tag(name, "TimeFrame", number, rows, Code="F;1", LessonsPerDay="8", MinutesPerHour="45", UnitsPerHour="1",
               FirstHour="8", MorningLessonTo="6")


def document(*parts, week=(1, 5), valid=("2026-08-01", "2027-07-31"), types="", **values):
    zeros = dict.fromkeys("LessonWeeks BrenmarkClient BrenmarkTimePeriod StatisticsCheck LessonsDisplay TimeColor "
                          "TimeColorGradient StatisticsWeeksCount".split(), "0")
    settings = tag("Settings", "Settings", 2, frame("TimeFrame", 1) + types, ValidFrom=valid[0], ValidTo=valid[1],
                   WeekStart=str(week[0]), Weekend=str(week[1]), **zeros, **values)
    return f"<Storage><DataformatRelease>6.0.172</DataformatRelease>{settings}{''.join(parts)}</Storage>"


# Changes that are nowhere defined.
NOWHERE = list(zip(("Stand-in", "RoomChange", "SupervisionStandIn", "Message", "AdditionalLesson"), range(1, 6)))


class Plan:
    """A plan at random: few people, rooms and hours, so that all meet, and many changes."""

    PEOPLE = {"Subject": 500, "Class": 600, "Teacher": 700, "Room": 800, "Student": 900, "Resource": 1000,
              "LessonType": 1100, "Period": 1200, "SkipStandInReason": 1300, "StandInQuality": 1400,
              "SubjectTopicArea": 1500}
    ABSENCES = {"ClassAbsenceTime": "Class", "TeacherAbsenceTime": "Teacher", "RoomUnavailableTime": "Room"}
    CODES = ["", "Ma", "DEU", "ä;Ö", "Łk", "Ма", 'é"x"', "straße"]
    FEATURES, REASONS, TEACHER_FEATURES, STATES = range(13), range(11), range(5), range(8)

    def __init__(self, seed, plans):
        self.random = random.Random(seed)
        combinations = list(itertools.product(self.FEATURES, self.REASONS, self.TEACHER_FEATURES, self.STATES))
        random.Random(0).shuffle(combinations)
        self.combinations = combinations[seed::plans]
        self.days = ["2026-07-31", "2026-08-01", "2026-10-05", "2026-10-25", "2027-03-28", "2027-07-31", "2027-08-02"]
        self.courses, self.lessons, self.changes = range(10_000, 10_030), [], []
        self.absences = [(kind, 2000 + n) for n, kind in enumerate(self.random.choices(list(self.ABSENCES), k=60))]

    # Choices.

    def chance(self, percent):
        return self.random.randrange(100) < percent

    def one(self, kind, count=6):
        """The number of an object of a kind; the last one is nowhere defined."""
        return self.PEOPLE[kind] + self.random.randrange(count)

    def ref(self, name, kind, percent=100):
        return tag(name, kind, self.one(kind)) if self.chance(percent) else ""

    def refs(self, name, kind, most=3):
        """Some of a kind, now and then one of them twice, or one without an identity."""
        numbers = [self.one(kind) for _ in range(self.random.randint(0, most))]
        return refs(name, kind, numbers + [ZERO] * self.chance(5))

    def moment(self, day=None):
        minute = self.random.choice(["07:45", "08:30", "09:15", "10:00", "00:00", "02:30", "23:59"])
        second = self.random.choice(["00.000", "00.000", "00.001", "59.999"])
        return f"{day or self.random.choice(self.days)}T{minute}:{second}Z"

    def span(self, day=None):
        """A start and mostly a later end, which may be the start of another."""
        day = day or self.random.choice(self.days)
        start, end = sorted([self.moment(day), self.moment(day)], reverse=self.chance(5))
        return {"Start": start, "End": end}

    def weeks(self):
        return self.random.choice(["", "", "0" * 56, "1" * 55, "1" * 56, "1" + "0" * 55, "0" * 55 + "1",
                                   "".join(self.random.choices("000001", k=56))])

    def text(self):
        return self.random.choice(AWKWARD[:-1]) if self.chance(30) else ""

    # Parts of the document.

    def people(self, name, kind, more=lambda number: "", **values):
        numbers = [self.PEOPLE[kind] + n for n in range(5)]
        codes = dict(zip(numbers, self.random.sample(self.CODES, 5)))
        return items(name, [item(kind, n, more(n), Code=codes[n], **values) for n in numbers])

    def absences_of(self, number):
        """Mostly the class's own, in an order of their own."""
        own = [pair for pair in self.absences if pair[1] % 5 + self.PEOPLE["Class"] == number]
        others = self.random.sample(self.absences, 3) + [("ClassAbsenceTime", 1)]
        self.random.shuffle(own)
        return items("AbsenceTimes", [item(*pair) for pair in own + others])

    def absence(self, kind, number):
        role = self.ABSENCES[kind]
        bound = tag("Event", "Event", self.random.choice(self.courses)) if kind[0] == "C" and self.chance(30) else ""
        who = "" if self.chance(10) else self.ref(role, role)
        times = self.span() if self.chance(60) else {"Start": "2026-10-05", "End": "2027-03-28T10:00:00.000Z"}
        flags = {flag: str(int(self.chance(30))) for flag in ("NotPublic", "Exemption", "NotAvailable")}
        return item(kind, number, who + bound, LessonsSettled="0", **times, **flags)

    def lesson(self, number):
        self.lessons.append(number)
        times = {} if self.chance(20) else self.span("1899-12-30" if self.chance(70) else None)
        if times and self.chance(10):
            times["End"] = times["End"][:11] + "00:00:00.000Z"
        return item("Time", number, self.refs("Rooms", "Room", 2) + self.refs("Teacher", "Teacher", 2)
                    + self.ref("Period", "Period", 30), SetDuration="1", Weekday=str(self.random.randrange(8)),
                    Weeks=self.weeks(), Comment=self.text(), Block=self.text(), AltWeekday="3",
                    AltStart="1899-12-30T11:11:00.000Z", **times)

    def course(self, number):
        lessons = [self.lesson(20_000 + 10 * number + n) for n in range(self.random.choice([0, 1, 1, 2, 3]))]
        parts = [items("Times", lessons), self.refs("Classes", "Class", 2), self.refs("Teacher", "Teacher"),
                 self.refs("Rooms", "Room"), self.refs("Student", "Student", 5), self.ref("Subject", "Subject", 85),
                 self.ref("Period", "Period", 20), self.ref("LessonType", "LessonType", 70),
                 self.ref("SubjectTopicArea", "SubjectTopicArea", 50)]
        texts = {name: self.text() for name in ("Title", "Comments", "Group", "EventNo", "Href", "External", "BlockID")}
        days = {name: self.moment() for name in ("ValidFrom", "ValidTo") if self.chance(30)}
        return item("Event", number, "".join(parts), Weeks=self.weeks(), Reoccur=str(int(self.chance(75))),
                    BlockIndex=str(self.random.randrange(3)), CourseNo=str(self.random.choice([-1, 0, 0, 1, 12])),
                    **texts, **days)

    def members(self, name, percent):
        """A list of whatever a change may name."""
        if not self.chance(percent):
            return items(name, []) if self.chance(50) else ""
        kinds = self.random.choices(["Class", "Teacher", "Room", "Student", "Resource"], [3, 4, 3, 1, 1],
                                    k=self.random.randint(1, 4))
        return items(name, [item(kind, self.one(kind)) for kind in kinds])

    def change(self, kind, number, bare, **values):
        """One with all that a change has, or one that has next to nothing."""
        often, seldom = (8, 5) if bare else (70, 25)
        place = self.random.randrange(100)
        time = (tag("Time", "Time", self.random.choice(self.lessons)) if place < 88 else
                tag("Time", "Supervision", 1700) if place < 92 else tag("Time", "Time", 1) if place < 94 else "")
        parts = [time, self.members("New", often), self.members("Original", 70), self.members("Absent", often),
                 self.ref("Subject", "Subject", often), self.ref("SkipStandInReason", "SkipStandInReason", seldom)]
        if self.chance(40):
            parts.append(tag("AbsenceTime", *self.random.choice(self.absences)))
        if self.chance(60):
            parts.append(tag("MirrorChange", *self.random.choice(self.changes if self.chance(90) else NOWHERE)))
        if kind == "Stand-in":
            parts += [tag(name, "Time", self.random.choice(self.lessons if self.chance(95) else [1]))
                      for name, percent in (("NewTime", often), ("MovedTime", seldom)) if self.chance(percent)]
            parts.append(self.ref("StandInQuality", "StandInQuality", 50))
            values |= {"NewTimeDate": self.moment()} if self.chance(40) else {}
        flags = {name: str(int(self.chance(40))) for name in ("AllClasses", "AllTeachers") if kind == "Message"}
        values |= {name: self.text() for name in ("Information", "Message", "Comment")} | flags | self.span()
        if kind == "AdditionalLesson" and self.chance(60):
            values["CourseNo"] = str(self.random.choice([-1, 0, 3, 127]))
        return item(kind, number, "".join(parts), NotPublic=str(int(self.chance(8))), **values)

    def stand_in(self, number, feature, reason, teacher_feature, state):
        return self.change("Stand-in", number, feature in (0, 11) and self.chance(80), State=str(state),
                           StandInFeature=str(feature), GapReason=str(reason),
                           StandInTeacherFeature=str(teacher_feature))

    def document(self):
        others = ["RoomChange"] * 50 + ["AdditionalLesson"] * 50 + ["Message"] * 20 + ["SupervisionStandIn"] * 8
        courses = [self.course(number) for number in self.courses]
        self.changes = [("Stand-in", 50_000 + n) for n in range(len(self.combinations))]
        self.changes += [(kind, 60_000 + n) for n, kind in enumerate(others)]
        changes = [self.stand_in(number, *combination)
                   for (_, number), combination in zip(self.changes, self.combinations)]
        changes += [self.change(kind, number, False, State=str(self.random.choice([0, 1, 1, 2, 4, 5])))
                    for kind, number in self.changes[len(changes):]]
        self.random.shuffle(changes)
        types = "".join(tag(name, "LessonType", self.PEOPLE["LessonType"] + n)
                        for n, name in enumerate(["LessonType", "LKLessonType1", "LKLessonType2"]))
        first = {"TimetablePeriodFrom": self.random.choice(["2026-08-03", "2026-07-01", "2027-05-09"])}
        valid = self.random.choice([("2026-08-01", "2027-07-31")] * 4 + [("1899-12-30", "2027-03-28"),
                                                                         ("2026-10-05", "2026-10-05")])
        return document(
            self.people("Subjects", "Subject"), self.people("Teacher", "Teacher", Gender="0"),
            self.people("Rooms", "Room"), self.people("Students", "Student", Gender="0"),
            self.people("Resources", "Resource"), self.people("Classes", "Class", lambda number: (
                self.absences_of(number) + self.refs("Students", "Student", 6))),
            self.people("Periods", "Period", lambda _: f"<Weeks>{self.weeks()}</Weeks>"),
            items("SupervisionAreas", [item("SupervisionArea", 1600, items("SupervisionList", [
                item("Supervision", 1700, Start="1899-12-30T09:00:00.000Z")]), Code="Hof")]),
            tag("Directories", "Directories", 4, "".join(self.people(name, kind) for name, kind in (
                ("LessonTypes", "LessonType"), ("SkipStandInReasons", "SkipStandInReason"),
                ("StandInQualities", "StandInQuality"), ("SubjectTopicAreas", "SubjectTopicArea")))),
            items("AbsenceTimes", [self.absence(*pair) for pair in self.absences]), items("Events", courses),
            items("Changes", changes), types=types, valid=valid, **(first if self.chance(80) else {}))
