#!/usr/bin/env python3
"""Imports OCF sets into real data files and reads what was saved.

Usage: import_test.py PROGRAM HOST SAMPLE
"""

import collections
import json
import os
import shutil
import subprocess
import sys
import tempfile
import unittest
import uuid
import xml.etree.ElementTree as xml

from ocf_documents import document, item, items, refs, tag

PROGRAM = HOST = SAMPLE = ""
LINES = ["Open VELMORA file...", "Start Import from OCF...", "Save VELMORA file...", "Import finished."]


def plain(number):
    return str(uuid.UUID(int=number + (10 << 124)))


def array(*numbers):
    return '"' + json.dumps([plain(number) for number in numbers]).replace('"', '""') + '"'


def person(kind, number, code, body="", **values):
    return item(kind, number, body, Code=code, Gender="0", **values)


class Imports(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = os.path.join(folder.name, "set")
        os.mkdir(self.folder)
        self.path = os.path.join(folder.name, "plan.velmora")
        self.job = os.path.join(folder.name, "job.json")
        with open(self.job, "w", encoding="utf-8") as file:
            json.dump({"Velmora": {"ocfImport": {"sourceFolderName": self.folder, "targetFileName": self.path}}}, file)

    def plan(self, *parts):
        with open(self.path, "w", encoding="utf-8") as file:
            file.write(document(*parts))

    def file(self, name, *rows):
        with open(os.path.join(self.folder, name + ".csv"), "wb") as file:
            file.write(b"\r\n".join(row if isinstance(row, bytes) else row.encode() for row in rows))

    def run_import(self):
        done = subprocess.run([HOST, "import", self.job, "-minimal-display"], stdout=subprocess.PIPE, check=False,
                              timeout=120)
        return done.returncode, done.stdout.decode("utf-8").splitlines()

    def imported(self):
        """The saved document, after an import that succeeds and a load of what it saved."""
        self.assertEqual(self.run_import(), (0, LINES))
        self.assertEqual(subprocess.call([PROGRAM, "export", "-s", "file", "-fn", self.path, "-o", self.folder + "2"],
                                         stdout=subprocess.DEVNULL), 0)
        return xml.parse(self.path).getroot()

    def fails(self, text=""):
        """The import fails, and the data file is untouched."""
        with open(self.path, "rb") as file:
            before = file.read()
        code, lines = self.run_import()
        self.assertEqual((code, lines[:3], lines[3][:8]), (1, LINES[:2] + [""], "[Error] "), lines)
        self.assertIn(text, lines[3])
        with open(self.path, "rb") as file:
            self.assertEqual(file.read(), before)

    def one(self, root, path, number):
        found = [element for element in root.iterfind(path + "/Items/Item")
                 if element.get("ID")[1:-1].lower() == plain(number)]
        self.assertEqual(len(found), 1, (path, number))
        return found[0]

    def numbers(self, element, path):
        return [int(entry.get("ID")[-5:-1], 16) for entry in element.iterfind(path + "/Items/Item")]

    def test_an_empty_folder_and_mere_headers_change_nothing(self):
        self.plan(items("Rooms", [item("Room", 1, Code="A")]))
        content = xml.tostring(self.imported().find("Rooms"))
        self.file("Rooms", "Id;Code;Name")
        self.file("Teachers")
        self.file("Courses", b"\xef\xbb\xbf")
        root = self.imported()
        self.assertEqual(xml.tostring(root.find("Rooms")), content)
        self.assertIsNone(root.find("Teacher"))

    def test_codes_become_unique_and_absent_cells_clear(self):
        self.plan(items("Rooms", [item("Room", 1, Code="M", Comments="old", Capacity="30"), item("Room", 2, Code="M-1"),
                                  item("Room", 3, Code="m", Name="stays away")]))
        self.file("Rooms", "capacity;CODE;extra;iD", f"12;M;x;{plain(1)}", f"no;M;x;{plain(2)}", f";M;;{plain(4)}", "7;M",
                  f"8;N;;{plain(3)}")
        root = self.imported()
        known, other, new = (self.one(root, "Rooms", number) for number in (1, 2, 4))
        self.assertEqual((known.findtext("Code"), known.findtext("Capacity"), known.find("Comments")),
                         ("M", "12", None))
        self.assertEqual((other.findtext("Code"), other.findtext("Capacity")), ("M-1", None))
        self.assertEqual(new.findtext("Code"), "M-2")
        self.assertEqual([room.findtext("Code") for room in root.iterfind("Rooms/Items/Item")],
                         ["M", "M-1", "N", "M-2", "M-3"])

    def test_keys_take_their_internal_code(self):
        directories = tag("Directories", "Directories", 3, items("LessonTypes", [item("LessonType", 11, Code="GK")]))
        self.plan(directories)
        self.file("CourseTypes", "Id;Code;Name;StatisticalCode", f"{plain(11)};GK;Grundkurs;G", f"{plain(12)};LK;;")
        self.file("ScheduleMarkerCategories", "Id;InternalCode", f"{plain(13)};S")
        self.file("SchoolClassProfils", "Id;InternalCode")
        found = self.imported().find("Directories")
        known = self.one(found, "LessonTypes", 11)
        self.assertEqual((known.findtext("Code"), known.findtext("Name")), ("", "Grundkurs"))
        self.assertEqual(self.one(found, "LessonTypes", 12).get("Class"), "LessonType")
        self.assertEqual([key.findtext("Code") for key in found.iter("Item") if key.get("Class") == "ResourceFeature"],
                         ["S"])
        self.file("SchoolClassProfils", "Id;InternalCode", f"{plain(14)};x")
        self.fails("Not supported")

    def test_classes_take_references_and_students(self):
        self.plan(items("Classes", [item("Class", 21, tag("Teacher1", "Teacher", 31) + refs("Students", "Student", [41]),
                                         Code="5a"), item("Class", 22, Code="5b")]),
                  items("Teacher", [person("Teacher", 31, "Mü"), person("Teacher", 32, "Be")]),
                  items("Students", [person("Student", 41, "s", tag("Class", "Class", 21)), person("Student", 42, "t")]))
        self.file("SchoolClasses", "Id;Code;Teacher1Id;Teacher2Id;StudentIdList",
                  f"{plain(21)};5a;{plain(99)};{plain(32)};nothing", f"{plain(22)};5b;;;{array(41, 42)}")
        root = self.imported()
        first, second = self.one(root, "Classes", 21), self.one(root, "Classes", 22)
        self.assertIsNone(first.find("Teacher1"), "nobody is known under that identifier")
        self.assertEqual(first.find("Teacher2").get("ID")[1:-1].lower(), plain(32))
        self.assertEqual((self.numbers(first, "Students"), self.numbers(second, "Students")), ([], [41, 42]))
        self.assertEqual(self.one(root, "Students", 41).find("Class").get("ID")[1:-1].lower(), plain(22))
        self.file("SchoolClasses", "Id;StudentIdList", f"{plain(21)};{array(43)}")
        self.fails(plain(43))

    def test_lists_are_for_new_courses_and_numbers_for_choices(self):
        choice = items("CourseSelection", [item("CourseSelection", 51, tag("Subject", "Subject", 61), CourseNo="1"),
                                           item("CourseSelection", 52, CourseNo="1")])
        self.plan(items("Subjects", [item("Subject", 61, Code="M")]), items("Rooms", [item("Room", 71, Code="R")]),
                  items("Students", [person("Student", 41, "s", choice)]),
                  items("Events", [item("Event", 81, tag("Subject", "Subject", 61) + refs("Student", "Student", [41]) +
                                        refs("Rooms", "Room", [71]), CourseNo="1")]))
        self.file("Courses", "Id;SubjectId;CourseNo;SchedulePattern;RoomIdList;StudentIdList",
                  f"{plain(81)};{plain(61)};2;onetimeevents;[];{array()}",
                  f"{plain(82)};{plain(61)};;OneTimeEvents;{array(71, 99, 71)};{array(41)}")
        root = self.imported()
        known, new = self.one(root, "Events", 81), self.one(root, "Events", 82)
        self.assertEqual((known.findtext("CourseNo"), known.findtext("Reoccur")), ("2", None))
        self.assertEqual((self.numbers(known, "Rooms"), self.numbers(new, "Rooms")), ([71], [71]))
        self.assertIn(new.findtext("Reoccur"), ("0", "false"))
        self.assertEqual([entry.findtext("CourseNo") for entry in root.iter("Item")
                          if entry.get("Class") == "CourseSelection"], ["2", "1"])
        self.assertIn(82, self.numbers(self.one(root, "Rooms", 71), "Events"))
        self.assertIn(82, self.numbers(self.one(root, "Students", 41), "Events"))

    def test_a_school_takes_its_own_set_back(self):
        shutil.copy(SAMPLE, self.path)
        before = collections.Counter((e.get("Class"), e.get("ID")) for e in xml.parse(SAMPLE).iter("Item") if len(e))
        subprocess.run([PROGRAM, "export", "-s", "file", "-fn", SAMPLE, "-o", self.folder], check=True,
                       stdout=subprocess.DEVNULL)
        self.imported()
        root = self.imported()
        after = collections.Counter((e.get("Class"), e.get("ID")) for e in root.iter("Item") if len(e))
        self.assertEqual(before - after, collections.Counter())
        # Additional lessons come back as courses, under the identifiers of their changes.
        added = after - before
        changes = {e.get("ID") for e in root.iterfind("Changes/Items/Item")}
        self.assertGreater(len(added), 0)
        self.assertEqual({kind for kind, _ in added}, {"Event"})
        self.assertLessEqual({name for _, name in added}, changes)
        self.assertEqual(max(added.values()), 1)

    def test_imports_at_once_come_one_after_the_other(self):
        self.plan(items("Rooms", [item("Room", 1, Code="A")]))
        runs = []
        for number in range(2, 5):
            folder, job = f"{self.folder}{number}", f"{self.job}{number}"
            os.mkdir(folder)
            with open(os.path.join(folder, "Rooms.csv"), "w", encoding="utf-8") as file:
                file.write(f"Id;Code\r\n{plain(number)};new")
            with open(job, "w", encoding="utf-8") as file:
                json.dump({"Velmora": {"ocfImport": {"sourceFolderName": folder, "targetFileName": self.path}}}, file)
            runs.append(subprocess.Popen([HOST, "import", job], stdout=subprocess.DEVNULL))
        self.assertEqual([run.wait(timeout=60) for run in runs], [0] * 3)
        rooms = xml.parse(self.path).findall("Rooms/Items/Item")
        # Each has seen the codes that the ones before it have taken.
        self.assertEqual([room.findtext("Code") for room in rooms], ["A", "new", "new-1", "new-2"])
        self.assertEqual(sorted(int(room.get("ID")[-5:-1], 16) for room in rooms), [1, 2, 3, 4])

    def test_hostile_sets(self):
        self.plan(items("Rooms", [item("Room", 1, Code="A")]))
        header = "Id;Code;Name;Capacity"
        for rows in ([f'{plain(1)};x"y'], [f'{plain(1)};"x"y'], [f'{plain(1)};"x" y'], ["{x};A"],
                     [plain(1)[:-1] + ";A"], [b"\xff\xfe\xfa;A"], [f"{plain(1)[:-1]}g;A"]):
            self.file("Rooms", header, *rows)
            self.fails()
        for rows in ([f'{plain(1)};"never closed'], [f"{plain(1)};" + "x" * 10_000_000], [b"\x00" * 1000],
                     [f"{plain(1)};A\0B;\x01\x1b"], [f"{plain(1)};\xff\xfe"], [""] * 1000, [plain(1)],
                     [f"{plain(1)};A;;99999999999999999999"], [";;;"]):
            self.file("Rooms", header, *rows)
            self.imported()
        self.file("Rooms", f"Id;Code\rx;y".replace("x", plain(5)).replace("y", "CR"))
        self.assertEqual(self.one(self.imported(), "Rooms", 5).findtext("Code"), "CR")
        os.remove(os.path.join(self.folder, "Rooms.csv"))
        for cell in ('"[["', '"{}"', "1", '"[" ', '"' + "[" * 100_000 + '"'):
            self.file("Courses", "Id;RoomIdList", f"{plain(uuid.uuid4().int >> 100)};{cell}")
            self.imported()
        for cell in ('"[1]"', '"[null]"', '"[[]]"', '"[""x""]"'):
            self.file("Courses", "Id;RoomIdList", f"{plain(uuid.uuid4().int >> 100)};{cell}")
            self.fails()
        self.file("Courses", "Id;StartDate", f"{plain(6)};soon")
        self.fails("soon")


if __name__ == "__main__":
    PROGRAM, HOST, SAMPLE = map(os.path.abspath, sys.argv[1:4])
    del sys.argv[1:4]
    unittest.main(verbosity=2)
