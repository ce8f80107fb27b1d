"""Runs of gadget-host with the gadget or with the control program, and what the probe wrote down about them."""

import contextlib
import os
import re
import shutil
import subprocess
import tempfile
import time
from pathlib import Path
from typing import NamedTuple

CONTROL, GADGET = "control", "gadget"
BOTH = (CONTROL, GADGET)

# What the settings store holds at every start: manual modes, so that each row can be edited.
STORED = {
    "ip_mode": "COM_ENTER_MANUALLY", "dns_mode": "COM_ENTER_MANUALLY", "ip": "2001:db8:1::10", "prefix": "64",
    "gateway": "fe80::1", "dns": "2001:db8:1::53",
}
TIMEOUT = 120  # seconds
CREATE = {CONTROL: "*namespace)::onCreate(*", GADGET: "*namespace)::_on_create(*"}


class Failure(Exception):
    """A measurement that could not be made; the text says why in one line."""


class Event(NamedTuple):
    what: str
    wall: float  # seconds of CLOCK_MONOTONIC
    processor: float  # seconds of processor time since the process began
    resident: int  # bytes; of openings, marks and keys
    pixels: int  # drawn by a frame
    picture: str  # hash of a frame, where pictures were asked for


def read_record(file):
    events = []
    for line in file.read_text().splitlines():
        what, wall, processor, resident, pixels, *_, picture = line.split()
        events.append(Event(what, float(wall), float(processor), int(resident), int(pixels), picture))
    return events


class Record:
    """The events of one run, asked for by name."""

    def __init__(self, events, started):
        self.events = events
        self.started = started  # CLOCK_MONOTONIC at the start of the process

    def index(self, what, occurrence=0):
        found = [i for i, event in enumerate(self.events) if event.what == what]
        if len(found) <= occurrence:
            raise Failure(f"the run has no '{what}'")
        return found[occurrence]

    def at(self, what, occurrence=0):
        return self.events[self.index(what, occurrence)]

    def frames_after(self, what, occurrence=0, until="mark-"):
        """The frames from an event to the next one whose name starts so."""
        frames = []
        for event in self.events[self.index(what, occurrence) + 1:]:
            if event.what.startswith(until):
                break
            if event.what == "frame":
                frames.append(event)
        if not frames:
            raise Failure(f"nothing is drawn after '{what}'")
        return frames


class Bench:
    """What a build folder has to run, and a settings store to start from."""

    def __init__(self, build):
        self.build = Path(build).resolve()
        self.source = Path(__file__).resolve().parents[2]
        self.host = self.build / "bin/gadget-host"
        self.probe = self.build / "bench/libbench-probe.so"
        self.modules = {
            CONTROL: self.build / "bench/libbench-control.so",
            GADGET: self.build / "ug/lib/libug-Ostrelle-efl.so",
        }
        for file in (self.host, self.probe, *self.modules.values()):
            if not file.exists():
                raise Failure(f"{file} is not built")
        self.folder = Path(tempfile.mkdtemp(prefix="bench-screens-"))
        self.seed = self.folder / "seed"
        self.seed.mkdir()
        keys = [f'set-store "db/menu/network/wired_{key}_V6" "{value}"' for key, value in STORED.items()]
        self.execute(self.seed, self.command(GADGET, self.seed, ["wait 0.2", *keys, "quit"]), {})

    def remove(self):
        shutil.rmtree(self.folder, ignore_errors=True)

    def command(self, who, folder, script, scenario="success"):
        (folder / "script").write_text("\n".join(script) + "\n")
        network = self.source / f"platform/network/simulated/scenarios/{scenario}.json"
        return [str(self.host), "--module", str(self.modules[who]), "--store", str(folder / "settings.db"),
                "--network", f"simulated={network}", "--script", str(folder / "script")]

    def execute(self, folder, command, variables):
        environment = {
            "PATH": os.environ.get("PATH", "/usr/bin:/bin"), "HOME": str(folder), "XDG_RUNTIME_DIR": str(folder),
            "LC_ALL": "C.UTF-8", "LANGUAGE": "en", "ELM_DISPLAY": "buffer", "ELM_ENGINE": "buffer",
            "EINA_LOG_BACKTRACE": "-1", **variables,
        }
        try:
            done = subprocess.run(command, env=environment, cwd=folder, stdin=subprocess.DEVNULL,
                                  capture_output=True, text=True, errors="replace", timeout=TIMEOUT)
        except subprocess.TimeoutExpired:
            raise Failure(f"a run of gadget-host took more than {TIMEOUT} seconds") from None
        if done.returncode != 0:
            said = (done.stderr.strip() or done.stdout.strip() or "nothing").splitlines()[-1]
            raise Failure(f"gadget-host ended with {done.returncode}: {said}")
        return done

    @contextlib.contextmanager
    def fresh_folder(self, with_store=True):
        folder = Path(tempfile.mkdtemp(dir=self.folder))
        for file in self.seed.glob("settings.db*") if with_store else ():
            shutil.copy(file, folder)
        try:
            yield folder
        finally:
            shutil.rmtree(folder, ignore_errors=True)

    def run(self, who, script, scenario="success", **variables):
        """One run with the probe; its record."""
        with self.fresh_folder() as folder:
            record = folder / "record"
            probe = {"LD_PRELOAD": str(self.probe), "BENCH_MODULE": str(self.modules[who]), "BENCH_RECORD": str(record)}
            command = self.command(who, folder, script, scenario)
            started = time.clock_gettime(time.CLOCK_MONOTONIC)
            self.execute(folder, command, {**probe, **variables})
            return Record(read_record(record), started)

    def count_instructions(self, who, with_store=True):
        """Instructions from the module's create callback to its return, by callgrind."""
        with self.fresh_folder(with_store) as folder:
            valgrind = ["valgrind", "--tool=callgrind", f"--callgrind-out-file={folder}/callgrind",
                        f"--toggle-collect={CREATE[who]}"]
            # At valgrind's pace the toolkit gives up waiting for its drawing threads, and may crash when it closes.
            done = self.execute(folder, valgrind + self.command(who, folder, ["wait 0.1", "quit"]),
                                {"ECORE_EVAS_FORCE_SYNC_RENDER": "1"})
        found = re.search(r"Collected : (\d+)", done.stderr)
        if not found or int(found[1]) == 0:
            raise Failure("callgrind has not seen the create callback")
        return int(found[1])


@contextlib.contextmanager
def virtual_screen():
    """An X server of its own; gives its DISPLAY."""
    if not shutil.which("Xvfb"):
        raise Failure("Xvfb is not installed")
    reading, writing = os.pipe()
    server = subprocess.Popen(["Xvfb", "-displayfd", str(writing), "-screen", "0", "1920x1080x24", "-nolisten", "tcp"],
                              pass_fds=[writing], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    os.close(writing)
    try:
        with os.fdopen(reading) as pipe:
            number = pipe.readline().strip()
        if not number:
            raise Failure("Xvfb does not start")
        yield f":{number}"
    finally:
        server.terminate()
        server.wait()
