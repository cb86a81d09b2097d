#!/usr/bin/env python3
"""Runs newguids on real files: what gets a new identifier, what keeps its own, and what is left when it is stopped.

Usage: newguids_test.py PROGRAM SAMPLE SCHOOL-GENERATOR
"""

import collections
import csv
import os
import random
import shutil
import stat
import subprocess
import sys
import tempfile
import time
import unittest
import xml.etree.ElementTree as xml

PROGRAM, SAMPLE, GENERATOR = "", "", ""
RENEWED = {"Class", "Event", "Time", "Stand-in", "RoomChange", "AdditionalLesson", "Message", "SupervisionStandIn"}
LINES = ["Open VELMORA file...", "Generate new Guids...", "Save VELMORA file...", "Transformation finished."]


def newguids(path, **options):
    done = subprocess.run([PROGRAM, "newguids", "-f", path, "-minimal-display"], stdout=subprocess.PIPE, check=False,
                          timeout=120, **options)
    return done.returncode, done.stdout.decode("utf-8").splitlines()


def identities(path):
    """Each element's tag, class and own text in document order, apart from its identifier."""
    elements = list(xml.parse(path).getroot().iter())
    return ([(element.tag, element.get("Class"), element.text) for element in elements],
            [(element.get("Class"), element.get("ID")) for element in elements])


def content_of(path):
    """What the elements hold, in any order: changes of one time stand in that of their identifiers."""
    return collections.Counter(identities(path)[0])


def ids_of(folder, name):
    with open(os.path.join(folder, name), encoding="utf-8-sig", newline="") as file:
        return {row["Id"] for row in csv.DictReader(file, delimiter=";")}


class NewGuids(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name
        self.path = os.path.join(self.folder, "plan.velmora")

    def export(self, folder):
        subprocess.run([PROGRAM, "export", "-s", "file", "-fn", self.path, "-o", folder], stdout=subprocess.DEVNULL,
                       check=True)
        return folder

    def test_exactly_the_told_objects_are_renamed(self):
        shutil.copy(SAMPLE, self.path)
        before = self.export(os.path.join(self.folder, "before"))
        content, names = identities(self.path)
        self.assertEqual(newguids(self.path), (0, LINES))
        new_content, new_names = identities(self.path)
        self.assertEqual(new_content, content)
        renamed = {}
        for (kind, old), (_, new) in zip(names, new_names):
            # One new name for each old one, wherever it is referred to.
            self.assertEqual(renamed.setdefault((kind, old), new), new)
            self.assertEqual(old != new, kind in RENEWED, (kind, old))
        self.assertEqual(len(set(renamed.values())), len(renamed))
        self.assertEqual(newguids(self.path), (0, LINES))
        after = self.export(os.path.join(self.folder, "after"))
        for name in ("SchoolClasses.csv", "Courses.csv", "ScheduledLessons.csv", "SubstituteLessons.csv"):
            self.assertEqual(ids_of(before, name) & ids_of(after, name), set(), name)
            self.assertEqual(len(ids_of(before, name)), len(ids_of(after, name)), name)
        for name in ("Teachers.csv", "Rooms.csv", "Students.csv", "Subjects.csv"):
            self.assertEqual(ids_of(before, name), ids_of(after, name), name)

    def test_a_file_that_is_not_there_or_no_plan(self):
        error = ["", "[Error] Local Velmora file does not exist."]
        self.assertEqual(newguids(self.path), (1, LINES[:1] + error))
        with open(self.path, "w", encoding="utf-8") as file:
            file.write("<Storage><Broken")
        code, lines = newguids(self.path)
        self.assertEqual((code, lines[:2], lines[2][:8]), (1, [LINES[0], ""], "[Error] "))
        with open(self.path, encoding="utf-8") as file:
            self.assertEqual(file.read(), "<Storage><Broken")

    def test_rights_and_links_stay(self):
        shutil.copy(SAMPLE, self.path)
        os.chmod(self.path, 0o640)
        link = os.path.join(self.folder, "link.velmora")
        os.symlink("plan.velmora", link)
        self.assertEqual(newguids(link)[0], 0)
        self.assertTrue(os.path.islink(link))
        self.assertEqual(stat.S_IMODE(os.stat(self.path).st_mode), 0o640)
        self.assertNotEqual(identities(self.path), identities(SAMPLE))
        self.assertEqual(sorted(os.listdir(self.folder)), ["link.velmora", "plan.velmora"])

    def on_a_disk(self, options, prepare):
        """Exit code and lines of a run on a disk of its own, and whether the file is as it was and alone."""
        if subprocess.call(["unshare", "-m", "mount", "-t", "tmpfs", "none", self.folder],
                           stderr=subprocess.DEVNULL) != 0:
            self.skipTest("needs the right to mount")
        script = (f'mount -t tmpfs -o {options} none "$0" && cp "$1" "$0/plan" && {prepare} || exit 9; '
                  '"$2" newguids -f "$0/plan" -minimal-display; code=$?; cmp "$1" "$0/plan" && ls -A "$0"; exit $code')
        done = subprocess.run(["unshare", "-m", "sh", "-c", script, self.folder, SAMPLE, PROGRAM],
                              stdout=subprocess.PIPE, check=False, timeout=60)
        return done.returncode, done.stdout.decode("utf-8").splitlines()

    def test_a_full_disk_and_a_read_only_one_leave_the_file(self):
        self.assertGreater(2 * os.path.getsize(SAMPLE), 3 << 20, "the disk must not hold two of them")
        for options, prepare in (("size=3m", "true"), ("size=9m", 'mount -o remount,ro "$0"')):
            code, lines = self.on_a_disk(options, prepare)
            self.assertEqual((code, lines[:3], lines[-2][:8], lines[-1]), (1, LINES[:3], "[Error] ", "plan"), lines)

    def test_a_kill_at_any_moment_leaves_the_old_file_or_the_new_one(self):
        big = os.path.join(self.folder, "big.velmora")
        subprocess.run([GENERATOR, "--scale", "1", big], check=True)
        shutil.copy(big, self.path)
        start = time.monotonic()
        self.assertEqual(newguids(self.path)[0], 0)
        duration = time.monotonic() - start
        content = content_of(big)
        chance = random.Random(3)
        finished = 0
        for _ in range(25):
            with open(self.path, "rb") as file:
                before = file.read()
            process = subprocess.Popen([PROGRAM, "newguids", "-f", self.path], stdout=subprocess.DEVNULL)
            time.sleep(chance.uniform(0, duration * 1.2))
            process.kill()
            process.wait(timeout=60)
            with open(self.path, "rb") as file:
                changed = file.read() != before
            finished += changed
            if changed:
                self.assertEqual(content_of(self.path), content)
        self.assertGreater(finished, 0)
        self.assertLess(finished, 25)
        self.assertEqual(newguids(self.path)[0], 0)

    def test_two_runs_at_once_end_with_one_of_the_results(self):
        shutil.copy(SAMPLE, self.path)
        content = content_of(SAMPLE)
        for _ in range(5):
            runs = [subprocess.Popen([PROGRAM, "newguids", "-f", self.path], stdout=subprocess.DEVNULL)
                    for _ in range(3)]
            for process in runs:
                process.wait(timeout=60)
            self.assertIn(0, [process.returncode for process in runs])
            self.assertEqual(content_of(self.path), content)


if __name__ == "__main__":
    PROGRAM, SAMPLE, GENERATOR = map(os.path.abspath, sys.argv[1:4])
    del sys.argv[1:4]
    unittest.main(verbosity=2)
