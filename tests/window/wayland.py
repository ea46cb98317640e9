"""The real program under a Wayland compositor without a screen: start, a search that comes over the
bus, a document that is handed over, a picture. wayland.py MURN MURNCTL PICTURES FOLDER"""

import os
import subprocess
import sys
import traceback

from scene import DEADLINE, Failed, missing_tools, until
from walk import Walk, attributes_work, pdf

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

    def act(self, role, name):
        """By the accessible tree alone: there is no pointer."""
        until(lambda: self.one(role, name).do_action(0), f"{role} {name} to act")

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

    def takes_a_picture(self):
        self.stop()
        picture = os.path.join(self.pictures, "wayland.png")
        subprocess.run([self.murn_path, "--screenshot", picture], check=True, timeout=4 * DEADLINE)
        assert os.path.getsize(picture) > 10_000, "a picture of something"


def main():
    murn, murnctl, pictures, base = sys.argv[1:5]
    if absent := missing_tools(("weston", "dbus-daemon")):
        print("skipped, not here:", ", ".join(absent))
        return 77
    if not attributes_work(base):
        print("skipped:", base, "has no attributes")
        return 77
    walk = WaylandWalk(murn, murnctl, pictures, base)
    try:
        for step in (walk.first_start, walk.takes_a_picture):
            print(step.__name__, flush=True)
            try:
                step()
            except (Failed, AssertionError, RuntimeError):
                traceback.print_exc()
                print("in sight:", walk.documents())
                return 1
    finally:
        walk.close()
    return 0


if __name__ == "__main__":
    sys.exit(main())
