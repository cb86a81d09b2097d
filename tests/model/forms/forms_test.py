#!/usr/bin/env python3
"""Compares the program's forms of a plan with those of a second codec.

Usage: forms_test.py TOOL SAMPLE [FIRST:LAST]   (seeds of the random plans)
"""

import os
import random
import struct
import sys
import unittest

sys.dont_write_bytecode = True

import binary_form
import change_log
import old_releases
import xml_form
from binary_form import BinaryReader, BinaryWriter
from forms_tool import XML_TOLERANCE, Folder, Settings, without_lists
from log_cases import PlayedLogs, RecordedLogs
from plan_classes import CURRENT_RELEASE, release_number
from plan_tree import all_lists
from random_plan import random_plan

__all__ = ["PlayedLogs", "RecordedLogs"]
EMPTY = f"<Storage><DataformatRelease>{CURRENT_RELEASE}</DataformatRelease></Storage>".encode()

class Sample(Folder):
    def test_document_and_all_forms(self):
        document = Settings.sample
        plan = xml_form.read_plan(document)
        data = self.convert(document, "velmora", "bin")
        tree = binary_form.read_plan(data)
        self.assert_same(plan, tree, XML_TOLERANCE)
        identities = [entry.id for entry, _, _ in all_lists(tree)]
        self.assertEqual(len(set(identities)), len(identities))
        self.assertNotIn(bytes(16), identities)
        self.assertEqual(binary_form.write_plan(tree), data)

        self.assert_same(plan, xml_form.read_plan(self.convert(data, "bin", "xml")), XML_TOLERANCE)
        self.assertEqual(self.convert(data, "bin", "z")[:2], b"\x78\xda", "greatest window and compression")
        self.assertEqual(binary_form.decompress(self.convert(data, "bin", "z")), self.convert(data, "bin", "bin"))
        self.assertEqual(self.convert(binary_form.compress(data), "z", "bin"), self.convert(data, "bin", "bin"))

    def test_snapshot_is_the_storage_and_then_its_log(self):
        data = self.convert(Settings.sample, "velmora", "snapshot")
        reader = BinaryReader(data)
        tree = reader.plan()
        self.assert_same(xml_form.read_plan(Settings.sample), tree, XML_TOLERANCE)
        self.assertEqual(change_log.read_log(data[reader.position:]), [])
        self.assert_same(tree, binary_form.read_plan(self.convert(data, "snapshot", "bin")))

    def test_empty_document_gives_new_nested_objects(self):
        tree = binary_form.read_plan(self.convert(EMPTY, "xml", "bin"))
        for key in NEW_NESTED:
            values = tree.values[key].values
            self.assertEqual({name: values[name] for name in NEW_NESTED[key]}, NEW_NESTED[key])
        frame = tree.values["Settings"].values["TimeFrame"].values
        self.assertEqual({name: frame[name] for name in NEW_FRAME}, NEW_FRAME)
        for key in ("AutomaticScheduling", "Owner", "Settings", "Calendar", "Directories"):
            tree.values[key] = None
        again = binary_form.read_plan(self.convert(binary_form.write_plan(tree), "bin", "bin"))
        for key in NEW_NESTED:
            values = again.values[key].values
            self.assertEqual({name: values[name] for name in NEW_NESTED[key]}, NEW_NESTED[key])


NEW_NESTED = {
    "AutomaticScheduling": {"MaxDaysParttimeClasses": 2, "PriorityClassGaps": 8, "PriorityTeacherGaps": 0,
                            "PriorityAvoidManyLessonsAtDay": 9, "PriorityAvoidLessonsAtSameHour": 7},
    "Settings": {"LessonWeeks": "1" * 56, "MinProDefaultLessons": 45, "MinLKStudentCount": 5, "MaxLKStudentCount": 25,
                 "MinGKStudentCount": 5, "MaxGKStudentCount": 25, "StatisticsWeeksCount": 1, "LessonsDisplay": 2,
                 "TimetableID": -1, "Weekend": 5, "WeekStart": 1, "ShowSupervisions": True, "WeekFmt": "W",
                 "WeekPrefix": "[KW %s]", "ShowTeacherIcons": True, "AutoWeekfactor": True, "LineWrap": True},
    "Owner": {"Site": "", "Name": ""},
}
NEW_FRAME = {"UnitsPerHour": 1, "LessonsPerDay": 10, "FirstHour": 10, "MinutesPerHour": 45, "MorningLessonTo": 6,
             "BookAdaptive": True}


class RandomPlans(Folder):
    def test_binary_form(self):
        """What only the binary form holds comes through it: stamps and identities of lists, any code unit."""
        for seed in Settings.seeds:
            with self.subTest(seed=seed):
                tree = random_plan(seed, raw=True)
                data = self.convert(binary_form.write_plan(tree), "bin", "bin")
                read = binary_form.read_plan(data)
                self.assert_same(tree, read)
                self.assertEqual(binary_form.write_plan(read), data)
                self.assert_same(read, binary_form.read_plan(self.convert(data, "bin", "bin")))

    def test_both_forms(self):
        for seed in Settings.seeds:
            with self.subTest(seed=seed):
                tree = random_plan(seed)
                data = binary_form.write_plan(tree)
                document = self.convert(data, "bin", "xml")
                without_lists(tree)
                self.assert_same(tree, xml_form.read_plan(document), XML_TOLERANCE, message="binary to text")
                own_document = xml_form.write_plan(tree)
                read = binary_form.read_plan(self.convert(own_document, "xml", "bin"))
                self.assert_same(tree, read, XML_TOLERANCE, message="text to binary")
                read = binary_form.read_plan(self.convert(document, "xml", "bin"))
                self.assert_same(tree, read, XML_TOLERANCE, message="back again")


class OldReleases(Folder):
    def assert_loaded(self, expected, actual, message):
        if release_number(message) < release_number("6.0.103"):
            for tree in (expected, actual):
                for lesson in tree.values["Events"].items:
                    lesson.values["Student"].items.sort(key=lambda item: item.id)
        self.assert_same(expected, actual, XML_TOLERANCE, message=message)

    def test_old_rows_stand_in_the_place_of_their_successors(self):
        for release in old_releases.RELEASES:
            for seed in Settings.seeds[:max(1, len(Settings.seeds) // 6)]:
                with self.subTest(release=release, seed=seed):
                    tree = old_releases.old_plan(seed, release)
                    expected = old_releases.loaded(tree)
                    data = self.convert(binary_form.write_plan(tree), "bin", "bin")
                    self.assert_loaded(expected, binary_form.read_plan(data), release)
                    data = self.convert(xml_form.write_plan(tree), "xml", "bin")
                    self.assert_loaded(without_lists(expected), binary_form.read_plan(data), release)


    def test_releases_that_are_none(self):
        tree = random_plan(Settings.seeds[0])
        tree.values["DataformatRelease"] = "7.0.163"
        read = binary_form.read_plan(self.convert(binary_form.write_plan(tree), "bin", "bin"))
        self.assertEqual(read.values["DataformatRelease"], CURRENT_RELEASE)
        tree.values["DataformatRelease"] = CURRENT_RELEASE
        self.assert_same(tree, read)
        tree.values["DataformatRelease"] = "6.0.173"
        self.put("in.bin", binary_form.write_plan(tree))
        code, text = self.run_tool("convert", "in.bin", "out.bin")
        self.assertEqual((code, text.strip()), (1, f'[Error] Neues Datenformat "6.0.173" erkannt, aber diese Velmora '
                                                   f'Version erwartet Datenformat "{CURRENT_RELEASE}". Bitte updaten '
                                                   "Sie Velmora."))


class DamagedStreams(Folder):
    def assert_refused(self, data, form="bin"):
        self.put("in." + form, data)
        code, text = self.run_tool("convert", "in." + form, "out.bin")
        self.assertEqual(code, 1)
        self.assertRegex(text, r"\[Error\] .")

    def test_cut_anywhere(self):
        small = self.convert(EMPTY, "xml", "bin")
        big = binary_form.write_plan(random_plan(Settings.seeds[0]))
        for data, count in ((small, 100), (big, 60)):
            for position in random.Random(1).sample(range(len(data)), count) + [0, 1, len(data) - 1]:
                with self.subTest(position=position, of=len(data)):
                    self.assert_refused(data[:position])
        packed = binary_form.compress(big)
        for position in (0, 1, 2, len(packed) // 2, len(packed) - 1):
            with self.subTest(packed=position):
                self.assert_refused(packed[:position], "z")

    def test_lengths_and_classes_that_are_none(self):
        data = binary_form.write_plan(random_plan(Settings.seeds[0]))
        release = BinaryWriter()
        release.string(CURRENT_RELEASE)
        at = data.index(release.data())
        for length in (-1, -2**31, 2**31 - 1, 2**30):
            with self.subTest(length=length):
                self.assert_refused(data[:at] + struct.pack("<i", length) + data[at + 4:])
        for tag in ("", "NoSuchClass"):
            writer = BinaryWriter()
            writer.string("AutomaticModeParameters")
            wrong = BinaryWriter()
            wrong.string(tag)
            with self.subTest(tag=tag):
                self.assert_refused(data.replace(writer.data(), wrong.data()))

    def test_changed_bytes_crash_nothing(self):
        data = binary_form.write_plan(random_plan(Settings.seeds[0]))
        dice = random.Random(Settings.seeds[0])
        for _ in range(40):
            changed = bytearray(data)
            for _ in range(dice.choice((1, 1, 5))):
                changed[dice.randrange(len(data))] = dice.choice((0, 1, 127, 128, 255))
            self.put("in.bin", bytes(changed))
            code, _ = self.run_tool("convert", "in.bin", "out.bin")
            if code == 0:
                binary_form.read_plan(self.get("out.bin"))


if __name__ == "__main__":
    Settings.tool = os.path.abspath(sys.argv[1])
    with open(sys.argv[2], "rb") as sample:
        Settings.sample = sample.read()
    if len(sys.argv) > 3 and ":" in sys.argv[3]:
        Settings.seeds = range(*map(int, sys.argv.pop(3).split(":")))
    del sys.argv[1:3]
    unittest.main(verbosity=2)
