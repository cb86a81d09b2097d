"""Time and memory of the export beside those of usual tools on the same file, as a table in Markdown.

Usage: compare.py CONSOLE PARSE PLAN ROUNDS

The tools take turns, so that a busy moment of the machine meets all of them; the quickest round of each counts, and the
largest resident size of its process. The export waits until its files are safe on the disk; nobody else does.
"""

import os
import pathlib
import shutil
import sys
import tempfile

from measure import measure, size_text, time_text

CONSOLE, PARSE, PLAN = (os.path.abspath(path) for path in sys.argv[1:4])
SCRIPT = str(pathlib.Path(__file__).with_name("administrator.py"))


def tools(folder):
    out = os.path.join(folder, "out")
    return {
        "`velmora-console export`, all files": (CONSOLE, "export", "-s", "file", "-fn", PLAN, "-o", out),
        "bare parse with the XML library": (PARSE, PLAN),
        "`cp`": ("cp", PLAN, os.path.join(folder, "copy")),
        "`xmllint --noout`": ("xmllint", "--huge", "--noout", PLAN),
        "`xmllint --stream`": ("xmllint", "--huge", "--stream", "--noout", PLAN),
        "python3, ElementTree, three files": ("python3", SCRIPT, "etree", PLAN, out),
        "python3, lxml, three files": ("python3", SCRIPT, "lxml", PLAN, out),
    }


best = {}
for _ in range(int(sys.argv[4])):
    with tempfile.TemporaryDirectory() as folder:
        for name, command in tools(folder).items():
            seconds, memory = measure(command)
            least = best.get(name, (seconds, memory))
            best[name] = min(seconds, least[0]), min(memory, least[1])
            shutil.rmtree(os.path.join(folder, "out"), ignore_errors=True)

size = os.path.getsize(PLAN)
parse = best["bare parse with the XML library"][0]
print(f"| file of {size_text(size)} | time | to the bare parse | memory | to the file |\n|---|---|---|---|---|")
for name, (seconds, memory) in best.items():
    print(f"| {name} | {time_text(seconds)} | {seconds / parse:.2f} | {size_text(memory)} | {memory / size:.2f} |")
