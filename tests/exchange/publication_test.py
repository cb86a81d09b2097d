#!/usr/bin/env python3
"""Compares published documents byte by byte with a second implementation.

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
from publication_reference import Publication, text_of

HOST = SAMPLE = SCHOOL = ""


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
        json.dump({"Velmora": {"jsonExport": {"sourceFileName": file_name, "targetFileName": target, **settings}}}, file)
    done = subprocess.run([HOST, "publish", config, "-minimal-display"], check=False, timeout=120, capture_output=True)
    assert done.returncode == 0, done.stdout.decode() + done.stderr.decode()
    with open(target, "rb") as file:
        return file.read()


def without_moments(content):
    for name, form in (("serverVersion", rb"Version \d+\.\d+\.\d+\.\d+"), ("serverTimeStamp", rb"\d{8} \d{4}"),
                       ("scheduleID", rb"[0-9a-f]{8}(?:-[0-9a-f]{4}){3}-[0-9a-f]{12}")):
        content, count = re.subn(b'"%s":"%s"' % (name.encode(), form), b'"%s":"*"' % name.encode(), content, count=1)
        assert count == 1, name
    return content


def compare(folder, file_name, settings):
    """Nothing if both documents are the same, else where they differ."""
    found = without_moments(publish(folder, file_name, settings))
    wanted = text_of(Publication(file_name, settings, now()).document())
    if found == wanted:
        return None
    documents = [json.loads(each.decode("utf-8-sig"), strict=False) for each in (wanted, found)]
    return difference(*documents)


if __name__ == "__main__":
    HOST, SAMPLE, SCHOOL = sys.argv[1:]
    with tempfile.TemporaryDirectory() as folder:
        for settings in ({"form": "undated"}, {"form": "undated", "studentNames": True}, {"start": "2026-09-14"}, {}):
            print(settings, compare(folder, SAMPLE, settings))
