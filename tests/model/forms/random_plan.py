"""Random plans: every class and every row, values at the edges of each kind, the same for the same seed."""

import random
import struct

import plan_classes
from binary_form import shortest_single
from plan_classes import CLASSES, CURRENT_RELEASE, LIST_ROWS, PLAN, release_number
from plan_tree import DataList, DataObject, Reference, walk

RANGES = {"Byte": (0, 255), "ShortInt": (-128, 127), "Word": (0, 65535), "SmallInt": (-32768, 32767),
          "LongInt": (-2**31, 2**31 - 1), "Int64": (-2**63, 2**63 - 1)}
TEXTS = ["", "a", "Grün & <b>", " am Rand ", 'er sagte "nein"', "Ä" * 30, "𝔘𝔫𝔦 🏫", "eins;zwei,drei", "zwei\nZeilen",
         "0", "\t", "]]>"]
LONG_TEXT = "€" + "x" * 5000
# Only the binary form holds these as they are.
RAW_TEXTS = ["\r\n", "Null\0darin", "\x01\x1f", "\ufffe\uffff"]
DAY = 86400000
# Lists of a lesson, or of one of its times, whose items take part in the lesson.
TAKING_PART = ("Classes", "Teacher", "Rooms", "Student", "Resources")


def byte_range(plan_class, row):
    """Rows that are wider in the stream than in memory hold what a byte or an enumeration holds."""
    if plan_class.name == "TVELAutomatikparameter":
        return 0, 255
    return {"Weekday": (0, 7), "AltWeekday": (0, 7), "WorkdaysBetween": (0, 4)}.get(row.name)


class RandomPlan:
    """`raw` allows what only the binary form holds, `release` writes the rows of an older file."""

    def __init__(self, seed, raw=False, release=CURRENT_RELEASE):
        self.random = random.Random(seed)
        self.raw = raw
        self.release, self.number = release, release_number(release)
        self.by_class = {}
        self.pending = []
        self.tree = self.object(PLAN)
        self.tree.id = None
        for item, row, wanted in self.pending:
            item.values[row.key] = self.targets(row) if wanted else self.target(row)
        self.bind()

    def identity(self):
        return self.random.randbytes(16)

    def object(self, plan_class):
        item = DataObject(plan_class, self.identity(), {})
        self.by_class.setdefault(plan_class.name, []).append(item)
        for row in plan_class.rows:
            if row.is_in(self.number):
                item.values[row.key] = self.value(item, row)
        return item

    def value(self, item, row):
        if row.kind == "object":
            return self.object(CLASSES[row.target])
        if row.kind == "list" and row.owns:
            return self.list(self.owned(row))
        if row.kind in ("list", "reference"):
            self.pending.append((item, row, row.kind == "list"))
            return None
        if item.plan_class is PLAN and row.name == "DataformatRelease":
            return self.release
        return self.plain(row, byte_range(item.plan_class, row))

    def owned(self, row):
        classes = plan_classes.concrete_classes(row.target)
        again = [self.random.choice(classes) for _ in range(self.random.choice((0, 1, 3)))]
        few = [] if self.random.random() < 0.2 and row.target in self.by_class else classes
        return [self.object(plan_class) for plan_class in few + again]

    def list(self, items):
        return DataList(self.identity(), [self.plain(row) for row in LIST_ROWS], items)

    def plain(self, row, limits=None):
        pick, kind = self.random, row.kind
        if kind == "Boolean":
            return pick.random() < 0.5
        if kind in RANGES:
            low, high = limits or RANGES[kind]
            return pick.choice((low, high, 0, 1, pick.randint(low, high)))
        if kind in ("Single", "Double"):
            return self.fraction(kind)
        if kind in ("DateTime", "Date", "Time"):
            return self.day(kind)
        if kind == "String":
            return self.text()
        if kind == "Marks":
            return "".join(pick.choice("01") for _ in range(int(row.target)))
        if kind == "Guid":
            return self.identity()
        if kind == "Graphic":
            return pick.randbytes(pick.choice((0, 1, 2, 3, 400)))
        count = pick.choice((0, 1, 2, 56))
        if kind == "IntegerArray":
            return [pick.choice((-2**31, 2**31 - 1, 0, pick.randint(-9, 9))) for _ in range(count)]
        return [self.text() for _ in range(min(count, 5))]

    def text(self):
        if self.random.random() < 0.005:
            return LONG_TEXT
        return self.random.choice(TEXTS + RAW_TEXTS if self.raw else TEXTS)

    def fraction(self, kind):
        value = self.random.choice((0.0, 1.0, -0.5, 0.1, 1e-6, 1.5e10, 45.0, self.random.randint(-999, 999) / 8))
        if self.raw and self.random.random() < 0.2:
            value = self.random.uniform(-1e30, 1e30)
        return shortest_single(struct.unpack("<f", struct.pack("<f", value))[0]) if kind == "Single" else value

    def day(self, kind):
        if self.raw and self.random.random() < 0.2:
            return self.random.uniform(-1e5, 1e5)
        whole = 0 if kind == "Time" else self.random.choice((0, 1, -693593, 2958465, 46000, 46001))
        parts = 0 if kind == "Date" else self.random.choice((0, 1, DAY - 1, DAY // 3, self.random.randrange(DAY)))
        return whole + parts / DAY if whole >= 0 else float(whole)

    def pool(self, row):
        return [item for plan_class in plan_classes.concrete_classes(row.target)
                for item in self.by_class.get(plan_class.name, ())]

    def target(self, row):
        pool = self.pool(row)
        if not pool or self.random.random() < 0.15:
            return None
        if self.raw and self.random.random() < 0.05:
            return Reference(self.random.choice(pool).plan_class.tag, self.identity())
        return reference(self.random.choice(pool))

    def targets(self, row):
        pool = self.pool(row)
        count = min(len(pool), self.random.choice((0, 1, 2, 5, 30)))
        return self.list([reference(item) for item in self.random.sample(pool, count)])

    def bind(self):
        """What the objects themselves keep in step: lessons, absences and supervisions of those who take part. A name
        that stands twice for one field has one value, as all names have that are read by name."""
        items = {item.id: item for item in walk(self.tree) if item.id}
        for item in list(items.values()):
            if item.plan_class.descends_from("TVELPlanobjekt"):
                item.values["Events"].items = []
                item.values["AbsenceTimes"].items = []
            one_value = not self.raw or item.plan_class.name == "TVELKlasse"
            for key in item.values:
                if one_value and key.endswith("#2") and key[:-2] in item.values:
                    item.values[key] = item.values[key[:-2]]
            if item.plan_class.name == "TVELLehrer":
                item.values["SupervisionList"].items = []
            if item.plan_class.name == "TVELTeilnehmer":
                target = item.values["DataObject"]
                item.values["DataObjectID"] = target.id if target else bytes(16)
        for item in list(items.values()):
            name = item.plan_class.name
            if name == "TVELVeranstaltung":
                for taking_part in self.taking_part(item, items):
                    taking_part.values["Events"].items.append(reference(item))
            elif item.plan_class.descends_from("TVELFehlzeit"):
                for key in ("Teacher", "Class", "Room"):
                    self.enter(item, key, "AbsenceTimes", items)
            elif name == "TVELAufsicht":
                self.enter(item, "Teacher", "SupervisionList", items)

    def taking_part(self, lesson, items):
        found = {}
        for item in [lesson] + lesson.values["Times"].items:
            for key in TAKING_PART:
                if key in item.values:
                    found.update((entry.id, items[entry.id]) for entry in item.values[key].items)
        subject = lesson.values["Subject"]
        if subject and subject.id in items:
            found[subject.id] = items[subject.id]
        return found.values()

    def enter(self, item, key, into, items):
        target = item.values.get(key)
        if target and target.id in items:
            items[target.id].values[into].items.append(reference(item))


def reference(item):
    return Reference(item.plan_class.tag, item.id)


def random_plan(seed, raw=False):
    return RandomPlan(seed, raw).tree
