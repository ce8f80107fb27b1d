#!/usr/bin/python3
"""Runs a command against a NetworkManager with a radio, played on a private bus: wifi_network.py COMMAND…

Exits with the command's status, or 77 with the reason where a tool is missing. Nothing is left when it ends."""
import os
import pathlib
import shutil
import subprocess
import sys

SKIPPED = 77
TEMPLATE = pathlib.Path(__file__).resolve().parent / "wifi_daemon.py"


def skip(reason):
    print(f"SKIPPED: {reason}")
    sys.exit(SKIPPED)


try:
    import dbusmock
except ImportError as missing:
    skip(f"python3-dbusmock is not installed: {missing}")


def start(*command, **options):
    """In a group of its own, and gone with this process, however that ends."""
    return subprocess.Popen(["setpriv", "--pdeathsig", "KILL", *command], start_new_session=True, **options)


def end(process):
    process.terminate()
    process.wait()


def main():
    missing = [tool for tool in ("dbus-daemon", "dbus-send", "setpriv") if shutil.which(tool) is None]
    if missing:
        skip(f"not installed: {' '.join(missing)}")
    bus = start("dbus-daemon", "--session", "--nofork", "--print-address", stdout=subprocess.PIPE, text=True)
    os.environ["DBUS_SYSTEM_BUS_ADDRESS"] = bus.stdout.readline().strip()
    daemon = start(sys.executable, "-m", "dbusmock", "--system", "--template", TEMPLATE, stdout=subprocess.DEVNULL)
    try:
        dbusmock.DBusTestCase.wait_for_bus_object("org.freedesktop.NetworkManager", "/org/freedesktop", True)
        return subprocess.run(sys.argv[1:]).returncode
    finally:
        end(daemon)
        end(bus)


if __name__ == "__main__":
    sys.exit(main())
