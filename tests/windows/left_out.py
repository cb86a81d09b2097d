"""Tells what a run of the tests under Wine has left out, by name with the reason, and how much it was.

Usage: left_out.py CTEST-LOG TESTS-FOLDER
"""

import pathlib
import re
import sys

log = pathlib.Path(sys.argv[1]).read_text(encoding="utf-8", errors="replace")
found = dict(re.findall(r"LEFT OUT (\S+): (.+)", log))
run = re.findall(r"\[       OK \] (\S+)", log)
for reason, name in re.findall(r": Skipped\r?\n(.*)\r?\n(?:.*\n)*?\[  SKIPPED \] (\S+)", log):
    if name not in run:
        found[name] = reason.strip()
for source in sorted(pathlib.Path(sys.argv[2]).glob("*/posix/*.cpp")):
    for suite, name in re.findall(r"^TEST(?:_F)?\((\w+),\s*(\w+)\)", source.read_text(encoding="utf-8"), re.MULTILINE):
        found[f"{suite}.{name}"] = "permissions, links, pipes, signals or zones as POSIX systems have them"

for name, reason in sorted(found.items()):
    print(f"left out: {name}: {reason}")
print(f"left out: {len(found)} tests")
