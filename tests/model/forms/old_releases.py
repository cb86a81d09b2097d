"""Plans in the form of older releases, and what a load makes of their old rows."""

import copy

from plan_classes import CURRENT_RELEASE, release_number
from plan_tree import DataList, DataObject, walk
from random_plan import RandomPlan

RELEASES = ("", "6.0.52", "6.0.100", "6.0.113", "6.0.134", "6.0.139", "6.0.167", "6.0.169", "6.0.170", "6.0.171")
NOT_PUBLIC = 3
ROOM_AUTOMATIC = 1 << 9


def old_plan(seed, release, raw=False):
    """A random plan without what an upgrade changes in more than the object itself: no chains of blocks, and no
    object both in an old row and in its successor."""
    made = RandomPlan(seed, raw, release)
    for item in walk(made.tree):
        values = item.values
        if item.plan_class.name == "TVELBlock":
            values["Name"] = f"Block {item.id.hex()}"
        elif item.plan_class.name == "TVELVeranstaltung":
            values["BlockID"] = ""
        elif item.plan_class.descends_from("TVELAenderung"):
            values["State"] %= 8
            if made.number < release_number("6.0.114"):
                values["New"].items, values["Absent"].items = [], []
            if "Supervision" in values:
                values["Time"] = None
    return made.tree


def loaded(tree):
    """What a load makes of an old plan; the lists that come new have no told identity."""
    result = copy.deepcopy(tree)
    release = release_number(tree.values["DataformatRelease"])
    objects = {item.id: item for item in walk(result)}
    for item in objects.values():
        for name in filter(item.plan_class.descends_from, UPGRADES):
            for until, upgrade in UPGRADES[name]:
                if release < release_number(until):
                    upgrade(item.values, release)
        for row in item.plan_class.rows:
            if row.until and not row.is_in(release_number(CURRENT_RELEASE)) and row.key in item.values:
                if not any(other.key == row.key and other.since for other in item.plan_class.rows):
                    del item.values[row.key]
    if release < release_number("6.0.135"):
        _place_blocks(tree, result, objects)
    result.values["DataformatRelease"] = CURRENT_RELEASE
    return result


def _merge(values, into, *keys):
    present = {item.id for item in values[into].items}
    for key in keys:
        for item in values[key].items:
            if item.id not in present:
                values[into].items.append(item)
                present.add(item.id)


def _add(values, *keys):
    values["New"].items += [values[key] for key in keys if values[key]]


def _supervision(values, _):
    """The teacher would be lost with the next save if the new objects did not take it in."""
    _add(values, "Teacher")
    values["Time"] = values["Supervision"]


def _room(values, _):
    values["Groups"] = DataList(None, None, [values["Group"]] if values["Group"] else [])


def _calendar_event(values, _):
    for key in ("Description", "Address"):
        values[key] = [values[key]] if values[key] else []


def _change(values, release):
    if release < release_number("6.0.53"):
        values["State"] += 1
    if values["State"] == NOT_PUBLIC:
        values["NotPublic"] = False


def _additional_lesson(values, release):
    if release < release_number("6.0.114"):
        _merge(values, "New", "Student")
    _merge(values, "Original", "New")
    values["New"].items = []


def _stand_in_objects(values, _):
    _add(values, "Teacher", "Room")
    values["Absent"].items += values["GapObjects"].items


def _swap_flags(values, release):
    if release == release_number(""):
        if values["StandInTeacherFeature"] >= 5:
            values["StandInTeacherFeature"], values["StandInFeature"] = 2, 1
        if values["NewTime"]:
            values["StandInFeature"] = 1
    feature = values["StandInFeature"]
    values["ChangeTeacher"] |= feature in (2, 3)
    values["ChangeRoom"] |= feature in (2, 4)
    if feature == 0 and (values["ChangeTeacher"] or values["ChangeRoom"]):
        values["StandInFeature"] = 2


def _lesson(values, release):
    if release < release_number("6.0.101") and not values["EventAttributes"] & ROOM_AUTOMATIC:
        values["Group"] = "G"
    if values["CourseNo"] == -1:
        values["CourseNo"] = 0


def _set(key, value):
    return lambda values, _: values.__setitem__(key, value)


def _drop(key):
    return lambda values, _: values.pop(key)


# Per class the release below which an upgrade runs; the base's come first.
UPGRADES = {
    "TVELAenderung": [("6.0.127", _change)],
    "TVELZusatzAenderung": [("6.0.114", lambda values, _: _merge(values, "New", "Teacher", "Classes", "Rooms",
                                                                 "Resources"))],
    "TVELZusatzunterricht": [("6.0.144", _additional_lesson)],
    "TVELVertretung": [("6.0.114", _stand_in_objects), ("6.0.120", _swap_flags)],
    "TVELAufsichtsVertretung": [("6.0.114", _supervision)],
    "TVELRaumaenderung": [("6.0.114", lambda values, _: _add(values, "Room"))],
    "TVELStundentafelEintrag": [("6.0.101", lambda values, _: values["WholeClass"] or
                                 values.__setitem__("Group", "G"))],
    "TVELVeranstaltung": [("6.0.165", _lesson), ("6.0.105", _set("BlockNext", None))],
    # The texts that join the names are not told.
    "TVELEinstellungen": [("6.0.124", _drop("Names")), ("6.0.172", _set("WeekPrefix", "[KW %s]"))],
    "TVELRaum": [("6.0.168", _room), ("6.0.171", _set("Level", ""))],
    "TVELKalendereintrag": [("6.0.140", _calendar_event)],
    "TVELBesitzer": [("6.0.170", _set("Site", ""))],
}


def _place_blocks(tree, result, objects):
    """Blocks get the number of their kind of lesson as their band, and the level of their class; one without a class
    goes."""
    kinds, kept = [], []
    for old, block in zip(tree.values["Blocks"].items, result.values["Blocks"].items):
        kind = old.values["LessonType"] and old.values["LessonType"].id
        if kind not in kinds:
            kinds.append(kind)
        block.values["Band"] = kinds.index(kind) + 1
        if old.values["Class"] is None:
            continue
        kept.append(block)
        level = _level_of(objects.get(old.values["Class"].id))
        block.values["Level"] = block.values["Level"] if level is None else level
    result.values["Blocks"].items = kept
    identities = {block.id for block in kept}
    for lesson in result.values["Events"].items:
        block = lesson.values["Block"]
        if block and block.id not in identities and block.id in objects:
            lesson.values["Block"] = None


def _level_of(school_class):
    """None where the block keeps its own."""
    if not isinstance(school_class, DataObject):
        return None
    if school_class.values["Level"] != 0:
        return school_class.values["Level"]
    return next((int(text) for text in ("11", "12", "13") if text in school_class.values["Code"]), None)
