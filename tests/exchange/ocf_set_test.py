#!/usr/bin/env python3
"""Compares exported OCF sets byte by byte with a second implementation, on the sample and on awkward documents.

Usage: ocf_set_test.py PROGRAM SAMPLE
"""

import csv
import json
import os
import re
import subprocess
import sys
import tempfile
import unittest
import uuid
from xml.sax.saxutils import escape
from zoneinfo import ZoneInfo

import ocf_reference

PROGRAM = SAMPLE = ""
ZONES = ["Europe/Berlin", "UTC", "Asia/Kolkata", "America/New_York"]
UNUSUAL_ZONES = ["Australia/Lord_Howe", "America/St_Johns", "Pacific/Apia", "Africa/Casablanca", "Europe/Dublin"]
TIMEPOINT = re.compile(r"\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}[+-]\d\d:\d\d")
ZERO = "{00000000-0000-0000-0000-000000000000}"
AWKWARD = ['say "hi"', "A;B", "two\r\nlines", "LF\nonly", "CR\ronly", "Grüße aus Łódź", "𝔘𝔫𝔦 😀", "", " ", "  padded  ",
           "\t", "'", "\\", '"', '""', ";", "a,b", "<&>", "\u00a0", "\u2028", "\ufeff", "e\u0301", "x" * 5000, "-1"]


def guid(number):
    return "{%s}" % str(uuid.UUID(int=number + (1 << 127))).upper()


def item(kind, number, **values):
    return f'<Item Class="{kind}" ID="{number if isinstance(number, str) else guid(number)}">{inner(**values)}</Item>'


def inner(**values):
    return "".join(value if value.startswith("<") and value.endswith(">") and name[0] == "_" else
                   f"<{name}>{escape(value, {chr(13): '&#13;'})}</{name}>" for name, value in values.items())


def reference(name, kind, number):
    return f'<{name} Class="{kind}" ID="{number if isinstance(number, str) else guid(number)}"/>'


def items(name, *texts):
    return f"<{name}><Items>{''.join(texts)}</Items></{name}>"


def document(*parts, week=(1, 5), rows="", valid=("2026-08-01", "2027-07-31")):
    numbers = dict.fromkeys(["BrenmarkClient", "BrenmarkTimePeriod", "StatisticsCheck", "LessonsDisplay", "TimeColor",
                             "TimeColorGradient"], "0")
    settings = inner(LessonWeeks="", StatisticsWeeksCount="1", WeekStart=str(week[0]), Weekend=str(week[1]),
                     ValidFrom=valid[0], ValidTo=valid[1], **numbers)
    standard = f'<TimeFrame Class="TimeFrame" ID="{guid(1)}">{frame("Std", rows)}</TimeFrame>'
    return (f'<Storage><DataformatRelease>6.0.172</DataformatRelease><Settings Class="Settings" ID="{guid(2)}">'
            f"{settings}{standard}</Settings>{''.join(parts)}</Storage>")


def frame(code, rows=""):
    return inner(Code=code, Name="Rahmen " + code, LessonsPerDay="8", MinutesPerHour="45", UnitsPerHour="1",
                 FirstHour="8", MorningLessonTo="6", _Rows=rows or "<!---->")


class OcfSets(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name

    def export(self, file_name, zone):
        target = tempfile.mkdtemp(dir=self.folder)
        done = subprocess.run([PROGRAM, "export", "-s", "file", "-fn", file_name, "-o", target], timeout=120,
                              env={**os.environ, "TZ": zone}, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                              check=False)
        self.assertEqual(done.returncode, 0, done.stdout.decode())
        found = {}
        for name in os.listdir(target):
            with open(os.path.join(target, name), "rb") as file:
                found[name] = file.read()
        return found, target

    def compare(self, file_name, zone="Europe/Berlin"):
        """Both implementations agree; gives the rows of the set by name, as python's csv reads them."""
        wanted = ocf_reference.OcfSet(file_name, ZoneInfo(zone))
        files, target = self.export(file_name, zone)
        expected = wanted.files()
        master_data = {name: content for name, content in files.items() if name not in TIMETABLE}
        self.assertEqual(sorted(master_data), sorted(expected))
        for name, content in expected.items():
            with self.subTest(file=name, zone=zone):
                self.assertEqual(master_data[name].decode().split("\r\n"), content.decode().split("\r\n"))
                self.assertEqual(master_data[name], content)
        rows = {}
        for name in master_data:
            with open(os.path.join(target, name), encoding="utf-8-sig", newline="") as file:
                rows[name[:-4]] = list(csv.reader(file, delimiter=";", strict=True))
        self.assertEqual(rows, wanted.tables())
        return rows

    def compare_text(self, text, zone="Europe/Berlin"):
        file_name = os.path.join(self.folder, "plan.velmora")
        with open(file_name, "w", encoding="utf-8", newline="") as file:
            file.write(text)
        return self.compare(file_name, zone)

    def test_sample(self):
        for zone in ZONES:
            rows = self.compare(SAMPLE, zone)
        self.assertEqual(len(rows), 39, "the sample fills every file")
        manifest = rows.pop("_Manifest")
        self.assertEqual([row[0] for row in manifest], ["ValidFrom", "ValidTo"])
        records = {name: [dict(zip(table[0], row, strict=True)) for row in table[1:]] for name, table in rows.items()}
        known = {}
        for name, table in records.items():
            known[name] = {record["Id"] for record in table}
            self.assertEqual(len(known[name]), len(table) - (name == "TimeFrames" and len(table) > len(known[name])))
            for record in table:
                self.assertEqual(str(uuid.UUID(record["Id"])), record["Id"])
        self.assertEqual(sum(map(len, known.values())), len(set().union(*known.values())))
        targets = {"DepartmentIdList": "Departments", "StudentIdList": "Students", "TimeFrameId": "TimeFrames",
                   "DepartmentId": "Departments", "RoomId": "Rooms", "TutorId": "Teachers", "TeacherId": "Teachers",
                   "Teacher1Id": "Teachers", "Teacher2Id": "Teachers", "StudentId": "Students",
                   "SchoolClassId": "SchoolClasses", "SchoolCLassId": "SchoolClasses"}
        met = dict.fromkeys(targets, 0)
        for name, table in records.items():
            for column in set(targets) & set(rows[name][0]):
                for cell in filter(None, (record[column] for record in table)):
                    ids = json.loads(cell) if column.endswith("List") else [cell]
                    self.assertEqual(set(ids) - known[targets[column]], set(), (name, column))
                    self.assertEqual(len(ids), len(set(ids)))
                    met[column] += len(ids)
            reasons = {"TeacherAbsences": "TeacherAbsenceReasons", "RoomAbsences": "RoomAbsenceReasons",
                       "SchoolClassAbsences": "SchoolClassAbsenceReasons"}.get(name)
            for record in table if reasons else []:
                self.assertIn(record["ReasonId"], known[reasons] | {""})
        self.assertGreater(min(met.values()), 0, met)
        for cell in ([cell for record in records["Holidays"] for cell in [record["TemporalExpressions"]]] +
                     [record["TimeSlots"] for record in records["TimeFrames"]]):
            for entry in json.loads(cell or "[]"):
                for name, value in entry.items():
                    if name in ("StartTimepoint", "EndTimepoint", "StartTime", "EndTime"):
                        self.assertRegex(value, TIMEPOINT)

    def test_awkward_texts(self):
        keys = [item("RoomType", 100 + n, Code=text, Name=text[::-1], Key=text) for n, text in enumerate(AWKWARD)]
        rooms = [item("Room", 200 + n, Code=text, Name=text, Comments=text) for n, text in enumerate(AWKWARD)]
        people = [item("Teacher", 300 + n, Code=text, Gender=str(n % 5), Surname=text, MiddleName=text, FirstName=text,
                       Title=text, Email=text, Phone=text, PersonalID=text) for n, text in enumerate(AWKWARD)]
        rows = [item("TimeFrameRow", 400 + n, Name=text + "\u007f", Start="1899-12-30T08:00:00.000Z")
                for n, text in enumerate(AWKWARD)]
        entries = [item("CalendarEvent", 500 + n, Display=text, End="2026-10-05T00:00:00.000Z", Duration="0",
                        Description=",".join('"%s"' % part.replace('"', '""') for part in [text, "Ende"]))
                   for n, text in enumerate(AWKWARD)]
        calendar = f'<Calendar Class="Calendar" ID="{guid(3)}">{items("Entries", *entries)}</Calendar>'
        directories = f'<Directories Class="Directories" ID="{guid(4)}">{items("RoomTypes", *keys)}</Directories>'
        frames = items("TimeFrame", item("TimeFrame", 5, _All=frame("F;1", items("Rows", *rows))))
        found = self.compare_text(document(calendar, items("Teacher", *people), items("Rooms", *rooms), directories,
                                           frames, week=(6, 2), rows=items("Rows", *rows[:2])))
        self.assertEqual([row[1] for row in found["Rooms"][1:]], AWKWARD)
        self.assertEqual(found["TimeFrames"][1][3:5], ["Saturday", "Saturday, Sunday, Monday, Tuesday"])

    def test_identities_and_references(self):
        for text in (
            # One room in the list twice: one object, met twice, told twice.
            document(items("Rooms", item("Room", 10, Code="A", Capacity="-7"), item("Room", 11, Code="B"),
                           item("Room", 10, Code="C", Comments="last"))),
            # Groups listed twice, nowhere defined, and without an identity.
            document(items("Groups", item("Group", 20, Code="G")), items("Rooms", item(
                "Room", 10, Code="A", _Groups=items("Groups", *(reference("Item", "Group", n)
                                                                for n in [20, 21, 20, ZERO, 22, 21, ZERO]))))),
            # More ids in a list than are searched one by one, each of them twice.
            document(items("Rooms", item("Room", 10, Code="A", _Groups=items("Groups", *(
                reference("Item", "Group", 1000 + n % 70) for n in range(140)))))),
            # Objects without identity, a reference to nothing, and a frame that is nowhere defined.
            document(items("Students", item("Student", ZERO, Code="Z", Gender="1", _T=reference("Tutor", "Teacher", ZERO)),
                           item("Student", 31, Code="N", Gender="2", _T=reference("Tutor", "Teacher", 99))),
                     items("Classes", item("Class", 40, Code="5a", _F=reference("TimeFrame", "TimeFrame", 77), _S=items(
                         "Students", *(reference("Item", "Student", n) for n in [31, ZERO, 31, 55]))),
                           item("Class", 41, Code="5b", _F=reference("TimeFrame", "TimeFrame", ZERO)))),
            # One identity for objects of four classes, and the standard frame in the list again.
            document(items("Rooms", item("Room", 7, Code="R")), items("Subjects", item("Subject", 7, Code="F")),
                     items("Teacher", item("Teacher", 7, Code="L", Gender="0")), items("Classes", item(
                         "Class", 7, Code="K", _A=reference("Teacher1", "Teacher", 7), _B=reference("Room", "Room", 7))),
                     items("TimeFrame", item("TimeFrame", 1, _All=frame("Std"))), week=(7, 7)),
            # Lists and files that are empty.
            document(items("Rooms"), items("Teacher"), week=(5, 1)),
            document("<Rooms><Items><Other/><!-- none --><Item Class='Room' ID='%s'><Code/></Item>x</Items></Rooms>" % guid(1)),
        ):
            self.compare_text(text)

    def test_colours(self):
        values = [0, 1, 255, 0x00C0FFEE, 0xFFFFFF, 0x1000000, 0x02ABCDEF, 0x1FFFFFFF, 0x1FFFFFFE, 0x20000000, 0x7FFFFFFF]
        values += [0xFF000000 + n - (1 << 32) for n in range(40)] + [-1, -(1 << 31), -16711936]
        rooms = items("Rooms", *(item("Room", 10 + n, Code=str(n), Color=str(v)) for n, v in enumerate(values)))
        subjects = items("Subjects", *(item("Subject", 90 + n, Code=str(n), Color=str(v)) for n, v in enumerate(values)))
        self.compare_text(document(rooms, subjects))

    def test_instants(self):
        days = ["0001-01-01", "1582-10-15", "1893-04-01", "1899-12-29", "1899-12-30", "1899-12-31", "1900-03-01", "1916-05-01",
                "1945-05-24", "1970-01-01", "2037-12-31", "2038-01-19", "2100-02-28", "9999-12-30", "9999-12-31",
                "2011-12-29", "2011-12-30", "2011-12-31", "2026-04-05", "2026-10-04", "2026-02-15", "2026-03-22"]
        days += ["2026-03-08", "2026-11-01", "2026-03-29", "2026-10-25", "2000-02-29", "2500-07-01"]
        times = ["00:00:00.000", "00:00:00.001", "00:59:59.999", "01:00:00.000", "01:30:00.000", "01:59:59.999",
                 "02:00:00.000", "02:30:00.000", "02:59:59.999", "03:00:00.000", "12:00:00.007", "23:59:59.999"]
        moments = [f"{day}T{time}Z" for day in days for time in times]
        absences = items("AbsenceTimes", *(item("RoomUnavailableTime", 1000 + n, Start=moment, End=moments[-1 - n])
                                           for n, moment in enumerate(moments)))
        people = items("Teacher", *(item("Teacher", 5000 + n, Code=day, Gender="0", DateOfBirth=day)
                                    for n, day in enumerate(days + ["0000-00-00", "1899-12-30"])))
        for zone in ZONES + UNUSUAL_ZONES:
            self.compare_text(document(absences, people), zone)
        for valid in [("1899-12-30", "1899-12-30"), ("1899-12-29", "1890-01-01"), ("2026-03-29", "2026-10-25"),
                      ("0001-01-01", "9999-12-30"), ("9999-12-31", "9999-12-31")]:
            self.compare_text(document(valid=valid))

    def test_order_of_equal_absences_and_entries(self):
        """Many ties, so that the order in the files is the exchanges of the sorting algorithm."""
        kinds = [("TeacherAbsenceTime", "Teacher", {"LessonsSettled": "0"}), ("RoomUnavailableTime", "Room", {}),
                 ("ClassAbsenceTime", "Class", {})]
        codes = ["b", "a", "B", "ä", "a b", "", "😀", "\uf8ff"]
        people = [items(element, *(item(kind, base + n, Code=code, **more) for n, code in enumerate(codes)))
                  for element, kind, base, more in [("Classes", "Class", 30, {}), ("Teacher", "Teacher", 10, {"Gender": "0"}),
                                                    ("Rooms", "Room", 20, {})]]
        bases = {"Teacher": 10, "Room": 20, "Class": 30}
        for count in (1, 2, 3, 7, 50, 400):
            absences, entries, state = [], [], count
            for n in range(count):
                state = state * 1103515245 + 12345 & 0x7FFFFFFF
                kind, role, more = kinds[(state >> 8) % 3]
                day = f"2026-10-{1 + (state >> 12) % 4:02d}T00:00:00.000Z"
                who = reference(role, role, bases[role] + (state >> 16) % 9)  # the ninth is nowhere defined
                absences.append(item(kind, 1000 + n, Start=day, End=day, _Who=who, **more))
                entries.append(item("CalendarEvent", 3000 + n, End=day, Duration="0", Display=str(n),
                                    Description=codes[(state >> 20) % 8].replace(" ", ""), FreePeriod=str(int(n % 5 > 0))))
            calendar = f'<Calendar Class="Calendar" ID="{guid(3)}">{items("Entries", *entries)}</Calendar>'
            with self.subTest(count=count):
                self.compare_text(document(*people, items("AbsenceTimes", *absences), calendar))


TIMETABLE = {name + ".csv" for name in ("TeacherCourseAttendances StudentCourseAttendances Courses Announcements "
                                        "ScheduledLessons SubstituteLessons LessonGaps").split()}

if __name__ == "__main__":
    SAMPLE = os.path.abspath(sys.argv.pop())
    PROGRAM = os.path.abspath(sys.argv.pop())
    unittest.main(verbosity=2)
