"""Stores that cannot be used: scripts get an error or empty lists, nothing crashes, no file is changed or lost."""
import hashlib
import os
import pathlib
import resource
import signal
import sqlite3
import subprocess
import tempfile

from zuno import ERROR, Session, check, expect, new_event, timestamp, titles, zunocal

EVENT = new_event("Lunch", timestamp(2026, 3, 2, 12), timestamp(2026, 3, 2, 13))


def digest(path):
    return hashlib.sha256(pathlib.Path(path).read_bytes()).hexdigest()


def make_store(path):
    with Session(path) as session:
        session.all(EVENT)
    return path


def behaves_as_refused(path):
    """Empty lists, no item, a save that fails; the host lives on."""
    with Session(path) as session:
        for kind in ("calendar", "reminderlist"):
            expect(session(f'Zuno_GetItemCountForType ( "{kind}" )') == "0", f"{path}: a store with a {kind}")
        expect(session('Zuno_EventsFetch ( "" ; "" ; "" ; "" )') == ERROR and session.error() == 9004, f"{path}: fetch")
        for kind, error in (("event", 9001), ("reminder", 9059)):
            expect(session(f'Zuno_OpenItemWithUID ( "{kind}" ; "x" )') == ERROR and session.error() == error, f"{path}: opening")
        expect(session('Zuno_NewItem ( "event" )') == "0", f"{path}: a new item needs no store")
        expect(session('Zuno_SaveItem ( "event" ; "this" )') == ERROR, f"{path}: a save that succeeded")
        expect(session.error() == 9018, f"{path}: error {session.error()}")
    expect(check(path), f"{path}: check found nothing")


def unusable_files(folder):
    text = folder / "no-database.sqlite"
    text.write_text("This is no calendar store.\n" * 200)
    newer = make_store(folder / "newer.sqlite")
    with sqlite3.connect(newer) as database:
        database.execute("PRAGMA user_version = 999")
        database.execute("PRAGMA wal_checkpoint(TRUNCATE)")
    database.close()
    foreign = folder / "foreign.sqlite"
    with sqlite3.connect(foreign) as database:
        database.execute("CREATE TABLE recipe (name TEXT)")
    database.close()
    for path in (text, newer, foreign):
        before = digest(path)
        behaves_as_refused(path)
        expect(digest(path) == before, f"{path.name} was changed")
        imported = subprocess.run([zunocal, "--store", str(path), "import", str(folder)], capture_output=True, text=True)
        expect(imported.returncode == 1 and imported.stderr.strip(), f"{path.name}: zunocal import said nothing")
        expect(digest(path) == before, f"{path.name} was changed by an import")
    a_folder = folder / "folder.sqlite"
    a_folder.mkdir()
    behaves_as_refused(a_folder)


def full_disk(folder):
    """The file may not grow any more: saves fail with a number, what was saved stays."""
    store = make_store(folder / "full.sqlite")

    def limit():
        signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
        size = max(path.stat().st_size for path in folder.glob("full.sqlite*"))
        resource.setrlimit(resource.RLIMIT_FSIZE, (size + 65536, size + 65536))

    saved = 1
    with Session(store, preexec_fn=limit) as session:
        for number in range(5000):
            if session(EVENT) == ERROR:
                expect(session.error() in (9018, 9999), f"full disk: error {session.error()}")
                break
            saved += 1
        else:
            raise AssertionError("the limit was never reached")
        expect(int(session('Zuno_GetItemCountForType ( "calendar" )')) >= 1, "the store is gone after a failed save")
    expect(not check(store), check(store))
    with Session(store) as session:
        expect(len(titles(session)) == saved, "saved events are missing after the disk was full")


def locked(folder):
    """Another process keeps the store locked: a save waits, then fails; reading goes on."""
    store = make_store(folder / "locked.sqlite")
    holder = sqlite3.connect(store, isolation_level=None)
    holder.execute("BEGIN IMMEDIATE")
    with Session(store) as session:
        expect(len(titles(session)) == 1, "reading needs the write lock")
        expect(session(EVENT) == ERROR, "a save went through a lock")
        expect(session.error() in (9018, 9999), f"locked: error {session.error()}")
        holder.execute("ROLLBACK")
        expect(session(EVENT) == "0", "no save after the lock was gone")
    holder.close()


def read_only(folder):
    """A store that may only be read is read, and not written."""
    store = make_store(folder / "read-only.sqlite")
    as_nobody = {} if os.geteuid() != 0 else {"user": "nobody", "group": "nogroup", "extra_groups": []}
    if as_nobody:
        for path in (folder, *folder.parents):
            if not path.stat().st_mode & 0o001:
                print("read-only: left out, an unprivileged user cannot reach the folder")
                return
    inner = folder / "inner"
    inner.mkdir()
    for part in folder.glob("read-only.sqlite*"):
        part.rename(inner / part.name).chmod(0o444)
    store = inner / store.name
    before = {path.name: digest(path) for path in inner.iterdir()}
    inner.chmod(0o555)
    try:
        with Session(store, **as_nobody) as session:
            expect(len(titles(session)) == 1, "a read-only store reads empty")
            expect(session(EVENT) == ERROR and session.error() == 9018, f"read-only: error {session.error()}")
    finally:
        inner.chmod(0o755)
    expect({path.name: digest(path) for path in inner.iterdir()} == before, "a read-only store was changed")


def damaged(folder):
    """Pages in the middle are rubbish: an error or what is left, never a crash; the file is not thrown away."""
    store = make_store(folder / "damaged.sqlite")
    with Session(store) as session:
        for _ in range(30):
            session.all(EVENT)
    content = bytearray(store.read_bytes())
    for offset in range(4096, len(content), 8192):
        content[offset:offset + 4096] = os.urandom(min(4096, len(content) - offset))
    store.write_bytes(content)
    with Session(store) as session:
        for calculation in ('Zuno_GetItemCountForType ( "calendar" )', 'Zuno_EventsFetch ( "" ; "" ; "" ; "" )',
                            'Zuno_GetItemCountForType ( "event" )', EVENT):
            session(calculation)
    expect(store.exists() and store.stat().st_size >= len(content), "a damaged store was thrown away")
    expect(check(store), "check calls a damaged store sound")


with tempfile.TemporaryDirectory() as name:
    folder = pathlib.Path(name)
    folder.chmod(0o755)
    for case in (unusable_files, full_disk, locked, read_only, damaged):
        part = folder / case.__name__
        part.mkdir(mode=0o755)
        case(part)
        print(f"{case.__name__}: as it should be")
