#!/usr/bin/env python3
"""Uses the program as a person would, from the first start on: walk.py MURN MURNCTL PICTURES BASE.

Each step asserts what is on the screen and what is on the disk, and leaves a picture. Without the
tools for it (or where BASE has no attributes) the walk is skipped: it ends with 77.
"""

import json
import os
import signal
import sys
import traceback

from scene import DEADLINE, Failed, Scene, missing_tools, until


def pdf(path, text):
    """The smallest document with a page of text."""
    content = f"BT /F 24 Tf 30 300 Td ({text}) Tj ET".encode()
    objects = [
        b"<</Type/Catalog/Pages 2 0 R>>",
        b"<</Type/Pages/Kids[3 0 R]/Count 1>>",
        b"<</Type/Page/Parent 2 0 R/MediaBox[0 0 300 400]/Contents 4 0 R"
        b"/Resources<</Font<</F 5 0 R>>>>>>",
        b"<</Length %d>>stream\n%s\nendstream" % (len(content), content),
        b"<</Type/Font/Subtype/Type1/BaseFont/Helvetica>>",
    ]
    made, places = b"%PDF-1.4\n", []
    for number, body in enumerate(objects, 1):
        places.append(len(made))
        made += b"%d 0 obj\n%s\nendobj\n" % (number, body)
    start = len(made)
    made += b"xref\n0 %d\n0000000000 65535 f \n" % (len(objects) + 1)
    made += b"".join(b"%010d 00000 n \n" % place for place in places)
    made += b"trailer<</Size %d/Root 1 0 R>>\nstartxref\n%d\n%%%%EOF\n" % (len(objects) + 1, start)
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "wb") as file:
        file.write(made)


class Walk(Scene):
    # --- What the steps ask

    def documents(self):
        """The names of the documents in sight, in their order."""
        shown = self.all("list item") + self.all("table cell")
        names = []
        for item in shown:
            title = item.get_name()
            if ", " in title and " of " in title:
                names.append(title.split(", ")[0])
        return names

    def shows(self, *names, deadline=DEADLINE):
        until(lambda: sorted(self.documents()) == sorted(names),
              lambda: f"exactly {names} in sight, not {self.documents()}", deadline)

    def facts(self, path):
        answer = json.loads(self.murnctl("info", "--json", path))[0]
        return sorted(answer["tags"]), answer["stars"]

    def holds(self, path, tags, rating):
        until(lambda: self.facts(path) == (sorted(tags), rating),
              lambda: f"{tags} and {rating} stars on {path}, not {self.facts(path)}")

    def search(self, text):
        self.press("ctrl+f")
        self.press("ctrl+a")
        self.type(text) if text else self.press("BackSpace")
        until(lambda: self.text_of(self.one("text", "Search")) == text, "the words in the field")

    def select(self, name):
        self.click_on("list item", begins=name)
        until(lambda: self.one("list item", begins=name).get_state_set().contains(
            self.atspi.StateType.SELECTED), f"{name} selected")

    def is_on(self, name):
        until(lambda: [item for item in self.all(name=name) if item.get_state_set().contains(
            self.atspi.StateType.CHECKED)], f"{name} is on")

    # --- The steps, in their order

    def first_start(self):
        for i in range(3):
            pdf(self.path(f"invoice {i}.pdf"), f"payment {i} dry dock")
        pdf(self.path("Trips", "rome.pdf"), "hotel near the river")
        self.start()
        self.one("dialog", "Welcome to Murn")
        self.shot("welcome")
        self.press("Return")
        self.gone("dialog", "Welcome to Murn")
        self.shows("invoice 0.pdf", "invoice 1.pdf", "invoice 2.pdf", "rome.pdf")

    def search_back_and_forward(self):
        self.search("invoice")
        self.shows("invoice 0.pdf", "invoice 1.pdf", "invoice 2.pdf")
        self.press("Return")
        self.search("hotel")  # words within the page
        self.shows("rome.pdf", deadline=120)  # which are read when nothing else is to be done
        self.press("Return")
        self.press("alt+Left")
        self.shows("invoice 0.pdf", "invoice 1.pdf", "invoice 2.pdf")
        self.press("alt+Right")
        self.shows("rome.pdf")
        self.search("")
        self.shows("invoice 0.pdf", "invoice 1.pdf", "invoice 2.pdf", "rome.pdf")

    def rate_tag_and_undo(self):
        path = self.path("invoice 1.pdf")
        self.select("invoice 1")
        self.press("alt+4")
        self.holds(path, [], 4)
        self.press("ctrl+t")
        self.one("text", "Tags")
        self.type("paid, harbour")
        self.shot("tagging")
        self.press("Return")
        self.press("Return")
        self.holds(path, ["harbour", "paid"], 4)
        self.press("Escape")
        until(lambda: [item for item in self.all("list item", begins="invoice 1.pdf")
                       if "harbour" in item.get_name()], "the tag told of with the document")
        self.select("invoice 1")
        self.press("ctrl+z")
        self.holds(path, [], 4)
        self.press("ctrl+shift+z")
        self.holds(path, ["harbour", "paid"], 4)

    def trash_and_restore(self):
        path = self.path("invoice 2.pdf")
        self.select("invoice 2")
        self.press("ctrl+Delete")
        self.one("push button", "Move to Trash")
        self.shot("trash")
        self.press("Return")
        until(lambda: not os.path.exists(path), "the file in the trash")
        self.shows("invoice 0.pdf", "invoice 1.pdf", "rome.pdf")
        self.press("ctrl+z")
        until(lambda: os.path.exists(path), "the file back in its place")
        self.shows("invoice 0.pdf", "invoice 1.pdf", "invoice 2.pdf", "rome.pdf")

    def rename_with_another_ending(self):
        def rename():
            self.select("invoice 0")
            self.press("F2")
            self.press("ctrl+a")
            self.type("receipt.txt")
            self.press("Return")
            self.one("push button", "Keep .pdf")

        rename()
        self.shot("another-ending")
        self.press("Escape")
        self.gone("push button", "Keep .pdf")
        self.one("list item", begins="invoice 0.pdf")
        rename()
        self.press("Return")
        self.one("list item", begins="receipt.pdf")
        assert sorted(os.listdir(self.path())) == ["Trips", "invoice 1.pdf", "invoice 2.pdf",
                                                   "receipt.pdf"]

    def modes_and_zoom(self):
        self.press("ctrl+3")
        until(lambda: self.all("column header", "Name") or self.all("table column header", "Name"),
              "the list's columns")
        self.shot("list")
        self.press("ctrl+2")
        self.is_on("As Groups")
        self.one("list item", begins="rome")
        self.shot("groups")
        self.press("ctrl+1")
        self.one("list item", begins="rome")
        slider = self.one("slider", "Size of the pictures")
        ends = (self.atspi.Value.get_maximum_value(slider),
                self.atspi.Value.get_minimum_value(slider))
        for end in (*ends, (2 * ends[0] + 8 * ends[1]) / 10):
            self.atspi.Value.set_current_value(slider, end)
            until(lambda end=end: self.atspi.Value.get_current_value(slider) == end,
                  f"the zoom at {end}")
            until(self.documents, "documents in sight")  # the one that was looked at
            self.shot("zoom")

    def quit_and_remember(self):
        self.press("ctrl+2", "ctrl+i")
        self.is_on("As Groups")
        self.gone("text", "Comment")
        self.press("ctrl+q")
        until(self.has_ended, "the end")
        self.murn = None
        self.start()
        self.shows("invoice 1.pdf", "invoice 2.pdf", "receipt.pdf", "rome.pdf")
        self.is_on("As Groups")
        assert not self.all("text", "Comment"), "the inspector stayed away"
        self.shot("again")
        self.press("ctrl+1", "ctrl+i")

    def from_outside(self):
        self.hand_over("murn://tags/harbour/paid")
        self.shows("invoice 1.pdf")
        self.shot("tags-by-address")
        self.hand_over(self.path("Trips", "rome.pdf"))
        self.one("list item", begins="rome.pdf")
        self.stop()
        self.start("murn://tags/harbour")
        self.click_on("push button", "No")  # to crash reports, asked for by now
        self.gone("push button", "No")
        self.shows("invoice 1.pdf")

    def after_a_crash(self):
        self.select("invoice 1")
        self.press("alt+2")
        self.holds(self.path("invoice 1.pdf"), ["harbour", "paid"], 2)
        self.stop(signal.SIGKILL)
        self.start()
        self.holds(self.path("invoice 1.pdf"), ["harbour", "paid"], 2)
        until(self.documents, "documents again")
        self.shot("after-a-crash")


def attributes_work(folder):
    path = os.path.join(folder, ".attributes")
    try:
        with open(path, "wb"):
            os.setxattr(path, "user.probe", b"1")
        return True
    except OSError:
        return False
    finally:
        os.path.exists(path) and os.remove(path)


def run(kind, steps, tools=missing_tools):
    """The steps of one kind of walk, by name; the exit status."""
    murn, murnctl, pictures, base = sys.argv[1:5]
    if absent := tools():
        print("skipped, not here:", ", ".join(absent))
        return 77
    if not attributes_work(base):
        print("skipped:", base, "has no attributes")
        return 77
    walk = kind(murn, murnctl, pictures, base)
    try:
        for step in steps:
            print(step, flush=True)
            try:
                getattr(walk, step)()
            except (Failed, AssertionError, RuntimeError):
                traceback.print_exc()
                walk.shot("failed-" + step)
                print("in sight:", walk.documents())
                return 1
    finally:
        walk.close()
    return 0


if __name__ == "__main__":
    sys.exit(run(Walk, ("first_start", "search_back_and_forward", "rate_tag_and_undo",
                        "trash_and_restore", "rename_with_another_ending", "modes_and_zoom",
                        "quit_and_remember", "from_outside", "after_a_crash")))
