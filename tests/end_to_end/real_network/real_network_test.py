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
STAGE_TWO = 'expect picture "network_popup_connect_5.png" within 20'


class RealNetwork(unittest.TestCase):
    def setUp(self):
        self.network = tv_network.set_up()
        self.gadget = None
        self.addCleanup(self.tell)

    def tell(self):
        if self._outcome.success:
            return
        self.network.logs()

    def connect(self):
        self.network.advertisements(True)
        self.network.network_manager(True)
        tv_network.wait_until(self.network.connected, "NetworkManager's connection")

    def open_gadget(self):
        self.gadget = Gadget(os.environ["GADGET_HOST"], self.network.folder)
        self.gadget.do(CHECKING)

    def close_gadget(self):
        self.assertEqual(self.gadget.close(), 0, "how the host ended")

    def sees(self, *lines):
        for line in lines:
            self.gadget.do(line)

    def test_success(self):
        self.connect()
        self.open_gadget()
        self.sees(SUCCESS)
        self.close_gadget()

    def test_gateway_gone(self):
        self.connect()
        self.open_gadget()
        self.network.gateway(answers=False)
        self.sees(FAILED, GATEWAY_NOT_REACHED, f"expect-gone {CABLE_ADVICE}")
        self.close_gadget()

    def test_internet_gone(self):
        self.connect()
        self.network.internet(answers=False)
        self.open_gadget()
        self.sees(f"expect {INTERNET_ADVICE} within 20")
        self.network.internet(answers=True)
        self.sees(*RETRY, CHECKING, SUCCESS)
        self.close_gadget()

    def test_no_router_advertisement(self):
        self.network.network_manager(True)
        tv_network.wait_until(self.network.managed, "NetworkManager's taking over the link")
        self.open_gadget()
        self.sees(FAILED, GATEWAY_NOT_REACHED, f"expect-gone {CABLE_ADVICE}")
        self.close_gadget()

    def test_cable_pulled_in_stage_one(self):
        self.connect()
        self.open_gadget()
        self.network.cable(plugged=False)
        self.sees(f"expect {CABLE_ADVICE} within 10")
        self.network.cable(plugged=True)
        tv_network.wait_until(self.network.connected, "the connection after the cable is back")
        self.sees(*RETRY, CHECKING, SUCCESS)
        self.close_gadget()

    def test_cable_pulled_in_stage_two(self):
        self.connect()
        self.network.processes["internet"].send_signal(signal.SIGSTOP)  # stage two waits for its answer
        self.open_gadget()
        self.sees(STAGE_TWO)
        self.network.cable(plugged=False)
        self.sees(f"expect {CABLE_ADVICE} within 5")
        self.close_gadget()

    def test_network_manager_stopped(self):
        self.connect()
        self.open_gadget()
        self.network.network_manager(running=False)
        self.sees(FAILED, f"expect-gone {CABLE_ADVICE}", 'expect-gone "no valid MAC address"')
        self.network.network_manager(running=True)
        tv_network.wait_until(self.network.connected, "the daemon's connection")
        self.sees(*RETRY, CHECKING, SUCCESS)
        self.close_gadget()


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
