#!/usr/bin/env python3
"""Runs the host program as a user would: publishes a plan, for several readers and with wrong settings.

Usage: host_test.py PROGRAM PLAN
"""

import json
import os
import subprocess
import sys
import tempfile
import unittest

PROGRAM = PLAN = ""
PROGRESS = ["Open VELMORA file...", "Start Publication...", "Publication finished."]


class Host(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.target = os.path.join(folder.name, "out.json")
        self.config = os.path.join(folder.name, "cfg.json")

    def run_job(self, job="publish", program=None, **settings):
        settings = {"sourceFileName": PLAN, "targetFileName": self.target, **settings}
        with open(self.config, "w", encoding="utf-8") as file:
            json.dump({"Velmora": {"jsonExport": settings}}, file)
        done = subprocess.run([program or PROGRAM, job, self.config, "-minimal-display"], timeout=60, check=False,
                              capture_output=True, stdin=subprocess.DEVNULL)
        self.assertEqual(done.stderr, b"")
        return done.stdout.decode("utf-8").split("\n")[:-1], done.returncode

    def published(self, **settings):
        self.assertEqual(self.run_job(**settings), (PROGRESS, 0))
        with open(self.target, "rb") as file:
            content = file.read()
        self.assertTrue(content.startswith(b"\xef\xbb\xbf{") and content.endswith(b"}\r\n"))
        self.assertEqual(content.count(b"\n"), 1)
        return json.loads(content.decode("utf-8-sig"))["result"]

    def test_forms_and_readers(self):
        whole = self.published(form="undated", studentNames=True)
        lessons = whole["displaySchedule"]["lessonTimes"]
        self.assertTrue(all("weekday" in lesson and "dates" not in lesson for lesson in lessons))
        self.assertIn("students", whole)
        dated = self.published(start="2026-09-14", finish="2026-10-02T12:00:00Z")["displaySchedule"]
        self.assertEqual(dated["effectivity"], {"startDate": "20260831", "endDate": "20261002"})
        self.assertTrue(all("20260831" <= date <= "20261002" for lesson in dated["lessonTimes"]
                            for date in lesson["dates"] if "changes" not in lesson))
        own = self.published(start="2026-09-14", profiles=[{"policy": 4, "kind": "class", "code": "5a"}])
        self.assertEqual({code for lesson in own["displaySchedule"]["lessonTimes"] if "changes" not in lesson
                          for code in lesson["classCodes"]} & {"5b", "6a", "7a"}, set())
        self.assertTrue(all(set(teacher) <= {"id", "code", "teamRefs", "color"} for teacher in own["teachers"]))
        by_id = self.published(start="2026-09-14", noTeacher=True, planobjekt={"id": own["classes"][0]["id"].upper()})
        self.assertIn(own["classes"][0], by_id["classes"])
        events = self.published(kategorie="FEI")["displaySchedule"]["eventTimes"]
        self.assertEqual({event["eventCategory"] for event in events}, {"FEI"})

    def test_wrong_settings_leave_the_file_alone(self):
        with open(self.target, "w", encoding="utf-8") as file:
            file.write("old")
        for key, value, wanted in [
                ("targetFileName", "", "the name of the file to write"),
                ("targetFileName", PLAN, "another file than the data file and that of the settings"),
                ("targetFileName", self.config, "another file than the data file and that of the settings"),
                ("form", "both", "one of dated, undated"),
                ("start", "3.8.2026", 'a date such as "2026-08-03"'),
                ("finish", "2026-02-30", 'a date such as "2026-08-03"'),
                ("xmlTypes[1]", ["xmlLessons", "x"],
                 "one of xmlIndex, xmlLessons, xmlChanges, xmlCalEvents, xmlAbsences"),
                ("dataTypes", "dtAlle", "a list"),
                ("profiles[0].policy", [{"policy": 2.5}], "a whole number from -2147483648 to 2147483647"),
                ("auswahl[0]", ["?"], "the code or identifier of a team in the data file"),
                ("kategorie", "?", "the code or identifier of a category of events in the data file"),
                ("profiles[0]", [{"policy": 4, "kind": "class"}],
                 'the "id", or "kind" and "code", of an object of the data file'),
                ("planobjekt", {"code": "5a"},
                 'the "id", or "kind" and "code", of an object of the data file')]:
            lines, code = self.run_job(**{key.split("[")[0]: value})
            self.assertEqual(lines[-1], f'[Error] Key "jsonExport.{key}" in file "{self.config}" must be {wanted}.')
            self.assertEqual(code, 1)
        with open(self.target, encoding="utf-8") as file:
            self.assertEqual(file.read(), "old")

    def test_names_and_usage(self):
        old_name = os.path.join(os.path.dirname(PROGRAM), "velmora-ocf-host")
        self.assertEqual(self.run_job(program=old_name), (PROGRESS, 0))
        usage = "[Error] Usage: velmora-host export|import|publish CONFIG.json [-minimal-display]"
        self.assertEqual(self.run_job("show"), (["", usage], 1))


if __name__ == "__main__":
    PROGRAM, PLAN = sys.argv[1:3]
    unittest.main(argv=sys.argv[:1])
