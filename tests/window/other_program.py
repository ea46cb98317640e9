#!/usr/bin/env python3
"""Another program of the desktop: a small window from which one thing can be dragged.

    other_program.py text TEXT
    other_program.py address URL TITLE
    other_program.py styled HTML
    other_program.py picture WIDTH
    other_program.py files PATH...
    other_program.py promise NAME MANNER   writes, late, never, refuses, reads, dies

With --full-screen before the kind it fills the screen. Prints the place of its middle on the screen once it is there.
"""

import os
import subprocess
import sys
import urllib.parse

import gi
gi.require_version("Gtk", "3.0")
gi.require_version("Gdk", "3.0")
gi.require_version("GdkX11", "3.0")
from gi.repository import Gdk, GdkPixbuf, GdkX11, GLib, Gtk  # noqa: F401

PROMISE = "XdndDirectSave0"
FILLS_SCREEN = sys.argv[1] == "--full-screen"
KIND, *VALUES = sys.argv[2 if FILLS_SCREEN else 1:]


def picture(width):
    pixels = GdkPixbuf.Pixbuf.new(GdkPixbuf.Colorspace.RGB, False, 8, width, width)
    pixels.fill(0x3366CCFF)
    return pixels.save_to_bufferv("png", [], [])[1]


def offers():
    """Bytes by kind of content."""
    if KIND == "text":
        return {"UTF8_STRING": VALUES[0].encode(), "text/plain": VALUES[0].encode()}
    if KIND == "address":
        return {"text/x-moz-url": "\n".join(VALUES).encode("utf-16-le"),
                "text/uri-list": VALUES[0].encode() + b"\r\n",
                "text/html": f'<a href="{VALUES[0]}">{VALUES[1]}</a>'.encode(),
                "UTF8_STRING": VALUES[0].encode()}
    if KIND == "styled":
        return {"text/html": VALUES[0].encode(), "UTF8_STRING": b"never taken beside the other"}
    if KIND == "picture":
        return {"image/png": picture(int(VALUES[0]))}
    if KIND == "files":
        return {"text/uri-list": "".join(
            "file://" + urllib.parse.quote(path) + "\r\n" for path in VALUES).encode()}
    return {PROMISE: b"", "application/octet-stream": b"read instead"}


class Program:
    def __init__(self):
        self.offers = offers()
        self.source = None
        window = Gtk.Window(title="Other program")
        area = Gtk.EventBox()
        area.add(Gtk.Label(label=KIND))
        area.set_size_request(160, 120)
        window.add(area)
        targets = [Gtk.TargetEntry.new(kind, 0, 0) for kind in self.offers]
        area.drag_source_set(Gdk.ModifierType.BUTTON1_MASK, targets, Gdk.DragAction.COPY)
        area.connect("drag-begin", self.begun)
        area.connect("drag-data-get", self.asked)
        area.connect("drag-end", lambda *_: print("ended", flush=True))
        window.connect("destroy", Gtk.main_quit)
        window.connect("focus-in-event", lambda *_: print("front", flush=True))
        window.show_all()
        if FILLS_SCREEN:
            window.fullscreen()
        else:
            window.move(120, 120)
        GLib.timeout_add(300, self.told_where, area)

    @staticmethod
    def told_where(area):
        _, x, y = area.get_window().get_origin()
        place = area.get_allocation()
        print("at", x + place.width // 2, y + place.height // 2, flush=True)
        return False

    def begun(self, _, context):
        self.source = str(context.get_source_window().get_xid())
        if KIND == "promise":
            subprocess.run(["xprop", "-id", self.source, "-f", PROMISE, "8s", "-set", PROMISE,
                            VALUES[0]], check=True)

    def asked(self, _area, _context, selection, _info, _time):
        kind = selection.get_target().name()
        answer = self.offers[kind]
        if kind == PROMISE:
            answer = self.keep_promise(VALUES[1])
        selection.set(selection.get_target(), 8, answer)

    def keep_promise(self, manner):
        if manner == "dies":
            os._exit(0)
        said = subprocess.run(["xprop", "-id", self.source, "-f", PROMISE, "8s", PROMISE],
                              check=True, capture_output=True, text=True).stdout
        path = urllib.parse.unquote(said.split('"')[1].removeprefix("file://"))
        print("asked for", path, flush=True)
        if manner == "writes":
            self.write(path)
        elif manner == "late":
            GLib.timeout_add(1000, self.write, path)
        return {"refuses": b"E", "reads": b"F"}.get(manner, b"S")

    @staticmethod
    def write(path):
        with open(path, "wb") as file:
            file.write(b"written by the source")
        return False


Program()
Gtk.main()
