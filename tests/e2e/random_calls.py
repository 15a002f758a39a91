"""Random calls of all functions, each compared with what the rules of the cursor say (cursor_model.py).

ZUNO_RANDOM_SEED and ZUNO_RANDOM_STEPS choose the run; a failure prints the seed and the calls before it."""
import collections
import os
import pathlib
import random
import subprocess
import sys
import tempfile

from cursor_model import EMPTY, EVENT_UIDS, REMINDER_UIDS, SETTABLE_DATES, Cursor
from zuno import ERROR, Session, check, expect, quoted, timestamp, zunocal

SEED = int(os.environ.get("ZUNO_RANDOM_SEED", "20261121"))
STEPS = int(os.environ.get("ZUNO_RANDOM_STEPS", "6000"))

TYPES = ["event"] * 6 + ["reminder", "task", "calendar", "reminderlist", "alarm", "alarm", "attendee", "recurrencerule",
                         "Event", "TASK", "Alarm", "event ", "meeting", ""]
TITLES = ["", "", "", "", "Lab", "Lab", "Reminders", "Calendar¶Lab", "Nowhere", "lab", "Lab¶"]
PROPERTIES = ["title", "Title", "startdate", "enddate", "modifieddate", "datestamp", "occurrence", "uid", "notes", "url",
              "location", "isallday", "hasalarms", "calendartitle", "calendaruid", "duedate", "completeddate",
              "iscompleted", "priority", "color", "type", "action", "relativetrigger", "absolutetrigger", "sound",
              "emailaddress", "email", "status", "address", "commonname", "hasend", "recurrenceend", "recurrencetype",
              "daysoftheweek", "weeksoftheyear", "nthweekdaysofthemonth", "nonsense", ""]
FITTING = {
    "event": ["title", "startdate", "location", "url", "hasalarms", "calendartitle"],
    "Reminder": ["title", "duedate", "priority", "iscompleted", "calendartitle"],
    "calendar": ["title", "notes", "color"],
    "ALARM": ["relativetrigger", "absolutetrigger", "action", "sound", "emailaddress"],
    "attendee": ["commonname", "status", "address"],
    "RecurrenceRule": ["recurrencetype", "hasend", "recurrenceend", "daysoftheweek", "monthsoftheyear"],
}
VALUES = ["", "True", "high", "None", "display", "email", "Lab", "Nowhere", "-60", "255 0 0", "1  2", "text"]
UIDS = [*EVENT_UIDS, *REMINDER_UIDS, "nobody", ""]
SPANS = ["", "this", "Future", "all", "never"]
MOMENT = timestamp(2026, 3, 20, 12)


class Driver:
    def __init__(self, choices):
        self.cursor = Cursor()
        self.pick = choices.choice
        self.actions = [self.count, self.open_uid, self.open_title, self.reminders, self.new, self.save, self.remove,
                        self.add_alarm, self.remove_alarm, self.remove_alarms, self.add_rule, self.remove_rules,
                        *[self.events] * 3, *[self.set] * 4, *[self.open_at] * 6, *[self.get] * 8]

    def kind(self):
        """Mostly of something that is open."""
        cursor = self.cursor
        held = {"event": cursor.event, "Reminder": cursor.reminder, "calendar": cursor.calendar, "ALARM": cursor.alarm,
                "attendee": cursor.attendee, "RecurrenceRule": cursor.event}
        likely = [kind for kind, item in held.items() if item]
        return self.pick(likely) if likely and self.mostly() else self.pick(TYPES)

    def mostly(self):
        return self.pick([True, True, True, False])

    def property_of(self, kind):
        return self.pick(FITTING[kind] if kind in FITTING and self.mostly() else PROPERTIES)

    def openable(self):
        """Mostly of what has been fetched, or a part of what is open."""
        cursor = self.cursor
        likely = [*["event"] * bool(cursor.event_fetch), *["task"] * bool(cursor.reminder_fetch),
                  *["alarm", "attendee"] * bool(cursor.event)]
        return self.pick(likely) if likely and self.mostly() else self.pick(TYPES)

    def step(self):
        """A call, and the error number that is expected of it."""
        self.cursor.answer = None
        name, arguments, expected = self.pick(self.actions)()
        written = [argument if argument == MOMENT else quoted(argument) if isinstance(argument, str) else str(argument)
                   for argument in arguments]
        return f"Zuno_{name} ( {' ; '.join(written)} )" if written else f"Zuno_{name}", expected

    def count(self):
        kind = self.pick(TYPES)
        return "GetItemCountForType", [kind], self.cursor.count(kind)

    def open_at(self):
        kind, position = self.openable(), self.pick([-1, 0, 1, 1, 1, 2, 2, 3, 3, 4, 5, 8, 14])
        return "OpenItemAt", [kind, position], self.cursor.open_at(kind, position)

    def open_uid(self):
        kind, uid = self.pick(TYPES), self.pick(UIDS)
        return "OpenItemWithUID", [kind, uid], self.cursor.open_uid(kind, uid)

    def open_title(self):
        title = self.pick(TITLES)
        return "CalOpenCalendarWithTitle", [title], self.cursor.open_title(title)

    def events(self):
        titles = self.pick(TITLES)
        return "EventsFetch", ["", "", titles, ""], self.cursor.fetch_events(titles)

    def reminders(self):
        titles, date = self.pick(TITLES), self.pick(["", MOMENT])
        status = self.pick(["", "", "incomplete", "COMPLETED", "complete", "open"])
        return "RemindersFetch", [titles, status, date], self.cursor.fetch_reminders(titles, status, bool(date))

    def get(self):
        kind = self.kind()
        name, sub = self.property_of(kind), self.pick(["", "", "", "enddate", "UsesEndDate", "other"])
        return "GetProperty", [kind, name, sub], self.cursor.get(kind, name, sub)

    def set(self):
        kind = self.kind()
        name = self.property_of(kind)
        value = self.pick([MOMENT, MOMENT, "", "soon"]) if name.lower() in SETTABLE_DATES else self.pick(VALUES)
        return "SetProperty", [kind, name, value], self.cursor.set(kind, name, True if value == MOMENT else value)

    def new(self):
        kind = self.pick(TYPES)
        return "NewItem", [kind], self.cursor.new(kind)

    def save(self):
        kind, span = self.kind(), self.pick(SPANS)
        if not self.cursor.may_save(kind):
            span = "never"
        return "SaveItem", [kind, span], self.cursor.save(kind, span)

    def remove(self):
        kind, uid, span = self.pick(TYPES), self.pick([*EVENT_UIDS, "nobody"]), self.pick(["", "never"])
        return "RemoveItem", [kind, uid, self.pick(["", MOMENT]), span], self.cursor.remove(kind, uid, span)

    def add_alarm(self):
        kind, date = self.kind(), self.pick(["", "", MOMENT])
        action, address = self.pick(["display", "Email", "sound", "procedure", "wake", ""]), self.pick(["", "ann@example.org"])
        offset, sound = self.pick([0, -60, 900]), self.pick(["", "Basso"])
        expected = self.cursor.add_alarm(kind, bool(date), action, address, offset, sound)
        return "AddAlarm", [kind, date, action, address, offset, sound], expected

    def remove_alarm(self):
        kind, position = self.kind(), self.pick([-1, 0, 1, 2, 3])
        return "RemoveAlarm", [kind, position], self.cursor.remove_alarm(kind, position)

    def remove_alarms(self):
        kind = self.kind()
        return "RemoveAllAlarmsFrom", [kind], self.cursor.remove_alarms(kind)

    def add_rule(self):
        kind, interval = self.pick(["daily", "Weekly", "monthly", "yearly", "hourly", ""]), self.pick([-1, 0, 1, 2])
        days, date, count = self.pick(["", "1¶15", "40"]), self.pick(["", "", MOMENT]), self.pick([0, 5])
        expected = self.cursor.add_rule(kind, interval, days, bool(date), count)
        return "AddRecurrence", [kind, interval, "2¶4", days, "", date, count], expected

    def remove_rules(self):
        return "RemoveRecurrence", [], self.cursor.remove_rules()


def fault(session, call, expected, known):
    """What is wrong with the answer to a call, or nothing."""
    value, error = session(call), session.error()
    if expected == EMPTY:
        return None if value == "" and error == 0 else f"{value!r}, error {error}, where nothing was to happen"
    if error != expected or (value == ERROR) != (expected != 0):
        return f"{value!r}, error {error}, where {expected} was expected"
    if expected == 0 and known is not None and value != known.replace("¶", "\r"):
        return f"{value!r} where {known!r} was expected"
    return None


def main():
    lab = pathlib.Path(__file__).parent / "functions" / "lab.ics"
    driver = Driver(random.Random(SEED))
    calls, outcomes = [], collections.Counter()
    with tempfile.TemporaryDirectory() as folder:
        store = pathlib.Path(folder) / "calendars.sqlite"
        subprocess.run([zunocal, "--store", str(store), "import", str(lab)], check=True, capture_output=True)
        with Session(store) as session:
            for _ in range(STEPS):
                call, expected = driver.step()
                calls.append(call)
                wrong = fault(session, call, expected, driver.cursor.answer)
                if wrong:
                    print(f"seed {SEED}, step {len(calls)}:", *calls[-12:], f"  {wrong}", sep="\n")
                    return 1
                outcomes[expected] += 1
        expect(not check(store), "the store is damaged")
    print(f"{STEPS} calls, {outcomes[0]} of them succeeded; {len(outcomes)} different outcomes")
    expect(outcomes[0] > STEPS // 5 and len(outcomes) > 30, "the choices are bad: too little was tried")
    return 0


sys.exit(main())
