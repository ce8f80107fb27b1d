#!/usr/bin/env python3
"""Plants single faults in the code and tells which of them the tests catch.

    scripts/plant_faults.py [--count 100] [--seed 1] [--files PATTERN] [--list] [--all-tests] [--resume] [--again]

Each fault is one changed line of src/ or platform/, drawn by kind and place with the seed. It is built and tested in a
work tree of its own, so the checkout stays as it is. What does not compile is replaced by the next fault that is drawn.
What the plain build misses is tried on the near tests of the sanitizer build. The report goes to standard output and,
after each fault, to build/faults.json, from where --resume goes on; --again tries once more what was not caught. The
exit status is 0 whatever was caught, 2 when the unchanged code does not build or pass.
"""

import argparse
import fnmatch
import itertools
import json
import pathlib
import random
import re
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
PLACE = ROOT / "build" / "faults"
PLAIN, SANITIZERS = "dev", "asan"
REPORT = ROOT / "build" / "faults.json"
# Judged by hand, with the reason: no test can tell these from the code as it is.
WITHOUT_EFFECT = ROOT / "scripts" / "faults_without_effect.json"

# Which tests look at a folder or unit first; the others follow when these find nothing.
NEAR = [
    ("src/Common/IPv6", "Ipv6Address|fuzz-corpus.address|Keyboard"),
    ("src/Common/Status_Store", "StoreSeeding|Settings"),
    ("src/Common/", "Utilities|OutsideText|Records|KeyboardCalls|RunControl|Closing"),
    ("src/MW_CAPI/MWCapi", "WiredSettings|Wifi\\.|Settings"),
    ("src/MW_CAPI/Capi", "Settings"),
    ("src/MW_CAPI/", "Wifi\\.|Verdict|FailingCalls|CheckTimeline|Wireless"),
    ("src/View/Keyboard", "Keyboard"),
    ("src/View/Custom", "Keyboard"),
    ("src/View/IP", "Settings|Popup"),
    ("src/View/", "Verdict|CheckTimeline|Closing|Entry|RunControl|Wireless"),
    ("platform/store", "Values|Damage|Disk|Processes|Power|fuzz-corpus.store"),
    ("platform/log", "^Log"),
    ("platform/host", "Runs|Script|Dump|Picture|Help|RemoteKeys|KeyboardMapping|fuzz-corpus.script"),
    ("platform/voice", "VoiceControl"),
    ("platform/network/networkmanager", "NetworkManager|Address|Neighbour|RealNetwork"),
    ("platform/network/simulated", "Scenario|Simulated|WifiRadio|fuzz-corpus.scenario"),
    ("platform/network", "Connection|Arguments|Simulated|WifiRadio"),
]
# Whole machines' worth of set-up: only for faults in what nothing else drives.
SLOW = "RealNetwork|NetworkManager.Live"

UNREGISTERS = re.compile(r"(_del|[Uu]nset\w*|[Cc]ancel\w*|[Rr]emove\w*|free|[Ff]orget\w*|[Cc]lear|reset|[Dd]estroy|stop)\(")
CALL = re.compile(r"^\s+[A-Za-z_][\w:.>-]*\(.*\);\s*$")
EARLY_RETURN = re.compile(r"^\s+if \(.*\) (return\b.*;|continue;|break;)\s*$")
LEAVE_ALONE = re.compile(r"^\s*(//|\*|/\*|#|template|using |namespace|static_assert|public:|private:)|LOG_|NET_LOG|__dlog")

# (kind, pattern, replacement): applied to one place of one line, outside of texts.
REWRITES = [
    ("flipped condition", r" == ", " != "),
    ("flipped condition", r" != ", " == "),
    ("flipped condition", r" && ", " || "),
    ("flipped condition", r" \|\| ", " && "),
    ("flipped condition", r"\bif \(!", "if ("),
    ("flipped condition", r"\breturn !", "return "),
    ("shifted bound", r" < ", " <= "),
    ("shifted bound", r" > ", " >= "),
    ("shifted bound", r" <= ", " < "),
    ("shifted bound", r" >= ", " > "),
    ("changed value", r"\btrue\b", "false"),
    ("changed value", r"\bfalse\b", "true"),
    ("changed value", r" \+ 1\b", ""),
    ("changed value", r" - 1\b", ""),
    ("changed value", r"\breturn 0;", "return 1;"),
    ("changed value", r"\breturn -1;", "return 0;"),
    ("swapped parts", r"\((\w+), (\w+)\)", r"(\2, \1)"),
    ("swapped parts", r" \? ([\w.>()\"-]+) : ([\w.>()\"-]+)", r" ? \2 : \1"),
    ("swapped parts", r"\{(\"[^\"]*\"|\w+), (\"[^\"]*\"|\w+)", r"{\2, \1"),
]


def outside_texts(line, at):
    """Whether a place of a line is in code, neither in a text nor in a comment."""
    before = re.sub(r'\\.', "..", line[:at])
    return before.count('"') % 2 == 0 and "//" not in before


def faults_in(path):
    """All faults of one file, as (kind, line number, new line); an empty line drops what stood there."""
    declared = path.suffix == ".h"
    for number, line in enumerate(path.read_text().splitlines()):
        if LEAVE_ALONE.search(line):
            continue
        for kind, pattern, new in REWRITES:
            for match in re.finditer(pattern, line):
                changed = line[: match.start()] + match.expand(new) + line[match.end():]
                if outside_texts(line, match.start()) and changed != line:
                    yield kind, number, changed
        if EARLY_RETURN.match(line):
            yield "dropped way out", number, ""
        elif CALL.match(line) and not declared:
            yield ("dropped unregistration" if UNREGISTERS.search(line) else "dropped call"), number, ""


def drawn(tree, seed, pattern):
    """Faults without end of use: one of each kind in turn, each drawn among all places of its kind."""
    kinds = {}
    files = sorted(file for room in ("src", "platform") for end in ("*.cpp", "*.h") for file in (tree / room).rglob(end))
    for file in files:
        name = str(file.relative_to(tree))
        if "platform/include/" in name or not fnmatch.fnmatch(name, pattern):
            continue
        for kind, number, new in faults_in(file):
            kinds.setdefault(kind, []).append((name, kind, number, new))
    dice = random.Random(seed)
    for faults in kinds.values():
        dice.shuffle(faults)
    while any(kinds.values()):
        for kind in sorted(kinds):
            if kinds[kind]:
                yield kinds[kind].pop()


def run(command, tree, limit):
    """Exit status of a quiet command; a command that runs too long counts as failed."""
    try:
        return subprocess.run(command, cwd=tree, capture_output=True, text=True, timeout=limit)
    except subprocess.TimeoutExpired as late:
        return subprocess.CompletedProcess(command, 1, (late.stdout or b"").decode(errors="replace"), "")


def build(tree, preset=PLAIN):
    return run(["cmake", "--build", "--preset", preset], tree, 1800)


def first_failure(tree, *choice, preset=PLAIN):
    """The name of the first test that fails, or nothing."""
    end = run(["ctest", "--preset", preset, "-j2", "--timeout", "120", "--stop-on-failure", *choice], tree, 1800)
    failed = re.search(r"Test +#\d+: (\S+) \.*\*\*\*", end.stdout)
    if end.returncode == 0 or "No tests were found" in end.stdout + end.stderr:
        return None
    return failed.group(1) if failed else "ctest"


def catcher(tree, name, everything):
    """The first test that catches the fault in a file, the near ones before the others."""
    near = next((tests for start, tests in NEAR if name.startswith(start)), "^$")
    slow = ["-E", SLOW] if not (everything or "networkmanager" in name) else []
    found = first_failure(tree, "-R", near, *slow) or first_failure(tree, "-E", f"{near}{'|' + SLOW if slow else ''}")
    if found or build(tree, SANITIZERS).returncode:
        return found
    return first_failure(tree, "-R", near, *slow, preset=SANITIZERS)


def prepared_tree():
    run(["git", "worktree", "remove", "--force", str(PLACE)], ROOT, 60)
    run(["git", "worktree", "add", "--detach", str(PLACE), "HEAD"], ROOT, 60)
    if not PLACE.is_dir():
        fail("git makes no work tree in " + str(PLACE))
    for preset in (PLAIN, SANITIZERS):
        if run(["cmake", "--preset", preset], PLACE, 300).returncode or build(PLACE, preset).returncode:
            fail("the unchanged code does not build in " + str(PLACE))
    if broken := first_failure(PLACE):
        fail(f"the unchanged code fails {broken}")
    return PLACE


def fail(why):
    print(f"plant_faults: {why}", file=sys.stderr)
    sys.exit(2)


def try_fault(tree, fault, everything):
    """What became of one fault: the test that caught it, an empty text when none did, nothing when it does not build."""
    name, _, number, new = fault
    file = tree / name
    whole = file.read_text()
    lines = whole.splitlines(keepends=True)
    lines[number] = new + "\n"
    file.write_text("".join(lines))
    try:
        if build(tree).returncode:
            return None
        return catcher(tree, name, everything) or ""
    finally:
        file.write_text(whole)


def without_effect(results):
    known = {(entry["file"], entry["was"], entry["is"]) for entry in json.loads(WITHOUT_EFFECT.read_text())}
    return [r for r in results if r["caught by"] == "" and (r["file"], r["was"], r["is"]) in known]


def report(tried):
    built = [result for result in tried if result["caught by"] is not None]
    idle = without_effect(built)
    results = [result for result in built if result not in idle]
    caught = sum(1 for result in results if result["caught by"])
    print(f"\n{caught} of {len(results)} faults caught ({100 * caught / max(1, len(results)):.0f} %), "
          f"{len(idle)} more have no effect ({WITHOUT_EFFECT.relative_to(ROOT)}), "
          f"{len(tried) - len(built)} more did not build")
    for kind in sorted({result["kind"] for result in results}):
        of_kind = [result for result in results if result["kind"] == kind]
        print(f"  {kind:24} {sum(1 for r in of_kind if r['caught by'])} of {len(of_kind)}")


def as_fault(tree, result):
    """A reported fault in the code as it is now; nothing when its line is gone."""
    lines = (tree / result["file"]).read_text().splitlines()
    places = [number for number, line in enumerate(lines) if line.strip() == result["was"]]
    if not places:
        return None
    number = min(places, key=lambda place: abs(place + 1 - result["line"]))
    indent = lines[number][: len(lines[number]) - len(lines[number].lstrip())]
    return result["file"], result["kind"], number, indent + result["is"] if result["is"] else ""


def tried_again(tree, tried, everything):
    """The report with what was not caught tried anew, one result after the other; without what is gone."""
    idle = without_effect(tried)
    for at, result in enumerate(tried):
        if result in idle:
            continue
        fault = as_fault(tree, result) if result["caught by"] == "" else None
        if fault:
            result["caught by"] = try_fault(tree, fault, everything)
            print(f"{at + 1:3} {result['file']}:{result['line']}: {result['was']} -> {result['is'] or '(dropped)'}: "
                  f"{result['caught by'] or 'NOT CAUGHT'}", flush=True)
        elif result["caught by"] == "":
            result["caught by"] = None
        REPORT.write_text(json.dumps(tried, indent=1, ensure_ascii=False) + "\n")
    return tried


def options():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--count", type=int, default=100, help="how many faults (100)")
    parser.add_argument("--seed", type=int, default=1, help="which ones (1)")
    parser.add_argument("--files", default="*", help="only files that match, such as 'src/View/*'")
    parser.add_argument("--list", action="store_true", help="shows the faults without trying them")
    parser.add_argument("--resume", action="store_true", help="goes on where the same call was stopped")
    parser.add_argument("--again", action="store_true", help="tries what was not caught once more")
    parser.add_argument("--all-tests", action="store_true", help="the tests on real networks, too, for every fault")
    return parser.parse_args()


def main():
    wanted = options()
    if wanted.list:
        for name, kind, number, new in itertools.islice(drawn(ROOT, wanted.seed, wanted.files), wanted.count):
            print(f"{name}:{number + 1}: {kind}: {new.strip() or '(dropped)'}")
        return
    tried = json.loads(REPORT.read_text()) if (wanted.resume or wanted.again) and REPORT.is_file() else []
    tree = prepared_tree()
    if wanted.again:
        return report(tried_again(tree, tried, wanted.all_tests))
    for fault in itertools.islice(drawn(tree, wanted.seed, wanted.files), len(tried), None):
        if sum(1 for result in tried if result["caught by"] is not None) >= wanted.count:
            break
        start = time.monotonic()
        name, kind, number, new = fault
        old = (tree / name).read_text().splitlines()[number].strip()
        caught = try_fault(tree, fault, wanted.all_tests)
        tried.append({"file": name, "line": number + 1, "kind": kind, "was": old, "is": new.strip(), "caught by": caught})
        REPORT.write_text(json.dumps(tried, indent=1, ensure_ascii=False) + "\n")
        verdict = "does not build" if caught is None else caught or "NOT CAUGHT"
        print(f"{len(tried):3} {name}:{number + 1}: {kind}: {old} -> {new.strip() or '(dropped)'}: "
              f"{verdict} ({time.monotonic() - start:.0f} s)", flush=True)
    report(tried)


if __name__ == "__main__":
    main()
