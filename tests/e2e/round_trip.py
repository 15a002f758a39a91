"""Real calendar files through the store: import, edit one event, export. What was not edited comes out as it went in, and
two other readers of iCalendar accept the result.

Usage: round_trip.py ZUNOHOST ZUNOCAL PLUGIN LIBICAL_COUNT FILE|FOLDER...
"""
import collections
import pathlib
import re
import subprocess
import sys
import tempfile

import icalendar

from zuno import ERROR, Session, check, expect, quoted, zunocal

libical_count = sys.argv[4]
files = [file for argument in map(pathlib.Path, sys.argv[5:])
         for file in (sorted(argument.glob("*.ics")) if argument.is_dir() else [argument])]
TITLE = "Edited: a title, with; marks \\ and ünïcödé that is long enough to be folded over more than one line of the file"
# What an edit of the title may touch.
EDITED = {"SUMMARY", "SEQUENCE", "DTSTAMP", "LAST-MODIFIED", "CREATED"}


def unfolded(data):
    text = data.decode("utf-8", "surrogateescape").removeprefix("\ufeff")
    return re.sub(r"\r\n?|\n", "\n", text).replace("\n ", "").replace("\n\t", "").split("\n")


def components(data):
    """(path, lines) of each component, in order; a component's lines in order."""
    result, stack = [], []
    for line in unfolded(data):
        upper = line.upper().strip()
        if upper.startswith("BEGIN:"):
            stack.append((upper[6:], []))
            result.append(("/".join(name for name, _ in stack), stack[-1][1]))
        elif upper.startswith("END:"):
            if stack:
                stack.pop()
        elif line and stack:
            stack[-1][1].append(line)
    return result


def property_name(line):
    return re.split("[;:]", line, maxsplit=1)[0].upper()


def counted(pairs):
    return collections.Counter((path, tuple(lines)) for path, lines in pairs)


def editable(data):
    """UID of the first plain event of the file: no rule, no organizer, not an occurrence of a series."""
    parsed = [lines for path, lines in components(data) if path == "VCALENDAR/VEVENT"]
    uids = collections.Counter(line for lines in parsed for line in lines if property_name(line) == "UID")
    for lines in parsed:
        names = {property_name(line) for line in lines}
        own = [line for line in lines if property_name(line) == "UID"]
        if own and uids[own[0]] == 1 and not names & {"RRULE", "RDATE", "ORGANIZER", "RECURRENCE-ID"} and "DTSTART" in names:
            return own[0].split(":", 1)[1]
    return None


def with_last_line_ended(data):
    return data if data.endswith(b"\n") else data + (b"\r\n" if b"\r" in data else b"\n")


def export(store, target):
    done = subprocess.run([zunocal, "--store", str(store), "export", "-o", str(target)], capture_output=True, text=True)
    expect(done.returncode == 0, f"export: {done.stderr}")
    return target.read_bytes()


def libical(path):
    """Events, to-dos and faults."""
    return subprocess.run([libical_count, str(path)], capture_output=True, text=True, check=True).stdout.split()


def read_by_others(path, data, original):
    """Both readers find the components that are there, and no fault that the original has not."""
    names = collections.Counter(path_.rsplit("/", 1)[-1] for path_, _ in components(data))
    expect(libical(path) == [str(names["VEVENT"]), str(names["VTODO"]), libical(original)[2]], f"libical: {libical(path)}")
    try:
        icalendar.Calendar.from_ical(original.read_text(encoding="utf-8"), multiple=True)
    except ValueError:
        return
    read = [item for calendar in icalendar.Calendar.from_ical(data.decode("utf-8"), multiple=True) for item in calendar.walk()]
    expect(sum(item.name == "VEVENT" for item in read) == names["VEVENT"], "icalendar misses events")


def is_whole(data):
    """A calendar object whose items all have a UID: what an export has to give back to the letter."""
    items = [lines for path, lines in components(data) if path in ("VCALENDAR/VEVENT", "VCALENDAR/VTODO")]
    return (data.startswith(b"BEGIN:VCALENDAR") and b"\nVERSION:" in data and items
            and all(any(property_name(line) == "UID" for line in lines) for lines in items))


def trip(file, folder):
    original = file.read_bytes()
    if not is_whole(original):
        return "not whole"
    store = folder / f"{file.stem}.sqlite"
    imported = subprocess.run([zunocal, "--store", str(store), "import", str(file)], capture_output=True, text=True)
    if imported.returncode != 0:
        return "not imported"
    untouched = export(store, folder / f"{file.stem}.untouched.ics")
    expect(untouched == with_last_line_ended(original), "an untouched export differs")
    if " 0 skipped" not in imported.stdout:
        return "not read without loss"
    uid = editable(original)
    if uid is None:
        return "nothing plain to edit"
    with Session(store) as session:
        session.all(f'Zuno_OpenItemWithUID ( "event" ; {quoted(uid)} )', f'Zuno_SetProperty ( "event" ; "title" ; {quoted(TITLE)} )')
        answer = session('Zuno_SaveItem ( "event" ; "this" )')
        expect(answer != ERROR, f"the save was refused: {session.error()}")
    path = folder / f"{file.stem}.edited.ics"
    edited = export(store, path)
    gone = list((counted(components(original)) - counted(components(edited))).elements())
    come = list((counted(components(edited)) - counted(components(original))).elements())
    expect(len(gone) == len(come) == 1, f"{len(gone)} components gone, {len(come)} come")
    kept_before = [line for line in gone[0][1] if property_name(line) not in EDITED]
    kept_after = [line for line in come[0][1] if property_name(line) not in EDITED]
    expect(kept_before == kept_after, f"lines were changed that nobody edited:\n{kept_before}\n{kept_after}")
    title = [line for line in come[0][1] if property_name(line) == "SUMMARY"]
    expect(len(title) == 1 and title[0].endswith(TITLE.replace("\\", "\\\\").replace(",", "\\,").replace(";", "\\;")), title)
    expect(all(len(line.rstrip(b"\r")) <= 75 for line in edited.split(b"\n") if b"Edited" in line), "a long line was not folded")
    read_by_others(path, edited, file)
    expect(not check(store), check(store))
    return "edited"


with tempfile.TemporaryDirectory() as name:
    outcomes = collections.Counter()
    failures = 0
    for file in files:
        try:
            outcome = trip(file, pathlib.Path(name))
        except (AssertionError, UnicodeError, ValueError) as failure:
            failures += 1
            outcome = f"FAILED: {failure}"
        print(f"{file.name}: {outcome}")
        outcomes[outcome] += 1
    expect(not failures, f"{failures} of {len(files)} files")
    expect(outcomes["edited"] >= 3 and outcomes["not whole"] < 8, f"too few files could be edited: {dict(outcomes)}")
