"""Absences, courses and master data of a publication, and the values of its keys."""

import json

from publication_entries import all_classes_away
from publication_plan import DAY, as_date, overlap

ESCAPES = {"\t": "\\t", "\n": "\\n", "\f": "\\r", "\r": "", '"': '\\"', "\\": "\\\\"}


def escaped(text):
    return "".join(ESCAPES.get(c, c) for c in text)


def codes(things):
    return [code for code in (escaped(thing.code) for thing in things if thing) if code]


def code_of(thing):
    return thing.code if thing else ""


def id_of(thing):
    return thing.id if thing else ""


def clock(moment):
    return f"{as_date(moment):%H%M}"


def date(moment):
    return f"{as_date(moment):%Y%m%d}" if moment >= DAY else ""


def node(**values):
    """What has a value: texts, numbers, what is true; lists and objects unless they are empty."""
    found = {}
    for name, value in values.items():
        if isinstance(value, str):
            value = escaped(value)
        if value not in ("", None, False, []) or value is not False and isinstance(value, int):
            found[name] = value
    return found


def written(value):
    """The text of a value, whose texts are escaped already."""
    if isinstance(value, dict):
        return "{" + ",".join(f'"{name}":{written(each)}' for name, each in value.items()) + "}"
    if isinstance(value, list):
        return "[" + ",".join(map(written, value)) + "]"
    return f'"{value}"' if isinstance(value, str) else json.dumps(value)


class MasterData:
    """The lists of a document that its entries decide by their marks."""

    def span(self, thing):
        start, end = thing.span
        return node(startDate=date(start), startTime=clock(start) if start else "",
                    endDate=date(end), endTime=clock(end) if end else "")

    def absence_lists(self):
        shown = self.plan.settings.number("ShowAbsences") == 0
        if self.alleWochen or "xmlAbsences" not in self.types:
            return {}
        told = {}
        for name, kind, column in (("Classes", "Class", "class"), ("Rooms", "Room", "room"),
                                   ("Teacher", "Teacher", "teacher")):
            people = [each for each in self.plan.list(name) if each in self.marked and self.passes(each)]
            told[column + "Absences"] = [
                node(id=a.id) | self.span(a) | node(note=a.text("Comment"), **{column + "Ref": each.id}) | node(
                    reasonRef=id_of(a.ref("AbsenceReason")) if kind != "Teacher" or shown else "")
                for each in people for a in self.absences(each)]
        return told

    def absences(self, who):
        waiting = set() if self.offeneFehlzeiten else {
            change.ref("AbsenceTime") for change in self.plan.changes
            if change.kind in ("Stand-in", "RoomChange", "SupervisionStandIn") and change.number("State") == 0
            and not change.flag("NotPublic") and not all_classes_away(change)}
        found = [a for a in dict.fromkeys(who.things("AbsenceTimes")) if overlap(a.span, self.range)
                 and not a.flag("NotPublic") and a not in waiting]
        return sorted(found, key=lambda a: (a.span[0], self.plan.place.get(id(a), 0)))

    def course_items(self):
        found = []
        for lesson in self.plan.lessons:
            if self.allLessons or lesson in self.courses:
                students = lesson.things("Student")
                self.marked.update(students)
                found.append(self.master(lesson) | node(
                    title=lesson.title, description=lesson.text("Title"), subjectRef=id_of(lesson.ref("Subject")),
                    courseTypeRef=id_of(lesson.ref("LessonType")), url=lesson.text("Href"),
                    remarks=lesson.text("Comments"), courseNr=lesson.text("EventNo"), group=lesson.text("Group"),
                    studentRefs=[student.id for student in students]))
        return found

    def master(self, thing):
        custom = node(provider="Velmora", id=thing.text("CID"))
        return node(id=thing.id, externalIDs=[custom] if "id" in custom else [])

    def master_list(self, name, keys, marked=False, framed=True):
        found = []
        for thing in self.plan.list(name):
            if (thing.flag("NotAvailable") or marked and self.filtering and thing not in self.marked
                    or framed and not self.passes(thing)):
                continue
            frame = thing.frame.code if framed and thing.frame is not self.plan.frame else ""
            found.append(self.master(thing) | node(timeframeCode=frame) | node(**keys(thing)))
        return found

    def master_lists(self):
        def keys(*names_of, teams=False, **more):
            def of(thing):
                values = {name: value(thing) if callable(value) else thing.text(value) for name, value in more.items()}
                if teams:
                    values["teamRefs"] = [team.id for team in thing.things("Groups")]
                if names_of:
                    values["color"] = thing.colour()
                return values
            return of
        code = {"code": "Code", "description": "Name"}
        person = {"firstName": "FirstName", "middleName": "MiddleName", "lastName": "Surname"}
        teacher = {"code": "Code"} if self.noTeacher else {"code": "Code", "title": "Title"} | person
        found = {
            "teachers": self.master_list("Teacher", keys("color", teams=True, **teacher), marked=True),
            "rooms": self.master_list("Rooms", keys(
                "color", teams=True, **code, buildingRef=lambda t: id_of(t.ref("Building")), level="Level"),
                marked=True),
            "subjects": self.master_list("Subjects", keys("color", teams=True, **code), marked=True),
            "teams": self.master_list("Groups", keys(**code), framed=False),
            "resources": self.master_list("Resources", keys("color", **code)),
            "buildings": self.master_list("Building", keys(**code, campus="Campus"), framed=False),
            "classes": self.master_list("Classes", keys(**code, color=lambda t: t.colour(), teamRefs=lambda t: (
                [t.ref("Group").id] if t.ref("Group") else [])), marked=True)}
        if self.studentNames:
            found["students"] = self.master_list("Students", keys(
                **person, name="Name", classCode=lambda t: code_of(t.ref("Class")), studentNo="StudentNo"), marked=True)
        return node(**found)
