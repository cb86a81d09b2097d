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
CATALOGS = dict(pair.split("=") for pair in """
    CourseTypes=LessonTypes SchoolTypes=SchulTypes RoomTypes=RoomTypes SchoolClassProfils=SchoolTypes
    SchoolClassLevels=SchoolBranches EducationalPrograms=ProfessionalTrainingCourses TimeAccountEntryReportings=Sites
    SubjectFocuses=SubjectTopicAreas EventTypes=CalendarEventCategories SchoolClassAbsenceReasons=ClassAbsenceReasons
    SchoolClassFlags=ClassFeatures EducationalAreas=TeachingAreas LessonProfiles=Profiles
    TeacherAbsenceReasons=TeacherAbsenceReasons TeacherAbsenceReasonDifferentiations=TeacherAbsenceReasonDetails
    TeacherTypes=TeacherTypes TimeAccountEntryReasons=TeacherSetChangeReasons TimeAccountEntryTypes=TeacherSetTypes
    RoomAbsenceReasons=RoomUnavailableReasons ResourceCategories=ResourceCategories ResourceFlags=ResourceFeatures
    ScheduleMarkerCategories=BlockCategories FormsOfTeaching=LessonForms CourseCategories=EventCategories
    CourseFlags=EventFeature SubstitutionQualities=StandInQualities""".split())
# Columns of a file: name, kind of value, element in the data file; name, kind, ...
KEY = "Id id . Code text Code Name text Name "
PERSON = ("Id id . Code text Code LastName text Surname MiddleName text MiddleName FirstName text FirstName {}"
          "Gender gender Gender Birthdate date DateOfBirth EmailAddress text Email MobileNumber text Phone ")
FRAME_AND_GROUPS = "TimeFrameId frame TimeFrame DepartmentIdList ids Groups"
CATALOG = KEY + "StatisticalCode text Key"
HOLIDAYS = "Id id . Title text Display Description description . TemporalExpressions occurrence ."
FRAMES = ("Id id . Code text Code Description text Name StartOfWeek first_day . ScopeOfWeek school_days . "
          "TimeSlots slots Rows")
TABLES = {  # File: list in the data file, columns.
    "Departments": ("Groups", KEY),
    "Rooms": ("Rooms", KEY + "Color colour Color Notes text Comments Capacity integer Capacity " + FRAME_AND_GROUPS),
    "Subjects": ("Subjects", CATALOG + " Color colour Color DepartmentIdList ids Groups"),
    "Teachers": ("Teacher", PERSON.format("Salutation text Title ") + "TeacherNo text PersonalID Color colour Color "
                 "Notes text Comments " + FRAME_AND_GROUPS),
    "Students": ("Students", PERSON.format("") + "Locality text Location PostalCode text ZipCode "
                 "AddressLines text Street TutorId ref Tutor Notes text Comments"),
    "SchoolClasses": ("Classes", "Id id . Code text Code Description text Name Notes text Comments Color colour Color "
                      "SchoolClassNo text SchoolNumber Teacher1Id ref Teacher1 Teacher2Id ref Teacher2 "
                      "DepartmentId ref Group RoomId ref Room TimeFrameId frame TimeFrame StudentIdList ids Students"),
}
ABSENCE = "Id id . {} ref {} StartTimepoint timepoint Start EndTimepoint timepoint End ReasonId ref AbsenceReason " \
          "Description text Comment"
ABSENCES = {  # Class: file, column and element of who or what is absent.
    "TeacherAbsenceTime": ("TeacherAbsences", "TeacherId", "Teacher"),
    "RoomUnavailableTime": ("RoomAbsences", "RoomId", "Room"),
    "ClassAbsenceTime": ("SchoolClassAbsences", "SchoolClassId", "Class"),
}


def day_number(moment):
    """The number that a date and time is held in: ahead of day 0 the time of day counts away from it."""
    day = moment.toordinal() - BASE.toordinal()
    time = (moment - datetime.combine(moment.date(), BASE.time())) / timedelta(1)
    return day - time if day < 0 else day + time


def code_units(text):
    return text.encode("utf-16-be")


def identifier(element):
    plain = "0" if element is None else element.get("ID")[1:-1].lower()
    return "" if set(plain) <= set("0-") else plain


def derived(*parts):
    """The identifier of what has no object of its own, from the GUIDs of objects and from texts."""
    names = [part if isinstance(part, str) else part.get("ID").upper() for part in parts]
    return str(uuid.uuid5(uuid.NAMESPACE_OID, "".join(names)))


def compact(value):
    return json.dumps(value, ensure_ascii=False, separators=(",", ":")) if value else ""


class OcfSet:
    """Reads a document and gives the files of its set.

    The orders of the large lists do not decide between all of their items. They are those of the document as the program
    saved it, and are judged here.
    """

    def __init__(self, file_name, saved_name, zone):
        self.zone = zone
        self.root = ElementTree.parse(file_name).getroot()
        self.saved = ElementTree.parse(saved_name).getroot()
        # An object that is met twice is one, and has what was read last.
        self.last = {(e.get("Class"), e.get("ID").upper()): e for e in self.root.iter("Item") if len(e)}
        self.settings = self.root.find("Settings")
        self.valid_from = self.moment(self.settings, "ValidFrom")
        until = self.moment(self.settings, "ValidTo")
        self.valid_to = (until + timedelta(1) if until.date() < date.max
                         else datetime.max.replace(microsecond=999000))

    def items(self, element, name):
        return [] if element is None else [self.resolve(item) for item in element.findall(f"./{name}[1]/Items/Item")]

    def resolve(self, element):
        return self.last.get((element.get("Class"), element.get("ID").upper()), element)

    def ordered(self, path, place):
        """The items of a list that is sorted by their places."""
        found = [self.last[e.get("Class"), e.get("ID").upper()] for e in self.saved.findall(f"./{path}[1]/Items/Item")]
        given = [self.resolve(e) for e in self.root.findall(f"./{path}[1]/Items/Item")]
        assert sorted(map(id, found)) == sorted(map(id, given)), path
        places = list(map(place, found))
        assert places == sorted(places), path
        return found

    def by_latest(self, path, moment, text):
        """The later moment first, then by the UTF-16 code units of a text."""
        return self.ordered(path, lambda e: (-day_number(self.moment(e, moment)), code_units(text(e))))

    # The kinds of values, each of an element and the name of its child.

    def text(self, element, name, default=""):
        return element.findtext(name, default)

    def integer(self, element, name):
        return str(int(self.text(element, name, "0")))

    def id(self, element, _):
        return identifier(element)

    def ref(self, element, name):
        return identifier(element.find(name))

    def frame(self, element, name):
        return self.ref(element if element.find(name) is not None else self.settings, name)

    def ids(self, element, name):
        return compact(list(filter(None, dict.fromkeys(map(identifier, self.items(element, name))))))

    def gender(self, element, name):
        return {"1": "Male", "2": "Female"}.get(self.text(element, name), "")

    def colour(self, element, name):
        value = int(self.text(element, name, str(NO_COLOUR)))
        if value < 0:
            return "#" + (SYSTEM_COLOURS + ["000000"] * 256)[value & 0xFF]
        return "" if value == NO_COLOUR else "#%02x%02x%02x" % (value & 255, value >> 8 & 255, value >> 16 & 255)

    def moment(self, element, name):
        text = self.text(element, name).rstrip("Z")
        return datetime.fromisoformat(text) if text.strip("0-T:.") else BASE

    def date(self, element, name):
        return self.day(self.moment(element, name))

    def day(self, moment):
        return "" if moment.date() == BASE.date() else moment.date().isoformat()

    def timepoint(self, element, name):
        return self.point(self.moment(element, name))

    def point(self, moment):
        if moment <= BASE:
            return ""
        seconds = moment.replace(tzinfo=self.zone).utcoffset() // timedelta(seconds=1)  # fold=0, as RFC 5545 has it
        offset = "%s%02d:%02d" % ("-" if seconds < 0 else "+", abs(seconds) // 3600, abs(seconds) // 60 % 60)
        return moment.isoformat(timespec="milliseconds") + offset

    def description(self, entry, _=None):
        found = re.findall(r'(?:^|,)(?:"((?:[^"]|"")*)"|([^,]+))', self.text(entry, "Description"))
        return "\r\n".join(quoted.replace('""', '"') or plain for quoted, plain in found)

    def once(self, start, end, kind="OneTime"):
        return {"_type": kind, "Operation": "Include", "StartTimepoint": self.point(start),
                "EndTimepoint": self.point(end)}

    def occurrence(self, element, _):
        return compact([self.once(self.moment(element, "Start"), self.moment(element, "End"))])

    def first_day(self, *_):
        return DAYS[int(self.text(self.settings, "WeekStart")) - 1]

    def school_days(self, *_):
        first, last = DAYS.index(self.first_day()), int(self.text(self.settings, "Weekend"))
        return ", ".join((DAYS * 2)[first:last if last > first else last + 7])

    def slots(self, frame, name):
        return compact([{"Label": self.text(slot, "Name"), "StartTime": self.timepoint(slot, "Start"),
                         "EndTime": self.timepoint(slot, "End")} for slot in self.items(frame, name)])

    def table(self, columns, elements):
        words = columns.split()
        return [words[::3]] + [[getattr(self, kind)(element, name) for kind, name in zip(words[1::3], words[2::3])]
                               for element in elements]

    def absence_tables(self):
        def code(absence):
            who = absence.find(ABSENCES[absence.get("Class")][2])
            return "" if who is None else self.text(self.resolve(who), "Code")
        absences = self.by_latest("AbsenceTimes", "Start", code)
        return {name: self.table(ABSENCE.format(column, who), [a for a in absences if a.get("Class") == kind])
                for kind, (name, column, who) in ABSENCES.items() if absences}

    def attendances(self):
        rows = [["Id", "StudentId", "SchoolCLassId"]]
        for school_class in self.items(self.root, "Classes"):
            for student in self.items(school_class, "Students"):
                rows.append([derived(school_class, student), identifier(student), identifier(school_class)])
        return rows

    def tables(self):
        """Rows by name of the file, header and all."""
        found = {"_Manifest": [["ValidFrom", self.point(self.valid_from)], ["ValidTo", self.point(self.valid_to)]]}
        for name, directory in CATALOGS.items():
            found[name] = self.table(CATALOG, self.items(self.root.find("Directories"), directory))
        for name, (elements, columns) in TABLES.items():
            found[name] = self.table(columns, self.items(self.root, elements))
        frames = self.items(self.root, "TimeFrame")
        found["TimeFrames"] = self.table(FRAMES, [self.settings.find("TimeFrame")] + frames if frames else [])
        found = {name: rows for name, rows in found.items() if len(rows) > 1}
        if {"Students", "SchoolClasses"} <= set(found):
            found["StudentSchoolClassAttendances"] = self.attendances()
        if entries := self.by_latest("Calendar/Entries", "End", self.description):
            found["Holidays"] = self.table(HOLIDAYS, [e for e in entries if int(self.text(e, "FreePeriod", "1"))])
        return found | self.absence_tables()

    def files(self, tables=None):
        def cell(text):
            return '"' + text.replace('"', '""') + '"' if re.search('[";\r\n]', text) else text
        return {name + ".csv": "\r\n".join(";".join(map(cell, row)) for row in rows).encode("utf-8-sig")
                for name, rows in (tables or self.tables()).items()}
