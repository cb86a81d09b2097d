#!/usr/bin/env python3
"""Exports over an earlier OCF set: what a reader sees, and what is left when a run is killed or cannot write.

Usage: ocf_replacement_test.py PROGRAM GENERATOR [KILLS]

KILLS is how many runs are killed, 40 by default.
"""

import fcntl
import os
import random
import resource
import shutil
import signal
import subprocess
import sys
import tempfile
import threading
import time
import unittest

PROGRAM = GENERATOR = ""
KILLS = 40
MARK = "_Manifest.csv"
NOBODY = 65534


class Replacement(unittest.TestCase):
    """Two schools with sets of different files and contents; the folder "out" holds one of the sets at any time."""

    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.folder = folder.name
        os.chmod(cls.folder, 0o755)
        cls.plans, cls.sets = [], []
        for number in range(2):
            plan = os.path.join(cls.folder, f"{number}.velmora")
            subprocess.run([GENERATOR, "--scale", "1", "--seed", str(number), plan], check=True)
            if number == 1:  # a day without substitutions, and another year
                with open(plan, encoding="utf-8-sig") as file:
                    text = file.read()
                start, end = text.index("<Changes>"), text.index("</Changes>") + len("</Changes>")
                with open(plan, "w", encoding="utf-8") as file:
                    file.write(text[:start] + text[end:].replace("<ValidTo>2", "<ValidTo>3"))
            cls.plans.append(plan)
            target = os.path.join(cls.folder, f"set-{number}")
            assert cls.export(plan, target)[0] == 0
            cls.sets.append(cls.content(target))
        assert cls.sets[0].keys() - cls.sets[1].keys() >= {"SubstituteLessons.csv", "LessonGaps.csv"}
        assert cls.sets[0][MARK] != cls.sets[1][MARK]

    def setUp(self):
        self.out = os.path.join(self.folder, "out")
        self.addCleanup(shutil.rmtree, self.out)
        self.assertEqual(self.export(self.plans[0], self.out)[0], 0)

    @classmethod
    def export(cls, plan, target, **options):
        done = subprocess.run([PROGRAM, "export", "-s", "file", "-fn", plan, "-o", target, "-minimal-display"],
                              stdout=subprocess.PIPE, check=False, timeout=120, **options)
        return done.returncode, done.stdout.decode().splitlines()

    @staticmethod
    def content(folder):
        found = {}
        for name in os.listdir(folder):
            with open(os.path.join(folder, name), "rb") as file:
                found[name] = file.read()
        return found

    def assert_refused(self, done, text):
        code, lines = done
        self.assertEqual((code, lines[-1][:8]), (1, "[Error] "), lines)
        self.assertIn(text, lines[-1])
        self.assertTrue(self.content(self.out) == self.sets[0], sorted(os.listdir(self.out)))

    def test_foreign_files_stay_and_others_are_of_one_run(self):
        for name in ("notes.txt", "RoomsOld.csv", ".velmora-notes.tmp"):
            with open(os.path.join(self.out, name), "w", encoding="utf-8") as file:
                file.write("mine")
        locked = os.open(os.path.join(self.out, "Rooms.csv"), os.O_RDONLY)
        self.addCleanup(os.close, locked)
        fcntl.flock(locked, fcntl.LOCK_EX)
        self.assertEqual(self.export(self.plans[1], self.out)[0], 0)
        found = self.content(self.out)
        self.assertEqual([found.pop(name) for name in ("notes.txt", "RoomsOld.csv", ".velmora-notes.tmp")], [b"mine"] * 3)
        self.assertTrue(found == self.sets[1])

    def test_kills_leave_a_set_that_is_marked_only_if_it_is_whole(self):
        chance = random.Random(5)
        endings = dict.fromkeys(("old", "new", "unmarked"), 0)
        duration = 0.1
        for number in range(KILLS):
            plan = (number + 1) % 2
            process = subprocess.Popen([PROGRAM, "export", "-s", "file", "-fn", self.plans[plan], "-o", self.out],
                                       stdout=subprocess.DEVNULL)
            # The last part of a run, in which the files take their places, is met more often than the rest.
            time.sleep(duration * chance.choice([chance.uniform(0, 1), chance.uniform(0.7, 1.5)]))
            process.send_signal(chance.choice([signal.SIGKILL, signal.SIGKILL, signal.SIGTERM]))
            process.wait(timeout=60)
            found = self.content(self.out)
            visible = {name: text for name, text in found.items() if not name.startswith(".")}
            if MARK in visible:
                self.assertTrue(visible in self.sets, "a mixture is marked as complete")
                endings["new" if visible == self.sets[plan] else "old"] += 1
            else:
                endings["unmarked"] += 1
            if process.returncode == -signal.SIGTERM:
                self.assertEqual(found, visible, "left by a run that was told to end")
            if found != self.sets[plan]:
                start = time.monotonic()
                self.assertEqual(self.export(self.plans[plan], self.out)[0], 0)
                duration = time.monotonic() - start
                self.assertTrue(self.content(self.out) == self.sets[plan], sorted(os.listdir(self.out)))
        print(f"{KILLS} kills: {endings}", file=sys.stderr)
        self.assertGreater(endings["old"] * endings["new"], 0)

    def read_set(self):
        """As a careful reader does: the manifest is the same file at the begin and at the end."""
        mark = os.path.join(self.out, MARK)
        try:
            with open(mark, "rb") as manifest:
                found = self.content(self.out)
                if os.path.samestat(os.fstat(manifest.fileno()), os.stat(mark)):
                    return found
        except FileNotFoundError:
            pass
        return None

    def test_a_reader_in_a_loop_sees_whole_sets(self):
        seen, stop = [0, 0, 0], threading.Event()
        mixtures = []

        def read():
            while not stop.is_set():
                found = self.read_set()
                if found is not None:
                    found = {name: text for name, text in found.items() if not name.startswith(".")}
                    if found not in self.sets:
                        mixtures.append(found.keys())
                seen[2 if found is None else self.sets.index(found)] += 1

        reader = threading.Thread(target=read)
        reader.start()
        try:
            for number in range(12):
                self.assertEqual(self.export(self.plans[(number + 1) % 2], self.out)[0], 0)
        finally:
            stop.set()
            reader.join()
        self.assertEqual(mixtures, [])
        self.assertGreater(min(seen[:2]), 0)

    def test_two_exports_at_once(self):
        for _ in range(4):
            runs = [subprocess.Popen([PROGRAM, "export", "-s", "file", "-fn", plan, "-o", self.out],
                                     stdout=subprocess.DEVNULL) for plan in self.plans]
            self.assertEqual([run.wait(timeout=120) for run in runs], [0, 0])
            self.assertTrue(self.content(self.out) in self.sets)

    def test_a_file_that_grows_too_large_and_a_full_disk(self):
        limit = max(map(len, self.sets[1].values())) - 1
        self.assert_refused(self.export(self.plans[1], self.out, preexec_fn=lambda: resource.setrlimit(
            resource.RLIMIT_FSIZE, (limit, limit))), self.out)
        # Whichever thread meets the end of the disk first, the line is the same.
        shell = ('mount -t tmpfs -o "$4" none "$0" && cp -r "$1"/. "$0" || exit 9; '
                 'for _ in 1 2 3 4 5 6; do "$3" export -s file -fn "$2" -o "$0"; code=$?; '
                 'diff -r "$1" "$0" || exit 8; done; exit $code')
        size = int(1.5 * sum(map(len, self.sets[0].values())))
        # Of a disk that takes some files more, the end is met when one is begun.
        for option in (f"size={size}", f"nr_inodes={len(self.sets[0]) + 12}"):
            done = subprocess.run(["unshare", "-m", "sh", "-c", shell, self.out, os.path.join(self.folder, "set-0"),
                                   self.plans[1], PROGRAM, option], check=False, stdout=subprocess.PIPE,
                                  stderr=subprocess.PIPE, timeout=120)
            if done.returncode == 9 or b"unshare" in done.stderr:
                self.skipTest("needs the right to mount")
            self.assertEqual(done.returncode, 1, done.stdout.decode())
            errors = [line for line in done.stdout.decode().splitlines() if line.startswith("[Error] ")]
            self.assertEqual((len(errors), len(set(errors))), (6, 1), errors)

    def test_a_folder_and_a_file_that_may_not_be_written(self):
        if os.geteuid() != 0:
            self.skipTest("needs the right to become another user")
        nobody = {"user": NOBODY, "group": NOBODY, "extra_groups": []}
        self.assert_refused(self.export(self.plans[1], self.out, **nobody), self.out)
        os.chmod(self.out, 0o777)
        self.assert_refused(self.export(self.plans[1], self.out, **nobody), self.out + "/")
        for name in os.listdir(self.out):
            os.chmod(os.path.join(self.out, name), 0o666)
        # Of yesterday's substitutions, which go.
        os.chmod(os.path.join(self.out, "LessonGaps.csv"), 0o444)
        self.assert_refused(self.export(self.plans[1], self.out, **nobody), "LessonGaps.csv")
        os.chmod(os.path.join(self.out, "LessonGaps.csv"), 0o666)
        self.assertEqual(self.export(self.plans[1], self.out, **nobody)[0], 0)
        self.assertTrue(self.content(self.out) == self.sets[1])


if __name__ == "__main__":
    if len(sys.argv) > 3 and sys.argv[3].isdigit():
        KILLS = int(sys.argv.pop(3))
    PROGRAM, GENERATOR = map(os.path.abspath, sys.argv[1:3])
    del sys.argv[1:3]
    unittest.main(verbosity=2)
