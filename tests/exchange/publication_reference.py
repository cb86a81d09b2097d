"""The publication of a plan, computed a second time: from the data file's XML and the settings of the job."""

from publication_entries import VM_KLASSE_FEHLT, VM_KLASSE_FREI, Entry, all_classes_away, bare
from publication_expansion import Expansion
from publication_masters import MasterData, clock, code_of, codes, date, id_of, node, written
from publication_plan import DAY, Plan, as_date, compared, day, folded, moment_of, monday, names, quicksort, weekday
from publication_supervisions import Supervisions, area_of, folded_items, title
from publication_texts import caption, subject_text

LISTS = {"teacher": "Teacher", "class": "Classes", "room": "Rooms", "subject": "Subjects", "student": "Students",
         "resource": "Resources"}
DISPLAY_COLOURS = {  # The default colours.
    "backgroundColor": "#cddbf1", "eventColor": "#ffffff", "supervisionColor": "#217856",
    "supervisionChangeColor": "#dc143c", "lessonChangeColor": "#dc143c", "headerBgColor": "#7aa0da",
    "roomChangeColor": "#2e8b57", "messageColor": "#ffff80", "additionalLessonColor": "#0066ff",
    "absenceColor": "#dc143c", "todayColor": "#ffcc8f", "todayHeaderColor": "#016bc2"}


class Publication(MasterData):
    FLAGS = {"noTeacher": False, "studentNames": False, "offeneFehlzeiten": True, "allLessons": False,
             "allSubstitutions": False, "substitutionsOnly": False, "admin": False, "filtering": True,
             "alleWochen": False, "art": True, "information": True, "mitteilung": True}

    def __init__(self, file_name, settings, now):
        Entry.rebuilt = False
        self.dated = settings.get("form", "dated") == "dated"
        self.plan = Plan(file_name, self.dated)
        self.types = settings.get("xmlTypes", ["xmlIndex", "xmlLessons", "xmlChanges", "xmlCalEvents"])
        self.kinds = settings.get("dataTypes", ["dtAlle"])
        for name, value in self.FLAGS.items():
            setattr(self, name, settings.get(name, value))
        self.profiles = settings.get("profiles", [])
        self.set_range(settings, now)
        self.set_flags(settings)
        self.choice = [self.found("Groups", name) for name in settings.get("auswahl", [])]
        self.category = settings.get("kategorie")
        self.objects = self.chosen_objects(settings.get("planobjekt"))
        self.reader = self.objects[0] if len(self.objects) == 1 else None
        self.marked, self.written, self.courses = set(self.objects), [], set()

    def set_range(self, settings, now):
        start, finish = (moment_of(settings.get(name, "")[:10]) for name in ("start", "finish"))
        first, last = self.plan.valid
        if self.dated:
            self.start = max(monday(start or now) - 14 * DAY, monday(first) if first else 0)
            self.finish = finish if finish and finish <= last else last
        else:
            self.start, self.finish = start or first, finish or last
        self.range = day(self.start), day(self.finish) + DAY

    def set_flags(self, settings):
        policies = {profile["policy"] for profile in self.profiles}
        if not self.dated:
            self.alleWochen = self.admin = self.allSubstitutions = self.allLessons = True
            self.noTeacher = self.substitutionsOnly = False
        elif self.profiles:
            self.admin = 9 in policies
            self.noTeacher = not self.admin and settings.get("teacherNamesPolicy", 0) != 2
            self.substitutionsOnly = 10 in policies
            self.allSubstitutions = bool(policies & {10, 14})
            self.allLessons = bool(policies & {2, 5, 6, 7, 8, 9, 11, 12, 13, 14})
            self.offeneFehlzeiten = bool(policies & {5, 6, 7, 8, 9, 11, 13, 14})
            self.filtering = not self.allLessons and not self.allSubstitutions

    # Objects.

    def found(self, name, wanted):
        return next(thing for thing in self.plan.list(name) if wanted.strip("{}").lower() == thing.id
                    or wanted == (thing.text("StudentNo") if name == "Students" else thing.code))

    def named(self, wanted):
        if "id" in wanted:
            found = [t for name in LISTS.values() for t in self.plan.list(name)
                     if t.id == wanted["id"].strip("{}").lower()]
            return found[0]
        return self.found(LISTS[wanted["kind"]], wanted["code"]) if "kind" in wanted else None

    def chosen_objects(self, single):
        if self.allLessons:
            return []
        found = [] if self.admin else [self.named(profile) for profile in self.profiles]
        found = list(dict.fromkeys(filter(None, found)))
        return found or ([self.named(single)] if single else [])

    def passes(self, thing):
        """Whether an object belongs to a team of the choice."""
        if thing.kind == "Student":
            school_class = thing.ref("Class")
            teams = [school_class.ref("Group")] if school_class else []
        else:
            teams = [thing.ref("Group")] if thing.kind in ("Class", "Resource") else thing.things("Groups")
        return not self.choice or any(team in self.choice for team in teams)

    def for_all(self):
        return [each for name in ("Teacher", "Classes") for each in self.plan.list(name)
                if self.passes(each) and not each.flag("NotAvailable")]

    # Lessons.

    def entries(self):
        found, met = [], set()
        expansion = Expansion(self.plan, self.range, "xmlChanges" in self.types)
        for who in self.objects or self.for_all():
            parts = [(who, False)]
            if who.kind == "Student" and who.ref("Class"):
                parts.append((who.ref("Class"), True))
            for each, of_student in parts:
                for entry in self.entries_of(expansion, each, of_student):
                    self.take(entry, of_student, found, met)
        return found

    def entries_of(self, expansion, who, of_student):
        if self.alleWochen:
            return expansion.timetable(who, of_student)
        if "xmlLessons" in self.types:
            return expansion.range(who, of_student)
        if self.allSubstitutions and "xmlChanges" in self.types:
            return expansion.substitutions(who, of_student)
        return []

    def take(self, entry, of_student, found, met):
        appointment, lesson = entry.appointment, entry.lesson
        if appointment:
            people = [*appointment.things("Teacher"), *(appointment.lesson.things("Classes")
                                                        if appointment.lesson else []),
                      *appointment.things("Rooms")]
            if any(each.flag("NotAvailable") for each in people):
                return
        if lesson and not (of_student and lesson.things("Student")):
            self.courses.add(lesson)
        if "xmlLessons" not in self.types and not (
                "xmlChanges" in self.types and entry.changed and self.change_type(entry) != 6):
            return
        key = entry.start, entry.finish, entry.change or appointment
        if key in met:
            return
        met.add(key)
        if entry.changed and not self.offeneFehlzeiten and entry.absence_only():
            if not appointment:
                return
            entry.reset()
        found.append(entry)

    def change_type(self, entry):
        kinds = {"RoomChange": 1, "Assignment": 2, "AdditionalLesson": 3, "Message": 4, "SupervisionStandIn": 5}
        change = entry.change
        if change is None or change.kind != "Stand-in":
            return kinds[change.kind] if change else 0
        if all_classes_away(change) or bare(change):
            return {VM_KLASSE_FREI: 7, VM_KLASSE_FEHLT: 8}.get(change.number("StandInFeature"), 6)
        return 0

    def lesson_times(self):
        def by_day_teacher_and_time(first, second):
            return compared(*((day(e.start), folded(names(e.new_teachers)), folded(names(e.teachers)), e.start % DAY)
                              for e in (first, second)))
        quicksort(self.entries_told, by_day_teacher_and_time)
        found = []
        for entry in self.entries_told:
            if not entry.changed and self.substitutionsOnly:
                continue
            self.mark(entry)
            days = [day(entry.start)]
            if entry.change and entry.change.kind == "Message":
                days = self.message_days(entry)
            for each in days:
                found.append(self.lesson_item(entry, each + entry.start % DAY))
        return found

    def message_days(self, entry):
        finish = entry.change.span[1]
        first, last = day(entry.start), day(finish)
        if finish == last and last > first and entry.start != first:
            last -= DAY
        days = [first]
        last = min(last, first + 392 * DAY)
        while (following := self.plan.next_school_day(days[-1])) and following <= last:
            days.append(following)
        return days

    def mark(self, entry):
        for prefix in ("", "new_", "missing_"):
            for kind in ("classes", "teachers", "rooms", "subjects"):
                self.marked.update(getattr(entry, prefix + kind))
        self.marked.update(entry.students)

    def lesson_item(self, entry, start):
        change, appointment = entry.change, entry.appointment
        message = change is not None and change.kind == "Message"
        lesson = appointment.lesson if appointment else None
        other = change.ref("NewTime") if entry.substitution else None
        described = other.lesson if other else lesson
        period = appointment.ref("Period") if appointment else None
        found = node(courseTitle=subject_text(entry), lessonRef=id_of(appointment),
                     courseDescription=described.text("Title") if described else "", periodCode=code_of(period),
                     level=(lesson.number("Focus") or None) if lesson else None,
                     lessonBlock=appointment.text("Block") if appointment else "", courseRef=id_of(lesson))
        if self.alleWochen:
            own = weekday(entry.start) if entry.start else appointment.number("Weekday")
            found |= node(weekday=str(own) if own else "")
        elif entry.changed:
            found |= {"dates": [date(start)]}
        else:
            found |= node(dates=[date(self.plan.in_week(start, week)) for week in sorted(entry.weeks)])
        whole_day = message and entry.start % DAY == 0 == entry.finish % DAY
        buildings = dict.fromkeys(filter(None, (room.ref("Building") for room in entry.rooms)))
        found |= node(
            startTime=clock(start), endTime="2400" if whole_day else clock(entry.finish),
            subjectCode=code_of(entry.subject) if appointment else names(entry.subjects),
            classCodes=[] if message and change.flag("AllClasses") else codes(entry.classes),
            teacherCodes=[] if message and change.flag("AllTeachers") else codes(entry.teachers),
            roomCodes=codes(entry.rooms), buildingCodes=codes(buildings),
            studentRefs=[student.id for student in entry.students], newSubjectCode=names(entry.new_subjects))
        return found | ({"changes": self.changes(entry)} if entry.changed else {})

    def changes(self, entry):
        change = entry.change
        feature = change.number("StandInFeature") if entry.substitution else 0
        moved = change.moment("NewTimeDate") if feature in (5, 10) else 0
        found = node(caption=caption(entry, self.reader) if self.art else "", changeType=self.change_type(entry),
                     newClassCodes=codes(entry.new_classes), absentClassCodes=codes(entry.missing_classes),
                     newTeacherCodes=codes(entry.new_teachers), absentTeacherCodes=codes(entry.missing_teachers),
                     newRoomCodes=codes(entry.new_rooms), absentRoomCodes=codes(entry.missing_rooms))
        if moved:
            name = "old" if feature == 5 else "new"
            found |= node(**{name + "Date": date(moved), name + "StartTime": clock(moved)})
        absence = change.ref("AbsenceTime") if entry.substitution else None
        if absence and not absence.flag("NotPublic"):
            found |= node(reasonType={"T": "teacher", "C": "class", "R": "room"}[absence.kind[0]] + "Absence",
                          reasonCode=self.reason_code(absence))
        if change:
            found |= node(information=change.text("Information") if self.information else "",
                          message=change.text("Message") if self.mitteilung else "")
        found |= node(lessonTitle=subject_text(entry))
        return found | self.cancellation(change) | node(modified=self.stamp(entry))

    def stamp(self, entry):
        return f"{as_date(entry.modified):%Y%m%d%H%M%S}" if entry.modified else ""

    def reason_code(self, absence):
        if absence.kind == "TeacherAbsenceTime" and self.plan.settings.number("ShowAbsences"):
            return "abwesend"
        return code_of(absence.ref("AbsenceReason"))

    def cancellation(self, change):
        told = ""
        if change and change.kind == "Stand-in":
            feature = change.number("StandInFeature")
            told = {7: "lessonCancelled", 8: "classFree", 9: "substititonCancelled"}.get(feature, "")
            if feature == 10 or change.number("GapReason") == 4:
                told = "movedAway"
        elif change and change.kind in ("SupervisionStandIn", "RoomChange") and change.flag("NoStand-In"):
            told = "substitutionCancelled"
        return node(cancelled=told, cancelReasonCode=code_of(change.ref("SkipStandInReason"))) if told else {}

    # Supervisions, events.

    def supervision_times(self):
        supervisions, found = Supervisions(self.plan, self.range, self.substitutionsOnly), []
        if self.objects:
            for who in self.objects:
                found += supervisions.of_teacher(who) if who.kind == "Teacher" else []
        elif {"dtAlle", "dtLehrer"} & set(self.kinds):
            found = supervisions.of_all()
        return [self.supervision_item(group) for group in folded_items(found)]

    def supervision_item(self, group):
        entry, change = group[0], group[0].change
        found = ({"weekday": weekday(entry.start) % 7} if self.alleWochen else
                 {"dates": [date(each.start) for each in group]})
        found |= node(startTime=clock(entry.start), endTime=clock(entry.finish), supervisionTitle=title(entry, clock),
                      supervisionRef=entry.supervision.id, areaCode=code_of(area_of(entry)),
                      teacherCodes=codes(entry.teachers))
        if change and change.members("New", "Teacher"):
            absence = change.ref("AbsenceTime")
            found["changes"] = node(
                changeType=5, information=change.text("Information") if self.information else "",
                newTeacherCodes=codes(entry.new_teachers), absentTeacherCodes=codes(entry.missing_teachers),
                absenceReasonCode=self.reason_code(absence) if absence else "") | self.cancellation(change) | node(
                    message=change.text("Message") if self.mitteilung else "", modified=self.stamp(entry))
        return found

    def events(self):
        found = []
        for event in self.plan.entries:
            category, room = event.ref("Category"), event.ref("Room")
            if self.category and not (category and self.category.strip("{}").lower() in (category.id,)
                                      or category and category.code == self.category):
                continue
            people = [member.ref("DataObject") for member in event.things("Member")]
            found.append(node(eventRef=event.id) | self.span(event) | node(
                eventCaption=event.text("Display"), eventDescription=event.lines("Description"),
                eventLocation=room.code if room else event.lines("Address"), eventStatus=event.number("State"),
                eventCategory=code_of(category), eventType=category.text("Key") if category else "",
                noLessons=event.flag("FreePeriod", 1), wholeDay=event.flag("AllDay"),
                participants=[each.id for each in people if each and each.known]))
        return found

    # Master data.

    def frame_item(self, frame):
        return node(code=frame.code, timeslotFragmentation=frame.number("UnitsPerHour"), timeslots=[
            node(label=row.text("Name"), color=row.colour("SeparatorLineColor"), startTime=clock(row.span[0]),
                 endTime=clock(row.span[1])) for row in frame.things("Rows")])

    def schedule(self):
        settings = self.plan.settings
        numbers = {"posLabel": settings.number("LessonsDisplay"), "lessonColor": settings.number("TimeColor"),
                   "lessonGradient": settings.number("TimeColorGradient"), "alwaysLessonTime": 0,
                   "absenceReasons": settings.number("ShowAbsences"),
                   "absReasonCaption": int(settings.flag("ShowAbsenceReason")),
                   "lessonLayout": int(settings.flag("LineWrap"))}
        display = {name: value for name, value in numbers.items() if value != -1}
        display |= node(lessonWeeks=settings.text("WeekFmt"), publishDays=settings.number("PublishDaysScope"),
                        publishSubstMessage=True) | DISPLAY_COLOURS
        found = {"scheduleID": "*"} | node(scheduleDescription=settings.text("TimetableTitle"))
        found["session"] = node(startDate=date(self.plan.valid[0]), endDate=date(self.plan.valid[1]))
        found["effectivity"] = node(startDate=date(self.start), endDate=date(self.finish))
        found["weekspan"] = {"weekdayStart": self.plan.first_day % 7, "weekdayEnd": self.plan.last_day % 7}
        found["display"] = display
        self.entries_told = self.entries()
        if {"xmlLessons", "xmlChanges"} & set(self.types):
            found |= node(lessonTimes=self.lesson_times(), supervisionTimes=self.supervision_times())
        return found | {"eventTimes": self.events()}

    def document(self):
        storage, owner = self.plan.storage, self.plan.storage.ref("Owner")
        about = node(eTag=storage.text("FileVersion", "0"), schemaVersion="0", server="Velmora", serverVersion="*",
                     serverTimeStamp="*")
        if owner:
            parts = filter(None, (owner.text(name) for name in ("Name1", "Name2", "Name3")))
            about |= node(ownerDisplayname=owner.text("DName"), ownerName=", ".join(parts),
                          ownerLocation=owner.text("City"))
        frames = dict.fromkeys([self.plan.frame, *self.plan.list("TimeFrame")])
        reasons = {}
        for name, directory in (("teacher", "TeacherAbsenceReasons"), ("class", "ClassAbsenceReasons"),
                                ("room", "RoomUnavailableReasons")):
            if name != "teacher" or self.plan.settings.number("ShowAbsences") == 0:
                found = self.plan.directories.things(directory) if self.plan.directories else []
                reasons[name + "AbsenceReasons"] = [
                    node(id=each.id, code=each.code, description=each.text("Name"), color=each.colour()) for each in found]
        schedule = self.schedule()
        first = min((entry.start for entry in self.entries_told if entry.start), default=0)
        result = reasons | {"timeframes": [self.frame_item(frame) for frame in frames]} | node(
            firstLesson=as_date(first).isoformat(timespec="milliseconds") + "Z" if first else "")
        result["displaySchedule"] = schedule
        result |= self.absence_lists()
        result["courses"] = self.course_items()
        return {"about": about, "result": result | self.master_lists()}


def text_of(document):
    return ("\ufeff" + written(document) + "\r\n").encode()
