"""A program with windows, started on a desktop and driven as a user would."""

import math
import pathlib
import signal
import subprocess
import time

from accessibility import Gone
from desktop import tied
from png import png
from waiting import wait_for

# How long the program may take to end when it is asked to.
SECONDS_TO_END = 2


class Ended(AssertionError):
    """The program ended unexpectedly."""


class Program:
    """One run of a program."""

    def __init__(self, desktop, command, home, settings=None):
        self.desktop = desktop
        self.screen = desktop.screen
        self.output_file = home / "output.log"
        # The previous run may have left the mouse anywhere.
        self.screen.move(0, 0)
        environment = desktop.environment_at(home)
        environment.update({name: desktop.environment[name] for name in ("DISPLAY", "DBUS_SESSION_BUS_ADDRESS")})
        # Otherwise Qt looks in the session's settings for a screen reader and reports nothing without one.
        environment["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"] = "1"
        environment.update(settings or {})
        self.scale = float(environment.get("QT_SCALE_FACTOR", 1))
        with self.output_file.open("wb") as output:
            self.process = self.start_process(command, env=environment, cwd=home, stdin=subprocess.DEVNULL,
                                              stdout=output, stderr=output)
        self.root = None

    def start_process(self, command, **options):
        return subprocess.Popen(tied(command), **options)

    @property
    def output(self):
        """The program's standard output and error so far."""
        return self.output_file.read_text(errors="replace")

    def wait_for(self, condition, what):
        """Waits for a condition; fails as soon as the program has ended without it."""
        def condition_while_running():
            try:
                result = condition()
            except Gone:
                result = None
            # The condition may have become true right before the program ended.
            if not result and self.process.poll() is not None:
                raise Ended(f"no {what}: it has ended with {self.process.returncode}: {self.output}")
            return result

        return wait_for(condition_while_running, what)

    @property
    def application(self):
        if self.root is None:
            self.root = self.wait_for(lambda: self.desktop.accessibility.program(self.process.pid), "program")
        return self.root

    # Windows

    @property
    def windows(self):
        """The windows on the screen."""
        return [window for window in self.application.children if window.has("showing")]

    def x_window(self, window):
        """Returns the X server's window for this one, or None while the two disagree about its position."""
        extents = self.extents(window)
        tolerance = math.ceil(self.scale) - 1

        def is_there(found):
            return all(abs(one - other) <= tolerance for one, other in zip(found.extents, extents))

        return next((found for found in self.screen.windows
                     if found.process_id == self.process.pid and is_there(found)), None)

    def extents(self, node):
        """Returns the node's rectangle in the screen's pixels, which are smaller than those of a scaled program."""
        return tuple(round(measure * self.scale) for measure in node.extents)

    def wait_for_window(self, fits, what):
        """Waits for a window that fits and has reached its final position."""
        def found():
            for window in self.windows:
                if fits(window) and self.x_window(window):
                    return window
            return None

        return self.wait_for(found, what)

    def wait_until_active(self, window):
        """Waits until the window is the active one."""
        def is_active():
            active = self.screen.active_window
            return active is not None and window.has("active") and active == self.x_window(window)

        self.wait_for(is_active, f"activation of {window}")

    # Keyboard and mouse

    def press(self, window, *keys):
        """Waits until the window is the active one, then presses these keys, one after another."""
        self.wait_until_active(window)
        for key in keys:
            self.screen.press(key)

    def type(self, window, text):
        self.wait_until_active(window)
        self.screen.type(text)

    def click(self, node, times=1):
        """Waits until a control or cell is on the screen, then clicks it."""
        self.wait_for(lambda: node.has("showing"), f"place on the screen of {node}")
        self.screen.click(self.extents(node), times)

    # Ending

    def terminate(self):
        self.process.send_signal(signal.SIGTERM)

    def seconds_until_end(self):
        """Waits for the program to end and returns how long that took; fails when it takes too long."""
        started = time.monotonic()
        try:
            self.process.wait(SECONDS_TO_END)
        except subprocess.TimeoutExpired:
            raise AssertionError(f"the program is still running after {SECONDS_TO_END} seconds") from None
        return time.monotonic() - started

    def kill(self):
        self.process.kill()
        self.process.wait()

    def save_evidence(self, folder):
        """Saves the screen, the output and the accessible tree as they are now."""
        pathlib.Path(folder, "screen.png").write_bytes(png(self.screen.image()))
        pathlib.Path(folder, "output.log").write_text(self.output)
        try:
            tree = self.application.tree() if self.process.poll() is None else f"ended: {self.process.returncode}\n"
        except (Gone, AssertionError) as error:
            tree = f"{error}\n"
        pathlib.Path(folder, "tree.txt").write_text(tree)
