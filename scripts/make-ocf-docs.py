#!/usr/bin/env python3
"""Rewrites the example rows of docs/ocf-set.md from an export of the sample, or checks that they are true.

Usage: make-ocf-docs.py [--check] PROGRAM
An example stands between "<!-- example: FILE... -->" and "<!-- end -->"; the table of columns above it is checked
against the header of the file.
"""

import csv
import os
import re
import subprocess
import sys
import tempfile

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
PAGE = os.path.join(ROOT, "docs", "ocf-set.md")
SAMPLE = os.path.join(ROOT, "samples", "schule.velmora")
EXAMPLE = re.compile(r"(<!-- example: ([^>]*?) -->\n).*?(<!-- end -->)", re.DOTALL)
COLUMN = re.compile(r"^\| `(\w+)` \|", re.MULTILINE)
WITHOUT_HEADER = "_Manifest.csv"


def export(program, folder):
    subprocess.run([program, "export", "-s", "file", "-fn", SAMPLE, "-o", folder], check=True,
                   env={**os.environ, "TZ": "Europe/Berlin"}, stdout=subprocess.DEVNULL)


def rows_of(path):
    with open(path, encoding="utf-8-sig", newline="") as file:
        return list(csv.reader(file, delimiter=";", strict=True))


def text_of(row):
    """The row as it stands in the file."""
    return ";".join('"%s"' % cell.replace('"', '""') if re.search('[";\r\n]', cell) else cell for cell in row)


def example(folder, name):
    """The row that shows most: the fullest, and of these the shortest."""
    rows = rows_of(os.path.join(folder, name))
    if name == WITHOUT_HEADER:
        return "\n".join(map(text_of, rows))
    return text_of(min(rows[1:], key=lambda row: (row.count(""), len(text_of(row)))))


def block(folder, names):
    texts = [(name + "\n" if len(names) > 1 else "") + example(folder, name) for name in names]
    return "```text\n" + "\n".join(texts).replace("\r\n", "\n") + "\n```\n"


def check_columns(page, folder):
    """Raises when a table of columns and the header of its files differ, or a file has no example."""
    files, start = set(), 0
    for found in EXAMPLE.finditer(page):
        columns = COLUMN.findall(page, start, found.start())
        start = found.end()
        for name in found[2].split():
            files.add(name)
            header = rows_of(os.path.join(folder, name))[0]
            if name != WITHOUT_HEADER and columns != header:
                raise SystemExit(f"{PAGE}: the columns of {name} are {header}, not {columns}")
    if files != set(os.listdir(folder)):
        raise SystemExit(f"{PAGE}: without an example: {sorted(set(os.listdir(folder)) - files)}")


def main(program, *options):
    with open(PAGE, encoding="utf-8") as file:
        page = file.read()
    with tempfile.TemporaryDirectory() as folder:
        export(program, folder)
        check_columns(page, folder)
        wanted = EXAMPLE.sub(lambda found: found[1] + block(folder, found[2].split()) + found[3], page)
    if "--check" in options:
        if wanted != page:
            raise SystemExit(f"{PAGE} is out of date: run {os.path.relpath(__file__, ROOT)} PROGRAM")
    elif wanted != page:
        with open(PAGE, "w", encoding="utf-8") as file:
            file.write(wanted)


if __name__ == "__main__":
    arguments = [argument for argument in sys.argv[1:] if argument != "--check"]
    if len(arguments) != 1:
        raise SystemExit(__doc__)
    main(os.path.abspath(arguments[0]), *(set(sys.argv[1:]) & {"--check"}))
