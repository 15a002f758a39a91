"""What scripts see of each function: sessions of calculations and their values, on an imported calendar.

A file is one session: "> calculation", then "TYPE VALUE" as the host shows it, or "error NUMBER" for the error mark with
that last error; a call without an answer succeeds with the number 0. "zone NAME" sets the session's time zone. A carriage
return is written \\r, and $OFFSET stands for today's whole hours east of GMT."""
import datetime
import json
import pathlib
import subprocess
import sys
import tempfile
import zoneinfo

from zuno import ERROR, Session, check, expect, zunocal


def read(path):
    zone, steps = "Africa/Lagos", []
    for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
        if line.startswith("zone "):
            zone = line.removeprefix("zone ")
        elif line.startswith("> "):
            steps.append([number, line.removeprefix("> "), "number 0"])
        elif line and not line.startswith("#"):
            steps[-1][2] = line
    return zone, steps


def answer(session, calculation):
    session.send(calculation)
    line = session.process.stdout.readline()
    if not line:
        raise EOFError("the host has ended")
    result = json.loads(line)
    if result["value"] == ERROR:
        return f"error {session.error()}"
    return f"{result['type']} {result['value']}".rstrip(" ").replace("\r", "\\r")


def run(path, folder):
    zone, steps = read(path)
    store = pathlib.Path(folder) / (path.stem + ".sqlite")
    subprocess.run([zunocal, "--store", str(store), "import", str(path.parent / "lab.ics"),
                    str(path.parent / "people.vcf")], check=True, capture_output=True)
    offset = datetime.datetime.now(zoneinfo.ZoneInfo(zone)).utcoffset() // datetime.timedelta(hours=1)
    faults = 0
    with Session(store, zone) as session:
        for number, calculation, expected in steps:
            expected = expected.replace("$OFFSET", str(offset))
            got = answer(session, calculation)
            if got != expected:
                print(f"{path.name}:{number}: {calculation}\n  expected: {expected}\n  got:      {got}")
                faults += 1
    expect(session.process.returncode == 0, f"{path.name}: the host ended with {session.process.returncode}")
    expect(not check(store), f"{path.name}: the store is damaged")
    return len(steps), faults


def main():
    steps = faults = 0
    with tempfile.TemporaryDirectory() as folder:
        for path in sorted((pathlib.Path(__file__).parent / "functions").glob("*.txt")):
            done, wrong = run(path, folder)
            steps, faults = steps + done, faults + wrong
    expect(steps > 200, "the sessions were not read")
    print(f"{steps} calculations, {faults} wrong")
    return 1 if faults else 0


sys.exit(main())
