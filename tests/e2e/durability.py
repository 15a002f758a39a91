"""kill -9 in the middle of saves: the store stays sound, and every save that had returned is in it.

ZUNO_KILLS sets the number of kills (default 200).
"""
import os
import pathlib
import random
import signal
import sys
import tempfile
import threading

from zuno import Session, check, expect, new_event, timestamp, titles

kills = int(os.environ.get("ZUNO_KILLS", "200"))
seed = int(os.environ.get("ZUNO_SEED", "1"))
generator = random.Random(seed)

with tempfile.TemporaryDirectory() as folder:
    store = pathlib.Path(folder) / "calendars.sqlite"
    saved = []
    attempted = set()
    for kill in range(kills):
        session = Session(store)
        expect(session("Zuno_Version") == "3.0.1.0", "the plug-in does not answer")
        timer = threading.Timer(generator.uniform(0.001, 0.12), session.process.send_signal, [signal.SIGKILL])
        timer.start()
        for number in range(1000):
            title = f"event {kill}-{number}"
            attempted.add(title)
            try:
                session.send(new_event(title, timestamp(2026, 3, 1, 9), timestamp(2026, 3, 1, 10)))
                answer = session.receive()
            except (EOFError, OSError, ValueError):
                break
            expect(answer == "0", f"a save was refused: {answer}")
            saved.append(title)
        else:
            raise AssertionError("the host outlived its killing")
        session.process.wait()
        session.process.stdout.close()
        if kill % 20 == 19:
            fault = check(store)
            expect(not fault, f"after {kill + 1} kills: {fault}")
    expect(saved, "no save ever returned: the kills come too early")
    with Session(store) as session:
        found = titles(session)
    lost = set(saved) - set(found)
    expect(not lost, f"saves that had returned are lost: {sorted(lost)[:5]}")
    expect(len(found) == len(set(found)), "an event is there twice")
    expect(set(found) <= attempted, "an event appeared from nowhere")
    print(f"{kills} kills (seed {seed}): {len(saved)} saves had returned, {len(found)} events found")
sys.exit(0)
