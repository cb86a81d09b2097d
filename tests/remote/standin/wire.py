"""The values of the data server's protocol: parameter queues, requests, responses, and the profile of a user."""

import pathlib
import sys
import uuid

sys.path.append(str(pathlib.Path(__file__).parents[2] / "model" / "forms"))

from binary_form import NUMBERS, BinaryReader, BinaryWriter, FormError, compress, decompress

NO_ID = bytes(16)
MOST_BYTES = 2 << 30
# The kinds of a parameter queue; an object, a binary, a string and a GUID have forms of their own.
KINDS = {0: "Object", 1: "Binary", 2: "Bitmap", 3: "Icon", 4: "Boolean", 5: "Char", 6: "SmallInt", 7: "ShortInt",
         8: "LongInt", 9: "Int64", 10: "Byte", 11: "Word", 12: "LongWord", 13: "Single", 14: "Double", 15: "Extended",
         16: "Currency", 17: "DateTime", 18: "String", 20: "Guid"}
CODES = {name: number for number, name in KINDS.items()}
FORMS = {**NUMBERS, "Char": "<H", "Single": "<f", "Currency": "<q"}
# The light view of a workspace: fields and kinds in the order of the stream; "list" holds objects.
FILE = (("ID", "Guid"), ("Permissions", "list"))
FOLDER = FILE + (("Folders", "list"), ("Documents", "list"))
CLASSES = {
    "TQuillonRemoteUserWorkspacePermission": (("PolicyName", "String"), ("PolicyValue", "LongInt")),
    "TQuillonRemoteUserWorkspaceDocument": FILE + (("Description", "String"), ("Name", "String")),
    "TQuillonRemoteUserWorkspaceFolder": FOLDER + (("Name", "String"), ("Tenant", "String")),
    "TQuillonRemoteUserWorkspaceFileSpace": FOLDER,
    "TQuillonRemoteUserWorkspace": (
        *((name, "String") for name in ("UserName", "Lastname", "MiddleName", "FirstName", "EMail", "Site")),
        ("FileSpace", "TQuillonRemoteUserWorkspaceFileSpace"), ("Admin", "Boolean"), ("Tenant", "String"),
        ("CanChangePassword", "Boolean")),
}
DEFAULTS = {"String": "", "LongInt": 0, "Boolean": False, "Guid": NO_ID}


def guid_bytes(text):
    return uuid.UUID(text).bytes_le


def guid_text(data):
    return "{%s}" % str(uuid.UUID(bytes_le=data)).upper()


def thing(class_name, **values):
    """An object of the light view; what is not given has its default."""
    found = {name: DEFAULTS.get(kind, [] if kind == "list" else None) for name, kind in CLASSES[class_name]}
    return {"class": class_name, **found, **values}


class Reader(BinaryReader):
    """Reads values off a function that gives a number of bytes, or fails."""

    def __init__(self, take):
        super().__init__(b"")
        self.source, self.objects = take, {}

    def take(self, count):
        if not 0 <= count <= MOST_BYTES:
            raise FormError(f"a length of {count}")
        return self.source(count) if count else b""

    def of_kind(self, kind):
        if kind in ("Binary", "Bitmap", "Icon"):
            return self.take(self.number("<i"))
        if kind == "String":
            return self.string()
        if kind == "Guid":
            return self.take(16)
        if kind == "Extended":
            return self.take(10)
        return self.object_reference() if kind == "Object" else self.number(FORMS[kind])

    def object_reference(self):
        """An object whose handle has come before is the same one."""
        handle = self.number("<i")
        if handle == 0 or handle in self.objects:
            return self.objects.get(handle)
        name = self.string()
        if name not in CLASSES:
            raise FormError(f'class "{name}" is not known')
        found = self.objects[handle] = {"class": name}
        return self.properties(name, found)

    def properties(self, name, found=None):
        found = {"class": name} if found is None else found
        for key, kind in CLASSES[name]:
            if kind == "list":
                found[key] = [self.object_reference() for _ in range(self.number("<i"))]
            else:
                found[key] = self.properties(kind) if kind in CLASSES else self.of_kind(kind)
        return found

    def queue(self):
        """Pairs of kind and value."""
        found = []
        for _ in range(self.number("<i")):
            code = self.number("<B") & 0x7F
            if code not in KINDS:
                raise FormError(f"a value of kind {code}")
            found.append((KINDS[code], self.of_kind(KINDS[code])))
        return found

    def request(self):
        """Service, operation, parameters."""
        return self.number("<H"), self.number("<H"), self.queue()

    def response(self):
        """Error code, message, parameters."""
        code = self.number("<H")
        return code, self.string() if code else "", self.queue()


class Writer(BinaryWriter):
    def __init__(self):
        super().__init__()
        self.handles = {}

    def of_kind(self, kind, value):
        if kind in ("Binary", "Bitmap", "Icon"):
            self.number("<i", len(value))
            self.pieces.append(value)
        elif kind == "String":
            self.string(value)
        elif kind in ("Guid", "Extended"):
            self.pieces.append(value)
        elif kind == "Object":
            self.object_reference(value)
        else:
            self.number(FORMS[kind], value)
        return self

    def object_reference(self, item):
        if item is None:
            self.number("<i", 0)
            return
        known = id(item) in self.handles
        self.number("<i", self.handles.setdefault(id(item), len(self.handles) + 1))
        if not known:
            self.string(item["class"])
            self.properties(item)

    def properties(self, item):
        for key, kind in CLASSES[item["class"]]:
            if kind == "list":
                self.number("<i", len(item[key]))
                for entry in item[key]:
                    self.object_reference(entry)
            elif kind in CLASSES:
                self.properties(item[key])
            else:
                self.of_kind(kind, item[key])
        return self

    def queue(self, values):
        self.number("<i", len(values))
        for kind, value in values:
            self.number("<B", CODES[kind])
            self.of_kind(kind, value)
        return self


def request(service, operation, *values):
    return Writer().of_kind("Word", service).of_kind("Word", operation).queue(values).data()


def response(*values, code=0, message=""):
    writer = Writer().of_kind("Word", code)
    if code:
        writer.string(message)
    return writer.queue(values).data()
