"""A desktop of its own for one test: a home, a bus, a display, a window manager, and the program.

What the program shows is read from the accessible tree, what it did from the disk. Nothing waits
for a time: until() asks again and again until its deadline.
"""

import os
import shutil
import signal
import subprocess
import tempfile
import time

DEADLINE = 30  # seconds; a busy machine is slow


class Failed(Exception):
    pass


def missing_tools(tools=("Xvfb", "xdotool", "openbox", "dbus-daemon", "import")):
    """What the scene needs and this machine lacks."""
    absent = [tool for tool in tools if shutil.which(tool) is None]
    try:
        import gi
        gi.require_version("Atspi", "2.0")
    except (ImportError, ValueError):
        absent.append("gir1.2-atspi-2.0")
    return absent


def until(answer, what, deadline=DEADLINE):
    """The first true answer; Failed when there is none in time. What was expected is said in
    words, or by a call when the words have to be read from the screen, which may fail too."""
    end = time.monotonic() + deadline
    trouble = None
    while time.monotonic() < end:
        try:
            trouble = None
            if value := answer():
                return value
        # GLib's errors are RuntimeErrors: a widget that went away while it was read.
        except (OSError, RuntimeError, LookupError, subprocess.SubprocessError) as error:
            trouble = error
        time.sleep(0.03)
    if callable(what):
        try:
            what = what()
        except Exception as error:
            what, trouble = "something that cannot be read", error
    raise Failed(f"not in {deadline} s: {what}" + (f" ({trouble})" if trouble else ""))


class Scene:
    def __init__(self, murn, murnctl, pictures, base):
        self.murn_path, self.murnctl_path, self.pictures = murn, murnctl, pictures
        os.makedirs(pictures, exist_ok=True)
        self.folder = tempfile.mkdtemp(prefix="window-", dir=base)
        self.processes = []
        self.murn = None
        self.number = 0
        try:
            self._make_home()
            self._start_desktop()
        except BaseException:
            self.close()
            raise

    def _make_home(self):
        self.home = os.path.join(self.folder, "home")
        os.environ["HOME"] = self.home
        for name in ("CONFIG", "DATA", "CACHE", "STATE"):
            path = os.path.join(self.folder, name.lower())
            os.makedirs(path)
            os.environ[f"XDG_{name}_HOME"] = path
        os.makedirs(os.path.join(self.home, "Documents"))
        run = os.path.join(self.folder, "run")
        os.mkdir(run, 0o700)
        os.environ["XDG_RUNTIME_DIR"] = run
        os.environ["LC_ALL"] = "C.UTF-8"
        os.environ["LANGUAGE"] = "en"
        os.environ["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"] = "1"
        os.environ["QT_QPA_PLATFORM"] = "xcb"
        os.environ["NO_AT_BRIDGE"] = "0"
        for name in ("WAYLAND_DISPLAY", "SESSION_MANAGER", "DESKTOP_STARTUP_ID",
                     "XDG_ACTIVATION_TOKEN"):
            os.environ.pop(name, None)

    def _start(self, *command, **options):
        process = subprocess.Popen(command, stdin=subprocess.DEVNULL, **options)
        self.processes.append(process)
        return process

    def _start_desktop(self):
        reading, writing = os.pipe()
        # Without -noreset the server would start anew, and throw out who is just coming, when
        # the first to come (the accessibility bus has a look and leaves) was alone.
        self._start("Xvfb", "-displayfd", str(writing), "-screen", "0", "1400x900x24", "-noreset",
                    "-nolisten", "tcp", pass_fds=(writing,), stderr=subprocess.DEVNULL)
        os.close(writing)
        with os.fdopen(reading) as answer:
            os.environ["DISPLAY"] = ":" + answer.readline().strip()
        self._start_bus()
        self._start("openbox", stderr=subprocess.DEVNULL)
        until(lambda: subprocess.run(["xdotool", "get_num_desktops"],
                                     capture_output=True).returncode == 0, "a window manager")
        self._start_looking()

    def _start_bus(self):
        bus = self._start("dbus-daemon", "--session", "--print-address=1", "--nofork",
                          stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        os.environ["DBUS_SESSION_BUS_ADDRESS"] = bus.stdout.readline().decode().strip()

    def _start_looking(self):
        import gi
        gi.require_version("Atspi", "2.0")
        from gi.repository import Atspi
        self.atspi = Atspi
        Atspi.init()

    def close(self):
        self.stop()
        for process in reversed(self.processes):
            process.terminate()
            try:
                process.wait(10)
            except subprocess.TimeoutExpired:
                process.kill()
        shutil.rmtree(self.folder, ignore_errors=True)

    # --- The programs

    def start(self, *arguments):
        self.log = open(os.path.join(self.folder, "murn.log"), "ab")
        self.murn = subprocess.Popen([self.murn_path, *arguments], stdin=subprocess.DEVNULL,
                                     stdout=self.log, stderr=self.log)
        until(self.window, "a window")

    def hand_over(self, *arguments):
        """A second start, which gives its arguments to the first and ends."""
        subprocess.run([self.murn_path, *arguments], check=True, timeout=DEADLINE)

    def stop(self, how=signal.SIGTERM):
        if self.murn is None:
            return
        if self.murn.poll() is None:
            self.murn.send_signal(how)
        self.murn.wait(DEADLINE)
        self.murn = None

    def has_ended(self):
        return self.murn.poll() is not None

    def murnctl(self, *arguments):
        done = subprocess.run([self.murnctl_path, *arguments], check=True, capture_output=True,
                              text=True, timeout=DEADLINE)
        return done.stdout

    def path(self, *names):
        return os.path.join(self.home, "Documents", *names)

    # --- What is on the screen

    def application(self):
        desktop = self.atspi.get_desktop(0)
        for i in range(desktop.get_child_count()):
            child = desktop.get_child_at_index(i)
            if child is not None and child.get_process_id() == self.murn.pid:
                return child
        return None

    def window(self):
        application = self.application()
        if application is None:
            return None
        for i in range(application.get_child_count()):
            frame = application.get_child_at_index(i)
            if frame is not None and frame.get_role() == self.atspi.Role.FRAME:
                return frame
        return None

    def _walk(self, root, most=4000):
        waiting = [root]
        while waiting and most:
            most -= 1
            item = waiting.pop(0)
            if item is None:
                continue
            yield item
            count = min(item.get_child_count(), 300)
            waiting.extend(item.get_child_at_index(i) for i in range(count))

    def all(self, role=None, name=None, begins=None, shown=True, root=None):
        found = []
        for item in self._walk(root or self.application()):
            title = item.get_name() or ""
            if (role is None or item.get_role_name() == role) and \
                    (name is None or title == name) and \
                    (begins is None or title.startswith(begins)) and \
                    (not shown or item.get_state_set().contains(self.atspi.StateType.SHOWING)):
                found.append(item)
        return found

    def one(self, role=None, name=None, begins=None, root=None):
        return until(lambda: (self.all(role, name, begins, root=root) or [None])[0],
                     f"{role or 'something'} called {name or begins}")

    def gone(self, role=None, name=None, begins=None):
        until(lambda: not self.all(role, name, begins), f"no {role} called {name or begins}")

    @staticmethod
    def text_of(item):
        return item.get_text(0, item.get_character_count())

    def shot(self, name):
        self.number += 1
        picture = os.path.join(self.pictures, f"{self.number:02}-{name}.png")
        subprocess.run(["import", "-window", "root", picture], check=True, timeout=DEADLINE)

    # --- Keyboard and pointer

    @staticmethod
    def press(*keys):
        subprocess.run(["xdotool", "key", "--clearmodifiers", *keys], check=True,
                       timeout=DEADLINE)

    @staticmethod
    def type(text):
        subprocess.run(["xdotool", "type", "--delay", "20", text], check=True, timeout=DEADLINE)

    def click(self, item, button=1, keys=()):
        place = item.get_extents(self.atspi.CoordType.SCREEN)
        x, y = place.x + place.width // 2, place.y + place.height // 2
        command = ["xdotool", "mousemove", str(x), str(y)]
        for key in keys:
            command += ["keydown", key]
        command += ["click", str(button)]
        for key in keys:
            command += ["keyup", key]
        subprocess.run(command, check=True, timeout=DEADLINE)

    def click_on(self, role, name=None, begins=None):
        """Looks for it again when it is made anew between being found and being clicked."""
        until(lambda: self.click(self.one(role, name, begins)) or True,
              f"a click on {role} {name or begins}")
