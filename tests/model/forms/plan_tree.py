"""Plain trees of persisted objects, and their comparison. Identities are the 16 bytes of the binary form."""

from collections import Counter

from plan_classes import LIST_ROWS


class DataObject:
    """An object of a class of the table: its identity and its values by the keys of the rows."""

    def __init__(self, plan_class, identity, values):
        self.plan_class, self.id, self.values = plan_class, identity, values


class Reference:
    def __init__(self, tag, identity):
        self.tag, self.id = tag, identity

    def __eq__(self, other):
        return isinstance(other, Reference) and (self.tag, self.id) == (other.tag, other.id)

    def __hash__(self):
        return hash(self.id)

    def __repr__(self):
        return f"{self.tag} {self.id.hex()}"


class DataList:
    """A list: identity and stamps are None where a form does not hold or tell them, the items where only the
    identity is held."""

    def __init__(self, identity, stamps, items):
        self.id, self.stamps, self.items = identity, stamps, items


# Sorted after a load, or kept sorted; what ties in their order is not told.
SORTED_LISTS = {("TVELPlan", key) for key in ("Events", "Changes", "AbsenceTimes", "Totals", "AssignmentList")}
SORTED_LISTS |= {("TVELKalender", "Entries"), ("TVELPlanobjekt", "Events")}
DAYS = ("DateTime", "Date", "Time")


def walk(tree):
    """Every object of the tree, its root first."""
    pending = [tree]
    while pending:
        item = pending.pop()
        yield item
        for value in item.values.values():
            if isinstance(value, DataObject):
                pending.append(value)
            elif isinstance(value, DataList) and value.items is not None:
                pending.extend(entry for entry in reversed(value.items) if isinstance(entry, DataObject))


def all_lists(tree):
    """Every list of the tree with the object and the row that hold it."""
    for item in walk(tree):
        for row in item.plan_class.rows:
            if isinstance(item.values.get(row.key), DataList):
                yield item.values[row.key], item, row


def is_sorted(plan_class, key):
    return any(key == name and plan_class.descends_from(owner) for owner, name in SORTED_LISTS)


def differences(expected, actual, tolerance=0.0, ignore=(), path=""):
    """What differs between two objects, as lines; days within the tolerance are equal. `ignore` holds pairs of a
    class name and a key."""
    if expected.plan_class.tag != actual.plan_class.tag or expected.id not in (None, actual.id):
        return [f"{path}: {expected.plan_class.tag} {expected.id} became {actual.plan_class.tag} {actual.id}"]
    found = []
    for row in expected.plan_class.rows:
        skipped = any(key == row.key and expected.plan_class.descends_from(name) for name, key in ignore)
        if row.key not in expected.values or skipped:
            continue
        where, one = f"{path}/{row.key}", expected.values[row.key]
        if row.key not in actual.values:
            found.append(f"{where}: missing")
            continue
        other = actual.values[row.key]
        if isinstance(one, DataList):
            found += _list_differences(one, other, tolerance, ignore, where, is_sorted(expected.plan_class, row.key))
        elif isinstance(one, DataObject) and isinstance(other, DataObject):
            found += differences(one, other, tolerance, ignore, where)
        elif not _same(row.kind, one, other, tolerance):
            found.append(f"{where}: {one!r:.200} became {other!r:.200}")
    return found


def _same(kind, one, other, tolerance):
    if kind in DAYS and tolerance:
        return abs(one - other) <= tolerance
    if isinstance(one, float):
        return one == other or (one != one and other != other)
    return one == other


def _list_differences(one, other, tolerance, ignore, where, unordered):
    found = []
    if one.id is not None and one.id != other.id:
        found.append(f"{where}: identity {one.id.hex()} became {other.id.hex()}")
    if one.stamps is not None and other.stamps is not None:
        for row, first, second in zip(LIST_ROWS, one.stamps, other.stamps):
            if not _same(row.kind, first, second, tolerance):
                found.append(f"{where}: {row.key} of the list {first!r} became {second!r}")
    if one.items is None or other.items is None:
        return found + ([] if one.items == other.items else [f"{where}: items with a bare identity"])
    first, second = one.items, other.items
    if unordered:
        first, second = sorted(first, key=lambda item: item.id), sorted(second, key=lambda item: item.id)
    if [item.id for item in first] != [item.id for item in second]:
        lost = Counter(item.id.hex() for item in first) - Counter(item.id.hex() for item in second)
        more = Counter(item.id.hex() for item in second) - Counter(item.id.hex() for item in first)
        return found + [f"{where}: {len(first)} items became {len(second)}, lost {list(lost)}, new {list(more)}"]
    for index, (left, right) in enumerate(zip(first, second)):
        if isinstance(left, DataObject) and isinstance(right, DataObject):
            found += differences(left, right, tolerance, ignore, f"{where}[{index}]")
        elif left != right:
            found.append(f"{where}[{index}]: {left!r} became {right!r}")
    return found
