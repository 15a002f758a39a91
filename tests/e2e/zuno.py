"""Drives the real programs: a session of the stand-in host that stays open, and the store's command-line tool."""
import json
import os
import pathlib
import subprocess
import sys

zunohost, zunocal, plugin = (str(pathlib.Path(argument).resolve()) for argument in sys.argv[1:4])
ERROR = "!!ERROR!!"


class Session:
    """One `zunohost eval -`: calculations in, values out, one at a time."""

    def __init__(self, store, zone="Africa/Lagos", **popen):
        environment = {**os.environ, "TZ": zone}
        self.process = subprocess.Popen([zunohost, "--plugin", plugin, "--store", str(store), "--json", "eval", "-"],
                                        stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True, env=environment, **popen)

    def send(self, calculation):
        self.process.stdin.write(calculation + "\n")
        self.process.stdin.flush()

    def receive(self):
        line = self.process.stdout.readline()
        if not line:
            raise EOFError("the host has ended")
        return json.loads(line)["value"]

    def __call__(self, calculation):
        self.send(calculation)
        return self.receive()

    def error(self):
        return int(self('Zuno_GetLastError ( "Number" )'))

    def all(self, *calculations):
        """Runs calculations that have to succeed."""
        for calculation in calculations:
            value = self(calculation)
            if value == ERROR:
                raise AssertionError(f"{calculation}: {self.error()} {self('Zuno_GetLastError')}")

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.stdin.close()
        self.process.wait(timeout=60)
        self.process.stdout.close()


def quoted(text):
    return '"' + text.replace("\\", "\\\\").replace('"', '\\"') + '"'


def timestamp(year, month, day, hour=0, minute=0):
    return f"Timestamp ( Date ( {month} ; {day} ; {year} ) ; Time ( {hour} ; {minute} ; 0 ) )"


def new_event(title, start, end, calendar="Calendar"):
    """One calculation that creates and saves an event; 0 when it is on the disk."""
    return ("Let ( [ a = Zuno_NewItem ( \"event\" ) ; "
            f"b = Zuno_SetProperty ( \"event\" ; \"title\" ; {quoted(title)} ) ; "
            f"c = Zuno_SetProperty ( \"event\" ; \"calendartitle\" ; {quoted(calendar)} ) ; "
            f"d = Zuno_SetProperty ( \"event\" ; \"startdate\" ; {start} ) ; "
            f"e = Zuno_SetProperty ( \"event\" ; \"enddate\" ; {end} ) ] ; "
            "Zuno_SaveItem ( \"event\" ; \"this\" ) )")


def titles(session, start='""', end='""'):
    """The titles of all events of a range."""
    session.all(f'Zuno_EventsFetch ( {start} ; {end} ; "" ; "" )')
    count = int(session('Zuno_GetItemCountForType ( "event" )'))
    result = []
    for position in range(1, count + 1):
        session.all(f'Zuno_OpenItemAt ( "event" ; {position} )')
        result.append(session('Zuno_GetProperty ( "event" ; "title" )'))
    return result


def check(store):
    """What `zunocal check` says when something is wrong, else nothing."""
    result = subprocess.run([zunocal, "--store", str(store), "check"], capture_output=True, text=True, timeout=120)
    return "" if result.returncode == 0 else (result.stdout + result.stderr or "exit status without a word")


def expect(condition, message):
    if not condition:
        raise AssertionError(message)
