"""Reads, writes and plays the serial form of a change log."""

from binary_form import BinaryReader, BinaryWriter, FormError, read_content, write_content
from plan_classes import class_for
from plan_tree import DataList, DataObject, Reference, all_lists, walk

CREATION, MODIFICATION, RELEASE, INSERTION, DELETION, CLEARANCE, MOVE = range(7)
OBJECT_MISSING, LIST_MISSING, OBJECT_MODIFIED, LIST_MODIFIED, SEMANTIC, TOO_MUCH = range(6)

_OBJECT = (("object_id", "guid"), ("object_name", "string"), ("object_version", "int64"))
_LIST = (("list_id", "guid"), ("list_name", "string"), ("list_version", "int64"))
_ITEM = (("object_id", "guid"), ("object_name", "string"))
_PLACED = _LIST + (("list_index", "int32"),) + _ITEM
FIELDS = {
    CREATION: (("object_id", "guid"), ("class_name", "string"), ("object_version", "int64"), ("content", "binary")),
    MODIFICATION: _OBJECT + (("content", "binary"),),
    RELEASE: _OBJECT,
    INSERTION: _PLACED,
    DELETION: _LIST + _ITEM,
    CLEARANCE: _LIST,
    MOVE: _PLACED,
}


class Operation:
    def __init__(self, kind, user, **fields):
        self.kind, self.user = kind, user
        self.__dict__.update(fields)


class Conflict(Exception):
    def __init__(self, kind, message):
        super().__init__(message)
        self.kind, self.message = kind, message


def read_log(data):
    """The operations of a log, or None of one that lost track."""
    reader = BinaryReader(data)
    overfilled = reader.boolean()
    operations = [] if overfilled else [_read_operation(reader) for _ in range(reader.number("<i"))]
    if reader.position != len(data):
        raise FormError(f"{len(data) - reader.position} bytes behind the log")
    return None if overfilled else operations


def _read_operation(reader):
    kind = reader.take(1)[0]
    operation = Operation(kind if kind in FIELDS else CLEARANCE, reader.string())
    for name, form in FIELDS[operation.kind]:
        if form == "guid":
            value = reader.take(16)
        elif form == "string":
            value = reader.string()
        elif form == "binary":
            value = reader.take(reader.number("<i"))
        else:
            value = reader.number("<q" if form == "int64" else "<i")
        setattr(operation, name, value)
    return operation


def write_log(operations):
    writer = BinaryWriter()
    writer.number("<?", operations is None)
    if operations is not None:
        writer.number("<i", len(operations))
        for operation in operations:
            _write_operation(writer, operation)
    return writer.data()


def _write_operation(writer, operation):
    writer.number("<B", operation.kind)
    writer.string(operation.user)
    for name, form in FIELDS.get(operation.kind, FIELDS[CLEARANCE]):
        value = getattr(operation, name)
        if form == "guid":
            writer.pieces.append(value)
        elif form == "string":
            writer.string(value)
        elif form == "binary":
            writer.number("<i", len(value))
            writer.pieces.append(value)
        else:
            writer.number("<q" if form == "int64" else "<i", value)


def recode(operations, classes):
    """The same operations with every payload decoded to its end and written again. `classes` holds the class of
    each object of the storage; objects that the log creates join it."""
    for operation in operations:
        if operation.kind == CREATION:
            classes[operation.object_id] = class_for(operation.class_name)
        if operation.kind in (CREATION, MODIFICATION):
            plan_class = classes[operation.object_id]
            values = read_content(operation.content, plan_class)
            operation.content = write_content(DataObject(plan_class, operation.object_id, values))
    return operations


class Player:
    """Plays operations on a tree; it knows neither the sweeps of a deletion nor back references."""

    def __init__(self, tree):
        self.objects = {item.id: item for item in walk(tree) if item.id is not None}
        self.lists = {entry.id: (entry, row.owns) for entry, _, row in all_lists(tree)}

    def play(self, operations):
        for operation in operations:
            if operation.kind == CREATION:
                self._create(operation)
            elif operation.kind == MODIFICATION:
                self._modify(operation)
            elif operation.kind == RELEASE:
                if operation.object_id in self.objects:
                    self._fresh_object(operation)
                    del self.objects[operation.object_id]
            else:
                self._change_list(operation)

    def _create(self, operation):
        plan_class = class_for(operation.class_name)
        if plan_class is None:
            raise FormError(f'Klasse "{operation.class_name}" wurde nicht registriert.')
        item = DataObject(plan_class, operation.object_id, read_content(operation.content, plan_class))
        item.values["ChangedBy"] = item.values["CreatedBy"] = operation.user
        self._take_lists(item, {})
        self.objects[item.id] = item

    def _modify(self, operation):
        item = self._fresh_object(operation)
        before = item.values
        item.values = read_content(operation.content, item.plan_class)
        self._take_lists(item, before)
        item.values["ChangedBy"], item.values["Version"] = operation.user, operation.object_version

    def _take_lists(self, item, before):
        """A payload holds a list's identity alone: the list and what it holds stay."""
        for row in item.plan_class.rows:
            value = item.values.get(row.key)
            if isinstance(value, DataList):
                kept = before.get(row.key) or DataList(value.id, [0, 0.0, "", 0.0, ""], [])
                kept.id = value.id
                item.values[row.key] = kept
                self.lists[kept.id] = (kept, row.owns)
            elif isinstance(value, DataObject):
                known = self.objects.get(value.id)
                self._take_lists(value, known.values if known else {})
                self.objects[value.id] = value

    def _fresh_object(self, operation):
        if operation.object_id not in self.objects:
            raise Conflict(OBJECT_MISSING, f"{operation.object_name} existiert nicht mehr in der Zieldatenmenge")
        item = self.objects[operation.object_id]
        if operation.object_version <= item.values["Version"]:
            raise Conflict(OBJECT_MODIFIED, f'"{operation.object_name}" wurde bereits von Benutzer '
                                            f'"{item.values["ChangedBy"]}" modifiziert.')
        return item

    def _change_list(self, operation):
        if operation.list_id not in self.lists:
            raise Conflict(LIST_MISSING, f"{operation.list_name} existiert nicht mehr in der Zieldatenmenge")
        target, owns = self.lists[operation.list_id]
        if operation.kind not in FIELDS or operation.kind == CLEARANCE:
            del target.items[:]
        else:
            if operation.object_id not in self.objects:
                raise Conflict(OBJECT_MISSING, f"{operation.object_name} existiert nicht mehr in der Zieldatenmenge")
            if not self._place(operation, target.items, owns):
                return
        target.stamps[0] = max(target.stamps[0], operation.list_version)
        target.stamps[2] = operation.user

    def _place(self, operation, items, owns):
        """Inserts, deletes or moves the object; false when the operation is to be skipped."""
        present = [index for index, item in enumerate(items) if item.id == operation.object_id]
        if bool(present) == (operation.kind == INSERTION):
            return False
        item = items.pop(present[0]) if present else self.objects[operation.object_id]
        if operation.kind == DELETION:
            if owns:
                del self.objects[operation.object_id]
            return True
        if not present and not owns:
            item = Reference(item.plan_class.tag, item.id)
        count = len(items) + len(present)
        index = operation.list_index
        items.insert(len(items) if index < 0 or index > count else index, item)
        return True
