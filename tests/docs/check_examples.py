"""Runs the examples of docs/functions.md, and the scripts of examples/, through the stand-in host.

Usage: check_examples.py ZUNOHOST ZUNOCAL PLUGIN PROJECT_ROOT
Every ```zuno block runs in one session on a fresh store made from examples/calendars; what is printed has to be what the
page says. tests/docs/scripts.expected has, for each script, its parameter and the output it must give.
"""
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

zunohost, zunocal, plugin, root = sys.argv[1:5]
root = pathlib.Path(root)
# One hour ahead of GMT all year: dates in arguments are read with today's offset.
environment = {**os.environ, "TZ": "Africa/Lagos"}


def run(*arguments, text=None):
    return subprocess.run(arguments, input=text, capture_output=True, text=True, env=environment, timeout=120)


def blocks(page):
    """(line number, calculations, expected output) of each example."""
    for match in re.finditer(r"^```zuno\n(.*?)^```$", page, re.MULTILINE | re.DOTALL):
        lines = match.group(1).splitlines()
        yield (page.count("\n", 0, match.start()) + 1,
               [line[2:] for line in lines if line.startswith("> ")],
               [line for line in lines if not line.startswith("> ")])


def scripts(expectations):
    """(script, parameter, expected output) of each section "== SCRIPT [PARAMETER]"."""
    for section in expectations.split("== ")[1:]:
        heading, _, output = section.partition("\n")
        name, _, parameter = heading.partition(" ")
        yield name, parameter, output.splitlines()


def report(where, expected, result):
    got = result.stdout.splitlines()
    if got == expected and result.returncode in (0, 1):
        return 0
    print(f"{where}: expected {expected}\n  got {got}\n  {result.stderr.strip()}")
    return 1


with tempfile.TemporaryDirectory() as folder:
    original = os.path.join(folder, "original.sqlite")
    imported = run(zunocal, "--store", original, "import", str(root / "examples" / "calendars"))
    if imported.returncode != 0:
        sys.exit(f"import failed: {imported.stderr}")
    checked = failed = 0
    store = os.path.join(folder, "calendars.sqlite")
    host = (zunohost, "--plugin", plugin, "--store", store)

    def fresh_store():
        for old in pathlib.Path(folder).glob("calendars.sqlite*"):
            old.unlink()
        shutil.copy(original, store)

    for line, calculations, expected in blocks((root / "docs" / "functions.md").read_text(encoding="utf-8")):
        fresh_store()
        checked += 1
        failed += report(f"docs/functions.md:{line}", expected, run(*host, "eval", "-", text="\n".join(calculations) + "\n"))
    for name, parameter, expected in scripts((root / "tests" / "docs" / "scripts.expected").read_text(encoding="utf-8")):
        fresh_store()
        checked += 1
        failed += report(name, expected, run(*host, "run", str(root / "examples" / name), *([parameter] if parameter else [])))
    print(f"{checked} examples, {failed} failed")
    sys.exit(1 if failed or checked < 20 else 0)
