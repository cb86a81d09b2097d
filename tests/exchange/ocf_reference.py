"""The master data files of an OCF set, computed a second time: from the data file's XML, with python's own means."""

import json
import re
import uuid
import xml.etree.ElementTree as ElementTree
from datetime import date, datetime, timedelta

BASE = datetime(1899, 12, 30)
NO_COLOUR = 0x1FFFFFFF
DAYS = ["Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday", "Sunday"]
SYSTEM_COLOURS = (
    "c8c8c8 000000 99b4d1 bfcddb f0f0f0 ffffff 646464 000000 000000 000000 b4b4b4 f4f7fc ababab 0078d7 ffffff f0f0f0 "
    "a0a0a0 6d6d6d 000000 000000 ffffff 696969 e3e3e3 000000 ffffe1 000000 0066cc b9d1ea d7e4f2 3399ff f0f0f0").split()
# File, key directory in the data file. The order is that of writing.
CATALOGS = dict(line.split() for line in """
CourseTypes LessonTypes
SchoolTypes SchulTypes
RoomTypes RoomTypes
SchoolClassProfils SchoolTypes
SchoolClassLevels SchoolBranches
EducationalPrograms ProfessionalTrainingCourses
TimeAccountEntryReportings Sites
SubjectFocuses SubjectTopicAreas
EventTypes CalendarEventCategories
SchoolClassAbsenceReasons ClassAbsenceReasons
SchoolClassFlags ClassFeatures
EducationalAreas TeachingAreas
LessonProfiles Profiles
TeacherAbsenceReasons TeacherAbsenceReasons
TeacherAbsenceReasonDifferentiations TeacherAbsenceReasonDetails
TeacherTypes TeacherTypes
TimeAccountEntryReasons TeacherSetChangeReasons
TimeAccountEntryTypes TeacherSetTypes
RoomAbsenceReasons RoomUnavailableReasons
ResourceCategories ResourceCategories
ResourceFlags ResourceFeatures
ScheduleMarkerCategories BlockCategories
FormsOfTeaching LessonForms
CourseCategories EventCategories
CourseFlags EventFeature
SubstitutionQualities StandInQualities""".strip().splitlines())
# Column, kind of value, element in the data file; the rest of a file's columns follows the same way.
KEY = "Id id . Code text Code Name text Name"
PERSON = ("Id id . Code text Code LastName text Surname MiddleName text MiddleName FirstName text FirstName "
          "{} Gender gender Gender Birthdate date DateOfBirth EmailAddress text Email MobileNumber text Phone ")
FRAME_AND_GROUPS = " TimeFrameId frame TimeFrame DepartmentIdList ids Groups"
COLUMNS = {
    "Departments": ("Groups", KEY),
    "Rooms": ("Rooms", KEY + " Color colour Color Notes text Comments Capacity integer Capacity" + FRAME_AND_GROUPS),
    "Subjects": ("Subjects", KEY + " StatisticalCode text Key Color colour Color DepartmentIdList ids Groups"),
    "Teachers": ("Teacher", PERSON.format("Salutation text Title") +
                 "TeacherNo text PersonalID Color colour Color Notes text Comments" + FRAME_AND_GROUPS),
    "Students": ("Students", PERSON.format("") + "Locality text Location PostalCode text ZipCode "
                 "AddressLines text Street TutorId ref Tutor Notes text Comments"),
    "SchoolClasses": ("Classes", "Id id . Code text Code Description text Name Notes text Comments Color colour Color "
                      "SchoolClassNo text SchoolNumber Teacher1Id ref Teacher1 Teacher2Id ref Teacher2 "
                      "DepartmentId ref Group RoomId ref Room TimeFrameId frame TimeFrame StudentIdList ids Students"),
}
CATALOG_COLUMNS = KEY + " StatisticalCode text Key"
ABSENCES = {  # File: class, column and element of who or what is absent.
    "TeacherAbsences": ("TeacherAbsenceTime", "TeacherId", "Teacher"),
    "RoomAbsences": ("RoomUnavailableTime", "RoomId", "Room"),
    "SchoolClassAbsences": ("ClassAbsenceTime", "SchoolClassId", "Class"),
}


def quicksort(items, compare):
    """The product's own: which of two equal items comes first depends on its exchanges."""
    def sort(start, end):
        while start < end:
            left, right, pivot = start, end, (start + end) // 2
            while left <= right:
                while compare(items[left], items[pivot]) < 0:
                    left += 1
                while compare(items[right], items[pivot]) > 0:
                    right -= 1
                if left <= right:
                    items[left], items[right] = items[right], items[left]
                    pivot = right if pivot == left else left if pivot == right else pivot
                    left, right = left + 1, right - 1
            sort(start, right)
            start = left
    sort(0, len(items) - 1)
    return items


def order(a, b):
    return (a > b) - (a < b)


def day_number(moment):
    """The number that moments are ordered by: ahead of day 0 the time of day counts away from it."""
    day = moment.date().toordinal() - BASE.date().toordinal()
    time = (moment - datetime.combine(moment.date(), BASE.time())) / timedelta(1)
    return day - time if day < 0 else day + time


def ordinal(text):
    return text.encode("utf-16-be")


def identifier(guid):
    plain = guid[1:-1].lower()
    return "" if set(plain) <= set("0-") else plain


def derived(*guids):
    return str(uuid.uuid5(uuid.NAMESPACE_OID, "".join(guid.upper() for guid in guids)))


def compact(value):
    return json.dumps(value, ensure_ascii=False, separators=(",", ":"))


def strings(text):
    """The items of delimited text: with blanks, commas or quotes only in quotes."""
    if not text:
        return []
    found = re.findall(r'(?:^|,)(?:"((?:[^"]|"")*)"|([^,]*))', text)
    return [quoted.replace('""', '"') or plain for quoted, plain in found]


class OcfSet:
    """Reads a document and gives the files of its set by name, as bytes."""

    def __init__(self, file_name, zone):
        self.zone = zone
        self.root = ElementTree.parse(file_name).getroot()
        # An object that is met twice is one, and has what was read last.
        self.last = {(e.get("Class"), e.get("ID").upper()): e for e in self.root.iter("Item") if len(e)}
        self.settings = self.root.find("Settings")
        self.standard = self.settings.find("TimeFrame")

    def items(self, element, name, resolve=True):
        found = element.find(name) if element is not None else None
        found = [] if found is None else found.find("Items").findall("Item")
        return [self.resolve(item) for item in found] if resolve else found

    def resolve(self, element):
        return self.last.get((element.get("Class"), element.get("ID").upper()), element)

    # The kinds of values, each of an element and the name of its child.

    def text(self, element, name, default=""):
        return element.findtext(name, default)

    def integer(self, element, name, default="0"):
        return str(int(self.text(element, name, default)))

    def id(self, element, _):
        return identifier(element.get("ID"))

    def ref(self, element, name):
        found = element.find(name)
        return "" if found is None else identifier(found.get("ID"))

    def frame(self, element, name):
        return self.ref(element if element.find(name) is not None else self.settings, "TimeFrame")

    def ids(self, element, name):
        found = dict.fromkeys(identifier(item.get("ID")) for item in self.items(element, name, False))
        found.pop("", None)
        return compact(list(found)) if found else ""

    def gender(self, element, name):
        return {"1": "Male", "2": "Female"}.get(self.text(element, name), "")

    def colour(self, element, name):
        value = int(self.text(element, name, str(NO_COLOUR)))
        if value < 0:
            index = value & 0xFF
            return "#" + (SYSTEM_COLOURS[index] if index < len(SYSTEM_COLOURS) else "000000")
        return "" if value == NO_COLOUR else "#%02x%02x%02x" % (value & 255, value >> 8 & 255, value >> 16 & 255)

    def date(self, element, name):
        value = self.moment(element, name).date()
        return "" if value == BASE.date() else value.isoformat()

    def timepoint(self, element, name):
        return self.point(self.moment(element, name))

    def moment(self, element, name):
        text = self.text(element, name, "0000-00-00").rstrip("Z")
        if not text.strip("0-T:."):
            return BASE
        return datetime.fromisoformat(text)

    def point(self, moment):
        if moment <= BASE:
            return ""
        seconds = moment.replace(tzinfo=self.zone).utcoffset() // timedelta(seconds=1)
        offset = "%s%02d:%02d" % ("-" if seconds < 0 else "+", abs(seconds) // 3600, abs(seconds) // 60 % 60)
        return moment.isoformat(timespec="milliseconds") + offset

    # The files.

    def row(self, element, columns):
        return [getattr(self, kind)(element, name) for _, kind, name in columns]

    def table(self, elements, columns):
        words = columns.split()
        columns = list(zip(words[::3], words[1::3], words[2::3]))
        return [[name for name, _, _ in columns]] + [self.row(element, columns) for element in elements]

    def holidays(self, entries):
        def compare(a, b):
            return (order(day_number(self.moment(b, "End")), day_number(self.moment(a, "End"))) or
                    order(ordinal(self.description(a)), ordinal(self.description(b))))
        rows = [["Id", "Title", "Description", "TemporalExpressions"]]
        for entry in quicksort(entries, compare):
            if self.integer(entry, "FreePeriod", "1") != "0":
                time = {"_type": "OneTime", "Operation": "Include", "StartTimepoint": self.timepoint(entry, "Start"),
                        "EndTimepoint": self.timepoint(entry, "End")}
                rows.append([self.id(entry, ""), self.text(entry, "Display"), self.description(entry), compact([time])])
        return rows

    def description(self, entry):
        return "\r\n".join(strings(self.text(entry, "Description")))

    def time_frames(self, frames):
        first, last = (int(self.text(self.settings, name)) - 1 for name in ("WeekStart", "Weekend"))
        scope = ", ".join((DAYS * 2)[first:last + 1 + 7 * (last < first)])
        rows = [["Id", "Code", "Description", "StartOfWeek", "ScopeOfWeek", "TimeSlots"]]
        for frame in [self.standard] + frames:
            slots = [{"Label": self.text(slot, "Name"), "StartTime": self.timepoint(slot, "Start"),
                      "EndTime": self.timepoint(slot, "End")} for slot in self.items(frame, "Rows")]
            rows.append([self.id(frame, ""), self.text(frame, "Code"), self.text(frame, "Name"), DAYS[first], scope,
                         compact(slots) if slots else ""])
        return rows

    def absences(self):
        def code(absence):
            who = next((absence.find(name) for kind, _, name in ABSENCES.values() if kind == absence.get("Class")), None)
            return ordinal(self.text(self.resolve(who), "Code")) if who is not None else b""
        def compare(a, b):
            return (order(day_number(self.moment(b, "Start")), day_number(self.moment(a, "Start"))) or
                    order(code(a), code(b)))
        return quicksort(self.items(self.root, "AbsenceTimes"), compare)

    def tables(self):
        """Rows by name of the file, header and all."""
        until = self.moment(self.settings, "ValidTo")
        day_after = until + timedelta(1) if until.date() < date.max else datetime.max.replace(microsecond=999000)
        found = {"_Manifest": [["ValidFrom", self.timepoint(self.settings, "ValidFrom")],
                               ["ValidTo", self.point(day_after)]]}
        directories = self.root.find("Directories")
        for name, directory in CATALOGS.items():
            found[name] = self.table(self.items(directories, directory), CATALOG_COLUMNS)
        found["Holidays"] = self.holidays(self.items(self.root.find("Calendar"), "Entries"))
        frames = self.items(self.root, "TimeFrame")
        found["TimeFrames"] = self.time_frames(frames) if frames else []
        for name, (elements, columns) in COLUMNS.items():
            found[name] = self.table(self.items(self.root, elements), columns)
        written = {name for name, rows in found.items() if len(rows) > 1}
        written |= {"Holidays"} if self.items(self.root.find("Calendar"), "Entries") else set()
        absences = self.absences()
        for name, (kind, column, element) in ABSENCES.items():
            found[name] = self.table(
                [absence for absence in absences if absence.get("Class") == kind],
                f"Id id . {column} ref {element} StartTimepoint timepoint Start EndTimepoint timepoint End "
                "ReasonId ref AbsenceReason Description text Comment")
            written |= {name} if absences else set()
        name = "StudentSchoolClassAttendances"
        found[name] = [["Id", "StudentId", "SchoolCLassId"]]
        for school_class in self.items(self.root, "Classes"):
            for student in self.items(school_class, "Students", False):
                ids = school_class.get("ID"), student.get("ID")
                found[name].append([derived(*ids), identifier(ids[1]), identifier(ids[0])])
        written |= {name} if len(found["Students"]) > 1 and len(found["SchoolClasses"]) > 1 else set()
        return {name: rows for name, rows in found.items() if name in written}

    def files(self):
        def cell(text):
            return '"' + text.replace('"', '""') + '"' if re.search('[";\r\n]', text) else text
        return {name + ".csv": "\r\n".join(";".join(map(cell, row)) for row in rows).encode("utf-8-sig")
                for name, rows in self.tables().items()}
