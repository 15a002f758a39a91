"""What is open and which error comes of each call: the rules of the cursor, without any calendar work.

The content is that of functions/lab.ics in an otherwise new store. Nothing here is ever saved with a change, so the
content stays. Every operation gives the expected error number, or EMPTY for a call that does nothing; what it answers
otherwise is in `answer` where it is known."""
import copy

EMPTY = "empty"

PLAIN = {"title": "Plain", "alarms": 2, "attendees": 0, "rules": []}
SERIES = {"title": "Series", "alarms": 0, "attendees": 0, "rules": ["count"]}
MOVED = {"title": "Series, moved", "alarms": 0, "attendees": 0, "rules": []}
TUESDAY = {"title": "Second Tuesday", "alarms": 0, "attendees": 0, "rules": ["date"]}
HOLIDAY = {"title": "Holiday", "alarms": 0, "attendees": 0, "rules": []}
MEETING = {"title": "Meeting", "alarms": 0, "attendees": 4, "rules": []}
EVENTS = [TUESDAY, TUESDAY, PLAIN, MEETING, HOLIDAY, TUESDAY, SERIES, MOVED, SERIES, TUESDAY, SERIES, TUESDAY, TUESDAY]
EVENT_UIDS = {"plain@tests.zuno": PLAIN, "series@tests.zuno": SERIES, "tuesday@tests.zuno": TUESDAY,
              "holiday@tests.zuno": HOLIDAY, "meeting@tests.zuno": MEETING}
REMINDERS = [{"title": title, "alarms": 0} for title in ("High", "None", "Done")]
REMINDER_UIDS = {title.lower() + "@tests.zuno": reminder
                 for title, reminder in zip(("High", "None", "Done"), REMINDERS)}
CALENDARS = ["Calendar", "Lab"]
LISTS = ["Reminders", "Lab"]

TYPES = {"event": "event", "task": "reminder", "reminder": "reminder", "calendar": "calendar",
         "reminderlist": "reminderlist", "alarm": "alarm", "attendee": "attendee", "recurrencerule": "rule"}
KNOWN = {
    "calendar": {"title", "notes", "type", "uid", "iseditable", "issubscribed", "allowsmodification", "color"},
    "alarm": {"absolutetrigger", "action", "emailaddress", "relativetrigger", "sound", "url"},
    "attendee": {"address", "commonname", "status"},
    "rule": {"firstdayoftheweek", "hasend", "recurrencetype", "recurrenceinterval", "daysoftheweek", "daysofthemonth",
             "nthweekdaysofthemonth", "monthsoftheyear"},
}
SETTABLE_DATES = {"absolutetrigger", "enddate", "startdate", "occurrence", "completeddate", "duedate"}
REMINDERS_OWN = {"duedate", "completeddate", "iscompleted", "priority"}
SPANS = {"this", "future", "all"}


def within(position, count):
    return 1 <= position <= count


class Cursor:
    def __init__(self):
        self.answer = None
        self.release()

    def release(self):
        self.calendar = self.event_fetch = self.reminder_fetch = None
        self.close_item()

    def close_item(self):
        self.event = self.reminder = self.rule = None
        self.alarm = self.attendee = False

    def owner(self):
        return self.reminder or self.event

    # Fetching and counting.

    def fetched(self, titles, items, home):
        """The items of the named calendars, or an error."""
        if not titles:
            return items, 0
        found = []
        for title in titles.split("¶"):
            if title not in CALENDARS + LISTS:
                return None, 9013
            # An event calendar is found before a list of the same title.
            if title == "Lab" and home == "calendar":
                found = items
        return found, 0

    def fetch_events(self, titles):
        self.release()
        self.event_fetch, error = self.fetched(titles, EVENTS, "calendar")
        return error

    def fetch_reminders(self, titles, status, dated):
        self.release()
        found, error = self.fetched(titles, REMINDERS, "reminderlist")
        if error:
            return error
        if not status:
            self.reminder_fetch = found
        elif status.lower() in ("incomplete", "incompleted"):
            # The date is one by which only "High" is due.
            self.reminder_fetch = [r for r in found if r["title"] == "High" or r["title"] == "None" and not dated]
        elif status.lower() in ("complete", "completed") and dated:
            self.reminder_fetch = []  # completed before that date
        else:
            return -4
        return 0

    def count(self, kind):
        if not kind:
            return EMPTY
        kind = TYPES.get(kind.lower())
        owner = self.event or self.reminder
        cases = {"calendar": (len(CALENDARS), 0), "reminderlist": (len(LISTS), 0),
                 "event": (len(self.event_fetch or []), 9054 if self.event_fetch is None else 0),
                 "reminder": (len(self.reminder_fetch or []), 9055 if self.reminder_fetch is None else 0),
                 "attendee": (self.event and self.event["attendees"], 0 if self.event else 9056),
                 "alarm": (owner and owner["alarms"], 0 if owner else 9057)}
        answer, error = cases.get(kind, (None, 9042))
        if not error:
            self.answer = str(answer)
        return error

    # Opening.

    def open_at(self, kind, position):
        kind = TYPES.get(kind.lower()) if kind else "calendar"
        return {"calendar": self.open_calendar_at, "reminderlist": self.open_list_at, "event": self.open_event_at,
                "reminder": self.open_reminder_at, "attendee": self.open_attendee_at,
                "alarm": self.open_alarm_at}.get(kind, lambda _: -4)(position)

    def open_calendar_at(self, position, titles=tuple(CALENDARS)):
        self.release()
        if not within(position, len(titles)):
            return 9002
        self.calendar = {"title": titles[position - 1]}
        return 0

    def open_list_at(self, position):
        return self.open_calendar_at(position, LISTS)

    def open_event_at(self, position):
        if self.event_fetch is None:
            return 9077
        self.calendar = None
        self.close_item()
        if not within(position, len(self.event_fetch)):
            return 9002
        self.event = copy.deepcopy(self.event_fetch[position - 1])
        return 0

    def open_reminder_at(self, position):
        self.close_item()
        if self.reminder_fetch is None:
            return 9999
        if not within(position, len(self.reminder_fetch)):
            return 9002
        self.reminder = copy.deepcopy(self.reminder_fetch[position - 1])
        return 0

    def open_attendee_at(self, position):
        if not self.event:
            return 9000
        self.attendee = within(position, self.event["attendees"])
        return 0 if self.attendee else 9002

    def open_alarm_at(self, position):
        owner = self.owner()
        if not owner:
            return 9000
        self.alarm = within(position, owner["alarms"])
        return 0 if self.alarm else 9008 if not owner["alarms"] else 9002

    def open_uid(self, kind, uid):
        kind = TYPES.get(kind.lower())
        if kind not in ("calendar", "reminderlist", "event", "reminder") or not uid:
            return -4
        self.release()
        if kind == "event":
            self.event = copy.deepcopy(EVENT_UIDS.get(uid))
            return 0 if self.event else 9001
        if kind == "reminder":
            self.reminder = copy.deepcopy(REMINDER_UIDS.get(uid))
            if uid in EVENT_UIDS:
                self.reminder = copy.deepcopy(EVENT_UIDS[uid])
            return 0 if self.reminder else 9059
        return 9013  # no identifier of a calendar's is tried

    def open_title(self, title):
        if not title:
            return -4
        self.release()
        if title not in CALENDARS + LISTS:
            return 9058
        self.calendar = {"title": title}
        return 0

    # Properties.

    def get(self, kind, name, sub):
        if not kind or not name:
            return EMPTY
        kind, name = TYPES.get(kind.lower()), name.lower()
        if kind is None:
            return -4
        if kind == "rule":
            return self.get_rule(name, sub.lower())
        if kind == "alarm" and name == "email":
            return 0
        item = {"event": self.event, "reminder": self.reminder, "calendar": self.calendar,
                "reminderlist": self.calendar, "alarm": self.alarm, "attendee": self.attendee}[kind]
        if not item:
            return {"event": 9066, "reminder": 9067, "alarm": 9064, "attendee": 9062}.get(kind, 9065)
        if kind == "reminder":
            if name in REMINDERS_OWN and "rules" in item:
                return 9999
            if name == "modifieddate":
                return 9063
        known = KNOWN.get("calendar" if kind == "reminderlist" else kind)
        if known and name not in known:
            return 9063
        if name == "title" and sub.lower() != "enddate":
            self.answer = item["title"]
        return 0

    def get_rule(self, name, sub):
        if not self.event:
            return 9068
        if not self.rule and self.event["rules"]:
            self.rule = self.event["rules"][0]
        if name == "weeksoftheyear":
            return 9073
        if name == "recurrenceend":
            if self.rule in (None, "endless"):
                return 0
            return 9005 if not sub else 0 if sub in ("usesenddate", "occurrencecount", "enddate") else 9006
        return 0 if name in KNOWN["rule"] else 9063

    def set(self, kind, name, value):
        """The value: a text, or True for a timestamp."""
        if not kind or not name:
            return EMPTY
        name = name.lower()
        if name in SETTABLE_DATES and value is not True:
            return 9005
        kind = TYPES.get(kind.lower())
        if kind in (None, "attendee"):
            return -4
        if kind == "rule":
            return 0
        return {"event": self.set_event, "reminder": self.set_reminder, "alarm": self.set_alarm}.get(
            kind, self.set_calendar)(name, value)

    def set_event(self, name, value):
        if not self.event:
            return 9049
        if name in ("startdate", "enddate", "isallday", "location"):
            self.event["changed"] = True
            return 0
        return self.set_item(self.event, name, value)

    def set_reminder(self, name, value):
        if not self.reminder:
            return 9052
        if name == "priority" and value.lower() not in ("", "none", "high", "medium", "low"):
            return 9005
        if name in REMINDERS_OWN:
            if "rules" in self.reminder:
                return 9999
            self.reminder["changed"] = True
            return 0
        return self.set_item(self.reminder, name, value)

    def set_item(self, item, name, value):
        if name in ("calendaruid", "calendartitle"):
            if name == "calendaruid" or value not in CALENDARS + LISTS:
                return 9013
        elif name not in ("notes", "title", "url"):
            return 9006
        if name == "title":
            item["title"] = value
        item["changed"] = True
        return 0

    def set_calendar(self, name, value):
        if not self.calendar:
            return 9051
        if name == "color" and len(value.split(" ")) != 3:
            return -4
        if name not in ("notes", "title", "color"):
            return 9005
        if name == "title":
            self.calendar["title"] = value
        self.calendar["changed"] = True
        return 0

    def set_alarm(self, name, value):
        if not self.alarm:
            return 9000
        if name not in ("absolutetrigger", "relativetrigger", "action", "emailaddress", "sound"):
            return 9005
        if name == "relativetrigger" and not value:
            return 9074
        if name == "action" and value.lower() not in ("display", "email", "procedure", "sound"):
            return 9044
        self.owner()["changed"] = True
        return 0

    # Creating, saving, removing.

    def new(self, kind):
        if not kind:
            return EMPTY
        self.release()
        kind = TYPES.get(kind.lower())
        new = {"title": "", "changed": True, "new": True}
        if kind in ("calendar", "reminderlist"):
            self.calendar = new
        elif kind == "event":
            self.event = {**new, "alarms": 0, "attendees": 0, "rules": []}
        elif kind == "reminder":
            self.reminder = {**new, "alarms": 0}
        else:
            return 9042
        return 0

    def may_save(self, kind):
        """Whether saving it leaves the store as it is."""
        item = {"event": self.event, "reminder": self.reminder}.get(TYPES.get(kind.lower()), self.calendar)
        return not item or not item.get("changed")

    def save(self, kind, span):
        if not kind:
            return EMPTY
        if span and span.lower() not in SPANS:
            return 9053
        kind = TYPES.get(kind.lower())
        if kind not in ("event", "reminder", "calendar", "reminderlist"):
            return 9005
        item = {"event": self.event, "reminder": self.reminder}.get(kind, self.calendar)
        return 9999 if not item or kind == "reminder" and "rules" in item else 0

    def remove(self, kind, uid, span):
        """Only what cannot be removed: an identifier that nothing has, an event without a span or as a reminder."""
        if not kind:
            return EMPTY
        self.release()
        if span and span.lower() not in SPANS:
            return 9006
        kind = TYPES.get(kind.lower())
        if kind in ("calendar", "reminderlist"):
            return 9036
        if kind == "reminder":
            return 9078 if uid in EVENT_UIDS else 9035
        if kind == "event":
            return 9037 if uid in EVENT_UIDS else 9034
        return 9005

    # Alarms and rules.

    def alarm_owner(self, kind):
        kind = TYPES.get(kind.lower())
        if kind == "reminder":
            return self.reminder, 0 if self.reminder else 9046
        if kind == "event":
            return self.event, 0 if self.event else 9047
        return None, 9006

    def add_alarm(self, kind, dated, action, address, offset, sound):
        if not kind:
            return 9045
        if not action:
            return 9032
        self.alarm = False
        if not dated and offset == 0:
            return 9031
        owner, error = self.alarm_owner(kind)
        if error:
            return error
        error = {"display": 0, "email": 0 if address else 9028, "sound": 0 if sound else 9030,
                 "procedure": 9029}.get(action.lower(), 9005)
        if not error:
            owner["alarms"] += 1
            owner["changed"] = True
        return error

    def remove_alarm(self, kind, position):
        if not kind:
            return 9045
        owner, error = self.alarm_owner(kind)
        if error or not owner["alarms"]:
            return error
        if position == -1:
            owner["alarms"] = 0
            owner["changed"] = True
            return 9027
        if not within(position, owner["alarms"]):
            return 9002
        owner["alarms"] -= 1
        owner["changed"] = True
        return 0

    def remove_alarms(self, kind):
        if not kind:
            return 9005
        owner, error = self.alarm_owner(kind)
        if error:
            return 9006 if error == 9006 else 9000
        if owner["alarms"]:
            owner["alarms"] = 0
            owner["changed"] = True
        return 0

    def add_rule(self, kind, interval, month_days, dated, count):
        if kind.lower() not in ("daily", "weekly", "monthly", "yearly"):
            return 9021
        if interval < 1:
            return 9024
        if not self.event:
            return 9043
        if kind.lower() == "monthly" and month_days == "40":
            return 9020
        self.event["rules"].append("date" if dated else "count" if count > 0 else "endless")
        self.event["changed"] = True
        return 0

    def remove_rules(self):
        if not self.event:
            return 9048
        self.event["changed"] = True
        self.event["rules"] = []
        return 0
