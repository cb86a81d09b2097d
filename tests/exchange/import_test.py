#!/usr/bin/env python3
"""Imports OCF sets into real data files and reads what was saved.

Usage: import_test.py PROGRAM HOST SAMPLE
"""

import csv
import io
import json
import os
import re
import shutil
import subprocess
import sys
import tempfile
import time
import unittest
import uuid
import xml.etree.ElementTree as xml

from ocf_documents import document, item, items, refs, tag
from ocf_reference import CATALOG, CATALOGS, TABLES

PROGRAM = HOST = SAMPLE = PAGE = ""
LINES = ["Open VELMORA file...", "Start Import from OCF...", "Save VELMORA file...", "Import finished."]
# Columns that the export does not write, and those of the courses: name, kind of value, element in the data file.
UNWRITTEN = "InternalCode text Code StudentNo text StudentNo"
COURSE = ("Description text Title Notes text Comments CourseUrl text Href SubjectId ref Subject CourseNo integer CourseNo "
          "CourseRef text EventNo StartDate date ValidFrom EndDate date ValidTo CourseGroup text Group "
          "SchedulePattern pattern Reoccur SubjectFocusId ref SubjectTopicArea")
COURSE_LISTS = {"RoomIdList": "Rooms", "SchoolClassIdList": "Classes", "StudentIdList": "Student",
                "TeacherIdList": "Teacher"}


def plain(number):
    return str(uuid.UUID(int=number + (10 << 124)))


def array(*numbers):
    return '"' + json.dumps([plain(number) for number in numbers]).replace('"', '""') + '"'


def columns_that_are_read():
    """File: column: kind of value and element in the data file, from the table of the page about the import."""
    found = {}
    with open(PAGE, encoding="utf-8") as page:
        for line in page:
            if re.match(r"\| (`|the 26)", line):
                names, columns = (re.findall(r"`([^`]+)`", cell) for cell in line.split("|")[1:3])
                for name in [name.removesuffix(".csv") for name in names] or CATALOGS:
                    words = (TABLES.get(name, ("", COURSE if name == "Courses" else CATALOG))[1] + " " + UNWRITTEN).split()
                    kinds = dict(zip(words[::3], zip(words[1::3], words[2::3])))
                    found[name] = {column: kinds[column] for column in columns if column in kinds and column != "Id"}
    return found


def objects(root):
    """Class and identifier: field: value, for all objects of a document. Lists are the identifiers of their items."""
    found = {}
    for element in root.iter():
        if element.get("ID") and len(element):
            fields = found.setdefault((element.get("Class"), element.get("ID")), {})
            for child in element:
                listed = child.find("Items")
                fields[child.tag] = (child.get("ID") or child.text or "" if listed is None
                                     else [entry.get("ID") for entry in listed])
    return found


def element_text(kind, cell):
    """How the data file holds a cell; the same for one that is absent there."""
    if kind == "ref":
        return "{%s}" % cell.upper() if cell else ""
    if kind == "pattern":
        return "0" if cell == "OneTimeEvents" else "1"
    return {"integer": cell or "0", "date": cell[:10]}.get(kind, cell)


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
        done = subprocess.run([HOST, "import", self.job, "/Minimal-Display"], stdout=subprocess.PIPE, check=False,
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
        # A number that has become free is taken again, the lowest first.
        self.file("Rooms", "Id;Code", f"{plain(2)};X", f"{plain(4)};M-01", ";M", ";M", f"{plain(5)};M", f"{plain(6)};M",
                  ";Q", f"{plain(7)};M")
        self.assertEqual([room.findtext("Code") for room in self.imported().iterfind("Rooms/Items/Item")],
                         ["M", "X", "N", "M-01", "M-3", "Q", "M-2", "M-4", "M-1"])

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

    def table(self, name):
        with open(os.path.join(self.folder, name + ".csv"), "rb") as file:
            content = file.read()
        text = content.decode("utf-16" if content.startswith(b"\xff\xfe") else "utf-8-sig")
        return list(csv.DictReader(io.StringIO(text, newline=""), delimiter=";"))

    def check_objects(self, before, after):
        """Each known object has what the set says, and else what it had."""
        told, checked = {}, 0
        for name, columns in columns_that_are_read().items():
            if os.path.exists(os.path.join(self.folder, name + ".csv")):
                for row in self.table(name):
                    told["{%s}" % row["Id"].upper(), name == "Courses"] = (columns, row)
        for (kind, guid), fields in before.items():
            columns, row = told.get((guid, kind == "Event"), ({}, {}))
            wanted = {field: (form, element_text(form, row.get(column) or "")) for column, (form, field) in columns.items()
                      if form != "ids"}
            now = after[kind, guid]
            checked += len(wanted)
            for field in (fields.keys() | now.keys()) - {"Changed", "ChangedBy", "Events"}:
                form, value = wanted.get(field, ("", None))
                with self.subTest(kind=kind, guid=guid, field=field):
                    if value is None:
                        self.assertEqual(now.get(field), fields.get(field))
                    else:
                        absent = {"integer": "0", "pattern": "1"}.get(form, "")
                        self.assertEqual(element_text(form, now.get(field, absent)) if form == "date"
                                         else now.get(field, absent), value)
            if kind != "Directories" and {**now, "Changed": fields.get("Changed")} == fields:
                self.assertEqual(now.get("Changed"), fields.get("Changed"), (kind, guid))
        self.assertGreater(checked, 1000)

    def test_a_school_takes_its_own_set_back(self):
        """As it is, then with other values in all the columns that are read."""
        shutil.copy(SAMPLE, self.path)
        before = objects(self.imported())
        subprocess.run([PROGRAM, "export", "-s", "file", "-fn", SAMPLE, "-o", self.folder], check=True,
                       stdout=subprocess.DEVNULL)
        root = self.imported()
        after = objects(root)
        self.check_objects(before, after)
        # Additional lessons come back as courses, under the identifiers of their changes.
        added = {key: after[key] for key in after.keys() - before.keys()}
        self.assertEqual({kind for kind, _ in added}, {"Event"})
        self.assertLessEqual({guid for _, guid in added}, {e.get("ID") for e in root.iterfind("Changes/Items/Item")})
        rows = {"{%s}" % row["Id"].upper(): row for row in self.table("Courses")}
        uses = {}
        for (_, guid), fields in added.items():
            for column, (form, field) in columns_that_are_read()["Courses"].items():
                self.assertEqual(fields.get(field, {"integer": "0", "pattern": "1"}.get(form, "")),
                                 element_text(form, rows[guid].get(column) or ""), (guid, field))
            for column, field in COURSE_LISTS.items():
                used = ["{%s}" % name.upper() for name in json.loads(rows[guid].get(column) or "[]")]
                self.assertEqual(fields.get(field, []), used, (guid, field))
                for name in used + [fields.get("Subject", "")]:
                    uses.setdefault(name, set()).add(guid)
        for key, fields in before.items():
            self.assertEqual(set(after[key].get("Events", [])), set(fields.get("Events", [])) | uses.get(key[1], set()))
        for name, columns in columns_that_are_read().items():
            if not os.path.exists(os.path.join(self.folder, name + ".csv")):
                continue
            rows = self.table(name)
            for row in rows:
                for column, (form, _) in columns.items():
                    if form == "text":
                        row[column] = (row.get(column) or "") + ' "ä";\n'
                    elif form == "date" and row[column]:
                        row[column] = "2011-02-03"
            with open(os.path.join(self.folder, name + ".csv"), "w", encoding="utf-16", newline="") as file:
                writer = csv.DictWriter(file, rows[0].keys(), delimiter=";", quoting=csv.QUOTE_ALL)
                writer.writeheader()
                writer.writerows(rows)
        root = self.imported()
        self.check_objects(after, objects(root))

    def test_what_an_import_saves_is_loaded_and_saved_as_it_is(self):
        """Codes decide about the order of courses: those of the file, and those that came from the set."""
        courses = [item("Event", 81 + n, tag("Subject", "Subject", 61 + n) + refs("Classes", "Class", [21]))
                   for n in range(3)]
        self.plan(items("Subjects", [item("Subject", 61 + n, refs("Events", "Event", [81 + n]), Code=code)
                                     for n, code in enumerate("ADX")]),
                  items("Classes", [item("Class", 21, refs("Events", "Event", [81, 82, 83]), Code="5a")]),
                  items("Events", courses))
        self.file("Subjects", "Id;Code", f"{plain(61)};Z", f"{plain(62)};B")
        self.file("Courses", "Id;SubjectId;CourseNo;SchoolClassIdList",
                  *(f"{plain(number)};{plain(subject)};{choice};{array(21)}"
                    for number, subject, choice in ((90, 61, 2), (83, 62, 4), (91, 62, 1), (92, 62, 3))))
        orders = [[82, 91, 92, 83, 81, 90]] * 2
        root = self.imported()
        self.assertEqual([self.numbers(element, "Events") for element in (root, self.one(root, "Classes", 21))], orders)
        self.assertEqual(self.numbers(self.one(root, "Subjects", 62), "Events"), [82, 91, 92, 83])
        self.assertIsNone(self.one(root, "Subjects", 63).find("Events"))
        shutil.rmtree(self.folder)
        os.mkdir(self.folder)
        with open(self.path, "rb") as file:
            saved = file.read()
        self.imported()
        with open(self.path, "rb") as file:
            self.assertEqual(file.read(), saved)

    def test_all_zero_identifiers_refer_to_nothing(self):
        """Also where a row without an identifier has made an object that has it."""
        zero = str(uuid.UUID(int=0))
        self.plan(items("Teacher", [person("Teacher", 31, "Mü")]),
                  items("Classes", [item("Class", 21, tag("Teacher1", "Teacher", 31), Code="5a")]),
                  items("Subjects", [item("Subject", 61, Code="M")]))
        self.file("Teachers", "Id;Code", ";Be", f"{plain(31)};Mü")
        self.file("Rooms", "Id;Code", f"{zero};R")
        self.file("Subjects", "Id;Code", ";S")
        self.file("SchoolClasses", "Id;Code;Teacher1Id;Teacher2Id;RoomId", f"{plain(21)};5a;;{zero};")
        self.file("Courses", "Id;SubjectId;RoomIdList;TeacherIdList",
                  f'{plain(81)};;"[""{zero}""]";"[""{zero}"",""{plain(31)}""]"')
        root = self.imported()
        self.assertEqual([teacher.findtext("Code") for teacher in root.iterfind("Teacher/Items/Item")], ["Mü", "Be"])
        self.assertEqual([self.one(root, "Classes", 21).find(name) for name in ("Teacher1", "Teacher2", "Room")],
                         [None] * 3)
        course = self.one(root, "Events", 81)
        self.assertEqual((course.find("Subject"), self.numbers(course, "Rooms"), self.numbers(course, "Teacher")),
                         (None, [], [31]))
        self.file("SchoolClasses", "Id;StudentIdList", f'{plain(21)};"[""{zero}""]"')
        self.fails(zero)

    def rooms(self):
        return [[room.findtext(name, "") for name in ("Code", "Name", "Capacity")]
                for room in self.imported().iterfind("Rooms/Items/Item")]

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
        room = items("Rooms", [item("Room", 1, Code="A", Capacity="7")])
        self.plan(room)
        header = "Id;Code;Name;Capacity"
        quote, end, encoding = "Feldanfang", "Feldende", "Zeichenkodierung"
        for rows, place, problem in (
                ([f'{plain(1)};x"y'], 'row 2, column "Code"', quote),
                ([f'{plain(1)};A;"x"y'], 'row 2, column "Name"', "Trennzeichen nach"),
                (["", f'{plain(1)};"x" y'], 'row 2 (line 3), column "Code"', "Trennzeichen in"),
                ([f'{plain(1)};A;"one\r\ntwo"', f'{plain(2)};B', "{x};A"], 'row 4 (line 5), column "Id"', "{x}"),
                ([plain(1)[:-1] + ";A"], 'row 2, column "Id"', plain(1)[:-1]),
                ([f"{plain(1)[:-1]}g;A"], 'row 2, column "Id"', plain(1)[:-1]),
                ([f'{plain(1)};A;"never closed', f"{plain(2)};B;x"], 'row 2, column "Name"', end),
                ([f'{plain(1)};A;"x"', f'{plain(2)};B;"'], 'row 3, column "Name"', end),
                ([plain(1).encode() + b";M\xfcller;x"], 'row 2, column "Code"', encoding),
                ([plain(1).encode() + b";A;M\xfc"], 'row 2, column "Name"', encoding),
                ([f"{plain(1)};A", b"\xff\xfe\xfa;A"], 'row 3, column "Id"', encoding),
                ([f"{plain(1)};A".encode() + b";\xed\xa0\x80"], 'row 2, column "Name"', encoding)):
            self.file("Rooms", header, *rows)
            with self.subTest(rows=rows):
                self.fails("Rooms.csv\", " + place)
                self.fails(problem)
        self.file("Rooms", b"Id;C\xf6de;Name")
        self.fails('Rooms.csv", row 1: ')
        for rows, rooms in (
                ([b"\x00" * 1000], [["A", "", "7"]]),
                ([""] * 1000, [["A", "", "7"]]),
                ([f"{plain(1)};A\0B;\x01\x1b"], [["A B", "\ufffd", ""]]),
                ([f"{plain(1)};\xff\xfe;\ufffd"], [["\xff\xfe", "\ufffd", ""]]),
                ([f"{plain(1)};A;;99999999999999999999"], [["A", "", ""]]),
                ([f"{plain(1)};A;;2147483647"], [["A", "", "2147483647"]]),
                ([f"{plain(1)};" + "x" * 10_000_000], [["x" * 10_000_000, "", ""]]),
                ([plain(1)], [["", "", ""]]),
                (["; ;;"], [["A", "", "7"], ["", "", ""]])):
            self.plan(room)
            self.file("Rooms", header, *rows)
            self.assertEqual(self.rooms(), rooms)
        self.plan(room)
        for encoding in ("utf-8-sig", "utf-16-le", "utf-16-be"):
            text = ("" if encoding == "utf-8-sig" else "\ufeff") + f"Id;Code\r{plain(5)};Größe 😀 {encoding}"
            self.file("Rooms", text.encode(encoding))
            self.assertEqual(self.one(self.imported(), "Rooms", 5).findtext("Code"), f"Größe 😀 {encoding}")
        self.file("Rooms", ("\ufeff" + text).encode("utf-16-be")[:-1])
        self.fails("Zeichenkodierung")

    def test_hostile_cells(self):
        self.plan(items("Rooms", [item("Room", 1, Code="A")]))
        deep = 100_000
        for number, cell in enumerate(('"[["', '"{}"', "1", '"[" ', '"' + "[" * deep + '"', "[]", array(1, 2))):
            self.file("Courses", "Id;RoomIdList", f"{plain(10 + number)};{cell}")
            course = self.one(self.imported(), "Events", 10 + number)
            self.assertEqual(self.numbers(course, "Rooms"), [1] if cell == array(1, 2) else [])
        for cell in ('"[1]"', '"[null]"', '"[[]]"', '"[""x""]"', '"' + "[" * deep + "]" * deep + '"',
                     '"' + '{""a"":' * deep + "1" + "}" * deep + '"', "[" + "[" * 65 + "]" * 65 + "]"):
            self.file("Courses", "Id;RoomIdList", plain(5), f"{plain(6)};{cell}")
            self.fails('Courses.csv", row 3, column "RoomIdList": ')
        self.file("Courses", "Id;StartDate", f"{plain(6)};soon")
        self.fails('Courses.csv", row 2, column "StartDate": ')
        self.fails("soon")

    def test_a_set_is_read_before_anything_changes(self):
        """The last file is wrong, and the first ones are not taken over."""
        self.plan(items("Rooms", [item("Room", 1, Code="A")]))
        self.file("Rooms", "Id;Code", f"{plain(1)};B")
        self.file("Courses", "Id;SubjectId", "x")
        self.fails('Courses.csv", row 2, column "Id"')
        shutil.rmtree(self.folder)
        self.fails(f'The source folder "{self.folder}" does not exist.')
        with open(self.folder, "w", encoding="ascii"):
            self.fails(self.folder)

    def test_the_number_of_rows_is_all_that_counts(self):
        """Inputs that walks over all that came before show: as fast as as many rows of the plain kind."""
        count = 20_000
        everybody = range(100_000, 100_000 + count)
        subjects = items("Subjects", [item("Subject", 61, refs("Events", "Event", everybody), Code="M"),
                                      item("Subject", 62, Code="D")])
        classes = items("Classes", [item("Class", 21, refs("Students", "Student", everybody), Code="a"),
                                    item("Class", 22, Code="b")])
        students = items("Students", [person("Student", number, "s", tag("Class", "Class", 21))
                                      for number in everybody])
        teacher = items("Teacher", [person("Teacher", 31, "t")])
        lessons = items("Events", [item("Event", number, tag("Subject", "Subject", 61)) for number in everybody])
        cases = {
            "plain": ([students, lessons], "Rooms", ["Id;Code"] + [f"{uuid.uuid4()};{n}" for n in everybody]),
            "sequential identifiers": ([], "Rooms", ["Id;Code"] + [
                f"00000000-0000-0000-{n >> 16:04x}-{n:012x};{n}" for n in everybody]),
            "no codes": ([], "Rooms", ["Id;Name"] + [f"{uuid.uuid4()};x" for n in everybody]),
            "into one class": ([classes, students], "SchoolClasses",
                               ["Id;Code;StudentIdList", f"{plain(22)};b;{array(*everybody)}"]),
            "one by one": ([classes, students], "SchoolClasses", ["Id;Code;StudentIdList"] + [
                f"{plain(22)};b;{array(n)}" for n in everybody]),
            "new courses": ([subjects, classes, teacher, students], "Courses",
                            ["Id;SubjectId;SchoolClassIdList;TeacherIdList"] + [
                                f"{plain(n + count)};{plain(61)};{array(21)};{array(31)}" for n in everybody]),
            "another subject": ([subjects, lessons], "Courses", ["Id;SubjectId"] + [
                f"{plain(n)};{plain(62)}" for n in everybody])}
        usual = None
        for name, (parts, file, rows) in cases.items():
            self.plan(*parts)
            self.file(file, *rows)
            start = time.monotonic()
            self.assertEqual(self.run_import(), (0, LINES))
            taken = time.monotonic() - start
            usual = usual or taken
            self.assertLess(taken, 8 * usual + 0.5, name)
            os.remove(os.path.join(self.folder, file + ".csv"))


if __name__ == "__main__":
    PROGRAM, HOST, SAMPLE = map(os.path.abspath, sys.argv[1:4])
    PAGE = os.path.join(os.path.dirname(os.path.abspath(__file__)), "../../docs/ocf-import.md")
    del sys.argv[1:4]
    unittest.main(verbosity=2)
