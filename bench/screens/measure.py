#!/usr/bin/env python3
"""Measures the gadget's screens against the control program: measure.py BUILD_DIR.

One JSON object a line on standard output, one for each measure. A measurement that could not be made is one line on
standard error, and exit status 1.
"""

import concurrent.futures
import json
import statistics
import sys

from runs import BOTH, CONTROL, GADGET, Bench, Failure, virtual_screen

RUNS = 15
PICTURE_RUNS = 5
INSTRUCTION_RUNS = 3
IDLE_RUNS = 3
IDLE_SECONDS = 10
CHECK_RUNS = 5
CHECK_WINDOWS = 3  # of each run
CHECK_SECONDS = 3  # two steps of the picture a second, five of the ring

TO_VERDICT = ['expect "IPv6 settings" within 20', "wait 1"]
TO_SETTINGS = ["key Left", "key Left", "wait 0.5", "key Return", "wait 1.2"]
WALK = ["wait 0.4", "key mark-opened", *TO_VERDICT, *TO_SETTINGS, "key mark-settings", "key Down", "wait 0.5",
        "key Return", "wait 1.2", "key mark-keyboard", "quit"]
START = ["wait 0.6", "key mark-opened", "quit"]
IDLE = [*TO_VERDICT, "key mark-verdict", f"wait {IDLE_SECONDS}", "key mark-verdict-end", *TO_SETTINGS,
        "key mark-settings", f"wait {IDLE_SECONDS}", "key mark-settings-end", "quit"]
CHECK = ["wait 1.5", *[f"key mark-{window}\nwait {CHECK_SECONDS}" for window in range(CHECK_WINDOWS)],
         f"key mark-{CHECK_WINDOWS}", "quit"]

VERDICT = {"BENCH_CONTROL_TICKS": "7"}
SETTINGS_KEY, KEYBOARD_KEY = ("key-Return", 0), ("key-Return", 1)


def in_turn(count, measure):
    """Measures both so often, in turn: what burdens the machine burdens both."""
    values = {who: [] for who in BOTH}
    for _ in range(count):
        for who in BOTH:
            values[who].append(measure(who))
    return values


def report(what, unit, aim, values, with_ratio=True, digits=2):
    """One line: medians, and the median of the ratios of neighbours."""
    ratios = [gadget / control for control, gadget in zip(values[CONTROL], values[GADGET]) if control]
    line = {
        "what": what, "unit": unit,
        "control": round(statistics.median(values[CONTROL]), digits),
        "gadget": round(statistics.median(values[GADGET]), digits),
        "ratio": round(statistics.median(ratios), 3) if with_ratio and ratios else None,
        "aim": aim, "runs": len(values[GADGET]),
        "spread": {who: [round(min(values[who]), digits), round(max(values[who]), digits)] for who in BOTH},
    }
    print(json.dumps(line), flush=True)


def each(values, pick):
    return {who: [pick(record) for record in values[who]] for who in BOTH}


def milliseconds(record, key):
    """Processor time from a key to the last frame that follows it."""
    return 1000 * (record.frames_after(*key)[-1].processor - record.at(*key).processor)


def measure_instructions(bench):
    with concurrent.futures.ThreadPoolExecutor(2) as pool:  # counts do not depend on what else runs
        jobs = [(who, pool.submit(bench.count_instructions, who)) for _ in range(INSTRUCTION_RUNS) for who in BOTH]
        first = pool.submit(bench.count_instructions, GADGET, with_store=False)
        counts = {who: [job.result() / 1e6 for owner, job in jobs if owner == who] for who in BOTH}
    report("creating the screen", "M instructions", "1.10 x C", counts, digits=3)
    # The control program keeps nothing, so it always starts alike.
    report("creating the screen, nothing stored yet", "M instructions", "-",
           {CONTROL: counts[CONTROL][:1], GADGET: [first.result() / 1e6]}, digits=3)


def settled_frame(record):
    """How many frames an opening draws until the picture stands. The hash leaves out the ring, which always turns."""
    pictures = [frame.picture for frame in record.frames_after("open")]
    return pictures.index(pictures[-1]) + 1


def compare_pictures(records):
    for place, key in (("check", ("open",)), ("settings screen", SETTINGS_KEY), ("keyboard", KEYBOARD_KEY)):
        pictures = {record.frames_after(*key)[-1].picture for who in BOTH for record in records[who]}
        if len(pictures) > 1:
            raise Failure(f"the control program does not show the gadget's picture: {place}")


def measure_frames(bench):
    """Frames until the pictures stand. Gives how many the opening takes, for each."""
    variables = {"BENCH_WINDOW_FIRST": "1", "BENCH_PICTURES": "1", **VERDICT}
    records = in_turn(PICTURE_RUNS, lambda who: bench.run(who, WALK, **variables))
    compare_pictures(records)
    openings = each(records, settled_frame)
    report("opening: until the picture stands", "frames", "2", openings, with_ratio=False, digits=0)
    for what, key in (("settings screen", SETTINGS_KEY), ("keyboard", KEYBOARD_KEY)):
        frames = each(records, lambda record, key=key: len(record.frames_after(*key)))
        report(f"{what}: press to settled picture", "frames", "3", frames, with_ratio=False, digits=0)
    return {who: round(statistics.median(openings[who])) for who in BOTH}


def measure_walk(bench):
    records = in_turn(RUNS, lambda who: bench.run(who, WALK, BENCH_WINDOW_FIRST="1", **VERDICT))
    first = each(records, lambda record: 1000 * (record.frames_after("open")[0].processor - record.at("open").processor))
    report("opening: to the first frame with content", "ms of processor time", "1.15 x C", first)
    added = each(records, lambda record: (record.at("mark-opened").resident - record.at("open").resident) / 2**20)
    report("opening: resident memory added", "MiB", "1.15 x C", added)
    for what, key in (("settings screen", SETTINGS_KEY), ("keyboard", KEYBOARD_KEY)):
        taken = each(records, lambda record, key=key: milliseconds(record, key))
        report(f"{what}: press to settled picture", "ms of processor time", "1.25 x C", taken)


def measure_check(bench):
    """The share of a core that a running check takes on X11."""
    shares = {who: [] for who in BOTH}

    def one(who):
        record = bench.run(who, CHECK, scenario="gateway-silent", DISPLAY=display, ELM_DISPLAY="x11", ELM_ENGINE="x11")
        marks = [record.at(f"mark-{window}") for window in range(CHECK_WINDOWS + 1)]
        for begin, end in zip(marks, marks[1:]):
            shares[who].append(100 * (end.processor - begin.processor) / (end.wall - begin.wall))

    with virtual_screen() as display:
        in_turn(CHECK_RUNS, one)
    report("running check on X11", "% of a core", "2", shares)


def measure_idle(bench):
    with concurrent.futures.ThreadPoolExecutor(2 * IDLE_RUNS) as pool:  # they only wait
        jobs = [(who, pool.submit(bench.run, who, IDLE, **VERDICT)) for _ in range(IDLE_RUNS) for who in BOTH]
        records = {who: [job.result() for owner, job in jobs if owner == who] for who in BOTH}
    for place, what in (("verdict", "a verdict"), ("settings", "the settings screen")):
        def drawn(record, place=place):
            begin, end = record.index(f"mark-{place}"), record.index(f"mark-{place}-end")
            return sum(event.what == "frame" for event in record.events[begin:end])
        report(f"{IDLE_SECONDS} idle seconds of {what}", "frames", "0", each(records, drawn), with_ratio=False, digits=0)


def measure_start(bench, settled):
    started = in_turn(RUNS, lambda who: (who, bench.run(who, START)))

    def frame(pair):
        who, record = pair
        return record.frames_after("open")[settled[who] - 1], record.started

    report("host's cold start to the settled picture", "ms of processor time", "1.2 x C",
           each(started, lambda pair: 1000 * frame(pair)[0].processor))
    report("host's cold start to the settled picture", "ms by the clock", "1.2 x C",
           each(started, lambda pair: 1000 * (frame(pair)[0].wall - frame(pair)[1])))


def attempt(what, measure, *arguments):
    """What it gives, or null when it could not be measured."""
    try:
        return measure(*arguments) or True
    except Failure as failure:
        print(f"bench: {what}: not measured: {failure}", file=sys.stderr)
        return None


def main():
    if len(sys.argv) != 2:
        sys.exit("usage: measure.py BUILD_DIR")
    try:
        bench = Bench(sys.argv[1])
    except Failure as failure:
        sys.exit(f"bench: screens: not measured: {failure}")
    try:
        done = [attempt("instructions", measure_instructions, bench)]
        settled = attempt("frames", measure_frames, bench)
        done.append(settled)
        if settled:  # otherwise the two may not show the same, and a comparison says nothing
            done += [attempt("walk", measure_walk, bench), attempt("start", measure_start, bench, settled)]
        done += [attempt("idle", measure_idle, bench), attempt("check", measure_check, bench)]
    finally:
        bench.remove()
    sys.exit(0 if all(done) else 1)


if __name__ == "__main__":
    main()
