#!/usr/bin/python3
"""A TV's network on one machine: the TV with its own NetworkManager, a cable, and a router with an internet behind it.

    tv_network.py run COMMAND…              runs the command on the TV side and exits with its status, or 77 with the
                                            reason where the machine refuses namespaces
    tv_network.py play TEMPLATE COMMAND…    the same with python3-dbusmock in NetworkManager's place

Everything lives in namespaces without names: when the command ends, the kernel takes the processes, the links and the
mounts away, also after a crash. NetworkManager gets a private bus at the usual socket, so no program on the TV side needs
to be told of it. Commands can change the network through Controls (see below) or, in other languages, through the
variable TV_ROUTER_PID and nsenter(1).
"""
import importlib.util
import os
import pathlib
import shutil
import signal
import subprocess
import sys
import tempfile
import textwrap
import time

SKIPPED = 77
TV_LINK, ROUTER_LINK = "eth0", "lan0"
PREFIX = "2001:db8:7:1"
ROUTER_ADDRESS = f"{PREFIX}::1"
# NetworkManager refuses an address in its connectivity URI, so the host gets a name.
INTERNET_HOST = "internet.tv-test"
INTERNET_ADDRESS = "2001:db8:99::80"
ONLINE_URL = f"http://{INTERNET_HOST}/online"
PROFILE = "f3b1c1c2-8f0e-4e57-9b53-2f5d4a7e0c11"
START_TIMEOUT_SECONDS = 30
HERE = pathlib.Path(__file__).resolve().parent

BUS_CONFIG = """\
<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>system</type>
  <listen>unix:path=/run/dbus/system_bus_socket</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow user="*"/><allow own="*"/><allow send_destination="*"/><allow receive_sender="*"/>
  </policy>
</busconfig>
"""

MANAGER_CONFIG = f"""\
[main]
auth-polkit=false
dns=none
plugins=keyfile
no-auto-default=*
[keyfile]
path={{folder}}/profiles
[connectivity]
enabled=true
uri={ONLINE_URL}
interval=300
"""

# Without IPv4 the profile is up as soon as, and only when, IPv6 is.
PROFILE_CONFIG = f"""\
[connection]
id=Wired
uuid={PROFILE}
type=ethernet
interface-name={TV_LINK}
autoconnect-retries=0
[ipv4]
method=disabled
[ipv6]
method=auto
addr-gen-mode=eui64
"""

ADVERTISEMENTS = f"""\
interface {ROUTER_LINK} {{
  AdvSendAdvert on;
  AdvDefaultLifetime 1800;
  AdvIntervalOpt on;  # allows what mobile networks may: several advertisements in a second
  MinRtrAdvInterval 0.3;
  MaxRtrAdvInterval 0.5;
  MinDelayBetweenRAs 0.03;
  prefix {PREFIX}::/64 {{ AdvOnLink on; AdvAutonomous on; }};
  RDNSS {ROUTER_ADDRESS} {{ AdvRDNSSLifetime 1800; }};
}};
"""


def run(*command, **options):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, **options)


def wait_until(condition, what, timeout=START_TIMEOUT_SECONDS):
    """Polls; the time-out only bounds a failure."""
    end = time.monotonic() + timeout
    while not condition():
        if time.monotonic() > end:
            raise TimeoutError(f"{what} did not happen within {timeout} s")
        time.sleep(0.05)


class Controls:
    """What can be done to the network from outside. Each call returns when the kernel or the daemon has it."""

    def __init__(self, folder):
        self.folder = folder
        self.processes = {}
        self.router = None

    def on_router(self, *command):
        return run("nsenter", "-t", str(self.router.pid), "-n", *command)

    def router_setting(self, name, value):
        self.on_router("sh", "-c", f"echo {value} >/proc/sys/net/ipv6/conf/{name}")

    def start(self, name, *command, router=False):
        if router:
            command = ("nsenter", "-t", str(self.router.pid), "-n", *command)
        with open(self.folder / f"{name}.log", "ab") as log:
            self.processes[name] = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=log, stderr=log)

    def stop(self, name):
        process = self.processes.pop(name)
        process.terminate()
        process.wait()

    def cable(self, plugged):
        self.on_router("ip", "link", "set", ROUTER_LINK, "up" if plugged else "down")
        self.gateway(plugged)

    def gateway(self, answers):
        """A router whose link is up, but that no longer answers anything, neighbour discovery included."""
        self.router_setting(f"{ROUTER_LINK}/disable_ipv6", 0 if answers else 1)
        if answers:  # the kernel dropped the addresses
            for address, link in ((f"{ROUTER_ADDRESS}/64", ROUTER_LINK), (f"{INTERNET_ADDRESS}/128", "lo")):
                self.on_router("ip", "-6", "address", "replace", address, "dev", link)

    def advertise(self):
        self.start("radvd", "radvd", "-n", "-m", "stderr", "-C", str(self.folder / "radvd.conf"), "-p",
                   str(self.folder / "radvd.pid"), router=True)

    def internet(self, answers):
        if not answers:
            return self.stop("internet")
        self.start("internet", sys.executable, str(HERE / "internet.py"), INTERNET_ADDRESS, router=True)
        wait_until(lambda: f"[{INTERNET_ADDRESS}]:80" in self.on_router("ss", "-Hltn6").stdout, "the web server's start")

    def network_manager(self, running):
        if not running:
            return self.stop("NetworkManager")
        empty = str(self.folder / "empty")
        self.start("NetworkManager", "NetworkManager", "--debug", "--log-level=INFO", "--config",
                   str(self.folder / "NetworkManager.conf"), "--config-dir", empty, "--system-config-dir", empty,
                   "--state-file", str(self.folder / "state"))

    def play(self, template):
        self.start("dbusmock", sys.executable, "-m", "dbusmock", "--system", "--template", template)
        importlib.import_module("dbusmock").DBusTestCase.wait_for_bus_object(
            "org.freedesktop.NetworkManager", "/org/freedesktop", system_bus=True)

    def state(self):
        """NetworkManager's state of the link, its addresses and whether IPv6 reaches the internet; "" without it."""
        return subprocess.run(["nmcli", "-t", "-g", "GENERAL.STATE,IP6.ADDRESS,GENERAL.IP6-CONNECTIVITY", "device",
                               "show", TV_LINK], capture_output=True, text=True).stdout.replace("\\", "")

    def wait_for_connection(self):
        def connected(state):
            return state.startswith("100 ") and PREFIX in state and "full" in state
        wait_until(lambda: connected(self.state()), "NetworkManager's connection")

    def logs(self):
        for file in sorted(self.folder.glob("*.log")):
            lines = file.read_text(errors="replace").splitlines()[-40:]
            print(f"--- {file.name}", *lines, sep="\n", file=sys.stderr)


def private_mounts(folder):
    """The daemon must meet no state of an earlier run, and a /sys that shows this namespace and is read-only."""
    for mount in pathlib.Path("/proc/self/mountinfo").read_text().splitlines():
        if "shared:" in mount:
            run("mount", "--make-private", mount.split()[4])
    run("mount", "-t", "sysfs", "-o", "ro", "sysfs", "/sys")
    for place in ("/run", "/var/lib/NetworkManager"):
        run("mount", "-t", "tmpfs", "tmpfs", place)
    os.makedirs("/run/dbus")
    (folder / "hosts").write_text(f"127.0.0.1 localhost\n::1 localhost\n{INTERNET_ADDRESS} {INTERNET_HOST}\n")
    run("mount", "--bind", str(folder / "hosts"), "/etc/hosts")


def write_configuration(folder):
    (folder / "profiles").mkdir()
    (folder / "empty").mkdir()
    (folder / "bus.conf").write_text(BUS_CONFIG)
    (folder / "radvd.conf").write_text(ADVERTISEMENTS)
    (folder / "NetworkManager.conf").write_text(MANAGER_CONFIG.format(folder=folder))
    profile = folder / "profiles" / "wired.nmconnection"
    profile.write_text(PROFILE_CONFIG)
    profile.chmod(0o600)


def bring_up(controls):
    run("ip", "link", "set", "lo", "up")
    controls.router = subprocess.Popen(["unshare", "--net", "sleep", "infinity"])
    own = os.readlink("/proc/self/ns/net")
    wait_until(lambda: os.readlink(f"/proc/{controls.router.pid}/ns/net") != own, "the router's namespace")
    for setting in ("default/dad_transmits", "default/accept_dad"):  # nobody else has an address here
        pathlib.Path("/proc/sys/net/ipv6/conf", setting).write_text("0")
        controls.router_setting(setting, 0)
    run("ip", "link", "add", TV_LINK, "type", "veth", "peer", "name", ROUTER_LINK, "netns", str(controls.router.pid))
    controls.router_setting("all/forwarding", 1)
    controls.on_router("ip", "link", "set", "lo", "up")
    controls.cable(True)
    controls.start("bus", "dbus-daemon", "--nofork", "--config-file", str(controls.folder / "bus.conf"))
    wait_until(lambda: os.path.exists("/run/dbus/system_bus_socket"), "the bus's start")
    controls.internet(True)


def refusal():
    """Why this machine cannot have such a network, or None."""
    missing = [tool for tool in ("setpriv", "unshare", "nsenter", "ip", "ss", "radvd", "dbus-daemon", "NetworkManager",
                                 "nmcli") if shutil.which(tool) is None]
    if "play" in sys.argv and importlib.util.find_spec("dbusmock") is None:
        missing.append("python3-dbusmock")
    if missing:
        return f"not installed: {' '.join(missing)}"
    probe = subprocess.run([*namespaces(), "true"], capture_output=True, text=True)
    return None if probe.returncode == 0 else f"namespaces are refused: {probe.stderr.strip()}"


def namespaces():
    """In a chroot the root may be no mount, whose propagation unshare(1) cannot change; set_up() does it there."""
    mounts = pathlib.Path("/proc/self/mountinfo").read_text().splitlines()
    root_is_mount = any(line.split()[4] == "/" for line in mounts)
    return ["setpriv", "--pdeathsig", "KILL", "unshare", *([] if os.geteuid() == 0 else ["--map-root-user"]), "--mount",
            "--pid", "--net", "--fork", "--kill-child", "--propagation", "private" if root_is_mount else "unchanged",
            "--mount-proc"]


def enter(script, arguments):
    """Runs the script's arguments again inside fresh namespaces; the script calls set_up() there."""
    os.environ["PATH"] += ":/usr/sbin:/sbin"
    reason = refusal()
    if reason is not None:
        print(f"SKIPPED: {reason}")
        return SKIPPED
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))  # so that the folder goes, too
    folder = tempfile.mkdtemp(prefix="tv-network-")
    try:
        return subprocess.run([*namespaces(), sys.executable, script, *arguments],
                              env={**os.environ, "TV_NETWORK_FOLDER": folder}).returncode
    finally:
        shutil.rmtree(folder, ignore_errors=True)


def set_up():
    """Inside the namespaces: the network, with router advertisements and NetworkManager still to be started."""
    controls = Controls(pathlib.Path(os.environ["TV_NETWORK_FOLDER"]))
    private_mounts(controls.folder)
    write_configuration(controls.folder)
    bring_up(controls)
    return controls


def main():
    if len(sys.argv) < 3 or sys.argv[1] not in ("run", "play"):
        print(textwrap.dedent(__doc__), file=sys.stderr)
        return 2
    if "TV_NETWORK_FOLDER" not in os.environ:
        return enter(__file__, sys.argv[1:])
    controls = set_up()
    command = sys.argv[2:]
    try:
        if sys.argv[1] == "play":
            controls.play(command.pop(0))
        else:
            controls.advertise()
            controls.network_manager(True)
            controls.wait_for_connection()
    except TimeoutError:
        controls.logs()
        raise
    return subprocess.run(command, env={**os.environ, "TV_ROUTER_PID": str(controls.router.pid)}).returncode


if __name__ == "__main__":
    sys.exit(main())
