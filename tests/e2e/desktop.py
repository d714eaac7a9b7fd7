"""A private desktop for tests: a display in memory, a window manager, a message bus, assistive technology.

It does not touch the user's desktop: home, preferences and buses are new, in a folder that is removed with the desktop,
and the desktop's processes end when the process that started them ends, for whatever reason.
"""

import ctypes
import os
import pathlib
import shutil
import subprocess
import tempfile

from accessibility import AccessibilityBus, Gone, call, connect
from screen import Screen
from waiting import wait_for

LAUNCHER = "/usr/libexec/at-spi-bus-launcher"
NEEDED = ("Xvfb", "openbox", "dbus-daemon", "setpriv", LAUNCHER)

BUS = """<busconfig>
  <type>session</type>
  <listen>unix:dir={folder}</listen>
  <auth>EXTERNAL</auth>
  <servicedir>{services}</servicedir>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
"""

# The window manager handles no keys, and of the clicks only those that raise or close a window.
MANAGER = """<openbox_config xmlns="http://openbox.org/3.4/rc">
  <focus><focusNew>yes</focusNew><focusLast>yes</focusLast></focus>
  <placement><policy>Smart</policy><center>yes</center></placement>
  <theme>
    <name>{theme}</name>
    <titleLayout>{title_layout}</titleLayout>
    <animateIconify>no</animateIconify>
  </theme>
  <desktops><number>1</number><popupTime>0</popupTime></desktops>
  <mouse>
    <context name="Client">
      <mousebind button="Left" action="Press"><action name="Focus"/><action name="Raise"/></mousebind>
    </context>
    <context name="Close">
      <mousebind button="Left" action="Click"><action name="Close"/></mousebind>
    </context>
  </mouse>
</openbox_config>
"""


def missing_tool():
    """Returns the first of the needed programs that is not installed, or None."""
    return next((tool for tool in NEEDED if not shutil.which(tool)), None)


PR_SET_CHILD_SUBREAPER = 36


def adopt_orphans():
    """Makes this process the parent of its children's orphans, so that it can wait for those too."""
    ctypes.CDLL(None, use_errno=True).prctl(PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0)


def children_of_this_process():
    tasks = pathlib.Path("/proc/self/task")
    return {int(child) for task in tasks.iterdir() for child in (task / "children").read_text().split()}


def tied(command, ending="KILL"):
    """Returns the command wrapped so that the kernel sends it this signal when the process that started it ends."""
    return ["setpriv", "--pdeathsig", ending, "--", *map(str, command)]


class Desktop:
    """A context manager that starts the processes of a desktop and stops them."""

    # The look of the window frames, and their layout: title, iconify, maximise, close.
    theme = "Clearlooks"
    title_layout = "LIMC"

    # The service files of the session bus: only these services can be started.
    services = ()

    def __init__(self, width=1280, height=960):
        self.size = f"{width}x{height}x24"
        self.processes = []

    def __enter__(self):
        adopt_orphans()
        self.others = children_of_this_process()
        self.folder_owner = tempfile.TemporaryDirectory(prefix="dunmora-desktop-")
        self.folder = pathlib.Path(self.folder_owner.name)
        try:
            self.start()
        except BaseException:
            self.stop()
            raise
        return self

    def __exit__(self, *_):
        self.stop()

    def start(self):
        # Other programs create sockets in this folder, and a socket's path must be short.
        (self.folder / "run").mkdir(mode=0o700)
        (self.folder / "tmp").mkdir()
        self.environment = self.environment_at(self.folder)
        self.environment["DISPLAY"] = self.start_display()
        self.screen = Screen(self.environment["DISPLAY"])
        self.start_manager()
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = self.start_bus()
        self.session_bus = connect(self.environment["DBUS_SESSION_BUS_ADDRESS"])
        self.accessibility = self.start_accessibility()

    def stop(self):
        for name in ("screen", "accessibility"):
            if hasattr(self, name):
                getattr(self, name).close()
        if hasattr(self, "session_bus"):
            self.session_bus.close_sync(None)
        for process in reversed(self.processes):
            process.terminate()
        for process in reversed(self.processes):
            process.wait()
        self.wait_for_orphans()
        self.folder_owner.cleanup()

    def wait_for_orphans(self):
        """Waits for the services that the buses started; they end when their bus is gone."""
        def all_ended():
            for child in children_of_this_process() - self.others:
                os.waitpid(child, os.WNOHANG)
            return not children_of_this_process() - self.others

        wait_for(all_ended, "end of the desktop's services")

    def environment_at(self, home):
        """Returns the environment for a program whose home is this folder."""
        environment = {
            "PATH": os.environ["PATH"],
            "HOME": str(home),
            "XDG_CONFIG_HOME": str(home / "config"),
            "XDG_DATA_HOME": str(home / "data"),
            "XDG_CACHE_HOME": str(home / "cache"),
            "XDG_STATE_HOME": str(home / "state"),
            "XDG_RUNTIME_DIR": str(self.folder / "run"),
            "TMPDIR": str(self.folder / "tmp"),
            "GSETTINGS_BACKEND": "memory",
            "GIO_USE_VFS": "local",
            "LANG": "C.UTF-8",
            "TZ": "UTC0",
        }
        # The options of a program built with sanitizers.
        environment.update({name: value for name, value in os.environ.items() if name.endswith("SAN_OPTIONS")})
        return environment

    def spawn(self, command, ending="KILL", **options):
        log = (self.folder / f"{pathlib.Path(command[0]).name}.log").open("wb")
        with log:
            process = subprocess.Popen(tied(command, ending), env=self.environment, stdin=subprocess.DEVNULL,
                                       stderr=log, cwd=self.folder, **{"stdout": log, **options})
        self.processes.append(process)
        return process

    def read_line(self, stream, what):
        """Returns the line that a process prints once it is ready."""
        with stream:
            line = stream.readline()
        if not line:
            raise RuntimeError(f"{what} did not start: {(self.folder / f'{what}.log').read_text()}")
        return line.decode().strip()

    def start_display(self):
        read, write = os.pipe()
        # The server takes the first display that is free.
        self.spawn(["Xvfb", "-displayfd", write, "-screen", "0", self.size, "-dpi", "96", "-nolisten", "tcp",
                    "-noreset"], pass_fds=[write])
        os.close(write)
        return ":" + self.read_line(os.fdopen(read, "rb"), "Xvfb")

    def start_manager(self):
        settings = self.folder / "openbox.xml"
        settings.write_text(MANAGER.format(theme=self.theme, title_layout=self.title_layout))
        self.spawn(["openbox", "--config-file", settings])
        wait_for(lambda: self.screen.has_manager, "window manager")

    def start_bus(self):
        settings = self.folder / "bus.xml"
        services = self.folder / "services"
        services.mkdir()
        for file in self.services:
            shutil.copy(file, services)
        settings.write_text(BUS.format(folder=self.folder / "run", services=services))
        process = self.spawn(["dbus-daemon", f"--config-file={settings}", "--nofork", "--print-address=1"],
                             stdout=subprocess.PIPE)
        return self.read_line(process.stdout, "dbus-daemon")

    def start_accessibility(self):
        # It stops its own bus only on SIGTERM.
        self.spawn([LAUNCHER, "--launch-immediately"], ending="TERM")

        def address():
            try:
                return call(self.session_bus, "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress")[0]
            except Gone:
                return None

        bus = AccessibilityBus(wait_for(address, "accessibility bus"))
        bus.start_registry()
        return bus
