"""The texts of plan entries: subject, teachers, rooms, and the caption of what is changed."""

from datetime import timedelta

from publication_plan import DAY, as_date, names

MISSING = ["", "Lehrer fehlt", "Klasse fehlt", "Raum nicht verfügbar", "Weggezogen", "Verschoben", "Freigestellt",
           "Fehlstelle", "Lehrer-Raum-Tausch", "Termin-Tausch"]
DAYS = ["Mo", "Di", "Mi", "Do", "Fr", "Sa", "So"]


def joined(*parts):
    return " ".join(filter(None, parts))


def put(before, text, behind=""):
    return before + text + behind if text else ""


def without(found, *others):
    return [thing for thing in found if not any(thing in other for other in others)]


def people_text(every, new, missing):
    return joined(put("+", names(new)), put("(", names(missing), ")"), names(without(every, new, missing)))


def teacher_text(entry):
    return people_text(entry.teachers, entry.new_teachers, entry.missing_teachers)


def room_text(entry):
    return people_text(entry.rooms, entry.new_rooms, without(entry.missing_rooms, entry.new_rooms))


def subject_text(entry):
    change, lesson = entry.change, entry.lesson
    title, missing = lesson.title if lesson else "", entry.missing_subjects
    subject = lesson.ref("Subject") if lesson else None
    if entry.substitution and change.ref("NewTime") and not change.ref("Subject"):
        return joined(title, put("(", names(missing), ")"))
    brackets = put("(", title if missing and missing[0] is subject else names(missing), ")")
    new = change.ref("Subject") if change else None
    return joined(new.code if new and new not in entry.new_subjects else "",
                  put("+", names(entry.new_subjects)), brackets, "" if subject and subject in missing else title)


def other_moment(change):
    """When the other half of a moved lesson is."""
    start = change.moment("NewTimeDate")
    if not start:
        return ""
    end = start + change.span[1] - change.span[0]
    partner = change.ref("NewTime")
    if partner and partner.span[1]:
        end = max(end, start - start % DAY + partner.span[1] % DAY)
    first, last = as_date(start), as_date(end)
    return f"{DAYS[(first + timedelta(0)).weekday()]} {first:%d.%m.%Y %H:%M}-{last:%H:%M}"


def told(form, change, otherwise):
    moment = other_moment(change)
    return form % moment if moment else otherwise


def missing_text(entry):
    found = map(names, (entry.missing_classes, entry.missing_teachers, entry.missing_rooms))
    return put("Fehlend: ", ", ".join(filter(None, found)))


def substitution_caption(entry, reader):
    change = entry.change
    appointment, skipped = change.ref("Time"), change.ref("SkipStandInReason")
    feature, reason, mark = (change.number(name) for name in ("StandInFeature", "GapReason", "StandInTeacherFeature"))
    if appointment and skipped:
        return skipped.code
    if appointment and feature == 7:
        return "Fällt aus"
    if not appointment and reason == 7:
        if change.number("State") not in (1, 2, 6) or feature == 0:
            return "Fehlstelle"
        return (told("Von %s verschoben", change, "Verschoben") if feature == 5 else
                told("Auf %s getauscht", change, "Getauscht") if feature == 10 else "Zusätzlich")
    if reason == 9:
        return "Anstatt" if feature == 10 else "Getauscht"
    if appointment and reason in (5, 4):
        return {5: "Verschoben", 4: "Weggezogen"}[reason]
    swap = change.flag("ChangeTeacher"), change.flag("ChangeRoom")
    if appointment and reason == 8 and any(swap):
        return "Lehrer-Raum-Tausch" if all(swap) else "Lehrer-Tausch" if swap[0] else "Raum-Tausch"
    if feature == 5 and change.ref("NewTime"):
        return "Verschoben"
    if appointment and feature == 11:
        absence = change.ref("AbsenceTime")
        bound = absence and absence.kind == "ClassAbsenceTime" and absence.ref("Event")
        return "Kurs fehlt" if bound else "Klasse fehlt"
    if appointment and feature in (8, 9):
        return {8: "Klasse frei", 9: "Keine Vertretung"}[feature]
    if feature == 1:
        new, absence = change.things("New"), change.ref("AbsenceTime")
        causes = [absence.ref(name) for name in ("Teacher", "Class", "Room")] if absence else []
        if reader and (reader in causes or reader in change.things("Absent")):
            return "Vertreten"
        if reader and reader.kind == "Teacher" and reader in new:
            return "Zusätzlich"
        why = "Fachänderung" if change.ref("Subject") else (MISSING + [""] * 256)[reason]
        if not new:
            return why
        if any(thing.kind == "Teacher" for thing in new):
            return "Vertreten"
        if any(thing.kind == "Room" for thing in new):
            return "Raumänderung"
    if appointment and mark == 2 and reason == 0:
        return "Zusatzlehrer"
    return missing_text(entry)


def plain_caption(entry, reader):
    change = entry.change
    skipped = change.ref("SkipStandInReason")
    if change.kind == "Stand-in":
        return substitution_caption(entry, reader)
    if change.kind == "Assignment":
        return "Zuweisung"
    if change.kind == "Message" or change.kind == "AdditionalLesson" and not change.ref("Subject"):
        return change.text("Information")
    if change.kind == "AdditionalLesson":
        return skipped.code if skipped else "Zusatzunterricht"
    if change.kind == "SupervisionStandIn":
        return ("Aufsicht geändert" if change.members("New", "Teacher") else skipped.code if skipped else
                "Keine Vertretung" if change.flag("NoStand-In") else "Aufsicht fehlt")
    absence = change.ref("AbsenceTime")
    return ("Raumänderung" if change.members("New", "Room") else skipped.code if skipped else
            "Ersatzraum entfällt" if change.flag("NoStand-In") else
            "Raum nicht verfügbar" if absence and absence.kind == "RoomUnavailableTime" and absence.flag("NotAvailable")
            else "Fällt aus" if entry.all_away() else "Raum fehlt")


def caption(entry, reader):
    """For all readers, or for the one that the document is for."""
    if entry.change is None:
        return ""
    settings = entry.plan.settings
    text = plain_caption(entry, reader)
    if text in ("", "Offen") and entry.classes_missing:
        text = "Geändert"
    absence = entry.change.ref("AbsenceTime")
    if settings.flag("ShowAbsenceReason") and absence and absence.kind == "TeacherAbsenceTime":
        reason = absence.ref("AbsenceReason")
        shown = settings.number("ShowAbsences")
        why = "Abwesend" if shown else reason and (reason.text("Name") or reason.code)
        if why:
            text = why + ": " + text if text else why
    return "" if text == "Geändert" else text
