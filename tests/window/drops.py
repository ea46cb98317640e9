#!/usr/bin/env python3
"""Drags out of another program and pastes what it offers: drops.py MURN MURNCTL PICTURES BASE
[STEP…].

Each step looks at the files that came of it. Skipped (77) without the tools for it.
"""

import os
import shutil
import subprocess
import sys
import time
import traceback

from scene import DEADLINE, Failed, Scene, missing_tools, until
from walk import attributes_work

HERE = os.path.dirname(os.path.abspath(__file__))


def run(*command, seconds=DEADLINE):
    return subprocess.run(command, check=True, capture_output=True, text=True,
                          timeout=seconds).stdout


class Drops(Scene):
    other = None

    # --- The other program

    def offer(self, *what):
        self.other = subprocess.Popen(
            [sys.executable, os.path.join(HERE, "other_program.py"), *what],
            stdout=subprocess.PIPE, text=True)
        while not (line := self.other.stdout.readline()).startswith("at"):
            if not line:
                raise Failed("the other program has ended")
        self.from_x, self.from_y = (int(word) for word in line.split()[1:])

    def end_other(self):
        if self.other is None:
            return
        self.other.kill()
        self.other.wait(DEADLINE)
        self.other.stdout.close()
        self.other = None

    # --- The pointer

    @staticmethod
    def pointer(*words):
        run("xdotool", *(str(word) for word in words))

    def begin_drag(self):
        self.pointer("mousemove", self.from_x, self.from_y)
        time.sleep(0.2)
        self.pointer("mousedown", 1)
        for step in range(1, 8):
            self.pointer("mousemove", self.from_x + 6 * step, self.from_y + 4 * step)
            time.sleep(0.02)

    def zone(self):
        """The place of the drop zone once it has slid out; None while it is not seen."""
        found = subprocess.run(["xdotool", "search", "--onlyvisible", "--name", "^Drop zone$"],
                               capture_output=True, text=True).stdout.split()
        if not found:
            return None
        facts = dict(line.split("=") for line in
                     run("xdotool", "getwindowgeometry", "--shell", found[0]).split())
        x, y, width = int(facts["X"]), int(facts["Y"]), int(facts["WIDTH"])
        return (x, y) if x + width <= 1400 else None

    def drop_moves(self, x, y):
        for step in range(4):
            self.pointer("mousemove", x - 6 + 2 * step, y)
            time.sleep(0.05)

    def drop_at(self, x, y):
        self.drop_moves(x, y)
        self.pointer("mouseup", 1)

    def clip(self, kind, data):
        path = os.path.join(self.folder, "clip")
        with open(path, "wb") as file:
            file.write(data)
        self.clipboard = subprocess.Popen(["xclip", "-quiet", "-selection", "clipboard", "-t",
                                           kind, "-i", path], stderr=subprocess.DEVNULL)
        self.processes.append(self.clipboard)
        # Who has the clipboard no longer may leave a question without an answer.
        until(lambda: kind in run("xclip", "-selection", "clipboard", "-o", "-t", "TARGETS",
                                  seconds=2), kind)
        self.pointer("mousemove", 600, 780, "click", 1)  # among the documents

    def drop_on_zone(self, down=110):
        x, y = until(self.zone, "the drop zone")
        self.drop_at(x + 110, y + down)

    # --- What came of it

    def filed(self):
        root = os.path.join(self.home, "Documents", "Filed Documents")
        found = {}
        for folder, names, files in os.walk(root):
            for name in files:
                path = os.path.join(folder, name)
                found[os.path.relpath(path, root)] = path
        return {os.path.basename(name): path for name, path in found.items()}

    def came(self, name):
        path = until(lambda: self.filed().get(name), f"{name}, not {sorted(self.filed())}")
        with open(path, "rb") as file:
            return file.read()

    def ends_editor(self, *tags):
        field = self.one("text", "Tags", root=self.one("dialog", begins="Tags of"))
        until(lambda: field.get_state_set().contains(self.atspi.StateType.FOCUSED),
              "the keyboard in the tag editor")
        for tag in tags:
            self.type(tag + ",")
        self.press("Return")
        until(lambda: not self.zone(), "the drop zone gone")

    # --- The steps

    def first_start(self):
        os.makedirs(self.path("Filed Documents"))
        self.start()
        self.one("dialog", "Welcome to Murn")
        self.press("Return")
        self.gone("dialog", "Welcome to Murn")

    def drop(self, *what, shot=None, tags=()):
        self.offer(*what)
        self.begin_drag()
        until(self.zone, "the drop zone")
        if shot:
            self.shot(shot)
        self.drop_on_zone()
        self.ends_editor(*tags)
        self.end_other()

    def other_is_in_front(self):
        until(lambda: run("xdotool", "getactivewindow", "getwindowname") == "Other program\n",
              "the other program in front")

    def text_on_the_zone(self):
        self.offer("text", "A note that somebody dragged over here")
        self.other_is_in_front()
        self.begin_drag()
        until(self.zone, "the drop zone")
        time.sleep(0.3)
        self.shot("zone")
        self.drop_on_zone()
        self.one("dialog", begins="Tags of")
        self.shot("editor")
        self.ends_editor("note", "dragged")
        path = until(lambda: self.filed().get("A note that somebody dragged over here.txt"), "it")
        until(lambda: set(self.murnctl("tags", path).split()) >= {"note", "dragged"}, "its tags")
        self.other_is_in_front()
        self.end_other()

    def each_kind(self):
        self.drop("address", "http://example.org/a/long/enough/address", "A page")
        assert b"http://example.org/a" in self.came("A page.webloc")
        self.drop("address", "https://example.org/a/long/enough/address", "A page")
        assert self.came("A page.txt") == b"https://example.org/a/long/enough/address"
        self.drop("styled", "<h1>Minutes</h1><p>Nothing <b>happened</b>."
                            "<img src='http://localhost:1/x.png'><script>x</script>")
        assert self.came("Minutes Nothing happened.odt").startswith(b"PK")
        self.drop("picture", "400")
        assert self.came("Image.png").startswith(b"\x89PNG")

    def promises(self):
        self.drop("promise", "report.pdf", "writes")
        assert self.came("report.pdf") == b"written by the source"
        self.drop("promise", "../../late.pdf", "late")
        assert self.came("late.pdf") == b"written by the source"
        self.drop("promise", "read.pdf", "reads")
        assert self.came("read.pdf") == b"read instead"
        for manner in ("refuses", "dies"):
            self.offer("promise", "not.pdf", manner)
            self.begin_drag()
            self.drop_on_zone()
            until(lambda: self.all("alert") or self.all("dialog"), f"what went wrong: {manner}")
            self.shot(f"promise-{manner}")
            self.press("Escape")
            self.end_other()
            until(lambda: not self.zone(), "the drop zone gone")
        assert "not.pdf" not in self.filed()

    def files_on_the_zone(self):
        path = self.path("elsewhere", "letter.txt")
        os.makedirs(os.path.dirname(path))
        with open(path, "w") as file:
            file.write("a letter")
        self.offer("files", path)
        self.begin_drag()
        self.drop_on_zone()
        self.click_on("push button", "Add and File")
        self.ends_editor("filed")
        assert self.came("letter.txt") == b"a letter"
        assert not os.path.exists(path)
        self.end_other()

    def tags_by_waiting(self):
        """A row that springs open when the drag stays over it."""
        self.offer("text", "This one gets the tags of the last group")
        self.begin_drag()
        x, y = until(self.zone, "the drop zone")
        self.drop_moves(x + 110, y + 265)
        time.sleep(1)
        self.shot("sprung")
        self.drop_at(x + 110, y + 112)
        self.shot("with-tags")
        self.one("dialog", begins="Tags of")
        self.ends_editor()
        path = self.filed()["This one gets the tags of the last group.txt"]
        until(lambda: self.murnctl("tags", path).split(), "the tags of the group")
        self.end_other()

    def a_film_fills_the_screen(self):
        self.offer("--full-screen", "text", "Nobody wants the zone over a film")
        self.begin_drag()
        time.sleep(1)
        assert not self.zone()
        self.pointer("mouseup", 1)
        self.end_other()

    def pastes(self):
        self.clip("UTF8_STRING", b"This was on the clipboard of another program")
        self.press("ctrl+v")
        self.came("This was on the clipboard of another program.txt")
        self.one("list item", begins="This was on the clipboard")  # and can be undone by then
        self.press("ctrl+z")
        until(lambda: "This was on the clipboard of another program.txt" not in self.filed(),
              "the paste undone")
        for kind, data, name in (
                ("message/rfc822", b"Subject: Hello there\n\nbody", "Hello there.eml"),
                ("text/rtf", rb"{\rtf1 Hello rich world, how are you}", "Hello rich world, how are you.rtf"),
                ("application/pdf", b"%PDF-1.4\n" + b"x" * 50_000_000, "imported PDF.pdf")):
            self.clip(kind, data)
            self.press("ctrl+v")
            self.came(name)
            self.clipboard.kill()

    def escape_and_leave(self):
        self.offer("text", "never dropped, this text is let go elsewhere")
        self.begin_drag()
        until(self.zone, "the drop zone")
        self.pointer("mousemove", 20, 890)
        self.pointer("mouseup", 1)
        until(lambda: not self.zone(), "the drop zone gone")
        self.end_other()


STEPS = ["first_start", "pastes", "text_on_the_zone", "each_kind", "promises",
         "escape_and_leave", "files_on_the_zone", "tags_by_waiting", "a_film_fills_the_screen"]


def main():
    murn, murnctl, pictures, base = sys.argv[1:5]
    absent = missing_tools() + [tool for tool in ("xprop", "xclip") if shutil.which(tool) is None]
    if subprocess.run([sys.executable, "-c", "import gi; gi.require_version('Gtk', '3.0')"],
                      stderr=subprocess.DEVNULL).returncode:
        absent.append("gir1.2-gtk-3.0")
    if absent:
        print("skipped, not here:", ", ".join(absent))
        return 77
    if not attributes_work(base):
        print("skipped:", base, "has no attributes")
        return 77
    drops = Drops(murn, murnctl, pictures, base)
    try:
        for step in sys.argv[5:] or STEPS:
            print(step, flush=True)
            try:
                getattr(drops, step)()
            except (Failed, AssertionError, RuntimeError, subprocess.SubprocessError):
                traceback.print_exc()
                drops.shot("failed-" + step)
                print("filed:", sorted(drops.filed()))
                return 1
    finally:
        drops.end_other()
        drops.close()
    return 0


if __name__ == "__main__":
    sys.exit(main())
