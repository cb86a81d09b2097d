"""Runs the program under test in a folder of its own."""

import os
import subprocess
import tempfile
import unittest

from plan_tree import all_lists, differences

XML_TOLERANCE = 1e-9
# Tells the program that wrote the file.
WRITTEN = (("TVELPlan", "ProductRelease"),)


class Settings:
    """From the command line."""

    tool = ""
    sample = b""
    seeds = range(0, 6)


class Folder(unittest.TestCase):
    maxDiff = 2000

    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)

    def path(self, name):
        return os.path.join(self.folder.name, name)

    def put(self, name, data):
        with open(self.path(name), "wb") as file:
            file.write(data)

    def get(self, name):
        with open(self.path(name), "rb") as file:
            return file.read()

    def run_tool(self, *arguments):
        """Exit code and standard output."""
        words = [arguments[0]] + [word if word.isdigit() else self.path(word) for word in arguments[1:]]
        done = subprocess.run([Settings.tool] + words, capture_output=True, timeout=60)
        self.assertEqual(done.stderr.decode("utf-8", "replace")[-2000:], "")
        self.assertIn(done.returncode, (0, 1, 3))
        return done.returncode, done.stdout.decode("utf-8", "replace")

    def convert(self, data, source, target):
        self.put("in." + source, data)
        code, text = self.run_tool("convert", "in." + source, "out." + target)
        self.assertEqual(code, 0, text)
        return self.get("out." + target)

    def assert_same(self, expected, actual, tolerance=0.0, ignore=WRITTEN, message=""):
        found = differences(expected, actual, tolerance, ignore)
        self.assertEqual(found[:8], [], f"{message}: {len(found)} differences")


def without_lists(tree):
    """The tree as the text form tells it: no identity and no stamps of lists."""
    for entry, _, _ in all_lists(tree):
        entry.id = entry.stamps = None
    return tree
