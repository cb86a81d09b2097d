#!/usr/bin/env python3
"""Gives the real program damaged, hostile and unreachable files: one error line, exit code 1, the file untouched.

Usage: bad_input_test.py PROGRAM
"""

import gzip
import io
import os
import random
import re
import resource
import shutil
import subprocess
import sys
import tempfile
import unittest
import zipfile

PROGRAM = ""
IS_INSTRUMENTED = False  # a sanitizer reserves more addresses than the limit
MEMORY = 1 << 30
NEWGUIDS = ("newguids", "-f")
MILLION = 10**6
with open(os.path.join(os.path.dirname(os.path.abspath(__file__)), "small.velmora"), "rb") as small:
    SMALL = small.read()
ROOMS = b"<Rooms>\n    <Items>"
ROOM = b'Class="Room" ID="{00000000-0000-0000-0000-000000000003}"'
# An element with a value of each kind, and values beside the kind's range. All refuse what is no number.
NUMBERS = {"FreePeriod>1": [], "Gender>2": ["256", "-1"], "State>1": ["128", "-129"], "Provider>7": ["65536", "-1"],
           "PeriodSectionNr>1": ["32768"], "Capacity>30": ["2147483648", "-2147483649", "9" * 40],
           "FileVersion>3": ["9223372036854775808"], "LessonsSettled>1.5": ["1e999", "nan", "inf"],
           "Factor>0,5": ["-1e999", "nan"], "WeeklyLessons>1;2;3": ["1;;2", "1;2147483648"]}
DATES = {"DateOfBirth>1980-02-29": ["1981-02-29", "1981-13-01", "1981-00-01"],
         "Start>2026-10-05T07:45:00.000Z": ["2026-10-05T24:00:00.000Z", "2026-10-05T07:60:00.000Z", "2026-10-32"]}
OTHERS = {'Symbol Size="3">AAAA': ["A?AA"], "DataObjectID>{00000000": ["{0000000g", "00000000", ""]}
NO_NUMBERS = ["x", "1x", "0x10", "1 2", "--1", "true", "٣", "1e", "\t"]
NO_DATES = ["x", "-001-01-01", "2o26-01-01", "2026-a1-01", "٢٠٢٦"]


def replaced(old, new):
    old, new = (text.encode() if isinstance(text, str) else text for text in (old, new))
    assert old in SMALL, old
    return SMALL.replace(old, new, 1)


class BadInput(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, self.folder)
        self.data = os.path.join(self.folder, "plan.velmora")
        self.target = os.path.join(self.folder, "out")

    def run_program(self, file_name, prefix=(), seconds=30, job=("export", "-s", "file", "-fn")):
        """Exit code and error line, after what must hold for every run."""
        done = subprocess.run(
            [*prefix, PROGRAM, *job, file_name, "-o", self.target, "-minimal-display"], timeout=seconds, stdout=subprocess.PIPE, stderr=subprocess.PIPE, stdin=subprocess.DEVNULL, check=False,
            env={**os.environ, "ASAN_OPTIONS": f"exitcode=99:hard_rss_limit_mb={2 * MEMORY >> 20}"},
            preexec_fn=None if IS_INSTRUMENTED else lambda: resource.setrlimit(resource.RLIMIT_AS, (MEMORY, MEMORY)))
        self.assertEqual(done.stderr, b"")
        lines = done.stdout.decode("utf-8").splitlines()
        errors = [line for line in lines if line.startswith("[Error] ")]
        self.assertIn((done.returncode, len(errors)), [(0, 0), (1, 1)], lines)
        if errors:
            self.assertEqual(lines[-2:], ["", errors[0]])
            self.assertLess(len(errors[0]), 1000)
            self.assertNotIn("\ufffd", errors[0])
        return done.returncode, "".join(errors)

    def export(self, content, anew=True):
        with open(self.data, "wb") as file:
            file.write(content)
        if anew:
            shutil.rmtree(self.target, ignore_errors=True)
        os.utime(self.data, ns=(10**18, 10**18))
        found = self.run_program(self.data)
        with open(self.data, "rb") as file:
            self.assertTrue(file.read() == content)
        self.assertEqual(os.stat(self.data).st_mtime_ns, 10**18)
        self.renew(content)
        return found

    def saved(self):
        """The data file with its identifiers numbered in the order in which they come."""
        with open(self.data, "rb") as file:
            content = file.read()
        numbers = {}
        return re.sub(rb"{[-0-9A-F]{36}}", lambda found: b"%d" % numbers.setdefault(found[0], len(numbers)), content)

    def renew(self, content):
        """New identifiers: what is refused is left alone, and what is saved is loaded and saved again as it is."""
        code, _ = self.run_program(self.data, job=NEWGUIDS)
        if code != 0:
            with open(self.data, "rb") as file:
                self.assertTrue(file.read() == content)
            return
        first = self.saved()
        self.assertEqual(self.run_program(self.data, job=NEWGUIDS), (0, ""))
        self.assertEqual(self.saved(), first)

    def assert_refused(self, content, *names, about=None):
        """The line names the file, or the place in it; and nothing was exported."""
        with self.subTest(names=names, about=about or content[:60]):
            code, error = self.export(content)
            self.assertEqual(code, 1)
            self.assertEqual(os.listdir(self.target), [])
            for name in names or ["plan.velmora"]:
                self.assertIn(name, error)

    def test_no_data_file(self):
        pipe, loop = os.path.join(self.folder, "pipe"), os.path.join(self.folder, "loop")
        os.mkfifo(pipe)
        os.symlink(loop, loop)
        for name in [os.path.join(self.folder, "missing"), self.folder, pipe, loop, pipe + "/x", "/dev/null",
                     "/dev/zero", "/dev/tty", "/proc/self/mem", "/" + "x/" * 3000, "/tmp/" + "x" * 300]:
            with self.subTest(name=name[:60]):
                self.assertEqual(self.run_program(name, seconds=10)[0], 1)
        if os.geteuid() != 0:
            with open(self.data, "wb") as file:
                file.write(SMALL)
            os.chmod(self.data, 0)
            self.assertIn("plan.velmora", self.run_program(self.data)[1])

    def test_no_document(self):
        archive = io.BytesIO()
        with zipfile.ZipFile(archive, "w", zipfile.ZIP_DEFLATED) as writer:
            writer.writestr("plan.velmora", SMALL)
        self.assert_refused(archive.getvalue(), "plan.velmora", "ZIP")
        self.assert_refused(gzip.compress(SMALL), "plan.velmora", "gzip")
        for content in [b"", b"\xef\xbb\xbf", b" \r\n", b"\0" * 1000, b"\xff\xfe", b"<", b"plan", b"<Storage>",
                        b'{"Storage": {"Rooms": []}}', random.Random(1).randbytes(5000),
                        b"<Plan/>", b"<storage/>", b"<html><Storage/></html>", b"<Storage/><Storage/>",
                        b"<Storage></Plan>", b"<" + b"R" * MILLION + b"/>",
                        *(replaced("Mü", bad) for bad in [b"\xff", b"M\xfc", b"M\xc3", b"\xc0\x80", b"\xed\xa0\x80",
                                                          b"\xf4\x90\x80\x80", b"\xe2\x82"])]:
            self.assert_refused(content)
        end = len(SMALL.rstrip())
        for length in [*range(0, end, end // 60), *range(end - 12, end)]:
            self.assert_refused(SMALL[:length], about=length)

    def test_objects(self):
        for old, new in [(b'"{0', b'"0'), (b'}"', b'"'), (b'}"', b'}}"'), (b"0-0", b"000"), (b"{0", b"{g"), (b"{0", b""),
                         (b' ID="{00000000-0000-0000-0000-000000000003}"', b""), (b'"Room"', b'"Teacher"'),
                         (b"{", b"{" * MILLION)]:
            self.assertIn(old, ROOM)
            content = replaced(ROOM, ROOM.replace(old, new, 1))
            self.assert_refused(content, "Knoten Storage/Rooms/Items/Item/", about=new[:9])
        for name in ["Nope", "room", "TVELRaum", "R" * MILLION]:
            content = replaced(ROOM, ROOM.replace(b'"Room"', b'"%s"' % name.encode(), 1))
            self.assert_refused(content, f'[Error] Klasse "{name[:100]}" wurde nicht registriert.', about=name[:9])
        self.assert_refused(replaced(ROOM, ROOM.replace(b'"Room"', b'""', 1)), "[Error] Kein Klassenname gefunden.")
        self.assert_refused(replaced(ROOM, ROOM[len('Class="Room" '):]), "Knoten Storage/Rooms/Items/", '"Class"')
        self.assert_refused(replaced(ROOMS, ROOMS + b"<Item/>" * MILLION), "Knoten Storage/Rooms/Items/")
        self.assert_refused(replaced("<Rooms>", "<Rooms/><Rooms>"), "Knoten Storage/Rooms/", '"Items"')
        for required in ["<Code>R1</Code>", "<Gender>2</Gender>", "<FirstHour>8</FirstHour>", "<Operator/>",
                         "<LessonWeeks>0</LessonWeeks>", "<Name>Müller</Name>", "<Weekend>5</Weekend>"]:
            name = required[1:required.index(">")].rstrip("/")
            self.assert_refused(replaced(required, ""), "Knoten Storage/", f'"{name}"')
        for release in ["6.0.173", "6.1", "7", "6.0.172.1", "7.0.162", "7." + "x" * MILLION]:
            self.assert_refused(replaced("6.0.172", release), f'"{release[:50]}', '"6.0.172"', about=release[:9])

    def test_values(self):
        for values, wrong in [(NUMBERS, NO_NUMBERS), (DATES, NO_DATES), (OTHERS, [])]:
            for text, out_of_range in values.items():
                name = text.split(">", maxsplit=1)[0]
                for other in out_of_range + wrong + ["ä" * MILLION] * (values is not OTHERS):
                    content = replaced(f"<{text}", f"<{name}>{other}")
                    self.assert_refused(content, "Knoten Storage/", f"/{name.split()[0]}/", about=(name, other[:20]))

    def test_place(self):
        self.assert_refused(replaced("<Capacity>30", "<Capacity>x"), "Knoten Storage/Rooms/Items/Item/Capacity/", 'Objekt "Room"',
                            'Code "R1"', 'ID "{00000000-0000-0000-0000-000000000003}"', "plan.velmora")

    @unittest.skipUnless(shutil.which("prlimit"), "no prlimit")
    def test_memory(self):
        if IS_INSTRUMENTED:
            self.skipTest("a sanitizer reserves more addresses than the limit")
        for content in [bytes(MEMORY >> 3), b"<Storage>" + b"<a/>" * MILLION * 2]:
            with open(self.data, "wb") as file:
                file.write(content)
            code, error = self.run_program(self.data, ("prlimit", f"--as={MEMORY >> 4}"))
            self.assertEqual((code, error[:22]), (1, "[Error] Out of memory:"))

    def test_size(self):
        """Ends within the limits, with whatever result."""
        nested = b"<a>" * MILLION
        for content in [b"<Storage>" + nested, nested, b"<Storage>" + nested + b"</a>" * MILLION + b"</Storage>",
                        replaced("<Capacity>", nested + b"</a>" * MILLION + b"<Capacity>"),
                        b"<Storage " + b"".join(b'a%d="" ' % n for n in range(MILLION)) + b"/>",
                        replaced("R1", b"R" * 50 * MILLION), replaced('"a b",c', b"a," * MILLION),
                        replaced("1;2;3", b"1;" * MILLION), b"<Storage>" + b"<!---->" * MILLION + b"</Storage>",
                        replaced(ROOMS, ROOMS + b"<Other/>" * MILLION), replaced("R1", b"&#1;" * MILLION),
                        b"<Storage>" + b"<Rooms><Items/></Rooms>" * MILLION + b"</Storage>",
                        replaced("<Capacity>30", b"<Capacity>" + b"9" * 50 * MILLION)]:
            with self.subTest(start=content[:30], size=len(content)):
                self.export(content)

    def test_target_that_cannot_be_written(self):
        with open(self.target, "wb") as file:
            file.write(b"no folder")
        self.assertIn(self.target, self.export(SMALL, anew=False)[1])
        with open(self.target, "rb") as file:
            self.assertEqual(file.read(), b"no folder")
        os.remove(self.target)
        rooms = os.path.join(self.target, "Rooms.csv")
        os.makedirs(rooms)
        self.assertIn("Rooms.csv", self.export(SMALL, anew=False)[1])
        os.rmdir(rooms)
        os.symlink("/dev/full", rooms)
        self.assertIn("Rooms.csv", self.export(SMALL, anew=False)[1])
        disk = ["unshare", "-m", "sh", "-c", 'mount -t tmpfs -o size=8k none "$0" && exec "$@"', self.target]
        if shutil.which("unshare") and subprocess.call([*disk, "true"], stderr=subprocess.DEVNULL) == 0:
            self.assertIn(".csv", self.run_program(self.data, disk)[1])
        if os.geteuid() != 0:
            os.chmod(self.target, 0o500)
            self.assertIn("_Manifest.csv", self.export(SMALL, anew=False)[1])

    def test_mutations(self):
        self.assertEqual(self.export(SMALL), (0, ""))
        self.assertEqual(len(os.listdir(self.target)), 14)
        chance, codes = random.Random(20261121), set()
        for number in range(240):
            content = bytearray(SMALL)
            for _ in range(chance.choice([1, 1, 1, 3, 20])):
                start = chance.randrange(len(content))
                end = min(start + chance.choice([1, 2, 8, 100]), len(content))
                if number % 4 == 0:
                    content[start] ^= 1 << chance.randrange(8)
                elif number % 4 == 1:
                    content[start] = chance.choice(b"<>/\"'&;![]-?\0 \n09-\xff{}")
                elif number % 4 == 2:
                    content[start:start] = content[start:end]
                else:
                    del content[start:end]
            with self.subTest(number=number):
                codes.add(self.export(bytes(content))[0])
        self.assertEqual(codes, {0, 1})


if __name__ == "__main__":
    PROGRAM = os.path.abspath(sys.argv.pop())
    with open(PROGRAM, "rb") as program:
        IS_INSTRUMENTED = b"__asan_init" in program.read()
    unittest.main(verbosity=2)
