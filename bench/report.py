#!/usr/bin/env python3
"""report.py DATA DOCUMENT: puts the tables of all results below DATA (SIZE/GROUP.json, as script/bench leaves
them) between the marks in DOCUMENT."""
import datetime
import json
import pathlib
import platform
import re
import statistics
import sys

PEERS = {"libical": "libical", "kcalendarcore": "KCalendarCore"}
NANOSECONDS = {"ns": 1.0, "us": 1e3, "ms": 1e6, "s": 1e9}


class Results:
    """The medians of one size: times in nanoseconds, and counters, by "measure/contender".

    What waits for the disk or for another process is timed by the clock; what only computes by the processor
    time that it took, which other work on the machine disturbs less.
    """

    def __init__(self, folder):
        self.size = int(folder.name)
        self.times, self.counters = {}, {}
        self.repetitions, self.loads = [], []
        for file in sorted(folder.glob("*.json")):
            result = json.loads(file.read_text())
            self.loads.append(result["context"]["load_avg"][0])
            self.add(result["benchmarks"], file.stem in ("importing", "saving"))

    def add(self, runs, waits):
        repetitions = {}
        for run in runs:
            if run["run_type"] == "iteration" and "error_message" not in run:
                name = "/".join(run["name"].split("/")[:2])
                repetitions.setdefault(name, []).append(run)
        self.repetitions += [len(group) for group in repetitions.values()]
        for name, group in repetitions.items():
            clock = "real_time" if waits or "manual_time" in group[0]["name"] else "cpu_time"
            self.times[name] = statistics.median(run[clock] * NANOSECONDS[run["time_unit"]] for run in group)
            for counter in ("occurrences", "opens", "peak_kilobytes"):
                if counter in group[0]:
                    self.counters[name, counter] = statistics.median(run[counter] for run in group)

    def time(self, measure, contender="ours"):
        return self.times.get(f"{measure}/{contender}")

    def counter(self, measure, contender, counter):
        return self.counters.get((f"{measure}/{contender}", counter))

    def per_open(self, measure, contender):
        time, opens = self.time(measure, contender), self.counter(measure, contender, "opens")
        return time / opens if time and opens else None

    def best_peer(self, measure):
        times = [self.time(measure, peer) for peer in PEERS]
        return min((time for time in times if time), default=None)


def scaled(factor, value):
    return None if value is None else factor * value


def added(*values):
    return None if None in values else sum(values)


def duration(nanoseconds):
    if nanoseconds is None:
        return "-"
    for unit, size in (("s", 1e9), ("ms", 1e6), ("µs", 1e3), ("ns", 1.0)):
        if nanoseconds >= size or unit == "ns":
            value = nanoseconds / size
            return f"{value:,.0f} {unit}" if value >= 100 else f"{value:.3g} {unit}"


def megabytes(kilobytes):
    return "-" if kilobytes is None else f"{kilobytes / 1024:.0f} MB"


def verdict(ours, bar):
    """Ours as a share of what the bar allows."""
    if ours is None or bar is None:
        return "-"
    share = ours / bar
    return f"{share:.2f} {'met' if share <= 1 else '**missed**'}"


def table(head, rows):
    lines = [head, ["---"] + ["---:"] * (len(head) - 1)] + rows
    return "\n".join("| " + " | ".join(line) + " |" for line in lines)


# Measure, its name, the bar in words, and what it allows.
COMPARED = [
    ("import", "import of the file, warm", "2 × libical's parsing alone",
     lambda r: scaled(2, r.time("import", "libical"))),
    ("import_new_process", "import of the file, new process", "2 × libical's parsing alone",
     lambda r: scaled(2, r.time("import_new_process", "libical"))),
    ("month_new_process", "one month counted, new process", "best peer / 10",
     lambda r: scaled(1 / 10, r.best_peer("month_new_process"))),
    ("month_warm", "another month counted, warm", "best peer / 5",
     lambda r: scaled(1 / 5, r.best_peer("month_warm"))),
    ("year_warm", "another year counted, warm", "best peer / 3",
     lambda r: scaled(1 / 3, r.best_peer("year_warm"))),
]


def compared(results):
    rows = []
    for measure, title, bar, limit in COMPARED:
        rows.append([title] + [duration(results.time(measure, peer)) for peer in (*PEERS, "floor")]
                    + [duration(results.time(measure)), bar, verdict(results.time(measure), limit(results))])
    peaks = [results.counter("import_new_process", peer, "peak_kilobytes") for peer in (*PEERS, "floor", "ours")]
    rows.append(["peak memory of the import"] + [megabytes(peak) for peak in peaks]
                + ["libical", verdict(peaks[3], peaks[0])])
    return table(["", *PEERS.values(), "floor", "ours", "bar", "share of the bar"], rows)


def aimed(results):
    """How near the floor the counts come, where three times the floor is the aim."""
    shares = []
    for measure, title in (("month_new_process", "in a new process"), ("month_warm", "warm")):
        ours, floor = results.time(measure), results.time(measure, "floor")
        if ours and floor:
            shares.append(f"{ours / floor:.1f} times the floor {title}")
    return "A month takes " + " and ".join(shares) + " (the aim is 3)." if shares else ""


# Measure, its name, and the bar in empty calls.
CALLS = [
    ("call_last_error", "the cheapest function: Zuno_GetLastError (number)", 2),
    ("call_version", "Zuno_Version (short)", None),
    ("call_property_title", "property of the open event: title", 3),
    ("call_property_location", "the same: location", 3),
    ("call_property_notes", "the same: notes", 3),
    ("call_property_startdate", "the same: startdate", 3),
    ("call_property_calendartitle", "the same: calendartitle", 3),
    ("again", "the same year counted again", 5),
]


def calls(results):
    empty = results.time("call_empty")
    row = results.per_open("walk_year", "floor")
    rows = [["a call that leaves everything untouched", duration(results.time("call_untouched")), "", ""],
            ["empty call: the number 0, nothing else", duration(empty), "", ""],
            ["bare read of an item's row by key", duration(row), "", ""]]
    for measure, title, bar in CALLS:
        ours = results.time(measure)
        rows.append([title, duration(ours)] +
                    ([f"{bar} empty calls", verdict(ours, scaled(bar, empty))] if bar else ["", ""]))
    for window in ("month", "quarter", "year"):
        opens = results.counter(f"walk_{window}", "ours", "opens")
        each = results.per_open(f"walk_{window}", "ours")
        if each:
            rows.append([f"walking a {window}: each of {opens:,.0f} opens", duration(each),
                         "5 empty calls + one row read", verdict(each, added(scaled(5, empty), row))])
    return table(["", "time", "bar", "share of the bar"], rows)


def floors(results):
    """How many of the floor's commits a save takes: the disk may be busier in one run than in another."""
    save, floor = results.time("save"), results.time("save", "floor")
    return save / floor if save and floor else None


def growth(results, smaller):
    ours, bar = floors(results), floors(smaller)
    texts = ["-" if number is None else f"{number:.2f} floors" for number in (ours, bar)]
    return [f"the same, and beside {smaller.size:,} items", *texts, verdict(ours, scaled(1.1, bar))]


def saving(results, smaller):
    save, floor = results.time("save"), results.time("save", "floor")
    rows = [["one row committed (the floor)", duration(floor), "", ""],
            ["one changed event saved", duration(save), "5 × the floor", verdict(save, scaled(5, floor))]]
    if smaller:
        rows.append(growth(results, smaller))
    for measure, title in (("save_future", "daily series of ten years cut in its middle by a save"),
                           ("remove_future", "the same by a removal")):
        rows.append([title, duration(results.time(measure)), "2 × a plain save",
                     verdict(results.time(measure), scaled(2, save))])
    rows.append(["the year counted again after a save", duration(results.time("count_year_after_save")), "", ""])
    return table(["", "time", "bar", "share of the bar"], rows)


def occurrences(results):
    found = {contender: results.counter("year_warm", contender, "occurrences")
             for contender in (*PEERS, "floor", "ours")}
    return ", ".join(f"{name} {count:,.0f}" for name, count in found.items() if count)


def machine():
    model = re.search(r"model name\s*:\s*(.*)", pathlib.Path("/proc/cpuinfo").read_text())
    cores = len(re.findall(r"^processor", pathlib.Path("/proc/cpuinfo").read_text(), re.MULTILINE))
    system = platform.freedesktop_os_release()["PRETTY_NAME"]
    return f"{model[1] if model else platform.machine()}, {cores} cores, {system}, Linux {platform.release()}"


def span(numbers):
    low, high = min(numbers), max(numbers)
    return f"{low:.0f}" if round(low) == round(high) else f"{low:.0f} to {high:.0f}"


def report(sizes):
    parts = [f"Measured on {datetime.date.today()}: {machine()}."]
    for results in sizes:
        parts += [f"### {results.size:,} items",
                  f"Medians of {span(results.repetitions)} repetitions; load of the machine {span(results.loads)}.",
                  compared(results), aimed(results), calls(results)]
        smaller = next((other for other in sizes if other.size == 10000), None)
        parts += [saving(results, smaller if results.size > 10000 else None),
                  f"Occurrences that each finds in one year: {occurrences(results)}."]
    return "\n\n".join(part for part in parts if part)


def main(data, document):
    sizes = sorted((Results(folder) for folder in pathlib.Path(data).iterdir() if any(folder.glob("*.json"))),
                   key=lambda results: results.size)
    path = pathlib.Path(document)
    path.write_text(re.sub(r"(<!-- results -->\n).*(<!-- end of results -->)",
                           lambda marks: f"{marks[1]}\n{report(sizes)}\n\n{marks[2]}", path.read_text(),
                           flags=re.DOTALL))


if __name__ == "__main__":
    main(*sys.argv[1:3])
