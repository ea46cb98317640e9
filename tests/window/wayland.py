"""The real program under a Wayland compositor without a screen, used by the accessible tree alone:
start, a search that comes over the bus, a document that is handed over, tags, undo, a picture.
wayland.py MURN MURNCTL PICTURES FOLDER"""

import os
import subprocess
import sys

from scene import DEADLINE, missing_tools, until
from walk import Walk, pdf, run

SOCKET = "wayland-murn"
NAME = "com.brindle.murn"


class WaylandWalk(Walk):
    def _start_desktop(self):
        self._start_bus()
        self._start("weston", "--no-config", "--backend=headless-backend.so", "--width=1400",
                    "--height=900", "--idle-time=0", "--socket=" + SOCKET,
                    stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        until(lambda: os.path.exists(os.path.join(os.environ["XDG_RUNTIME_DIR"], SOCKET)),
              "a compositor")
        os.environ.pop("DISPLAY", None)
        os.environ["WAYLAND_DISPLAY"] = SOCKET
        os.environ["QT_QPA_PLATFORM"] = "wayland"
        self._start_looking()

    # There is neither keyboard nor pointer: everything goes by the accessible tree.

    def act(self, role, name=None, begins=None, action="Press", shown=True):
        def done():
            for item in self.all(role, name, begins, shown=shown):
                names = [item.get_action_name(i) for i in range(item.get_n_actions())]
                if action in names and item.do_action(names.index(action)):
                    return True
            return False
        until(done, f"{role} {name or begins} to do {action}")

    def menu(self, name=None, begins=None):
        self.act("menu item", name, begins, shown=False)

    def choose(self, name):
        self.act("list item", begins=name, action="SetFocus")

    def write(self, field, text):
        until(lambda: self.one("text", field).set_text_contents(text), f"{text} in {field}")

    def shot(self, name):
        """Only the program itself can take a picture here."""

    def call(self, method, signature, *values):
        from gi.repository import Gio, GLib
        bus = Gio.DBusConnection.new_for_address_sync(
            os.environ["DBUS_SESSION_BUS_ADDRESS"],
            Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT |
            Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION, None, None)
        bus.call_sync(NAME, "/com/brindle/murn", "org.freedesktop.Application", method,
                      GLib.Variant(signature, values), None, Gio.DBusCallFlags.NONE,
                      DEADLINE * 1000, None)

    def first_start(self):
        from gi.repository import GLib
        for i in range(3):
            pdf(self.path(f"invoice {i}.pdf"), f"payment {i} dry dock")
        pdf(self.path("Trips", "rome.pdf"), "hotel near the river")
        self.start()
        self.one("dialog", "Welcome to Murn")
        self.act("push button", "Start")
        self.shows("invoice 0.pdf", "invoice 1.pdf", "invoice 2.pdf", "rome.pdf")
        self.call("ActivateAction", "(sava{sv})", "SearchText", [GLib.Variant("s", "invoice")], {})
        self.shows("invoice 0.pdf", "invoice 1.pdf", "invoice 2.pdf")
        self.hand_over(self.path("Trips", "rome.pdf"))
        self.one("list item", begins="rome.pdf")

    def searches_tags_and_takes_back(self):
        path = self.path("invoice 1.pdf")
        self.act("push button", "Cancel")  # the tag editor of what was handed over
        self.menu("All Documents")
        self.write("Search", "invoice")
        self.shows("invoice 0.pdf", "invoice 1.pdf", "invoice 2.pdf")
        self.choose("invoice 1")
        self.menu("4 stars")
        self.holds(path, [], 4)
        self.write("Tags", "harbour")
        self.choose("invoice 0")  # takes what was written before
        self.holds(path, ["harbour"], 4)
        self.menu(begins="Undo")
        self.holds(path, [], 4)
        self.choose("invoice 2")
        self.menu("Move to Trash")
        self.act("push button", "Move to Trash")
        until(lambda: not os.path.exists(self.path("invoice 2.pdf")), "the file in the trash")
        self.menu(begins="Undo")
        until(lambda: os.path.exists(self.path("invoice 2.pdf")), "the file back in its place")
        for mode in ("As List", "As Groups", "As Pictures"):
            self.menu(mode)
            self.is_on(mode)

    def quits_and_takes_a_picture(self):
        self.menu("Quit")
        until(self.has_ended, "the end")
        self.murn = None
        picture = os.path.join(self.pictures, "wayland.png")
        subprocess.run([self.murn_path, "--screenshot", picture], check=True, timeout=4 * DEADLINE)
        assert os.path.getsize(picture) > 10_000, "a picture of something"


if __name__ == "__main__":
    sys.exit(run(WaylandWalk, ("first_start", "searches_tags_and_takes_back",
                               "quits_and_takes_a_picture"),
                 lambda: missing_tools(("weston", "dbus-daemon"))))
