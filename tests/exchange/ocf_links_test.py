#!/usr/bin/env python3
"""Follows every identifier of an exported OCF set from file to file, as a receiving platform would.

Usage: ocf_links_test.py PROGRAM SAMPLE
"""

import csv
import itertools
import json
import os
import re
import subprocess
import sys
import tempfile
import unittest
import uuid

PROGRAM = SAMPLE = ""
ABSENCES = ["TeacherAbsences", "RoomAbsences", "SchoolClassAbsences"]
LINKS = {  # Column: the file that its identifiers lead to.
    "CourseId": "Courses", "DepartmentId": "Departments", "DepartmentIdList": "Departments",
    "LessonId": "ScheduledLessons", "Quality": "SubstitutionQualities", "RoomId": "Rooms", "RoomIdList": "Rooms",
    "ScheduledLessonId": "ScheduledLessons", "SchoolCLassId": "SchoolClasses", "SchoolClassId": "SchoolClasses",
    "SchoolClassIdList": "SchoolClasses", "StudentId": "Students", "StudentIdList": "Students",
    "SubjectFocusId": "SubjectFocuses", "SubjectId": "Subjects", "Teacher1Id": "Teachers", "Teacher2Id": "Teachers",
    "TeacherId": "Teachers", "TeacherIdList": "Teachers", "TimeFrameId": "TimeFrames", "TutorId": "Teachers"}
REQUIRED = {  # Columns that are never empty.
    "Courses": {"SubjectId"}, "ScheduledLessons": {"CourseId"}, "SubstituteLessons": {"CourseId", "ScheduledLessonId"},
    "LessonGaps": {"LessonId"}, "StudentSchoolClassAttendances": {"StudentId", "SchoolCLassId"},
    "StudentCourseAttendances": {"StudentId", "CourseId"}, "TeacherCourseAttendances": {"TeacherId", "CourseId"},
    "TeacherAbsences": {"TeacherId", "ReasonId"}, "RoomAbsences": {"RoomId", "ReasonId"},
    "SchoolClassAbsences": {"SchoolClassId", "ReasonId"}, "Rooms": {"TimeFrameId"}, "Teachers": {"TimeFrameId"},
    "SchoolClasses": {"TimeFrameId"}}
PAIRS = {"StudentSchoolClassAttendances": ("SchoolCLassId", "StudentId"),
         "StudentCourseAttendances": ("CourseId", "StudentId"), "TeacherCourseAttendances": ("CourseId", "TeacherId")}
EXTRA_LESSON = "-1f3a9c52-7b10-4e6d-9a2e-5c0d8f42b771"


def derived(*identifiers, text=""):
    return str(uuid.uuid5(uuid.NAMESPACE_OID, "".join("{%s}" % i.upper() for i in identifiers) + text))


def cells(record, column):
    return json.loads(record[column] or "[]") if column.endswith("List") else list(filter(None, [record[column]]))


class Links(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        """The set as python reads it, and from the data file which changes there are and what each stand-in is."""
        cls.tables = {}
        with tempfile.TemporaryDirectory() as folder:
            subprocess.run([PROGRAM, "export", "-s", "file", "-fn", SAMPLE, "-o", folder], check=True,
                           stdout=subprocess.DEVNULL)
            for name in set(os.listdir(folder)) - {"_Manifest.csv"}:
                with open(os.path.join(folder, name), encoding="utf-8-sig", newline="") as file:
                    cls.tables[name[:-4]] = list(csv.DictReader(file, delimiter=";", strict=True))
        cls.ids = {name: [record["Id"] for record in table] for name, table in cls.tables.items()}
        with open(SAMPLE, encoding="utf-8-sig") as file:
            changes = re.search(r"\n  <Changes>.*?\n  </Changes>", file.read(), re.DOTALL)[0]
        found = re.split(r'\n      <Item Class="[^"]*" ID="{([^}]*)}">', changes)[1:]
        cls.features = {change.lower(): int((re.findall(r"<StandInFeature>(\d+)<", body) or [0])[0])
                        for change, body in zip(found[::2], found[1::2])}

    def test_identifiers(self):
        everywhere = list(itertools.chain(*self.ids.values()))
        self.assertEqual(everywhere, [str(uuid.UUID(text)) for text in everywhere])
        # A change that is a lesson of its own has its identifier as a course, as a lesson and as its substitute.
        places = {}
        for name, ids in self.ids.items():
            self.assertEqual(len(ids), len(set(ids)), name)
            for text in ids:
                places.setdefault(text, set()).add(name)
        shared = {frozenset(names) for text, names in places.items() if len(names) > 1}
        self.assertEqual(shared, {frozenset({"Courses", "ScheduledLessons"})})

    def test_columns(self):
        met = {}
        for name, table in self.tables.items():
            links = {**LINKS, "ReasonId": name[:-1] + "Reasons"}
            for column in set(links) & set(table[0]):
                targets = set(self.ids[links[column]])
                for record in table:
                    found = cells(record, column)
                    self.assertLessEqual(set(found), targets, (name, column, record))
                    self.assertEqual(len(found), len(set(found)), (name, column, record))
                    self.assertTrue(found or column not in REQUIRED.get(name, ()), (name, column, record))
                    met[name, column] = met.get((name, column), 0) + len(found)
        self.assertGreater(min(met.values()), 0, met)
        self.assertEqual({column for _, column in met}, {*LINKS, "ReasonId"})

    def test_lessons_and_their_courses(self):
        courses = {record["Id"]: record for record in self.tables["Courses"]}
        lessons = {record["Id"]: record for record in self.tables["ScheduledLessons"]}
        for lesson in lessons.values():
            self.assertEqual(lesson["SchoolClassIdList"], courses[lesson["CourseId"]]["SchoolClassIdList"])
            own = lesson["Id"] == lesson["CourseId"]
            self.assertEqual(lesson["Relevance"], "Additional" if own else "Scheduled")
        self.assertEqual({lesson["CourseId"] for lesson in lessons.values()}, set(courses), "all are scheduled")
        for substitute in self.tables["SubstituteLessons"]:
            self.assertEqual(substitute["CourseId"], lessons[substitute["ScheduledLessonId"]]["CourseId"])

    def test_derived_identifiers(self):
        for name, columns in PAIRS.items():
            for record in self.tables[name]:
                self.assertEqual(record["Id"], derived(*map(record.get, columns)), (name, record))
        gaps = {derived(change) for change in self.features}
        self.assertLessEqual(set(self.ids["LessonGaps"]), gaps)
        extras = {derived(r["CourseId"], text=EXTRA_LESSON)
                  for r in self.tables["SubstituteLessons"] if r["CourseId"] == r["ScheduledLessonId"]}
        self.assertEqual(extras, set(self.ids["SubstituteLessons"]) - set(self.features))
        self.assertGreater(len(extras), 0)

    def test_reasons_and_resolutions(self):
        absences = set(itertools.chain(*map(self.ids.get, ABSENCES)))
        lessons = set(self.ids["SubstituteLessons"]) | set(self.ids["ScheduledLessons"])
        met = dict.fromkeys(["Absence", "Stash", "Substitution", "Cancellation"], 0)
        resolved, left = set(), set()
        for gap in self.tables["LessonGaps"]:
            self.assertLessEqual(len(json.loads(gap["Resolutions"])), 1)
            for entry in json.loads(gap["Reasons"] or "[]") + json.loads(gap["Resolutions"]):
                met[entry["_type"]] += 1
                self.assertIn(entry.get("AbsenceId"), absences | {None})
                substitute = entry.get("SubstituteLessonId")
                if substitute in lessons:
                    resolved.add(substitute)
                elif substitute:
                    # The one that brings no lesson: a teacher more in the same lesson.
                    self.assertEqual(gap["Id"], derived(substitute))
                    left.add(self.features[substitute])
        self.assertEqual(left, {6}, "vmZusaetzlich")
        self.assertEqual(set(self.ids["SubstituteLessons"]) - resolved, set(), "a substitute lesson fills a gap")
        self.assertGreater(min(met.values()), 0, met)


if __name__ == "__main__":
    SAMPLE = os.path.abspath(sys.argv.pop())
    PROGRAM = os.path.abspath(sys.argv.pop())
    unittest.main(verbosity=2)
