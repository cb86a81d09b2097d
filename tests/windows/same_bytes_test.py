"""The Windows programs write what those of this system write, byte by byte.

Usage: same_bytes_test.py FOLDER CONSOLE HOST FORMS SAMPLE, with the folder of a build for this system
"""

import json
import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

ZONE = {**os.environ, "TZ": "Europe/Berlin"}
GUID = re.compile(rb"[0-9A-Fa-f]{8}(?:-[0-9A-Fa-f]{4}){3}-[0-9A-Fa-f]{12}")
STAMP = re.compile(rb"<(Changed|Created)>[^<]+")


def content(path):
    with open(path, "rb") as file:
        return file.read()


def tree(folder):
    return {name: content(os.path.join(folder, name)) for name in sorted(os.listdir(folder))}


def numbered(text):
    """Identifiers by the order in which they come."""
    numbers = {}
    return GUID.sub(lambda found: b"#%d" % numbers.setdefault(found[0].lower(), len(numbers)), text)


class SameBytes(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name

    def on_both(self, job):
        """What a job leaves in a folder that holds the sample: here, and under Wine."""
        results = []
        for name, programs in (("native", NATIVE), ("windows", WINDOWS)):
            folder = os.path.join(self.folder, name)
            os.mkdir(folder)
            shutil.copy(SAMPLE, os.path.join(folder, "plan.velmora"))
            job(folder, lambda tool, *words: subprocess.run(
                [programs[tool], *words], cwd=folder, check=True, timeout=120, env=ZONE, stdout=subprocess.DEVNULL))
            results.append(tree(folder))
        self.assertEqual(*map(list, results))
        return zip(results[0], results[0].values(), results[1].values())

    def settings(self, folder, **jobs):
        with open(os.path.join(folder, "job.json"), "w", encoding="utf-8") as file:
            json.dump({"Velmora": jobs}, file)

    def test_export(self):
        sizes = [len(here) for _, here, there in self.on_both(
            lambda folder, run: run("console", "export", "-s", "file", "-fn", "plan.velmora", "-o", "."))
            if self.assertTrue(here == there) is None]
        self.assertGreater(len(sizes), 25)

    def test_import(self):
        def job(folder, run):
            for name, text in SET.items():
                with open(os.path.join(folder, name), "wb") as file:
                    file.write(text)
            self.settings(folder, ocfImport={"sourceFolderName": ".", "targetFileName": "plan.velmora"})
            run("host", "import", "job.json")

        for name, here, there in self.on_both(job):
            with self.subTest(name):
                self.assertTrue(STAMP.sub(b"", numbered(here)) == STAMP.sub(b"", numbered(there)))
                self.assertNotEqual((name, here), ("plan.velmora", content(SAMPLE)))

    def test_newguids(self):
        for name, here, there in self.on_both(lambda folder, run: run("console", "newguids", "-f", "plan.velmora")):
            with self.subTest(name):
                self.assertTrue(numbered(here) == numbered(there))
                self.assertFalse(here == there)

    def test_publication(self):
        def job(folder, run):
            self.settings(folder, jsonExport={"sourceFileName": "plan.velmora", "targetFileName": "plan.json"})
            run("host", "publish", "job.json")

        for name, here, there in self.on_both(job):
            with self.subTest(name):
                self.assertTrue(numbered(here) == numbered(there))

    def test_binary_form(self):
        """Lists have identifiers that the text form has not: they are new, and stand where two runs here differ."""
        found = self.on_both(lambda folder, run: [run("forms", "convert", "plan.velmora", name)
                                                  for name in ("plan.bin", "again.bin")])
        (again, *_), (plan, here, there) = [each for each in found if each[0].endswith(".bin")]
        self.assertEqual((again, plan, len(here)), ("again.bin", "plan.bin", len(there)))
        new = {at for at, (one, other) in enumerate(zip(here, content(os.path.join(self.folder, "native", again))))
               if one != other}
        self.assertTrue(all(any(near in new for near in range(at - 15, at + 16))
                            for at, (one, other) in enumerate(zip(here, there)) if one != other))


SET = {
    "Rooms.csv": "\ufeffCode;Name;Capacity\r\nNEU;Raum äöü;30".encode(),
    "Teachers.csv": "\ufeffCode;LastName;FirstName\r\nNEU;Müller;Käthe".encode(),
}

if __name__ == "__main__":
    build = sys.argv[1]
    NATIVE = {"console": os.path.join(build, "velmora-console"), "host": os.path.join(build, "velmora-host"),
              "forms": os.path.join(build, "tests", "velmora-forms")}
    WINDOWS = dict(zip(("console", "host", "forms"), sys.argv[2:5]))
    SAMPLE = sys.argv[5]
    unittest.main(argv=sys.argv[:1], verbosity=2)
