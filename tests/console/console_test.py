#!/usr/bin/env python3
"""Runs the real program as a user would: its lines, its exit code, and outputs that cannot be written.

Usage: console_test.py PROGRAM
"""

import fcntl
import os
import re
import resource
import shutil
import subprocess
import sys
import tempfile
import time
import unittest

PROGRAM = ""
ELAPSED = re.compile(r"Time elapsed: \d\d:\d\d:\d\d(\.\d{7})?\.")


def run(*arguments, **options):
    options.setdefault("stdout", subprocess.PIPE)
    options.setdefault("stdin", subprocess.DEVNULL)
    return subprocess.run([PROGRAM, *arguments], timeout=60, stderr=subprocess.PIPE, check=False, **options)


class Console(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name

    def lines_of_run(self, *arguments):
        """The lines between banner and time report, and the exit code."""
        done = run(*arguments, cwd=self.folder)
        self.assertEqual(done.stderr, b"")
        self.assertTrue(done.stdout.endswith(b"\n"))
        lines = done.stdout.decode("utf-8").split("\n")[:-1]
        self.assertEqual(lines[:2], ["VELMORA 6 CONSOLE", ""])
        self.assertEqual((lines[-3], lines[-1]), ("", ""))
        self.assertRegex(lines[-2], ELAPSED)
        return lines[2:-3], done.returncode

    def assert_fails(self, *arguments):
        """The run ends in one error line, whatever progress it told before."""
        lines, code = self.lines_of_run(*arguments)
        self.assertEqual(code, 1)
        self.assertEqual([line[:8] for line in lines].count("[Error] "), 1)
        self.assertEqual(lines[-2], "")
        self.assertRegex(lines[-1], r"^\[Error\] .+")

    def test_calls_without_a_job(self):
        self.assertEqual(self.lines_of_run("export", "-s", "ftp"), ([], 0))
        self.assertEqual(self.lines_of_run("export", "-c", "x", b"-p:\xff\xc3\xbc"),
                         (["", "[Error] Provider \ufffdü not suppported"], 1))
        self.assertEqual(os.listdir(self.folder), [])

    def test_jobs_that_cannot_be_done(self):
        missing = os.path.join(self.folder, "missing.velmora")
        self.assert_fails("export", "-c")
        self.assert_fails("export", "-c", "missing.json")
        self.assert_fails("export", "-c", "missing.json", "-p", "OCF")
        self.assert_fails("export", "/c:missing.json", "/p:SDUI")
        self.assert_fails("export", "-c", "missing.json", "-p", "iserv")
        self.assert_fails("export", "-s", "file", "-fn", missing, "-o", "out")
        self.assert_fails("import", "-c", "missing.json")
        self.assert_fails("newguids", "-f", missing)
        self.assertFalse(os.path.exists(missing))

    def test_minimal_display(self):
        self.assertEqual(run("export", "-s", "ftp", "/MINIMAL-display").stdout, b"")
        done = run("-minimal-display")
        self.assertEqual(done.stdout, b"\n[Error] Command import, export or newguids is missing\n")
        self.assertEqual(done.returncode, 1)

    def test_output_that_cannot_be_written(self):
        calls = [["export", "-s", "ftp"], [], ["newguids", "-minimal-display"]]
        for arguments in calls:
            for redirection in (">&-", ">/dev/full", "<&- >&- 2>&-"):
                with self.subTest(arguments=arguments, redirection=redirection):
                    shell = ["sh", "-c", f'exec "$0" "$@" {redirection}', PROGRAM, *arguments]
                    self.assertEqual(subprocess.run(shell, timeout=60, check=False).returncode, 1)
            with self.subTest(arguments=arguments, output="pipe that nobody reads"):
                reader, writer = os.pipe()
                os.close(reader)
                self.assertEqual(run(*arguments, stdout=writer).returncode, 1)
                os.close(writer)
            with self.subTest(arguments=arguments, output="file at the size limit"):
                with open(os.path.join(self.folder, "log"), "wb") as log:
                    limit = (8, resource.RLIM_INFINITY)
                    done = run(*arguments, stdout=log, preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, limit))
                self.assertEqual(done.returncode, 1)

    def test_output_that_takes_its_time(self):
        reader, writer = os.pipe()
        fcntl.fcntl(writer, fcntl.F_SETFL, os.O_NONBLOCK)
        filling = 0
        try:
            while True:
                filling += os.write(writer, b"x" * 4096)
        except BlockingIOError:
            pass
        with subprocess.Popen([PROGRAM, "export", "-s", "ftp"], stdout=writer) as process:
            os.close(writer)
            time.sleep(0.2)
            with os.fdopen(reader, "rb") as output:
                lines = output.read()[filling:].split(b"\n")
            self.assertEqual(process.wait(60), 0)
        self.assertEqual(lines[0], b"VELMORA 6 CONSOLE")
        self.assertEqual(len(lines), 6)

    def test_a_log_that_cannot_be_written_ends_no_job(self):
        program = os.path.join(self.folder, "console")
        shutil.copy(PROGRAM, program)
        for text in ("<Preferences>", '<Preferences><Logs><TextLog><FileName Value="/no/such/folder/x.log"/></TextLog>'
                     '<CSVLog><FileName Value="/no/such/folder/x.csv"/></CSVLog></Logs></Preferences>'):
            with open(program + ".log.config", "w", encoding="utf-8") as config:
                config.write(text)
            done = subprocess.run([program, "export", "-s", "ftp"], capture_output=True, timeout=60, check=False)
            self.assertEqual(done.returncode, 0)
            self.assertRegex(done.stderr.decode("utf-8"), r"\ALog: [^\n]+\n\Z")


if __name__ == "__main__":
    PROGRAM = os.path.abspath(sys.argv.pop())
    unittest.main(verbosity=2)
