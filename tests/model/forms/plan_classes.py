"""The persisted classes of a plan: a plain table, read once.

A line "class NAME BASE TAG" opens a class ("-" stands for no base, or for a class that is never written itself).
Its rows follow in the order of the stream: name, kind, and what holds beyond that: default=..., required, always
(written even while it equals the default), since=RELEASE and until=RELEASE (the row belongs to files of this release
on, or to files below it).
"""

import pathlib

CURRENT_RELEASE = "6.0.172"
TABLE = pathlib.Path(__file__).with_name("plan_classes.txt")


class Row:
    """One persisted value: `key` is its name, with "#2" behind it where a class has the name a second time."""

    def __init__(self, name, kind, marks):
        self.name = self.key = name
        self.kind, *parts = kind.split(":")
        self.target = parts[0] if parts else ""
        self.owns = parts[1:] == ["own"]
        options = dict(mark.split("=", 1) for mark in marks if "=" in mark)
        self.default = options.get("default", "")
        self.required = "required" in marks
        self.always = "always" in marks
        self.since = release_number(options["since"]) if "since" in options else None
        self.until = release_number(options["until"]) if "until" in options else None

    def is_in(self, release):
        """Whether files of the release (a tuple of numbers) hold the row."""
        return (self.since is None or release >= self.since) and (self.until is None or release < self.until)


class PlanClass:
    def __init__(self, name, base, tag):
        self.name, self.base, self.tag = name, base, tag
        self.own_rows = []
        self.rows = []

    def descends_from(self, name):
        return self.name == name or (self.base is not None and self.base.descends_from(name))


def release_number(text):
    """A dotted release as four numbers; what is missing or no number counts 0."""
    parts = [int(part) if part.isdigit() else 0 for part in text.split(".")]
    return tuple((parts + [0, 0, 0, 0])[:4])


def _read_table():
    classes = {}
    for line in TABLE.read_text(encoding="utf-8").splitlines():
        words = line.split()
        if words[:1] == ["class"]:
            current = PlanClass(words[1], classes.get(words[2]), "" if words[3] == "-" else words[3])
            classes[current.name] = current
        elif words:
            current.own_rows.append(Row(words[0], words[1], words[2:]))
    for item in classes.values():
        item.rows = list(item.base.rows) if item.base else []
        for row in item.own_rows:
            if any(other.name == row.name and not _take_turns(other, row) for other in item.rows):
                row.key = row.name + "#2"
            item.rows.append(row)
    return classes


def _take_turns(one, other):
    """An old row and its successor of the same name: no file has both."""
    return one.until is not None and one.until == other.since


CLASSES = _read_table()
PLAN = CLASSES["TVELPlan"]
LIST_ROWS = CLASSES["TQuillonDataList"].rows
BY_TAG = {}
for _item in CLASSES.values():
    if _item.tag:
        BY_TAG.setdefault(_item.tag, _item)


def class_for(tag, expected=""):
    """The class of a tag; of two with the same tag the one that descends from the expected class."""
    wanted = CLASSES.get(expected)
    if wanted is not None and wanted.tag == tag:
        return wanted
    return BY_TAG.get(tag)


def concrete_classes(name):
    """The classes that an item or a target of the class may have."""
    return [item for item in CLASSES.values() if item.tag and item.descends_from(name)]
