#!/usr/bin/env python3
"""Compares exported OCF sets byte by byte with a second implementation, on the sample and on awkward documents.

Usage: ocf_set_test.py PROGRAM HOST SAMPLE
"""

import csv
import itertools
import json
import os
import shutil
import subprocess
import sys
import tempfile
import unittest
import uuid
from zoneinfo import ZoneInfo

import ocf_changes
from ocf_documents import AWKWARD, ZERO, Plan, document, frame, item, items, refs, tag

PROGRAM = HOST = SAMPLE = ""
PLANS = 12
ZONES = os.environ.get("VELMORA_TEST_ZONES", "UTC Asia/Kolkata America/New_York Europe/Berlin").split()
UNUSUAL_ZONES = ["Australia/Lord_Howe", "America/St_Johns", "Pacific/Apia", "Africa/Casablanca", "Europe/Dublin"]
GAP_OBJECTS = {"Absence", "Stash", "Substitution", "Cancellation None", "Cancellation StayInRoom",
               "Cancellation LeaveRoom", ""}


class OcfSets(unittest.TestCase):
    maxDiff = 5000

    def compare(self, text, zone="Europe/Berlin", filters=None):
        """Both implementations agree; gives the rows of the set by name, as python's csv reads them."""
        with tempfile.TemporaryDirectory() as folder:
            file_name, target = os.path.join(folder, "plan.velmora"), os.path.join(folder, "out")
            with open(file_name, "wb") as file:
                file.write(text if isinstance(text, bytes) else text.encode())
            command = [PROGRAM, "export", "-s", "file", "-fn", file_name, "-o", target]
            if filters:
                command = [HOST, "export", os.path.join(folder, "job.json")]
                settings = {"sourceFileName": file_name, "targetFolderName": target,
                            "onlyScheduledCourses": filters[0], "onlyScheduledLessons": filters[1]}
                with open(command[-1], "w", encoding="utf-8") as file:
                    json.dump({"Velmora": {"ocfExport": settings}}, file)
            done = subprocess.run(command, check=False, timeout=120, env={**os.environ, "TZ": zone},
                                  stdout=subprocess.PIPE)
            self.assertEqual(done.returncode, 0, done.stdout.decode())
            wanted = ocf_changes.OcfSet(file_name, self.saved(file_name), ZoneInfo(zone), *filters or (True, True))
            tables, rows = wanted.tables(), {}
            expected = wanted.files(tables)
            self.assertEqual(set(os.listdir(target)), set(expected))
            for name, content in expected.items():
                where = {"file": name, "zone": zone, "filters": filters}
                with open(os.path.join(target, name), "rb") as file, self.subTest(**where):
                    self.assertEqual(file.read().decode().split("\r\n"), content.decode().split("\r\n"))
                with open(os.path.join(target, name), encoding="utf-8-sig", newline="") as file:
                    rows[name[:-4]] = list(csv.reader(file, delimiter=";", strict=True))
            self.assertTrue(rows == tables)
        return rows

    def saved(self, file_name):
        """The document as the program saves it: an import from an empty folder."""
        copy, empty, job = (f"{file_name}-{name}" for name in ("copy", "empty", "job"))
        shutil.copy(file_name, copy)
        os.mkdir(empty)
        with open(job, "w", encoding="utf-8") as file:
            json.dump({"Velmora": {"ocfImport": {"sourceFolderName": empty, "targetFileName": copy}}}, file)
        subprocess.run([HOST, "import", job], check=True, timeout=120, stdout=subprocess.DEVNULL)
        return copy

    def test_sample(self):
        with open(SAMPLE, "rb") as file:
            sample = file.read()
        for zone in ZONES:
            rows = self.compare(sample, zone)
        self.assertEqual(len(rows), 46, "the sample fills every file")

    def test_awkward_texts(self):
        texts = list(enumerate(AWKWARD))
        keys = [item("RoomType", 100 + n, Code=text, Name=text[::-1], Key=text) for n, text in texts]
        rooms = [item("Room", 200 + n, Code=text, Name=text, Comments=text) for n, text in texts]
        people = [item("Teacher", 300 + n, Code=text, Gender=str(n % 5), Surname=text, MiddleName=text, FirstName=text,
                       Title=text, Email=text, Phone=text, PersonalID=text) for n, text in texts]
        rows = [item("TimeFrameRow", 400 + n, Name=text, Start="1899-12-30T08:00:00.000Z") for n, text in texts]
        entries = [item("CalendarEvent", 500 + n, Display=text, Start="2026-10-05T07:45:00.000Z", Duration="0",
                        Description='"%s",Ende,"a ""b"""' % text.replace('"', '""')) for n, text in texts]
        found = self.compare(document(
            tag("Calendar", "Calendar", 3, items("Entries", entries)), items("Teacher", people), items("Rooms", rooms),
            tag("Directories", "Directories", 4, items("RoomTypes", keys)),
            items("TimeFrame", [frame("Item", 5, items("Rows", rows)), frame("Item", 6)]), week=(6, 2)))
        self.assertEqual([row[1] for row in found["Rooms"][1:]], AWKWARD)
        self.assertEqual(found["TimeFrames"][1][3:5], ["Saturday", "Saturday, Sunday, Monday, Tuesday"])

    def test_identities_and_references(self):
        for parts in (
            # A room twice in the list: one object, told twice.
            [items("Rooms", [item("Room", 10, Code="A", Capacity="-7"), item("Room", 11, Code="B"),
                             item("Room", 10, Code="C", Comments="last")])],
            # Groups listed twice, nowhere defined, and without an identity; a long list.
            [items("Groups", [item("Group", 20, Code="G")]), items("Rooms", [
                item("Room", 10, refs("Groups", "Group", [20, 21, 20, ZERO, 22, 21, ZERO]), Code="A"),
                item("Room", 11, refs("Groups", "Group", [1000 + n % 70 for n in range(140)]), Code="B")])],
            # Objects without identity, references to none, and frames that are nowhere defined.
            [items("Students", [item("Student", ZERO, tag("Tutor", "Teacher", ZERO), Code="Z", Gender="1"),
                                item("Student", 31, tag("Tutor", "Teacher", 99), Code="N", Gender="2")]),
             items("Classes", [item("Class", 40, refs("Students", "Student", [31, ZERO, 31, 55]) +
                                    tag("TimeFrame", "TimeFrame", 77), Code="5a"),
                               item("Class", 41, tag("TimeFrame", "TimeFrame", ZERO), Code="5b")])],
            # One identity for objects of four classes, and the standard frame in the list again.
            [items("Rooms", [item("Room", 7, Code="R")]), items("Subjects", [item("Subject", 7, Code="F")]),
             items("Teacher", [item("Teacher", 7, Code="L", Gender="0")]), items("TimeFrame", [frame("Item", 1)]),
             items("Classes", [item("Class", 7, tag("Teacher1", "Teacher", 7) + tag("Room", "Room", 7), Code="K")])],
            [items("Rooms", []), "<Teacher><Items>x<Other/><!-- none --></Items></Teacher>"],
        ):
            self.compare(document(*parts, week=(7, 7)))

    def test_colours(self):
        values = [0, 1, 255, 0x00C0FFEE, 0xFFFFFF, 0x1000000, 0x02ABCDEF, 0x1FFFFFFF, 0x1FFFFFFE, 0x20000000,
                  0x7FFFFFFF, *(0xFF000000 + n - (1 << 32) for n in range(40)), -1, -(1 << 31), -16711936]
        self.compare(document(items("Rooms", [item("Room", 9 + n, Code="x", Color=str(value))
                                              for n, value in enumerate(values)])))

    def test_instants(self):
        """Both changes of summer time here and elsewhere, a day left out, odd zones of old, the calendar's ends."""
        days = ("0001-01-01 1582-10-15 1893-04-01 1899-12-29 1899-12-30 1899-12-31 1916-05-01 1945-05-24 2000-02-29 "
                "2011-12-29 2011-12-30 2011-12-31 2026-02-15 2026-03-08 2026-03-22 2026-03-29 2026-04-05 2026-10-04 "
                "2026-10-25 2026-11-01 2037-12-31 2038-01-19 2500-07-01 9999-12-30 9999-12-31").split()
        times = "00:00:00.000 00:00:00.001 00:59:59.999 01:30:00.000 02:00:00.000 02:30:00.000 02:59:59.999 " \
                "03:00:00.000 12:00:00.007 23:59:59.999"
        moments = [f"{day}T{time}Z" for day in days for time in times.split()]
        absences = items("AbsenceTimes", [item("RoomUnavailableTime", 1000 + n, Start=moment, End=moments[-1 - n])
                                          for n, moment in enumerate(moments)])
        people = items("Teacher", [item("Teacher", 5000 + n, Code=day, Gender="0", DateOfBirth=day)
                                   for n, day in enumerate(days + ["0000-00-00"])])
        for zone in ZONES + UNUSUAL_ZONES:
            self.compare(document(absences, people), zone)
        for valid in [("1899-12-30", "1899-12-30"), ("1899-12-29", "1890-01-01"), ("2026-03-29", "2026-10-25"),
                      ("0001-01-01", "9999-12-30"), ("9999-12-31", "9999-12-31")]:
            self.compare(document(valid=valid))

    def test_order_of_equal_absences_and_entries(self):
        """Many ties: the files tell them in the order in which the data file is saved."""
        roles = {"Teacher": "TeacherAbsenceTime", "Room": "RoomUnavailableTime", "Class": "ClassAbsenceTime"}
        codes = ["b", "a", "B", "ä", "a b", "", "😀", "\uf8ff"]
        people = [items(name, [item(kind, 10 + n, Code=code, Gender="0") for n, code in enumerate(codes)])
                  for name, kind in [("Classes", "Class"), ("Teacher", "Teacher"), ("Rooms", "Room")]]
        state = 1
        for count in (1, 2, 3, 7, 50, 400):
            absences, entries = [], []
            for n in range(count):
                state = (state * 1103515245 + 12345) & 0x7FFFFFFF
                role, day = list(roles)[(state >> 8) % 3], f"2026-10-0{1 + (state >> 12) % 4}T00:00:00.000Z"
                who = tag(role, role, 10 + (state >> 16) % 9)  # the ninth is nowhere defined
                absences.append(item(roles[role], 1000 + n, who, Start=day, End=day, LessonsSettled="0"))
                entries.append(item("CalendarEvent", 3000 + n, End=day, Duration="0", FreePeriod=str(int(n % 5 > 0)),
                                    Description=codes[(state >> 20) % 8].replace(" ", "")))
            self.compare(document(*people, items("AbsenceTimes", absences),
                                  tag("Calendar", "Calendar", 3, items("Entries", entries))))

    def test_stand_ins_without_effect(self):
        """Such a one is told when all classes of its lesson are absent: spans that meet, touch and miss each other."""
        spans = [{name: f"2026-10-05T{hour:02}:00:00.000Z" for name, hour in zip(("Start", "End"), hours)}
                 for hours in itertools.combinations_with_replacement((8, 9, 10), 2)]
        kinds = [("ClassAbsenceTime", {}), ("ClassAbsenceTime", {"NotPublic": "1"}),
                 ("ClassAbsenceTime", {"own": True}), ("ClassAbsenceTime", {"own": False}),
                 ("TeacherAbsenceTime", {}), ("TeacherAbsenceTime", {"Exemption": "1"}),
                 ("RoomUnavailableTime", {}), ("RoomUnavailableTime", {"NotAvailable": "1"})]
        absent, present = [item("Class", number, refs("AbsenceTimes", "ClassAbsenceTime", absences), Code="5")
                           for number, absences in ((10, [11]), (12, []))]
        parts = {"Classes": [absent, present], "Changes": [], "Subjects": [item("Subject", 13, Code="Ma")], "Events": [],
                 "AbsenceTimes": [item("ClassAbsenceTime", 11, Start="2026-10-01", End="2026-10-09")]}
        for n, ((kind, flags), absence, change, others) in enumerate(
                itertools.product(kinds, spans, spans, ([], [10], [12, 10]))):
            own, school_class, course, lesson, number = range(1000 + 10 * n, 1005 + 10 * n)
            flags = dict(flags)
            bound = tag("Event", "Event", course if flags.pop("own") else 14) if "own" in flags else ""
            parts["AbsenceTimes"].append(item(kind, own, bound, LessonsSettled="0", **flags, **absence))
            parts["Classes"].append(item("Class", school_class, refs("AbsenceTimes", kind, [own]), Code="5"))
            time = item("Time", lesson, SetDuration="1", Weeks="", Start="1899-12-30T08:00:00.000Z")
            parts["Events"].append(item("Event", course, refs("Classes", "Class", [school_class, *others]) + tag(
                "Subject", "Subject", 13) + items("Times", [time]), Weeks=""))
            parts["Changes"].append(item("Stand-in", number, tag("Time", "Time", lesson), State="1",
                                         StandInFeature=str(n % 2 * 11), **change))
        gaps = self.compare(document(*(items(name, found) for name, found in parts.items())))["LessonGaps"]
        self.assertTrue(1 < len(gaps) < len(parts["Changes"]))

    def test_plans_at_random(self):
        """Every feature of a stand-in with every reason, mark of its teacher and state, and all that goes with it."""
        met = set()
        for seed in range(PLANS):
            text = Plan(seed, PLANS).document()
            for filters in itertools.product([True, False], repeat=2):
                gaps = self.compare(text, ZONES[seed % len(ZONES)], filters)["LessonGaps"][1:]
            objects = itertools.chain(*(json.loads(cell or "[]") for row in gaps for cell in row[3:5]))
            met |= {" ".join(filter(None, map(entry.get, ["_type", "Behaviour"]))) for entry in objects}
        self.assertEqual(met, GAP_OBJECTS)


if __name__ == "__main__":
    SAMPLE = os.path.abspath(sys.argv.pop())
    HOST = os.path.abspath(sys.argv.pop())
    PROGRAM = os.path.abspath(sys.argv.pop())
    unittest.main(verbosity=2)
