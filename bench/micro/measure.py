#!/usr/bin/env python3
"""Measures small pieces of the gadget and the platform against bare controls.

usage: measure.py BUILD_DIR

Prints one JSON object a line for each measure. README.md beside this file says how to read them. Exit status 0 when all
were measured, whatever they are; 1 when one could not be, with one line that says why; 2 for a wrong call.
"""

import json
import re
import statistics
import subprocess
import sys
import tempfile
from pathlib import Path

TIMED_RUNS = 15
COUNTED_RUNS = 1  # a count is the same in each run
ACCESS_POINTS = (1, 10, 100, 1000, 10000)
LOG_LINES = 1000


class Failure(Exception):
    """What could not be measured."""


def call(command, folder):
    """The two outputs of a program that runs in a folder of its own."""
    try:
        done = subprocess.run(command, cwd=folder, capture_output=True, text=True, check=False)
    except OSError as error:
        raise Failure(f"{command[0]}: {error.strerror}") from error
    if done.returncode != 0:
        last = (done.stderr.strip().splitlines() or ["no message"])[-1]
        raise Failure(f"{' '.join(map(str, command))}: exit status {done.returncode}: {last}")
    return done.stdout, done.stderr


def times(programs, folder):
    """Median of each benchmark's CPU time in nanoseconds, and of each counter, by name."""
    out, _ = call(
        [
            programs / "micro-times",
            "--benchmark_format=json",
            f"--benchmark_repetitions={TIMED_RUNS}",
            "--benchmark_min_time=0.1",
            "--benchmark_enable_random_interleaving=true",
        ],
        folder,
    )
    samples = {}
    for run in json.loads(out)["benchmarks"]:
        if run["run_type"] != "iteration":
            continue
        name = run["run_name"].removesuffix("/iterations:300")
        samples.setdefault(name, []).append(run["cpu_time"])
        for counter in ("stored", "inPlace", "appended"):
            if counter in run:
                samples.setdefault(counter, []).append(run[counter])
    return {name: statistics.median(values) for name, values in samples.items()}


def instructions(programs, folder, piece):
    """Instructions of one warm run of a piece."""
    _, errors = call(
        [
            "valgrind",
            "--tool=callgrind",
            "--collect-atstart=no",
            "--callgrind-out-file=/dev/null",
            programs / "micro-instructions",
            piece,
        ],
        folder,
    )
    found = re.search(r"Collected : (\d+)", errors)
    if not found:
        raise Failure(f"callgrind counted nothing of {piece}")
    return int(found.group(1))


def counts(programs, folder):
    """Allocations of one warm run of each piece, and texts made of log lines, by name."""
    out, _ = call([programs / "micro-allocations"], folder)
    return {name: int(number) for name, number in (line.split() for line in out.splitlines())}


def row(what, unit, gadget, control, aim, runs):
    """One line of the output."""
    ratio = round(gadget / control, 3) if control else None
    rounded = [None if value is None else round(value, 2) for value in (control, gadget)]
    print(
        json.dumps(
            {
                "what": what,
                "unit": unit,
                "control": rounded[0],
                "gadget": rounded[1],
                "ratio": ratio,
                "aim": aim,
                "runs": runs,
            }
        ),
        flush=True,
    )


def measure(programs, folder):
    """Every measure."""
    counted = counts(programs, folder)
    timed = times(programs, folder)

    def instruction_row(what, piece, aim):
        pair = [instructions(programs, folder, f"{piece}-{side}") for side in ("gadget", "control")]
        row(what, "instructions", *pair, aim, COUNTED_RUNS)
        return pair[0]

    instruction_row("check of 5 addresses", "address", "at most 1.13 times inet_pton and inet_ntop")
    row("check of 5 addresses", "ns", timed["addressGadget"], timed["addressControl"], "none", TIMED_RUNS)
    allocations = (counted["address-gadget"], counted["address-control"])
    row("check of 5 addresses", "allocations", *allocations, "0", COUNTED_RUNS)

    for number in ACCESS_POINTS:
        pair = (timed[f"walk{side}/{number}"] / 1000 for side in ("Gadget", "Control"))
        aim = "at most 1.1 times the bare walk" if number == ACCESS_POINTS[-1] else "linear"
        row(f"walk to the last of {number} access points", "us", *pair, aim, TIMED_RUNS)
    few = instruction_row("walk to the last of 100 access points", "walk100", "none")
    many = instruction_row("walk to the last of 10000 access points", "walk10000", "at most 1.1 times the bare walk")
    each = (many / 10000, few / 100)
    row("walk, each of 10000 access points against each of 100", "instructions", *each, "near 1: linear", COUNTED_RUNS)

    for control, text in (("inPlace", "in place"), ("appended", "at the end")):
        aim = f"at most 1.6 times a raw write {text} and fdatasync"
        row(f"durable write, against a raw one {text}", "us", timed["stored"], timed[control], aim, TIMED_RUNS)
    row("read from the store", "us", timed["storeRead"] / 1000, None, "at most 5", TIMED_RUNS)

    row("log line that nobody hears", "ns", timed["logSilent"], None, "under 20", TIMED_RUNS)
    counted_line = instructions(programs, folder, "log-gadget")
    row("log line that nobody hears", "instructions", counted_line, None, "none", COUNTED_RUNS)
    made = (counted["lines-silent"], counted["lines-heard"])
    row(f"texts made of {LOG_LINES} lines that nobody hears, against heard", "texts", *made, "0", COUNTED_RUNS)


def main(arguments):
    """Returns the exit status."""
    if len(arguments) != 1 or arguments[0].startswith("-"):
        print(__doc__.strip(), file=sys.stderr)
        return 2
    build = Path(arguments[0]).resolve()
    if not (build / "bench/micro-times").exists():
        print(f"measure.py: {build}: not built; see README.md beside this file", file=sys.stderr)
        return 1
    try:
        # On the build's disk: a temporary folder may lie in memory, where syncing costs nothing.
        with tempfile.TemporaryDirectory(dir=build, prefix="micro-") as folder:
            measure(build / "bench", folder)
    except Failure as failure:
        print(f"measure.py: {failure}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
