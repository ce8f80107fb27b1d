"""The gadget on a real network that fails under it: NetworkManager, a router and an internet in namespaces of their own.

    GADGET_HOST=PATH real_network_test.py [CASE…]     each case gets a network of its own; all cases without arguments
"""
import os
import pathlib
import signal
import sys
import unittest

import tv_network
from gadget import Gadget

CHECKING = 'expect "Checking the wired network connection" within 10'
SUCCESS = 'expect "Your wired network and the internet are ready to use." within 30'
FAILED = 'expect "Wired network connection failed." within 20'
CABLE_ADVICE = '"Check that the network cable is connected to the TV and to the router."'
INTERNET_ADVICE = '"The TV is connected to the router, but the internet cannot be reached over IPv6."'
GATEWAY_NOT_REACHED = 'expect picture "wizard_popup_connect_error.png" within 1'
RETRY = ('expect focus "Close" within 5', "key Left", 'expect focus "Retry" within 1', "key Return")
OPEN_SETTINGS = ('expect focus "Close" within 5', "key Right", 'expect focus "IPv6 settings" within 1', "key Return",
                 'expect focus "IP settings" within 2')
TO_MANUAL = ("key Return", 'expect focus "Obtain automatically" within 2', "key Down",
             'expect focus "Enter manually" within 1', "key Return", 'expect focus "IP settings" within 2')
MANUAL = {"ipv6.method": "manual", "ipv6.addresses": "2001:db8:7:1::42/80", "ipv6.gateway": "2001:db8:7:1::1",
          "ipv6.dns": "2001:db8:7:1::53", "ipv6.ignore-auto-dns": "yes"}
AUTOMATIC = {"ipv6.method": "auto", "ipv6.addresses": "", "ipv6.gateway": "", "ipv6.dns": "",
             "ipv6.ignore-auto-dns": "no"}
STAGE_TWO = 'expect picture "network_popup_connect_5.png" within 20'


class RealNetwork(unittest.TestCase):
    def setUp(self):
        self.network = tv_network.set_up()
        self.addCleanup(lambda: self._outcome.success or self.network.logs())

    def open_gadget(self):
        self.gadget = Gadget(os.environ["GADGET_HOST"], self.network.folder)

    def sees(self, *lines):
        for line in lines:
            self.gadget.do(line)

    def type_address(self, row, address):
        """Types an address on the keyboard of the focused row, as a user with a remote does."""
        self.sees(f'expect focus "{row}" within 2', "key Return", 'expect focus "Done" within 2', "key Up",
                  *["key Left"] * 4, 'expect focus "Delete all" within 1', "key Return")
        group = 0
        for character in address:
            if character != ":":
                group += 1
            elif group == 4:  # the keyboard has put the separator there already
                group = 0
                continue
            else:
                group = 0
            self.gadget.do("key colon" if character == ":" else f"key {character}")
        self.sees("key Down", 'expect focus "Done" within 1', "key Return", f'expect focus "{address}" within 2')

    def profile(self):
        """What NetworkManager has stored of the wired profile's IPv6 settings."""
        shown = tv_network.run("nmcli", "-g", ",".join(MANUAL), "connection", "show", tv_network.PROFILE).stdout
        return dict(zip(MANUAL, shown.replace("\\", "").split("\n")))

    def addresses(self):
        return tv_network.run("ip", "-6", "-o", "address", "show", "dev", tv_network.TV_LINK, "scope", "global").stdout

    def set_manual(self):
        self.sees(*OPEN_SETTINGS, *TO_MANUAL, "key Down")
        self.type_address("IP address", "2001:db8:7:1::42")
        self.sees("key Down", 'expect focus "Prefix length" within 1', "key Return", "key 8", "key 0", "key Return",
                  'expect focus "80" within 2', "key Down")
        self.type_address("Gateway", "2001:db8:7:1::1")
        self.gadget.do("key Down")
        self.type_address("DNS server", "2001:db8:7:1::53")
        self.sees("key Down", 'expect focus exactly "OK" within 1', "key Return")

    def give_up_a_mode(self, *way_out):
        """Changes the mode in the settings, which the network follows at once, and leaves without storing it."""
        self.sees("key Return", 'expect focus "Enter manually" within 2', "key Up", "key Return",
                  'expect focus "IP settings Obtain automatically" within 2')
        tv_network.wait_until(lambda: self.profile()["ipv6.method"] == "auto", "the mode's change")
        self.sees(*way_out)
        tv_network.wait_until(lambda: self.profile() == MANUAL, "the way back")

    def test_manual_settings(self):
        self.network.advertise()
        self.network.network_manager(True)
        self.network.wait_for_connection()
        self.assertEqual(self.profile(), AUTOMATIC)
        self.open_gadget()
        self.sees(CHECKING, SUCCESS)
        self.set_manual()
        self.sees(CHECKING, SUCCESS)
        self.assertEqual(self.profile(), MANUAL)
        self.assertIn("2001:db8:7:1::42/80", self.addresses())
        self.sees(*OPEN_SETTINGS, "key Down", "key Return", 'expect focus "Done" within 2', "key a")
        self.gadget.host.kill()
        self.gadget.host.wait()
        self.assertEqual(self.profile(), MANUAL)
        self.open_gadget()
        self.sees(CHECKING, SUCCESS, *OPEN_SETTINGS, 'expect "Enter manually"', 'expect exactly "2001:db8:7:1::42"',
                  'expect exactly "80"', 'expect exactly "2001:db8:7:1::53"')
        self.give_up_a_mode("key Escape", CHECKING)
        self.sees(SUCCESS, *OPEN_SETTINGS)
        self.assertIn("2001:db8:7:1::42/80", self.addresses())
        self.give_up_a_mode("key F10", "expect closed within 5")
        self.assertEqual(self.gadget.end(), 0, "how the host ended")

    def test_failures(self):
        self.network.network_manager(True)
        tv_network.wait_until(lambda: self.network.state() > "50", "NetworkManager's taking over the link")
        self.open_gadget()
        self.sees(CHECKING, FAILED, GATEWAY_NOT_REACHED, f"expect-gone {CABLE_ADVICE}")  # nobody advertises a router

        self.network.advertise()
        self.network.wait_for_connection()
        self.sees(*RETRY, CHECKING)
        self.network.gateway(answers=False)
        self.sees(FAILED, GATEWAY_NOT_REACHED, f"expect-gone {CABLE_ADVICE}")
        self.network.gateway(answers=True)

        self.network.internet(answers=False)
        self.sees(*RETRY, CHECKING, f"expect {INTERNET_ADVICE} within 20")
        self.network.internet(answers=True)

        self.sees(*RETRY, CHECKING)
        self.network.cable(plugged=False)
        self.sees(f"expect {CABLE_ADVICE} within 10")
        self.network.cable(plugged=True)
        self.network.wait_for_connection()

        self.network.processes["internet"].send_signal(signal.SIGSTOP)  # stage two waits for its answer
        self.sees(*RETRY, CHECKING, STAGE_TWO)
        self.network.cable(plugged=False)
        self.sees(f"expect {CABLE_ADVICE} within 5")
        self.network.processes["internet"].send_signal(signal.SIGCONT)
        self.network.cable(plugged=True)
        self.network.wait_for_connection()

        self.sees(*RETRY, CHECKING)
        self.network.network_manager(running=False)
        self.sees(FAILED, f"expect-gone {CABLE_ADVICE}", 'expect-gone "no valid MAC address"')
        self.network.network_manager(running=True)
        self.network.wait_for_connection()
        self.sees(*RETRY, CHECKING, SUCCESS, 'expect focus "Close" within 5', "key Return", "expect closed within 5")
        self.assertEqual(self.gadget.end(), 0, "how the host ended")


def main():
    if "TV_NETWORK_FOLDER" in os.environ:
        return unittest.main(argv=sys.argv[:1] + [f"RealNetwork.{name}" for name in sys.argv[1:]])
    if "GADGET_HOST" not in os.environ:
        print("GADGET_HOST must name the gadget-host program", file=sys.stderr)
        return 2
    cases = sys.argv[1:] or unittest.TestLoader().getTestCaseNames(RealNetwork)
    return max(tv_network.enter(str(pathlib.Path(__file__).resolve()), [case]) for case in cases)


if __name__ == "__main__":
    sys.exit(main())
