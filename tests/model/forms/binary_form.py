"""Reads and writes the binary form of a plan: the values of each class's rows in their order and nothing between."""

import struct
import zlib

import plan_classes
from plan_classes import CURRENT_RELEASE, LIST_ROWS, PLAN, release_number
from plan_tree import DataList, DataObject, Reference

NUMBERS = {"Boolean": "<?", "Byte": "<B", "ShortInt": "<b", "Word": "<H", "SmallInt": "<h", "LongInt": "<i",
           "LongWord": "<I", "Int64": "<q", "Double": "<d", "DateTime": "<d", "Date": "<d", "Time": "<d"}
STAMPS = plan_classes.CLASSES["TQuillonDataAbstractObject"].rows


class FormError(Exception):
    pass


def shortest_single(value):
    """The shortest decimal that a binary32 stands for."""
    for digits in range(1, 10):
        text = f"{value:.{digits}g}"
        try:
            if struct.pack("<f", float(text)) == struct.pack("<f", value):
                return float(text)
        except OverflowError:
            continue
    return value


def marks(text, count):
    """A set of numbers as its text of marks; another length is the empty set."""
    return "".join("1" if char == "1" else "0" for char in text) if len(text) == count else "0" * count


class BinaryReader:
    def __init__(self, data, recursive=True, release=CURRENT_RELEASE):
        self.data, self.position = data, 0
        self.recursive, self.release = recursive, release_number(release)

    def take(self, count):
        if count < 0 or self.position + count > len(self.data):
            raise FormError(f"{count} bytes wanted at {self.position} of {len(self.data)}")
        self.position += count
        return self.data[self.position - count:self.position]

    def number(self, code):
        return struct.unpack(code, self.take(struct.calcsize(code)))[0]

    def boolean(self):
        return self.take(1) != b"\0"

    def string(self):
        length = self.number("<i")
        return self.take(2 * length if length >= 0 else -1).decode("utf-16-le", "surrogatepass")

    def value(self, row):
        kind = row.kind
        if kind == "Boolean":
            return self.boolean()
        if kind in NUMBERS:
            return self.number(NUMBERS[kind])
        if kind == "Single":
            return shortest_single(self.number("<f"))
        if kind == "String":
            return self.string()
        if kind == "Marks":
            return marks(self.string(), int(row.target))
        if kind == "Guid":
            return self.take(16)
        if kind == "Graphic":
            return self.take(self.number("<i"))
        if kind == "IntegerArray":
            return [self.number("<i") for _ in range(self.number("<i"))]
        if kind == "StringArray":
            return [self.string() for _ in range(self.number("<i"))]
        if kind == "list":
            return self.list(row)
        return self.object(row.target) if kind == "object" else self.reference(row.target)

    def identified(self, expected):
        tag = self.string()
        if not tag:
            raise FormError("Kein Klassenname gefunden.")
        plan_class = plan_classes.class_for(tag, expected)
        if plan_class is None:
            raise FormError(f'Klasse "{tag}" wurde nicht registriert.')
        return plan_class, self.take(16)

    def object(self, expected):
        if not self.boolean():
            return None
        plan_class, identity = self.identified(expected)
        return DataObject(plan_class, identity, self.values(plan_class))

    def reference(self, expected):
        if not self.boolean():
            return None
        plan_class, identity = self.identified(expected)
        return Reference(plan_class.tag, identity)

    def list(self, row):
        identity = self.take(16)
        if not self.recursive:
            return DataList(identity, None, None)
        stamps = [self.value(stamp) for stamp in LIST_ROWS]
        read = self.object if row.owns else self.reference
        return DataList(identity, stamps, [read(row.target) for _ in range(self.number("<i"))])

    def values(self, plan_class):
        values = {}
        for row in plan_class.rows:
            if row.is_in(self.release):
                values[row.key] = self.value(row)
            if plan_class is PLAN and row.key == "DataformatRelease":
                text = values[row.key]
                self.release = release_number(CURRENT_RELEASE if text == "7.0.163" else text)
        return values

    def plan(self):
        """The storage itself has neither tag nor identity in the stream."""
        return DataObject(PLAN, None, self.values(PLAN))


class BinaryWriter:
    def __init__(self, recursive=True, release=CURRENT_RELEASE):
        self.pieces = []
        self.recursive, self.release = recursive, release_number(release)

    def number(self, code, value):
        self.pieces.append(struct.pack(code, value))

    def string(self, text):
        data = text.encode("utf-16-le", "surrogatepass")
        self.number("<i", len(data) // 2)
        self.pieces.append(data)

    def value(self, row, value):
        kind = row.kind
        if kind in NUMBERS:
            self.number(NUMBERS[kind], value)
        elif kind == "Single":
            self.number("<f", value)
        elif kind in ("String", "Marks"):
            self.string(value)
        elif kind == "Guid":
            self.pieces.append(value)
        elif kind == "Graphic":
            self.number("<i", len(value))
            self.pieces.append(value)
        elif kind == "IntegerArray":
            self.number("<i", len(value))
            self.pieces.append(struct.pack(f"<{len(value)}i", *value))
        elif kind == "StringArray":
            self.number("<i", len(value))
            for text in value:
                self.string(text)
        elif kind == "list":
            self.list(value)
        else:
            self.item(value)

    def item(self, value):
        self.pieces.append(b"\0" if value is None else b"\1")
        if isinstance(value, DataObject):
            self.string(value.plan_class.tag)
            self.pieces.append(value.id)
            self.values(value)
        elif value is not None:
            self.string(value.tag)
            self.pieces.append(value.id)

    def list(self, value):
        self.pieces.append(value.id)
        if self.recursive:
            for row, stamp in zip(LIST_ROWS, value.stamps):
                self.value(row, stamp)
            self.number("<i", len(value.items))
            for item in value.items:
                self.item(item)

    def values(self, item):
        for row in item.plan_class.rows:
            if row.is_in(self.release):
                self.value(row, item.values[row.key])

    def data(self):
        return b"".join(self.pieces)


def read_plan(data):
    """The tree of a stream that holds a plan and nothing behind it."""
    reader = BinaryReader(data)
    tree = reader.plan()
    if reader.position != len(data):
        raise FormError(f"{len(data) - reader.position} bytes behind the plan")
    return tree


def write_plan(tree):
    """The stream of a plan in the form of the release that its row "DataformatRelease" names."""
    text = tree.values["DataformatRelease"]
    writer = BinaryWriter(release=CURRENT_RELEASE if text == "7.0.163" else text)
    writer.values(tree)
    return writer.data()


def read_content(data, plan_class):
    """The values of one object, lists as their identity alone; they must fill the payload exactly."""
    reader = BinaryReader(data, recursive=False)
    values = reader.values(plan_class)
    if reader.position != len(data):
        raise FormError(f"{len(data) - reader.position} bytes behind the content of {plan_class.tag}")
    return values


def write_content(item):
    writer = BinaryWriter(recursive=False)
    writer.values(item)
    return writer.data()


def compress(data):
    return zlib.compress(data, 9)


def decompress(data):
    """The content of one zlib stream with nothing behind it."""
    stream = zlib.decompressobj(wbits=15)
    content = stream.decompress(data) + stream.flush()
    if not stream.eof or stream.unused_data:
        raise FormError("not one whole zlib stream")
    return content
