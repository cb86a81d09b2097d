"""Small plans at random for the publication, and the settings of jobs for them."""

import random
import uuid
from datetime import datetime, timedelta

from ocf_documents import item, items, refs, tag

MONDAY = datetime(2026, 9, 7)
ROWS = ["07:45 08:30", "08:30 09:15", "09:35 10:20", "10:20 11:05", "11:25 12:10", "12:10 12:55"]
TEXTS = ['say "hi"', "a\tb", "two\nlines", "CR\ronly", "\t", "back\\slash", "  padded ", "<&>", "ä;Ö", "😀", " ", "\r",
         "x" * 300, "nil"]
CODES = ["", "A", "a", "b_", "ba", "Äö", 'q"', "t\tb", "B1", "c,d", "Z[", "😀", "\uf8ff", "e f", "ZZ", "_"]
KINDS = {"Class": ("Classes", 600, 3), "Teacher": ("Teacher", 700, 4), "Room": ("Rooms", 800, 3),
         "Subject": ("Subjects", 500, 3), "Student": ("Students", 900, 4), "Resource": ("Resources", 1000, 2)}
REASONS = {"Class": ("ClassAbsenceReason", 1310), "Teacher": ("TeacherAbsenceReason", 1300),
           "Room": ("RoomUnavailableReason", 1320)}
ABSENCES = {"Class": "ClassAbsenceTime", "Teacher": "TeacherAbsenceTime", "Room": "RoomUnavailableTime"}


def stamp(moment):
    return moment.isoformat(timespec="milliseconds") + "Z"


def guid(number):
    return str(uuid.UUID(int=number + (10 << 124)))


class SmallPlan:
    """A plan of four weeks: few people and hours, so that lessons, changes and absences meet."""

    def __init__(self, seed):
        self.random = random.Random(seed)
        self.absences, self.lessons, self.changes, self.met = {}, [], [], set()
        self.text_of_file = self.document()

    # Choices.

    def chance(self, percent):
        return self.random.randrange(100) < percent

    def some(self, *choices):
        return self.random.choice(choices)

    def number(self, kind):
        _, first, count = KINDS[kind]
        return first + self.random.randrange(count)

    def ref(self, name, kind, percent=100, first=None, count=2):
        if not self.chance(percent):
            return ""
        return tag(name, kind, self.number(kind) if first is None else first + self.random.randrange(count))

    def refs(self, name, kind, most=2):
        _, first, count = KINDS[kind]
        return refs(name, kind, self.random.sample(range(first, first + count), self.random.randint(0, most)))

    def text(self, percent=30):
        return self.random.choice(TEXTS) if self.chance(percent) else ""

    def custom_id(self):
        return self.some("", "", "7", 'a"b')

    def flags(self, percent, *names):
        return {name: "1" for name in names if self.chance(percent)}

    def moment(self):
        day = MONDAY + timedelta(self.random.randint(-2, 29))
        hour, minute = map(int, self.random.choice(" ".join(ROWS).split() + ["00:00", "08:00", "10:05",
                                                                      "23:59"]).split(":"))
        return day + timedelta(hours=hour, minutes=minute)

    def weeks(self):
        return self.some("", "", "", "1" * 56, "1010" + "0" * 52, "0110" + "0" * 52, "0" * 56, "11", "0001" + "1" * 52)

    # People.

    def people(self, kind):
        name, first, count = KINDS[kind]
        codes = self.random.sample(CODES, count)
        return items(name, [item(kind, first + n, self.belongings(kind, first + n), Code=code, Name=self.text(), **(
            self.flags(8, "NotAvailable")), **self.details(kind)) for n, code in enumerate(codes)])

    def details(self, kind):
        found = {"CID": self.custom_id()}
        if self.chance(40):
            found["Color"] = self.some("0", "255", "16777216", "536870911", "-16777211", "-16777210", "12648430")
        if kind in ("Teacher", "Student"):
            found |= {"Gender": "0", "Surname": self.text(), "FirstName": self.text(), "MiddleName": self.text()}
            found |= {"Title": self.text()} if kind == "Teacher" else {"StudentNo": self.text()}
        if kind == "Subject":
            found |= self.flags(10, "NoStand-In", "ReadyToStandIn")
        if kind == "Class" and self.chance(20):
            found |= {"ValidFrom": "2026-09-14"} if self.chance(50) else {"ValidTo": "2026-09-21"}
        if kind == "Room":
            found["Level"] = self.text()
        return found

    def belongings(self, kind, number):
        parts = [refs("AbsenceTimes", ABSENCES.get(kind, ""), self.absences.get((kind, number), [])),
                 self.ref("TimeFrame", "TimeFrame", 25, 30)]
        if kind in ("Class", "Resource"):
            parts.append(self.ref("Group", "Group", 60, 1200))
        if kind in ("Teacher", "Room", "Subject"):
            parts.append(refs("Groups", "Group", self.random.sample([1200, 1201], self.random.randint(0, 2))))
        if kind == "Class":
            parts += [self.ref("IntegratedClass", "Class", 25), self.ref("TimeWindow", "TimeWindow", 20, 1400, 4)]
        if kind == "Student":
            parts.append(self.ref("Class", "Class", 80))
        if kind == "Room":
            parts.append(self.ref("Building", "Building", 60, 1500))
        return "".join(parts)

    def absence(self, number):
        kind = self.some("Class", "Teacher", "Teacher", "Room")
        who, start = self.number(kind), self.moment()
        if (kind, who, start) in self.met:
            return ""
        self.met.add((kind, who, start))
        self.absences.setdefault((kind, who), []).append(number)
        end = start + self.random.choice([timedelta(minutes=45), timedelta(minutes=90), timedelta(hours=6),
                                          timedelta(1), timedelta(9), timedelta(0)])
        body = tag(kind, kind, who) + self.ref("AbsenceReason", REASONS[kind][0], 60, REASONS[kind][1])
        body += self.ref("Event", "Event", 30, 10_000, 7) if kind == "Class" else ""
        flags = {"Class": (), "Teacher": ("Exemption",), "Room": ("NotAvailable",)}[kind] + ("NotPublic",)
        values = {"LessonsSettled": "0"} if kind == "Teacher" else {}
        return item(ABSENCES[kind], number, body, Start=stamp(start), End=stamp(end), Comment=self.text(), **(
            {"Modified": stamp(self.moment())} if self.chance(60) else {}), **self.flags(25, *flags), **values)

    # Lessons.

    def appointment(self, number, weekly):
        first = self.random.randrange(len(ROWS))
        last = min(first + self.some(0, 0, 0, 1, 1, 2), len(ROWS) - 1)
        start, end = ROWS[first].split()[0], ROWS[last].split()[1]
        if self.chance(10):
            start, end = self.some(("08:00", "09:00"), ("12:10", "00:00"), ("09:20", "09:30"), ("00:00", "00:00"))
        day = MONDAY + timedelta(self.random.choice(range(26)))
        date = "1899-12-30" if weekly else f"{day:%Y-%m-%d}"
        weekday = self.random.choice([1, 2, 3, 3, 4, 5, 5, 6, 7, 0]) if weekly else day.isoweekday()
        if weekly and weekday:
            day = MONDAY + timedelta(weekday - 1)
        self.lessons.append((number, weekly, day, start, end))
        return item("Time", number, self.refs("Rooms", "Room") + self.refs("Teacher", "Teacher")
                    + self.ref("Period", "Period", 15, 1600), SetDuration="1", Weekday=str(weekday), Weeks=self.weeks(),
                    Block=self.text(20), Start=f"{date}T{start}:00.000Z", End=f"{date}T{end}:00.000Z")

    def course(self, number):
        weekly = self.chance(75)
        times = [self.appointment(20_000 + 10 * number + n, weekly) for n in range(self.some(1, 1, 1, 2))]
        parts = [items("Times", times), self.refs("Classes", "Class"), self.ref("Subject", "Subject", 90),
                 self.refs("Teacher", "Teacher"), self.ref("Period", "Period", 15, 1600),
                 self.ref("TimeWindow", "TimeWindow", 20, 1400, 4)]
        if self.chance(30):
            parts.append(self.refs("Student", "Student", 3))
        days = {name: stamp(self.moment()) for name in ("ValidFrom", "ValidTo") if self.chance(12)}
        texts = {name: self.text(20) for name in ("Title", "Comments", "Group", "EventNo", "Href", "External")}
        texts["CID"] = self.custom_id()
        return item("Event", number, "".join(parts), Weeks=self.weeks(), BlockIndex=str(number), Focus=self.some("0",
                                                                      "0", "3"),
                    Reoccur=str(int(weekly)), CourseNo=self.some("0", "0", "2", "-1"), **texts, **days)

    # Changes.

    def members(self, name, percent, *kinds):
        if not self.chance(percent):
            return ""
        found = dict.fromkeys((kind, self.number(kind)) for kind in self.random.choices(kinds, k=self.some(1, 1, 2, 3)))
        return items(name, [item(*pair) for pair in found])

    def occurrence(self, weekly, day, start, end):
        """The span of an occurrence, or of a part of it."""
        day += timedelta(7 * self.random.randrange(4)) if weekly else timedelta(0)
        first, last = (datetime.fromisoformat(f"{day:%Y-%m-%d}T{time}") for time in (start, end))
        last += timedelta(1) if last == day else timedelta(0)
        change = self.random.randrange(100)
        if change < 60:
            return first, last
        pieces = [datetime.fromisoformat(f"{day:%Y-%m-%d}T{time}") for time in " ".join(ROWS).split()]
        if change < 85:
            first, last = sorted(self.random.sample(pieces, 2))
        elif change < 95:
            last += timedelta(7)
        return first, last

    def change(self, number):
        kind = self.random.choices(["Stand-in", "RoomChange", "AdditionalLesson", "Message"], [60, 15, 12, 13])[0]
        lesson = self.random.choice(self.lessons)
        start, end = self.occurrence(*lesson[1:])
        others, body = [other[0] for other in self.lessons], ""
        values = {name: self.text() for name in ("Information", "Message")}
        if kind in ("Stand-in", "RoomChange") and self.chance(88):
            body += tag("Time", "Time", lesson[0])
        if kind == "Stand-in":
            body += "".join(tag(name, "Time", self.random.choice(others)) for name, percent in (
                ("NewTime", 35), ("MovedTime", 20)) if self.chance(percent))
            values |= {"GapReason": str(self.random.randrange(11)), "StandInFeature": str(self.random.randrange(12)),
                       "StandInTeacherFeature": self.some("0", "0", "1", "1", "2", "3", "4")}
            values |= {"NewTimeDate": stamp(self.moment())} if self.chance(50) else {}
            values |= self.flags(35, "ChangeTeacher", "ChangeRoom")
        if kind == "Message":
            if self.chance(50):
                start = datetime.fromisoformat(f"{start:%Y-%m-%d}")
                end = start + timedelta(self.some(0, 1, 3, 9))
            elif self.chance(40):
                end += timedelta(self.some(1, 4))
            values |= self.flags(25, "AllClasses", "AllTeachers")
        body += self.members("New", 55, "Class", "Teacher", "Teacher", "Room", "Room", "Subject", "Student")
        body += self.members("Absent", 45, "Class", "Teacher", "Room", "Subject")
        body += self.members("Original", 60 if kind != "AdditionalLesson" else 95, "Class", "Teacher", "Room",
                             "Student")
        return item(kind, number, body + self.of_any_change(values), Start=stamp(start), End=stamp(end), **values)

    def of_any_change(self, values):
        body = self.ref("Subject", "Subject", 30) + self.ref("SkipStandInReason", "SkipStandInReason", 15, 1330)
        numbers = [(ABSENCES[kind], n) for (kind, _), found in self.absences.items() for n in found]
        if numbers and self.chance(50):
            body += tag("AbsenceTime", *self.random.choice(numbers))
        values |= {"State": self.some("0", "1", "1", "2", "2", "3", "4", "5", "6", "7")}
        values |= self.flags(6, "NotPublic") | self.flags(20, "NoStand-In")
        values |= {"Modified": stamp(self.moment())} if self.chance(60) else {}
        return body

    def assignment(self, number):
        start, values = self.moment(), {"Information": self.text(), "Message": self.text()}
        end, lesson = start + timedelta(self.some(1, 8, 20)), self.random.choice(self.lessons)
        body = tag("Time", "Time", lesson[0]) + self.members("New", 90, "Teacher", "Room", "Class")
        return item("Assignment", number, body + self.of_any_change(values), Start=stamp(start), End=stamp(end),
                    **values)

    # Supervisions.

    def areas(self):
        self.supervisions, found = [], []
        for area in (1800, 1801):
            own = []
            for n in range(self.random.randint(0, 3)):
                number, weekly = 1810 + 10 * area + n, self.chance(80)
                start, end = self.some(("09:15", "09:35"), ("11:05", "11:25"), ("07:30", "07:45"), ("09:15", "11:25"))
                day = MONDAY + timedelta(self.random.randrange(20))
                date = "1899-12-30" if weekly else f"{day:%Y-%m-%d}"
                self.supervisions.append((number, weekly, MONDAY + timedelta(day.weekday()) if weekly else day, start,
                                          end))
                own.append(item("Supervision", number, self.ref("Teacher", "Teacher", 90),
                                Start=f"{date}T{start}:00.000Z",
                                End=f"{date}T{end}:00.000Z", Weekday=str(day.isoweekday() if weekly else 0)))
            found.append(item("SupervisionArea", area, items("SupervisionList", own)
                              + self.ref("TimeFrame", "TimeFrame", 30, 30), Code=self.random.choice(CODES)))
        return items("SupervisionAreas", found)

    def supervision_changes(self):
        found, met = [], set()
        for n, supervision in enumerate(self.random.choices(self.supervisions, k=4) if self.supervisions else []):
            number, weekly, day, start, end = supervision
            day += timedelta(7 * self.random.randrange(4)) if weekly else timedelta(0)
            if (number, day) not in met:
                met.add((number, day))
                values = {"Information": self.text(), "Message": self.text()}
                body = tag("Time", "Supervision", number) + self.members("New", 70,
                                                                      "Teacher") + self.of_any_change(values)
                found.append(item("SupervisionStandIn", 70_000 + n, body, Start=f"{day:%Y-%m-%d}T{start}:00.000Z",
                                  End=f"{day:%Y-%m-%d}T{end}:00.000Z", **values))
        return found

    # The rest.

    def event(self, number):
        start = self.moment()
        end = start + self.random.choice([timedelta(hours=1), timedelta(1), timedelta(2)])
        values = {}
        if self.chance(40):
            start = datetime.fromisoformat(f"{start:%Y-%m-%d}")
            end, values = start + timedelta(self.some(0, 1)) + self.some(timedelta(hours=23, minutes=59),
                                                                      timedelta(1)), {"AllDay": "1"}
        member = [item("Member", number + 100, tag("DataObject", kind, self.number(kind)), Name="x", Type="0")
                  for kind in ("Class", "Teacher", "Student") if self.chance(15)][:1]
        body = items("Member", member) if member else ""
        body += self.ref("Category", "CalendarEventCategory", 60, 1340) + self.ref("Room", "Room", 30)
        return item("CalendarEvent", number, body, Start=stamp(start), End=stamp(end), Display=self.text(70),
                    Duration="0",
                    Description=f'{number},"a b"' if self.chance(60) else str(number), FreePeriod=self.some("0", "0",
                                                                      "1"),
                    Visibility=self.some("0", "0", "1"), Address=self.some("", '"x y",z'), State=self.some("0", "1",
                                                                      "2"), **values)

    def keys(self, kind, first):
        return [item(kind, first + n, Code=self.random.choice(CODES), Name=self.text(50), Key=self.text(50))
                for n in range(2)]

    def frame(self, name, number, rows):
        found = [item("TimeFrameRow", 10 * number + 40_000 + n, Name=self.text(),
                      Start=f"1899-12-30T{row.split()[0]}:00.000Z",
                      End=f"1899-12-30T{row.split()[1]}:00.000Z") for n, row in enumerate(rows)]
        return tag(name, "TimeFrame", number, items("Rows", found), Code=self.random.choice(CODES), LessonsPerDay="8",
                   MinutesPerHour="45", UnitsPerHour=self.some("1", "1", "2"), FirstHour="8", MorningLessonTo="6",
                   BookAdaptive=self.some("1", "1", "0"))

    def settings(self):
        numbers = dict.fromkeys("BrenmarkClient BrenmarkTimePeriod StatisticsCheck LessonsDisplay StatisticsWeeksCount"
                                .split(), "0")
        weeks = self.some("1" * 56, "1" * 56, "1" * 56, "1101" + "1" * 52, "1110" + "0" * 52, "0" * 56)
        week = self.some(("1", "5"), ("1", "5"), ("1", "7"), ("7", "4"))
        return tag("Settings", "Settings", 2, self.frame("TimeFrame", 1, ROWS), **numbers, LessonWeeks=weeks,
                   TimeColor=self.some("-1", "255"), TimeColorGradient="-1", WeekStart=week[0], Weekend=week[1],
                   ValidFrom=self.some("2026-09-01", "2026-09-08"), ValidTo=self.some("2026-10-04", "2026-09-30"),
                   TimetablePeriodFrom=self.some("2026-09-07", "2026-09-07", "2026-09-09"),
                   TimetablePeriodTo=self.some("2026-10-04", "2026-10-02", "2026-12-31"), ShowAbsences=self.some("0",
                                                                      "1", "2"),
                   TimetableTitle=self.text(50), WeekFmt=self.text(), PublishDaysScope=self.some("0", "3"),
                   **self.flags(50, "ShowAbsenceReason", "LineWrap", "ZeroWeekNonReocurring"))

    def windows(self):
        return items("TimeWindowList", [
            item("TimeWindow", 1400 + n, self.ref("ParentTimeWindow", "TimeWindow", 50, 1400) if n > 1 else "",
                 Code=str(n),
                 MaxLessonsCount="0", MinHoursCount="0", **({"ValidFrom": f"{self.moment():%Y-%m-%d}"}
                                                            if self.chance(70) else {}),
                 **({"ValidTo": f"{self.moment():%Y-%m-%d}"} if self.chance(70) else {})) for n in range(4)])

    def document(self):
        absences = [self.absence(2000 + n) for n in range(self.random.randint(0, 8))]
        courses = [self.course(10_000 + n) for n in range(7)]
        changes = [self.change(50_000 + n) for n in range(self.random.randint(0, 14))]
        areas = self.areas()
        changes += self.supervision_changes()
        assignments = [self.assignment(60_000 + n) for n in range(self.some(0, 0, 1, 2))]
        directories = tag("Directories", "Directories", 4, "".join(items(name, self.keys(*key)) for name, key in (
            ("TeacherAbsenceReasons", REASONS["Teacher"]), ("ClassAbsenceReasons", REASONS["Class"]),
            ("RoomUnavailableReasons", REASONS["Room"]), ("SkipStandInReasons", ("SkipStandInReason", 1330)),
            ("CalendarEventCategories", ("CalendarEventCategory", 1340)))))
        calendar = tag("Calendar", "Calendar", 3, items("Entries", [self.event(3000 + n) for n in range(self.some(0,
                                                                      2, 4))]))
        owner = tag("Owner", "Owner", 5, DName=self.text(), Name1=self.text(60), Name2=self.text(), Name3=self.text(60),
                    City=self.text())
        parts = [self.settings(), owner, calendar, directories, areas, self.windows(),
                 items("Groups", [item("Group", 1200 + n, Code=f"T{n}", Name=self.text()) for n in range(2)]),
                 items("Building", [item("Building", 1500 + n, Code=self.random.choice(CODES), Campus=self.text())
                                    for n in range(2)]),
                 items("Periods", [item("Period", 1600 + n, Code=self.random.choice(CODES), Weeks=self.weeks())
                                   for n in range(2)]),
                 items("TimeFrame", [self.frame("Item", 30 + n, rows) for n, rows in enumerate((ROWS[1:4],
                                                                      ROWS[::2]))]),
                 *map(self.people, KINDS), items("AbsenceTimes", absences), items("Events", courses),
                 items("Changes", changes), items("AssignmentList", assignments)]
        return ("<Storage><FileVersion>7</FileVersion><DataformatRelease>6.0.172</DataformatRelease>"
                + "".join(parts) + "</Storage>")

    # Settings of a job.

    def object(self):
        kind = self.some("teacher", "class", "room", "student", "subject", "resource")
        return {"id": guid(self.number(kind.capitalize()))}

    def job(self):
        parts = [name for name in ("xmlLessons", "xmlChanges", "xmlAbsences", "xmlIndex") if self.chance(75)]
        job = {"form": "dated", "xmlTypes": parts}
        names = ("noTeacher", "studentNames", "offeneFehlzeiten", "allLessons", "allSubstitutions", "substitutionsOnly",
                 "admin", "filtering", "alleWochen", "art", "information", "mitteilung")
        job |= {name: self.chance(50) for name in names if self.chance(20)}
        if self.chance(80):
            job["start"] = self.some("2026-09-21", "2026-09-23", "2026-10-03", "2026-08-01")
        if self.chance(40):
            job["finish"] = self.some("2026-09-24", "2026-10-01", "2027-01-01")
        if self.chance(35):
            job["planobjekt"] = self.object()
        if self.chance(30):
            policies = self.random.choices([1, 3, 4, 5, 9, 10, 14, 10], k=self.some(1, 1, 2, 3))
            job["profiles"] = [{"policy": p, **(self.object() if self.chance(80) else {})} for p in policies]
            job["teacherNamesPolicy"] = self.some(0, 2)
        if self.chance(20):
            job["auswahl"] = [f"T{n}" for n in range(2) if self.chance(60)]
        if self.chance(20):
            job["dataTypes"] = self.some(["dtLehrer"], ["dtKlassen"], [])
        return job

    def jobs(self, count):
        return [{"form": "undated"}, {"start": "2026-09-21", "xmlTypes": ["xmlLessons", "xmlChanges", "xmlAbsences"]}] + [
            self.job() for _ in range(count)]
