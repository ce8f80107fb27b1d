"""The gadget in its host, led line by line: a line is sent when the network is as the line wants it."""
import os
import selectors
import subprocess
import time

CLOSE_SECONDS = 10
LINE_SECONDS = 60  # the line's own "within" ends sooner


class Gadget:
    def __init__(self, host, folder, *options):
        environment = {**os.environ, "ELM_DISPLAY": "buffer", "ELM_ENGINE": "buffer", "ECORE_NO_SYSTEM_MODULES": "1",
                       "G_DEBUG": "fatal-criticals",
                       "HOME": str(folder), "XDG_RUNTIME_DIR": str(folder), "LANGUAGE": "en", "LC_ALL": "C.UTF-8"}
        self.transcript = ""
        command = [host, "--network=networkmanager", f"--store={folder}/settings", "--script=-", "--size=1920x1080"]
        with open(folder / "gadget.log", "ab") as log:
            self.host = subprocess.Popen([*command, *options], env=environment, stdin=subprocess.PIPE,
                                         stdout=subprocess.PIPE, stderr=log)
        os.set_blocking(self.host.stdout.fileno(), False)
        self.selector = selectors.DefaultSelector()
        self.selector.register(self.host.stdout, selectors.EVENT_READ)

    def do(self, line):
        """Sends one script line and waits until the transcript says that it is done."""
        seen = len(self.transcript)
        self.host.stdin.write(f"{line}\n".encode())
        self.host.stdin.flush()
        end = time.monotonic() + LINE_SECONDS
        while f"] {line}" not in self.transcript[seen:]:
            if not self.read(end - time.monotonic()):
                raise AssertionError(f"the host did not carry out: {line}\n{self.transcript}")
        if "-> FAILED" in self.transcript[seen:]:
            while self.read(CLOSE_SECONDS):  # the host tells what is on the screen, and ends
                pass
            raise AssertionError(f"not met: {line}\n{self.transcript}")

    def read(self, seconds):
        """Takes in more of the transcript. False at its end, or when the time is over."""
        if seconds <= 0 or not self.selector.select(seconds):
            return False
        more = self.host.stdout.read() or b""
        self.transcript += more.decode()
        return bool(more)

    def end(self):
        """Waits for the end of a host whose gadget has closed."""
        self.host.stdin.close()
        return self.host.wait(CLOSE_SECONDS)
