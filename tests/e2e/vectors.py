"""Recurrence vectors all the way: imported as calendar files, fetched and read through the plug-in.

Usage: vectors.py ZUNOHOST ZUNOCAL PLUGIN FOLDER     (FOLDER has the vectors of tests/recurrence/data)
"""
import datetime
import pathlib
import subprocess
import sys
import tempfile

from zuno import Session, expect, zunocal


def vectors(folder):
    """One dictionary a vector: name, start, zone, rule, except, expect (all or first), dates."""
    for file in sorted(folder.glob("*.txt")):
        vector = None
        for line in file.read_text(encoding="utf-8").splitlines():
            word, _, rest = line.strip().partition(" ")
            if line.startswith("  "):
                vector["dates"] += line.split()
            elif word == "start":
                start, _, zone = rest.partition(" ")
                vector = {"start": start, "zone": zone, "except": [], "dates": [], "name": name}
                yield vector
            elif word == "except":
                vector["except"].append(rest)
            elif word in ("rule", "expect"):
                vector[word] = rest
            elif word == "#":
                name = f"{file.stem}: {rest}"


def calendar_text(vector, title):
    if len(vector["start"]) == 8:
        parameter = ";VALUE=DATE"
    else:
        parameter = f";TZID={vector['zone']}" if vector["zone"] not in ("", "UTC") else ""
    suffix = "Z" if vector["zone"] == "UTC" else ""
    lines = ["BEGIN:VCALENDAR", "VERSION:2.0", f"X-WR-CALNAME:{title}", "BEGIN:VEVENT", f"UID:{title}", "SUMMARY:Vector",
             f"DTSTART{parameter}:{vector['start']}{suffix}", f"RRULE:{vector['rule']}",
             *(f"EXDATE{parameter}:{date}{suffix}" for date in vector["except"]), "END:VEVENT", "END:VCALENDAR", ""]
    return "\r\n".join(lines)


def wall(text):
    return datetime.datetime.strptime(text, "%Y%m%dT%H%M%S" if "T" in text else "%Y%m%d")


def read(session, vector, title):
    """The wall-clock starts that the plug-in shows, and how many there are in the range."""
    end = wall(vector["dates"][-1]) + datetime.timedelta(days=1)
    until = '""' if vector["expect"] == "all" else f"Timestamp ( Date ( {end.month} ; {end.day} ; {end.year} ) ; 0 )"
    session.all(f'Zuno_EventsFetch ( "" ; {until} ; "{title}" ; "" )')
    count = int(session('Zuno_GetItemCountForType ( "event" )'))
    starts = []
    for position in range(1, min(count, len(vector["dates"])) + 1):
        session.all(f'Zuno_OpenItemAt ( "event" ; {position} )')
        starts.append(datetime.datetime.strptime(session('Zuno_GetProperty ( "event" ; "startdate" )'), "%Y-%m-%d %H:%M:%S"))
    return starts, count


with tempfile.TemporaryDirectory() as name:
    folder = pathlib.Path(name)
    (folder / "calendars").mkdir()
    cases = [(f"v{number}", vector) for number, vector in enumerate(vectors(pathlib.Path(sys.argv[4])))]
    for title, vector in cases:
        (folder / "calendars" / f"{title}.ics").write_text(calendar_text(vector, title), newline="", encoding="utf-8")
    store = folder / "calendars.sqlite"
    imported = subprocess.run([zunocal, "--store", str(store), "import", str(folder / "calendars")], capture_output=True, text=True)
    expect(imported.returncode == 0, imported.stderr)
    failures = []
    for zone in sorted({vector["zone"] for _, vector in cases}):
        with Session(store, zone or "UTC") as session:
            for title, vector in cases:
                if vector["zone"] != zone or vector["start"] >= "4001":  # where all time ends for a fetch
                    continue
                starts, count = read(session, vector, title)
                wanted = [wall(date) for date in vector["dates"]]
                if starts != wanted or (vector["expect"] == "all" and count != len(wanted)):
                    failures.append(f"{vector['name']}: {vector['rule']}: {count} occurrences, the first {[str(s) for s in starts[:5]]}")
    for failure in failures:
        print(failure)
    expect(not failures, f"{len(failures)} of {len(cases)} vectors")
    expect(len(cases) >= 150, "vectors are missing")
    print(f"{len(cases)} vectors")
