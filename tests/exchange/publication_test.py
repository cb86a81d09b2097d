#!/usr/bin/env python3
"""Compares published documents byte by byte with a second implementation.

The number of random plans can be set by VELMORA_PUBLICATION_PLANS, as "last" or "first:last".
Usage: publication_test.py HOST SAMPLE SCHOOL
"""

import json
import os
import re
import subprocess
import sys
import tempfile
import unittest
from datetime import datetime

from publication_plan import BASE
from publication_plans import SmallPlan
from publication_reference import Publication, text_of

HOST = SAMPLE = SCHOOL = ""
PLANS = os.environ.get("VELMORA_PUBLICATION_PLANS", "40")
ALL_PARTS = ["xmlLessons", "xmlChanges", "xmlAbsences"]
AUDIENCES = [
    {"form": "undated"}, {"form": "undated", "studentNames": True, "filtering": False}, {"xmlTypes": ["xmlLessons"]},
    {"xmlTypes": ["xmlChanges"], "profiles": [{"policy": 10}]}, {"profiles": [{"policy": 4, "kind": "class",
                                                                      "code": "5a"}]},
    {"xmlTypes": ALL_PARTS, "studentNames": True, "teacherNamesPolicy": 2, "profiles": [{"policy": 9}]},
    {"xmlTypes": ALL_PARTS, "offeneFehlzeiten": False}, {"xmlTypes": ALL_PARTS, "auswahl": ["Spr"],
                                                         "substitutionsOnly": True},
]


def now():
    return round((datetime.now() - BASE).total_seconds() * 1000)


def difference(wanted, found, path=""):
    """Where two documents differ first, with both values."""
    if isinstance(wanted, dict) and isinstance(found, dict):
        for name in [*wanted, *found]:
            if wanted.get(name) != found.get(name):
                return difference(wanted.get(name), found.get(name), f"{path}.{name}")
        return f"{path}: order {list(wanted)} != {list(found)}"
    if isinstance(wanted, list) and isinstance(found, list):
        for n, (one, other) in enumerate(zip(wanted, found)):
            if one != other:
                return difference(one, other, f"{path}[{n}]")
        return f"{path}: {len(wanted)} != {len(found)} items"
    return f"{path}: reference {wanted!r} != program {found!r}"


def publish(folder, file_name, settings):
    target, config = os.path.join(folder, "out.json"), os.path.join(folder, "cfg.json")
    with open(config, "w", encoding="utf-8") as file:
        json.dump({"Velmora": {"jsonExport": {"sourceFileName": file_name, "targetFileName": target, **settings}}},
                  file)
    done = subprocess.run([HOST, "publish", config, "-minimal-display"], check=False, timeout=120, capture_output=True)
    if done.returncode:
        raise AssertionError(done.stdout.decode() + done.stderr.decode())
    with open(target, "rb") as file:
        return file.read()


def without_moments(content):
    """The document without what is another one in each run, whose form is right."""
    for name, form in (("serverVersion", rb"Version \d+\.\d+\.\d+\.\d+"), ("serverTimeStamp", rb"\d{8} \d{4}"),
                       ("scheduleID", rb"[0-9a-f]{8}(?:-[0-9a-f]{4}){3}-[0-9a-f]{12}")):
        content, count = re.subn(b'"%s":"%s"' % (name.encode(), form), b'"%s":"*"' % name.encode(), content, count=1)
        if count != 1:
            raise AssertionError(f"{name} has another form")
    return content


def compare(folder, file_name, settings):
    """Nothing if both documents are the same, else where they differ."""
    found = without_moments(publish(folder, file_name, settings))
    wanted = text_of(Publication(file_name, settings, now()).document())
    if found == wanted:
        return None
    documents = [json.loads(each.decode("utf-8-sig"), strict=False) for each in (wanted, found)]
    return difference(*documents)


class Publications(unittest.TestCase):
    def check(self, file_name, settings, folder=None, **where):
        with self.subTest(file=file_name, settings=settings, **where), tempfile.TemporaryDirectory() as temporary:
            self.assertIsNone(compare(folder or temporary, file_name, settings))

    def test_sample(self):
        for settings in AUDIENCES:
            self.check(SAMPLE, {"start": "2026-09-14", **settings})
        self.check(SAMPLE, {})

    def test_generated_school(self):
        with tempfile.TemporaryDirectory() as folder:
            file_name = os.path.join(folder, "school.velmora")
            subprocess.run([SCHOOL, "--small", "--seed", "3", file_name], check=True, timeout=120)
            for settings in AUDIENCES[::3]:
                self.check(file_name, {"start": "2026-11-09", **settings})

    def test_plans_at_random(self):
        """A plan whose documents differ stays in its place, to be looked at."""
        first, last = map(int, PLANS.split(":") if ":" in PLANS else ("0", PLANS))
        for seed in range(first, last):
            plan, folder = SmallPlan(seed), tempfile.mkdtemp(prefix=f"publication-{seed}-")
            file_name = os.path.join(folder, "plan.velmora")
            with open(file_name, "w", encoding="utf-8") as file:
                file.write(plan.text_of_file)
            jobs = plan.jobs(3)
            found = [compare(folder, file_name, job) for job in jobs]
            if any(found):
                text = [f"{json.dumps(job)}\n{each}" for job, each in zip(jobs, found) if each]
                with self.subTest(seed=seed, file=file_name):
                    self.fail("\n".join(text))
            else:
                for name in os.listdir(folder):
                    os.remove(os.path.join(folder, name))
                os.rmdir(folder)


if __name__ == "__main__":
    SCHOOL = os.path.abspath(sys.argv.pop())
    SAMPLE = os.path.abspath(sys.argv.pop())
    HOST = os.path.abspath(sys.argv.pop())
    unittest.main(verbosity=2)
