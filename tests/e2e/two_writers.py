"""Two processes on one store: each sees the other's changes at its next call, and no update is lost."""
import pathlib
import tempfile
import threading

from zuno import ERROR, Session, check, expect, new_event, quoted, timestamp, titles

ROUNDS = 40


def set_and_save(session, uid, field, value):
    session.all(f'Zuno_OpenItemWithUID ( "event" ; {quoted(uid)} )',
                f'Zuno_SetProperty ( "event" ; {quoted(field)} ; {quoted(value)} )',
                'Zuno_SaveItem ( "event" ; "this" )')


def field(session, uid, name):
    session.all(f'Zuno_OpenItemWithUID ( "event" ; {quoted(uid)} )')
    return session(f'Zuno_GetProperty ( "event" ; {quoted(name)} )')


def alternately(first, second):
    first.all(new_event("shared", timestamp(2026, 3, 2, 9), timestamp(2026, 3, 2, 10)))
    uid = first('Zuno_GetProperty ( "event" ; "uid" )')
    for number in range(ROUNDS):
        set_and_save(first, uid, "location", f"room {number}")
        expect(field(second, uid, "location") == f"room {number}", "the second process sees an old location")
        set_and_save(second, uid, "notes", f"note {number}")
        expect(field(first, uid, "notes") == f"note {number}", "the first process sees old notes")
    return uid


def a_fetch_follows(first, second):
    first.all(f'Zuno_EventsFetch ( {timestamp(2026, 4, 1)} ; {timestamp(2026, 5, 1)} ; "" ; "" )')
    for number in range(1, 6):
        second.all(new_event(f"april {number}", timestamp(2026, 4, number, 9), timestamp(2026, 4, number, 10)))
        count = first('Zuno_GetItemCountForType ( "event" )')
        expect(count == str(number), f"the kept fetch counts {count} instead of {number}")


def snapshots_merge(first, second, uid):
    """Both have the event open; each saves another field; neither overwrites the other's."""
    first.all(f'Zuno_OpenItemWithUID ( "event" ; {quoted(uid)} )')
    second.all(f'Zuno_OpenItemWithUID ( "event" ; {quoted(uid)} )',
               'Zuno_SetProperty ( "event" ; "notes" ; "from the second" )', 'Zuno_SaveItem ( "event" ; "this" )')
    expect(first('Zuno_GetProperty ( "event" ; "notes" )') != "from the second", "an open item is no snapshot")
    first.all('Zuno_SetProperty ( "event" ; "location" ; "from the first" )', 'Zuno_SaveItem ( "event" ; "this" )')
    expect(field(second, uid, "notes") == "from the second", "a save wrote a field that it had not changed")
    expect(field(second, uid, "location") == "from the first", "the save is lost")


def deleted_elsewhere(first, second):
    first.all(new_event("doomed", timestamp(2026, 6, 1, 9), timestamp(2026, 6, 1, 10)))
    uid = first('Zuno_GetProperty ( "event" ; "uid" )')
    second.all(f'Zuno_RemoveItem ( "event" ; {quoted(uid)} ; "" ; "this" )')
    expect(first('Zuno_GetProperty ( "event" ; "title" )') == "doomed", "the open item lost its title")
    first.all('Zuno_SetProperty ( "event" ; "title" ; "risen" )')
    answer = first('Zuno_SaveItem ( "event" ; "this" )')
    if answer == ERROR:
        expect(first.error() != 0, "a refused save without a number")
    else:
        expect("risen" in titles(second, timestamp(2026, 6, 1), timestamp(2026, 6, 2)), "a save that returned is lost")


def at_once(store):
    def write(name, failures):
        try:
            with Session(store) as session:
                for number in range(ROUNDS):
                    session.all(new_event(f"{name} {number}", timestamp(2026, 5, 1, 9), timestamp(2026, 5, 1, 10)))
        except Exception as failure:  # reported by the main thread
            failures.append(f"{name}: {failure}")

    failures = []
    writers = [threading.Thread(target=write, args=(name, failures)) for name in ("left", "right")]
    for writer in writers:
        writer.start()
    for writer in writers:
        writer.join()
    expect(not failures, failures)
    with Session(store) as session:
        found = titles(session, timestamp(2026, 5, 1), timestamp(2026, 5, 2))
    expected = sorted(f"{name} {number}" for name in ("left", "right") for number in range(ROUNDS))
    expect(sorted(found) == expected, "concurrent saves were lost or doubled")


with tempfile.TemporaryDirectory() as folder:
    store = pathlib.Path(folder) / "calendars.sqlite"
    with Session(store) as first, Session(store) as second:
        uid = alternately(first, second)
        a_fetch_follows(first, second)
        snapshots_merge(first, second, uid)
        deleted_elsewhere(first, second)
    at_once(store)
    fault = check(store)
    expect(not fault, fault)
print("two writers: all seen, none lost")
