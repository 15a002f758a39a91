"""Calendars as programs wrote them, from the file to the occurrences that a script finds.

Usage: occurrences.py ZUNOHOST ZUNOCAL PLUGIN FOLDER     (FOLDER has the files of tests/data/ics)
"""
import pathlib
import subprocess
import sys
import tempfile

from zuno import Session, expect, timestamp, zunocal

# In four years from the first: their number, the first and the last, as three other programs agree on.
SOUND = [
    ("ical--apple_ical", 2022, 1212, "2022-09-12 16:00:00", "2025-12-31 17:00:00"),
    ("ical--google_calendar_public_holidays", 2021, 111, "2021-01-01 00:00:00", "2023-12-31 00:00:00"),
    ("ical--recurring_with_single_change", 2026, 3, "2026-02-01 15:00:00", "2026-02-03 15:00:00"),
    ("ical--unknown_value_proton_mail", 2024, 1, "2024-02-01 10:00:00", "2024-02-01 10:00:00"),
    ("ical.net--Google1", 2006, 1117, "2006-12-11 06:00:00", "2009-12-31 06:00:00"),
    ("ical4j--EXDATE", 2006, 5, "2006-01-01 02:00:00", "2006-01-07 02:00:00"),
    ("ical4j--rfc5545-sec3.6.1", 1997, 6, "1997-04-01 16:30:00", "2000-11-02 00:00:00"),
    ("khal--event_rrule_recuid", 2014, 6, "2014-06-30 05:00:00", "2014-08-04 05:00:00"),
    ("node-ical--tentative-apple-calendar", 2022, 4, "2022-07-04 23:00:00", "2022-07-07 16:00:00"),
]
# All that can be understood.
BROKEN = [
    ("a zone by its Windows name, in quotes", "biweekly--outlook-2010", ["2013-06-10 16:00:00"]),
    ("an empty parameter", "icalendar--broken_ical", ["2014-04-09 09:30:00"]),
    ("a line that is none", "icalendar--issue_104_broken_calendar", ["2014-04-01 00:00:00"]),
    ("an occurrence without its series", "khal--event_dt_recuid_no_master", ["2017-03-29 16:00:00"]),
    ("a rule that ends at a time, of an event of days", "khal--event_dt_rrule_invalid_until",
     ["2007-12-01 00:00:00", "2008-01-01 00:00:00", "2008-02-01 00:00:00"]),
    ("an offset that no clock has", "khal--invalid_tzoffset", ["2012-12-02 07:00:00"]),
]


def starts(folder, name, positions, *fetch):
    """How many events a fetch finds in a file, and the starts at these positions."""
    store = folder / f"{name}.sqlite"
    subprocess.run([zunocal, "--store", str(store), "import", str(pathlib.Path(sys.argv[4], name + ".ics"))],
                   check=True, capture_output=True)
    with Session(store, "UTC") as session:
        session.all(f'Zuno_EventsFetch ( {" ; ".join(fetch)} ; "" ; "" )')
        count = int(session('Zuno_GetItemCountForType ( "event" )'))
        found = []
        for position in positions(count):
            session.all(f'Zuno_OpenItemAt ( "event" ; {position} )')
            found.append(session('Zuno_GetProperty ( "event" ; "startdate" )'))
    return count, found


with tempfile.TemporaryDirectory() as folder:
    folder = pathlib.Path(folder)
    for name, year, count, first, last in SOUND:
        found = starts(folder, name, lambda count: (1, count), timestamp(year, 1, 1), timestamp(year + 4, 1, 1))
        expect(found == (count, [first, last]), f"{name}: {found}")
    for why, name, expected in BROKEN:
        _, found = starts(folder, name, lambda count: range(1, count + 1), '""', '""')
        expect(found == expected, f"{why}: {found}")
print(f"{len(SOUND) + len(BROKEN)} files")
