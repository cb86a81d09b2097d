"""Reads and writes the XML form of a plan, into and from the same trees as the binary form."""

import base64
import datetime
import math
import struct
import uuid
import xml.etree.ElementTree as ElementTree

import plan_classes
from binary_form import FormError, marks, shortest_single
from plan_classes import CURRENT_RELEASE, LIST_ROWS, PLAN, release_number
from plan_tree import DAYS, DataList, DataObject, Reference

INTEGERS = ("Byte", "ShortInt", "Word", "SmallInt", "LongInt", "Int64")
FIRST_DAY = datetime.date(1899, 12, 30).toordinal()
DAY = 86400000
# What a new object has, for rows that keep their present value when they are absent.
KEPT = {"WeekPrefix": "[KW %s]", "DataObjectID": bytes(16)}


def days_of(text):
    """The day count of a moment or a date, cut at fixed places."""
    year, month, day = int(text[:4]), 1, 1
    if len(text) >= 5:
        month = int(text[5:7])
    if len(text) >= 8:
        day = int(text[8:10])
    milliseconds = time_of(text[11:]) if len(text) > 11 else 0
    if not (year or month or day or milliseconds):
        return 0.0
    whole = datetime.date(year, month, day).toordinal() - FIRST_DAY
    return whole + milliseconds / DAY if whole >= 0 else whole - milliseconds / DAY


def time_of(text):
    result = int(text[:2]) * 3600000 + int(text[3:5]) * 60000
    if len(text) >= 8:
        result += int(text[6:8]) * 1000
    if len(text) >= 10 and text[8] == ".":
        digits = text[9:]
        for stop in "Z+-":
            digits = digits.split(stop)[0]
        result += int(digits)
    return result


def day_text(kind, value):
    """The text of a day count, rounded to the millisecond."""
    whole = math.trunc(value)
    milliseconds = round(abs(value - whole) * DAY)
    if milliseconds == DAY:
        whole, milliseconds = whole + (1 if value >= 0 else -1), 0
    seconds, rest = divmod(milliseconds, 1000)
    clock = f"{seconds // 3600:02}:{seconds // 60 % 60:02}:{seconds % 60:02}.{rest:03}Z"
    if kind == "Time":
        return clock
    date = datetime.date.fromordinal(FIRST_DAY + whole)
    text = f"{date.year:04}-{date.month:02}-{date.day:02}"
    return text if kind == "Date" else f"{text}T{clock}"


def items_of(text):
    """The strings of a delimited text: parted by commas or blanks, quotes doubled inside quotes."""
    items, index = [], 0
    while index < len(text):
        while index < len(text) and text[index] <= " ":
            index += 1
        item = ""
        if text[index:index + 1] == '"':
            index += 1
            while index < len(text):
                if text[index] != '"':
                    item += text[index]
                    index += 1
                elif text[index + 1:index + 2] == '"':
                    item += '"'
                    index += 2
                else:
                    break
            index += 1
        else:
            while index < len(text) and text[index] > " " and text[index] != ",":
                item += text[index]
                index += 1
        items.append(item)
        while index < len(text) and text[index] <= " ":
            index += 1
        if text[index:index + 1] == ",":
            index += 1
            if not text[index:].strip():
                items.append("")
    return items


def text_of_items(items):
    if items == [""]:
        return '""'
    return ",".join('"' + item.replace('"', '""') + '"' if any(char <= " " or char in ',"' for char in item) else item
                    for item in items)


def identity_of(text):
    return uuid.UUID(text).bytes_le


def identity_text(identity):
    return "{" + str(uuid.UUID(bytes_le=identity)).upper() + "}"


class XmlReader:
    def __init__(self, data):
        self.root = ElementTree.fromstring(data)
        self.release = release_number("")

    def plan(self):
        return DataObject(PLAN, None, self.values(PLAN, self.root))

    def values(self, plan_class, element):
        children = {}
        for child in element:
            children.setdefault(child.tag, child)
        values = {}
        for row in plan_class.rows:
            if row.is_in(self.release):
                values[row.key] = self.value(row, children, row.name)
            if plan_class is PLAN and row.key == "DataformatRelease":
                text = values[row.key]
                self.release = release_number(CURRENT_RELEASE if text == "7.0.163" else text)
        return values

    def value(self, row, children, name):
        element = children.get(name)
        if row.kind == "list":
            return self.list(row, element, children)
        if row.kind in ("object", "reference"):
            return self.item(row, element, row.kind == "object")
        if element is None and name in KEPT:
            return KEPT[name]
        if element is None and row.required:
            raise FormError(f"{name} is missing")
        return value_of(row, row.default if element is None else "".join(element.itertext()), element is None)

    def item(self, row, element, whole):
        if element is None:
            return None
        plan_class = plan_classes.class_for(element.attrib["Class"], row.target)
        if plan_class is None:
            raise FormError(f"{element.attrib['Class']} is no class")
        identity = identity_of(element.attrib["ID"])
        return DataObject(plan_class, identity, self.values(plan_class, element)) if whole else \
            Reference(plan_class.tag, identity)

    def list(self, row, element, children):
        """A list takes the stamps that stand beside it; an empty one is not there."""
        if element is None:
            return DataList(None, None, [])
        stamps = [self.value(stamp, children, stamp.name) for stamp in LIST_ROWS]
        items = [self.item(row, child, row.owns) for child in element.find("Items") if child.tag == "Item"]
        return DataList(None, stamps, items)


def value_of(row, text, absent):
    kind = row.kind
    if kind == "Boolean":
        return text == "true" if absent else text != "0"
    if kind in INTEGERS:
        return int(text or 0)
    if kind == "Single":
        return shortest_single(struct.unpack("<f", struct.pack("<f", float(text or 0)))[0])
    if kind == "Double":
        return float(text or 0)
    if kind in DAYS:
        return 0.0 if absent else time_of(text) / DAY if kind == "Time" else days_of(text)
    if kind == "Marks":
        return marks(text, int(row.target))
    if kind == "Guid":
        return identity_of(text)
    if kind == "Graphic":
        return base64.b64decode(text)
    if kind == "IntegerArray":
        return [int(part) for part in text.split(";")] if text else []
    return items_of(text) if kind == "StringArray" else text


def _text(row, value):
    kind = row.kind
    if kind == "Boolean":
        return "1" if value else "0"
    if kind in ("Single", "Double"):
        return f"{value:.15g}"
    if kind in DAYS:
        return day_text(kind, value)
    if kind == "Guid":
        return identity_text(value)
    if kind == "Graphic":
        return base64.b64encode(value).decode("ascii")
    if kind == "IntegerArray":
        return ";".join(str(part) for part in value)
    return text_of_items(value) if kind == "StringArray" else str(value)


def write_plan(tree):
    """The document of a plan in the form of its release; rows that equal their defaults are left out."""
    root = ElementTree.Element("Storage")
    _write_values(root, tree, release_number(tree.values["DataformatRelease"]))
    return ElementTree.tostring(root, encoding="utf-8", xml_declaration=True).replace(b"\r", b"&#13;")


def _write_values(parent, item, release):
    for row in item.plan_class.rows:
        if row.is_in(release):
            _write_value(parent, row, item.values[row.key], release)


def _write_value(parent, row, value, release):
    if row.kind == "list":
        if value.items:
            element = ElementTree.SubElement(parent, row.name)
            items = ElementTree.SubElement(element, "Items")
            for item in value.items:
                _write_item(items, "Item", item, release)
    elif row.kind in ("object", "reference"):
        if value is not None:
            _write_item(parent, row.name, value, release)
    elif row.kind == "Graphic":
        if value:
            ElementTree.SubElement(parent, row.name, Size=str(len(value))).text = _text(row, value)
    elif row.required or row.always or row.name in KEPT or value != value_of(row, row.default, True):
        ElementTree.SubElement(parent, row.name).text = _text(row, value)


def _write_item(parent, name, item, release):
    tag = item.plan_class.tag if isinstance(item, DataObject) else item.tag
    element = ElementTree.SubElement(parent, name, {"Class": tag, "ID": identity_text(item.id)})
    if isinstance(item, DataObject):
        _write_values(element, item, release)


def read_plan(data):
    return XmlReader(data).plan()
