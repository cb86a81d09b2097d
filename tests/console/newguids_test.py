#!/usr/bin/env python3
"""Runs newguids on real files: what gets a new identifier, what keeps its own, and what is left when it is stopped.

Usage: newguids_test.py PROGRAM SAMPLE SCHOOL-GENERATOR
"""

import collections
import csv
import fcntl
import os
import random
import re
import shutil
import signal
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
        code, lines = newguids(self.path)
        self.assertEqual((code, lines[:2], len(lines)), (1, [LINES[0], ""], 3))
        self.assertRegex(lines[2], r'^\[Error\] Local Velmora file does not exist\. \(File ".*[/\\]'
                         + re.escape(os.path.basename(self.path)) + r'"\)$')
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
        longest = 1.2 * (time.monotonic() - start)
        content = content_of(big)
        chance = random.Random(3)
        finished = 0
        for _ in range(25):
            with open(self.path, "rb") as file:
                before = file.read()
            process = subprocess.Popen([PROGRAM, "newguids", "-f", self.path], stdout=subprocess.DEVNULL)
            time.sleep(chance.uniform(0, longest))
            process.send_signal(chance.choice([signal.SIGKILL, signal.SIGTERM, signal.SIGINT, signal.SIGHUP]))
            if process.wait(timeout=60) != -signal.SIGKILL:
                self.assertEqual(sorted(os.listdir(self.folder)), ["big.velmora", "plan.velmora"])
            with open(self.path, "rb") as file:
                changed = file.read() != before
            finished += changed
            longest *= 0.9 if changed else 1.1  # the machine may have other work than before
            if changed:
                self.assertEqual(content_of(self.path), content)
        self.assertGreater(finished, 0)
        self.assertLess(finished, 25)
        self.assertEqual(newguids(self.path)[0], 0)
        self.assertEqual(sorted(os.listdir(self.folder)), ["big.velmora", "plan.velmora"])

    def test_a_run_that_is_to_go_on_without_a_terminal_does(self):
        shutil.copy(SAMPLE, self.path)
        process = subprocess.Popen(["nohup", PROGRAM, "newguids", "-f", self.path], stdout=subprocess.PIPE)
        self.assertIn(b"Save", b"".join(process.stdout.readline() for _ in range(5)))
        for _ in range(20):
            process.send_signal(signal.SIGHUP)
            time.sleep(0.005)
        process.communicate(timeout=60)
        self.assertEqual(process.returncode, 0)

    def test_runs_at_once_come_one_after_the_other(self):
        shutil.copy(SAMPLE, self.path)
        content = content_of(SAMPLE)
        runs = [subprocess.Popen([PROGRAM, "newguids", "-f", self.path], stdout=subprocess.PIPE) for _ in range(4)]
        said = [process.communicate(timeout=60)[0].decode() for process in runs]
        self.assertEqual([process.returncode for process in runs], [0] * 4, said)
        self.assertEqual(content_of(self.path), content)

    def test_a_file_in_use_is_waited_for_and_never_replaced(self):
        shutil.copy(SAMPLE, self.path)
        out = os.path.join(self.folder, "out")
        self.export(out)
        with open(self.path, "rb") as file, open(os.path.join(out, ".velmora-lock"), "w", encoding="utf-8") as lock:
            fcntl.flock(file, fcntl.LOCK_EX)
            self.assertEqual(self.export(os.path.join(self.folder, "other")), os.path.join(self.folder, "other"))
            fcntl.flock(lock, fcntl.LOCK_EX)
            start = time.monotonic()
            runs = [subprocess.Popen([PROGRAM, *arguments, "-minimal-display"], stdout=subprocess.PIPE) for arguments in
                    (["newguids", "-f", self.path], ["export", "-s", "file", "-fn", SAMPLE, "-o", out])]
            for process, subject in zip(runs, (self.path, out)):
                lines = process.communicate(timeout=60)[0].decode().splitlines()
                self.assertEqual((process.returncode, lines[-2]), (1, ""))
                self.assertIn("in use by another program: " + subject, lines[-1])
                self.assertGreater(time.monotonic() - start, 29)
        with open(self.path, "rb") as file, open(SAMPLE, "rb") as sample:
            self.assertEqual(file.read(), sample.read())
        # The next one comes as soon as the file is free.
        with open(self.path, "rb") as file:
            fcntl.flock(file, fcntl.LOCK_SH)
            process = subprocess.Popen([PROGRAM, "newguids", "-f", self.path], stdout=subprocess.DEVNULL)
            time.sleep(0.5)
            self.assertIsNone(process.poll())
        self.assertEqual(process.wait(timeout=60), 0)

    def test_a_folder_that_takes_no_file_has_a_copy_elsewhere_first(self):
        if os.geteuid() != 0:
            self.skipTest("needs the right to become another user")
        state, plans = (os.path.join(self.folder, name) for name in ("state", "plans"))
        os.mkdir(state)
        os.mkdir(plans)
        path = os.path.join(plans, "plan.velmora")
        shutil.copy(SAMPLE, path)
        for name in (state, path):
            os.chown(name, 65534, 65534)
        os.chmod(self.folder, 0o755)
        nobody = {"user": 65534, "group": 65534, "extra_groups": [],
                  "env": {**os.environ, "XDG_STATE_HOME": state, "TMPDIR": plans}}
        self.assertEqual(newguids(path, **nobody)[0], 0)
        kept = os.path.join(state, "velmora")
        self.assertEqual(os.listdir(kept), [])
        chance, content, torn = random.Random(4), content_of(SAMPLE), 0
        for _ in range(12):
            process = subprocess.Popen([PROGRAM, "newguids", "-f", path], stdout=subprocess.DEVNULL, **nobody)
            while process.poll() is None and not os.listdir(kept):
                pass
            time.sleep(chance.choice([0, chance.uniform(0, 0.01)]))
            process.kill()
            process.wait(timeout=60)
            copies = [os.path.join(kept, name) for name in os.listdir(kept)]
            self.assertLessEqual(len(copies), 1)
            for copy in copies:
                torn += 1
                self.assertEqual(content_of(copy), content)
                self.assertEqual(stat.S_IMODE(os.stat(copy).st_mode), 0o600)
                shutil.copyfile(copy, path)
                os.remove(copy)
            self.assertEqual(content_of(path), content)
        self.assertGreater(torn, 0)


if __name__ == "__main__":
    PROGRAM, SAMPLE, GENERATOR = map(os.path.abspath, sys.argv[1:4])
    del sys.argv[1:4]
    unittest.main(verbosity=2)
