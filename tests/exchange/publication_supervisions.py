"""The supervisions of a range of dates, by area or by teacher."""

from publication_entries import Entry, published
from publication_plan import (DAY, compared, days_overlap, folded, monday, overlap, quicksort, until_midnight,
                              weekday)


def by_area_date_and_teacher(first, second):
    def place(entry):
        teacher = entry.supervision.ref("Teacher")
        return (folded(area_of(entry).code if area_of(entry) else ""), entry.start, folded(teacher.code
                                                                      if teacher else ""))
    return compared(place(first), place(second))


def area_of(entry):
    return entry.supervision.owner


class Supervisions:
    def __init__(self, plan, span, only_changed):
        self.plan, self.span, self.only_changed = plan, span, only_changed

    def counts(self, span, who):
        plan = self.plan
        until = plan.valid[1] or 1 << 60
        return (overlap(span, self.span) and days_overlap((plan.valid[0], until), span)
                and plan.week(span[0]) in plan.weeks
                and not any(self.applies(entry, who) and overlap(entry.span, span) for entry in plan.free))

    def applies(self, entry, who):
        members = [member.ref("DataObject") for member in entry.things("Member")]
        return not members if who is None else entry.number("Visibility") == 0 or who in members

    def spans(self, supervision):
        start, end = supervision.span
        if not supervision.number("Weekday"):
            yield start, until_midnight(start, end)
            return
        date = monday(self.span[0]) + (supervision.number("Weekday") - 1) * DAY
        while date < self.span[1]:
            yield date + start % DAY, until_midnight(date, date + end % DAY)
            date += 7 * DAY

    def of(self, supervision, who):
        for span in self.spans(supervision):
            if not self.counts(span, who):
                continue
            change = next((c for c in reversed(self.plan.changes) if c.kind == "SupervisionStandIn"
                           and c.ref("Time") is supervision and overlap(c.span, span)), None)
            if change and not published(change) or self.only_changed and not change:
                continue
            yield self.entry(who, span, change, supervision)

    def entry(self, who, span, change, supervision):
        entry = Entry(self.plan, who, *span, None, change, supervision).build(change is None, True)
        entry.teachers = [supervision.ref("Teacher")] if supervision.ref("Teacher") else []
        return entry

    def of_all(self):
        return [entry for area in self.plan.list("SupervisionAreas") for supervision in area.things("SupervisionList")
                for entry in self.of(supervision, None)]

    def of_teacher(self, teacher):
        found = [entry for area in self.plan.list("SupervisionAreas") for supervision in area.things("SupervisionList")
                 if supervision.ref("Teacher") is teacher for entry in self.of(supervision, teacher)]
        for change in reversed(self.plan.changes):
            supervision = change.ref("Time")
            if (change.kind == "SupervisionStandIn" and supervision and supervision.kind == "Supervision"
                    and teacher in change.members("New", "Teacher")[:1] and overlap(change.span, self.span)
                    and published(change)):
                found.append(self.entry(teacher, change.span, change, supervision))
        return found


def folded_items(entries):
    """Groups of entries that are one item of the document, each by its first entry."""
    groups = {}
    for entry in quicksort(entries, by_area_date_and_teacher):
        times = entry.start % DAY, entry.finish % DAY
        groups.setdefault((entry.supervision, entry.change, times, weekday(entry.start)), []).append(entry)
    return list(groups.values())


def title(entry, clock):
    area = area_of(entry)
    text = area.code if area else ""
    if entry.change or entry.absences:
        text = f"({text})"
    new = entry.change.members("New", "Teacher")[:1] if entry.change else []
    if new:
        text += ("" if new[0] is entry.reader else " ") + "+" + new[0].code
    frame = area.frame if area else entry.plan.frame
    rows = frame.things("Rows")
    gaps = [(row.span[1] % DAY, following.span[0] % DAY) for row, following in zip(rows, rows[1:])]
    if (entry.start % DAY, entry.finish % DAY) not in gaps:
        start, end = clock(entry.start), clock(entry.finish)
        text += f" {start[:2]}:{start[2:]}-{end[:2]}:{end[2:]}"
    return text
