#!/usr/bin/python3
"""Provokes faults around the running program and checks what becomes of the user's work.

Usage: fault_rounds.py BUILD_FOLDER GROUP [NAME]   (on a display; may mount file systems)

GROUP says what kind of display this is: "desktop", "no window manager", or "no" and an extension of the X server.
"""

import contextlib
import random
import re
import shutil
import signal
import sqlite3
import struct
import subprocess
import sys
import tempfile
import time
from pathlib import Path

from desktop_driver import PATIENCE, Session, Window, expect, quick_click, run, screen_picture, wait_for

PROJECT, KEEP = "faults", "Keep existing pages?"
POINT = (400, 500)
FAULTS = []


def fault(name, group="desktop"):
    def add(function):
        FAULTS.append((name, group, function))
        return function

    return add


def pointer_is_held():
    """Has some program grabbed the pointer? xwininfo wants it for itself, and says so when it cannot have it."""
    asked = subprocess.run(["timeout", "0.5", "xwininfo"], capture_output=True, text=True, check=False)
    return "Can't grab the mouse" in asked.stderr


class Case(Session):
    """A session with the steps that the faults share."""

    def __init__(self, build):
        super().__init__(build, tempfile.mkdtemp(prefix="shotly-fault-"))
        self.mounts = []
        self.project_folder = self.base / PROJECT
        self.write_options(ShowLessMessage=1, BigPicSize=100)

    def mount(self, folder, size):
        folder.mkdir(parents=True, exist_ok=True)
        run("mount", "-t", "tmpfs", "-o", f"size={size}", "none", folder)
        self.mounts.append(folder)

    @staticmethod
    def remount(folder, options):
        run("mount", "-o", f"remount,{options}", folder)

    def records(self):
        journals = self.journals()
        return journals[0].read_bytes().count(b"\n") - 1 if journals else 0

    def click(self, count=1):
        """Clicks, each of which must give a snapshot."""
        for _ in range(count):
            before = self.records()
            quick_click(POINT)
            wait_for("a snapshot", lambda: self.records() > before)

    def message(self, key="Return"):
        self.answer(self.wait_box()[1], key)

    def messages(self, count):
        """So many messages and no more, and no run."""
        for _ in range(count):
            self.message()
        wait_for("the main window", self.main_window)
        self.check_quiet()
        expect(not self.stop_bar(), "a run has begun")

    def failing_click(self):
        before = self.records()
        quick_click(POINT)
        self.message()
        expect(self.records() == before, "a snapshot without a place was counted")

    def stop(self, messages=0):
        quick_click(self.stop_point())
        for _ in range(messages):
            self.message()
        wait_for("the end of the run", lambda: not self.stop_bar() and self.main_window())
        self.check_quiet()

    def stop_by_key(self, messages):
        """Without the snapshot that a click on Stop gives; the main window stays where it is."""
        run("xdotool", "key", "ctrl+F6")
        for _ in range(messages):
            self.message()
        wait_for("the end of the run", lambda: not self.stop_bar())

    def check_quiet(self):
        """The program answers, and has nothing more to say."""
        run("xdotool", "windowactivate", self.main_window().identifier, check=False)
        boxes = self.boxes()
        expect(not boxes, f"one message too many: {[title for title, _ in boxes]}")

    def restart(self):
        self.kill()
        self.start()

    def offered(self, count, key="Return"):
        """The next start asks about so many snapshots and makes pages of them."""
        self.restart()
        title, window = self.wait_box()
        expect(title == f"Unfinished capture: {count} snapshots", f"offered: {title}")
        self.answer(window, key)

    def check_pages(self, count):
        """As many pages as snapshots, numbers and files without a gap, nothing pending, nothing half-written."""
        wait_for("the journal to go", lambda: not self.journals())
        rows = self.query("select PageNumber, ScreenShotFilePath from PageData order by 1").splitlines()
        wanted = [f"{one + 1}|{self.project_folder}/sh{one + 1:04}.bmp" for one in range(count)]
        expect(rows == wanted, f"pages: {rows}")
        expect(self.query("pragma integrity_check") == "ok", "the database is damaged")
        left = list(self.folder.rglob(".shotly-*"))
        expect(not left, f"half-written files: {left}")

    def pictures(self):
        return [path.read_bytes() for path in sorted(self.project_folder.glob("*.bmp"))]

    def plain_run(self, answers=None):
        """A run as on any day."""
        self.begin(PROJECT, answers)
        self.click(2)
        self.stop()
        self.check_pages(3)
        return "2 clicks and Stop, 3 pages"

    def close(self):
        self.end()
        for folder in reversed(self.mounts):
            run("umount", "-l", folder)


# ---- disks


@fault("project folder on a disk that fills up and has room again")
def disk_full(case):
    case.mount(case.base, "4m")
    case.start()
    case.begin(PROJECT)
    case.click(2)
    case.failing_click()
    case.failing_click()
    case.remount(case.base, "size=20m")
    case.click(2)
    case.stop()
    case.check_pages(5)
    return "2 messages while it was full; 5 snapshots, 5 pages"


@fault("disk full when the pointer is drawn")
def disk_full_at_stop(case):
    case.mount(case.base, "6m")
    case.start()
    case.begin(PROJECT)
    case.click(2)
    (case.base / "filler").write_bytes(bytes(1_000_000))
    case.click(1)
    case.stop_by_key(messages=1)
    case.check_pages(3)
    return "1 message; 3 snapshots, 3 pages without pointers"


@fault("Stop while no snapshot can be taken")
def stop_without_a_place(case):
    case.mount(case.base, "4m")
    case.start()
    case.begin(PROJECT)
    case.click(2)
    case.stop(messages=2)  # the snapshot of the click on Stop, and the drawing
    case.check_pages(2)
    return "2 messages; 2 snapshots, 2 pages, the click on Stop is not lost"


@fault("application folder full")
def application_folder_full(case):
    case.base = case.base / ("long" * 40)  # so that the journal grows fast
    case.project_folder = case.base / PROJECT
    case.mount(case.application_folder, "1m")
    case.write_options(ShowLessMessage=1)
    case.start()
    case.begin(PROJECT)
    case.click(2)
    with open(case.application_folder / "filler", "wb", buffering=0) as filler, contextlib.suppress(OSError):
        while filler.write(bytes(4096)):
            pass
    clicks = 0
    while not case.boxes():  # the page of the file that the journal ends in has room for some more
        before = case.records()
        quick_click(POINT)
        wait_for("a snapshot or a message", lambda: case.records() > before or case.boxes())
        clicks += 1
    case.message()
    taken = case.records()
    case.stop_by_key(messages=1)
    case.remount(case.application_folder, "size=9m")
    case.offered(taken)
    case.check_pages(taken)
    return f"{taken} of {clicks + 2} clicks journalled, the other told; their pages made at the next start"


@fault("disk full when documents are written again")
def disk_full_at_documents(case):
    case.mount(case.base, "16m")
    case.write_options(ShowLessMessage=1, BigPicSize=100, FinalDocumentFormat=1, AutoConvertWord2PDF=1,
                       WordProcessor="builtin")  # fmt: skip
    case.start()
    case.plain_run()
    documents = [case.project_folder / (PROJECT + suffix) for suffix in (".doc", ".pdf")]

    def generate():
        run("xdotool", "windowactivate", "--sync", wait_for("the main window", case.main_window).identifier)
        run("xdotool", "key", "alt+m")
        run("xdotool", "key", "g")
        case.message()  # close the word processor

    generate()
    wait_for("the documents", lambda: all(path.exists() for path in documents))
    case.check_quiet()
    before = [path.read_bytes() for path in documents]
    with open(case.base / "filler", "wb", buffering=0) as filler, contextlib.suppress(OSError):
        while filler.write(bytes(4096)):
            pass
    generate()
    case.message()
    case.check_quiet()
    expect([path.read_bytes() for path in documents] == before, "the old documents are not back")
    left = [path for path in case.base.rglob("*") if path.is_file() and path.name.startswith(".")]
    expect(not left, f"left behind: {left}")
    (case.base / "filler").unlink()
    generate()
    wait_for("new documents", lambda: (case.project_folder / "oldDocument" / documents[0].name).exists())
    case.check_quiet()
    return "1 message, the old document and PDF are back; with room again new ones"


@fault("disk full when the paint editor saves")
def disk_full_at_editor(case):
    case.mount(case.base, "8m")
    run("xsetroot", "-solid", "#3b6ea5")  # on which black lines show
    case.start()
    case.plain_run()
    picture = case.project_folder / "sh0001.bmp"
    before = picture.read_bytes()
    run("xdotool", "windowactivate", "--sync", case.main_window().identifier, "key", "alt+e", "Down", "Return")
    editor = Window.wait("sh0001.bmp - Easel$")
    editor.steady_rectangle()
    editor.activate()

    def key(*keys):
        run("xdotool", "windowactivate", "--sync", editor.identifier, "key", *keys)

    with open(case.base / "filler", "wb", buffering=0) as filler, contextlib.suppress(OSError):
        while filler.write(bytes(4096)):
            pass
    x, y = editor.point(0.5, 0.5)
    run("xdotool", "mousemove", x, y, "mousedown", 1, "mousemove", x + 40, y + 30, "mousemove", x + 60, y, "mouseup", 1)
    key("ctrl+s")
    box = wait_for("the message", lambda: [window for title, window in case.windows() if title == "Easel"])[0]
    case.answer(box)
    expect(picture.read_bytes() == before, "the old picture has changed")
    left = list(case.base.rglob(".shotly-*"))
    expect(not left, f"half-written files: {left}")
    (case.base / "filler").unlink()
    key("ctrl+s")
    wait_for("the picture to be saved", lambda: picture.read_bytes() != before)
    expect(len(picture.read_bytes()) == len(before), "the picture is not whole")
    expect(not [title for title, _ in case.windows() if title == "Easel"], "one message too many")
    case.check_pages(3)
    return "1 message, the old picture is whole and the drawing stays; with room again it is saved"


@fault("base directory gone in mid-run, and back")
def base_directory_gone(case):
    away = case.folder / "away"
    case.start()
    case.begin(PROJECT)
    case.click(2)
    case.base.rename(away)
    case.failing_click()
    away.rename(case.base)
    case.click(1)
    case.stop()
    case.check_pages(4)
    return "1 message; 4 snapshots, 4 pages"


@fault("base directory read-only in mid-run, and writable again")
def base_directory_read_only(case):
    case.mount(case.base, "20m")
    case.start()
    case.begin(PROJECT)
    case.click(2)
    case.remount(case.base, "ro")
    case.failing_click()
    case.remount(case.base, "rw")
    case.click(1)
    case.stop()
    case.check_pages(4)
    return "1 message; 4 snapshots, 4 pages"


@fault("project directory that is a file")
def project_directory_is_a_file(case):
    case.base.mkdir(exist_ok=True)
    case.project_folder.write_text("the user's own")
    case.start()
    case.press_begin(PROJECT)
    case.messages(1)
    expect(case.project_folder.read_text() == "the user's own", "the file was touched")
    case.project_folder.unlink()
    return "1 message, no run; without the file: " + case.plain_run({"Shotly": "Return"})


@fault("application folder read-only")
def application_folder_read_only(case):
    case.mount(case.application_folder, "9m")
    shutil.copytree(case.delivered, case.application_folder, dirs_exist_ok=True)
    case.write_options(ShowLessMessage=1)
    case.remount(case.application_folder, "ro")
    case.start()
    case.press_begin(PROJECT)
    case.messages(1)
    case.remount(case.application_folder, "rw")
    return "1 message, no run; writable again: " + case.plain_run({KEEP: "Return", "Shotly": "Return"})


# ---- options


def with_options(name, data):
    @fault(f"options.ini {name}")
    def options(case):
        (case.application_folder / "options.ini").write_bytes(data)
        case.start()
        return case.plain_run({"Shotly": "Return"})


with_options("of random bytes", random.Random(1).randbytes(5000))
with_options("of a megabyte", b"[Options]\r\n" + b"".join(b"Key%d=value\r\n" % i for i in range(60_000)))
with_options("without sections", b"BaseDirectory=/nowhere\r\nBigPicSize=30\r\nShowLessMessage=1\r\n" * 50)


@fault("options.ini read-only, and writable again")
def options_read_only(case):
    options = case.application_folder / "options.ini"
    before = options.read_bytes()
    run("mount", "--bind", options, options)
    run("mount", "-o", "remount,bind,ro", options)
    case.start()

    def save():
        run("xdotool", "key", "ctrl+s")
        return case.boxes()

    run("xdotool", "windowactivate", "--sync", case.main_window().identifier, "key", "alt+a", "key", "o")
    wait_for("what becomes of saving", save, interval=0.5)
    case.message()
    case.check_quiet()
    expect(options.read_bytes() == before, "the file was touched")
    run("umount", options)
    wait_for("the saving", save, interval=0.5)
    case.message()
    case.check_quiet()
    expect(b"SingleDesktopCapture=Ctrl-F3" in options.read_bytes(), "the options were not saved")
    return "1 message, the dialog stays; writable again: saved; " + case.plain_run({"Shotly": "Return"})


# ---- database


def with_database(name, at_stop, at_begin, at_start):
    """Breaks the database between the last click and Stop, and restores it after another start of the program.

    The numbers are those of the messages; a run must not begin meanwhile, its pictures would take the place of
    those that wait.
    """

    def add(breaking):
        @fault(f"database {name}")
        def database(case):
            case.start()
            case.begin(PROJECT)
            case.click(2)
            kept = case.database.read_bytes()
            with breaking(case):
                case.stop(at_stop)
                pictures = case.pictures()
                case.press_begin(PROJECT)
                case.messages(at_begin)
                case.restart()
                case.messages(at_start)
                expect(case.records() == 3 and case.pictures() == pictures, "what waits has been touched")
                case.kill()
            case.database.write_bytes(kept)
            case.offered(3)
            case.check_pages(3)
            return f"{at_stop} messages at Stop, {at_begin} at a new Begin, {at_start} at a start; restored: 3 pages"

    return add


@contextlib.contextmanager
def replaced(case, data):
    case.database.write_bytes(data)
    yield


with_database("cut in two", 2, 1, 1)(lambda case: replaced(case, case.database.read_bytes()[:6000]))
with_database("overwritten in the middle", 1, 3, 2)(
    lambda case: replaced(case, case.database.read_bytes()[:4096] + b"U" * 8192 + case.database.read_bytes()[12288:])
)
with_database("replaced by text", 2, 1, 1)(lambda case: replaced(case, b"This is no database.\n" * 900))


@with_database("replaced by another program's", 2, 1, 1)
@contextlib.contextmanager
def foreign(case):
    case.database.unlink()
    with contextlib.closing(sqlite3.connect(case.database)) as other:
        other.execute("create table Songs (Title text)")
    yield


@with_database("locked by another program", 2, 1, 1)
@contextlib.contextmanager
def locked(case):
    with contextlib.closing(sqlite3.connect(case.database, isolation_level=None)) as other:
        other.execute("begin exclusive")
        yield


@with_database("read-only", 1, 3, 2)
@contextlib.contextmanager
def read_only(case):
    run("mount", "--bind", case.database, case.database)
    run("mount", "-o", "remount,bind,ro", case.database)
    yield
    run("umount", case.database)


@fault("database missing")
def database_missing(case):
    case.start()
    case.begin(PROJECT)
    case.click(2)
    case.database.unlink()
    case.stop(messages=2)
    expect(case.records() == 3, "the journal has gone")
    case.offered(3)  # the start has put an empty database there
    case.check_pages(3)
    return "2 messages; at the next start a new database and 3 pages"


# ---- snapshots


@fault("snapshots deleted and replaced by text before Stop")
def bad_snapshots(case):
    case.start()
    case.begin(PROJECT)
    case.click(4)
    text, gone = case.project_folder / "sh0001.bmp", case.project_folder / "sh0002.bmp"
    text.write_text("no picture")
    gone.unlink()
    case.stop(messages=2)  # what could not be marked, and that the first picture cannot be shown
    case.check_pages(5)
    expect(text.read_text() == "no picture" and not gone.exists(), "the user's changes are lost")
    return "2 messages; all 5 pages, the others with their pointers"


# ---- windows and displays


@fault("menu of another program that holds the pointer")
def open_menu(case):
    case.start()
    case.begin(PROJECT)
    case.launch("mousepad", "--disable-server")
    window = Window.wait("Mousepad")
    window.activate()
    x, y, width, height = window.steady_rectangle()
    titles = (x + 24, y + 12), (x + 64, y + 12)  # of the menus File and Edit
    middle = (x + width // 2, y + height - 20)
    for number, point in enumerate((titles[0], titles[1], titles[0], middle)):
        quick_click(point)
        wait_for("the snapshot", lambda: case.records() == number + 1)
        held = pointer_is_held()
        expect(held == (number < 3), f"after click {number + 1} the pointer is {'' if held else 'not '}held")
    case.stop()
    case.check_pages(5)
    return "4 clicks that open, change and close menus, and Stop: 5 pages"


@fault("window that closes between click and snapshot")
def closing_window(case):
    case.start()
    case.begin(PROJECT)
    for number in range(4):
        client = case.launch("xmessage", "-geometry", "300x100+250+420", "-title", "client", "?")
        window = Window.wait("^client$")
        x, y, _, height = window.steady_rectangle()
        quick_click((x + 20, y + height - 15))
        wait_for("the snapshot", lambda: case.records() == number + 1)
        client.wait(timeout=10)
    case.stop()
    case.check_pages(5)
    return "4 windows, 4 snapshots and Stop, 5 pages"


@fault("resolution changed in mid-run")
def resolution(case):
    case.start()
    case.begin(PROJECT)
    case.click()
    run("xrandr", "--newmode", "small", 23.75, 640, 664, 720, 800, 480, 483, 487, 500)
    run("xrandr", "--addmode", "screen", "small")
    run("xrandr", "--output", "screen", "--mode", "small")
    quick_click((300, 300))
    wait_for("a snapshot", lambda: case.records() == 2)
    run("xrandr", "--output", "screen", "--mode", "800x600")
    case.click()
    case.stop()
    case.check_pages(4)
    sizes = [struct.unpack_from("<ii", picture, 18) for picture in case.pictures()]
    expect(sizes == [(800, 600), (640, 480), (800, 600), (800, 600)], f"sizes {sizes}")
    return "snapshots of 800x600, 640x480, 800x600; 4 pages"


@fault("display connection lost in mid-run")
def connection_lost(case):
    case.start()
    case.begin(PROJECT)
    case.click(3)
    run("xdotool", "windowkill", case.stop_bar().identifier)
    wait_for("the end of the program", lambda: case.shotly.poll() is not None)
    case.offered(3)
    case.check_pages(3)
    return "3 snapshots, offered at the next start, 3 pages"


@fault("later starts during a run")
def later_starts(case):
    case.start()
    idle = case.sockets()
    expect(case.command("--begin", "no/name") == 1, "a run of that name")
    expect(case.command("--begin", PROJECT) == 0, "no run")
    wait_for("the stop bar", case.stop_bar)
    case.wait_watching(idle)
    case.click(2)
    expect(case.command() == 0, "a second program")
    expect(case.command("--begin", PROJECT) == 1, "a second run")
    expect(case.records() == 2, "the run was touched")
    expect(case.journals()[0].stat().st_mode & 0o077 == 0, "others can read the journal")
    expect(case.command("--stop") == 0 and not case.stop_bar(), "the run goes on")
    expect(case.command("--stop") == 1, "stopped twice")
    case.check_quiet()
    case.check_pages(2)
    return "begun and stopped by commands, a second start leaves the run untouched, 2 pages"


@fault("tray that goes away with the program in it")
def tray_gone(case):
    tray = case.launch("trayer", "--edge", "bottom")
    Window.wait("^panel$")
    case.write_options(ShowLessMessage=1, ProjectName=PROJECT)
    case.start()
    case.main_window().place(0, 0)
    _, top, _, bottom = case.project_box()
    x, _, width, _ = case.main_window().rectangle()
    quick_click((x + width - 20, (top + bottom) // 2 + 43))  # the button at the right below the tool bars
    wait_for("the window to go", lambda: not case.main_window())
    tray.terminate()
    tray.wait()
    idle = case.sockets()
    run("xdotool", "key", "ctrl+F5")
    case.wait_watching(idle)
    case.click(2)
    case.stop()
    case.check_pages(3)
    return "the hot key still begins a run, Stop brings the window back, 3 pages"


@fault("display switched for the capture; the program ended in every way", "large display")
def display_switch(case):
    def size():
        return re.search(r"current (\d+) x (\d+)", run("xrandr"))[0][8:].replace(" ", "")

    def answer(title, key):
        box, window = case.wait_box()
        expect(box == title, f"asked: {box}")
        case.answer(window, key)

    def switch():
        """Yes to the offer, and the program ends; the start that it asks for leaves the display small."""
        case.start()
        answer("Change Display Resolution?", "alt+y")
        _, window = case.wait_box()
        expect(size() == "800x600", f"switched to {size()}")
        run("xdotool", "windowfocus", window.identifier, "key", "Return")
        expect(case.shotly.wait(timeout=PATIENCE) == 0, "the program does not end after the switch")
        case.start()
        quiet()
        expect(size() == "800x600", f"the start that was asked for: {size()}")

    def quiet():
        wait_for("the main window", case.main_window)
        case.check_quiet()

    def back():
        return size() == "1280x960"

    case.write_options(ShowLessMessage=1, ChangeResolution=1)
    case.start()
    quiet()  # a display without such a mode
    case.quit()
    run("xrandr", "--newmode", "800x600", 38.25, 800, 832, 912, 1024, 600, 603, 607, 624)
    run("xrandr", "--addmode", "screen", "800x600")
    switch()
    case.quit()
    expect(back(), f"after the end: {size()}")
    switch()
    case.shotly.terminate()
    expect(case.shotly.wait(timeout=PATIENCE) == -signal.SIGTERM, "the signal is not what ended it")
    expect(back(), f"after a signal: {size()}")
    switch()
    case.kill()
    expect(size() == "800x600", f"after a kill: {size()}")
    case.start()
    expect(back(), f"at the start after a kill: {size()}")
    answer("Change Display Resolution?", "alt+n")
    quiet()
    case.quit()
    expect(back(), f"after No: {size()}")
    return "800x600 and back at the end, at a signal, and at the start after a kill"


@fault("settings that cannot be written, and a display that should be switched", "large display")
def display_not_remembered(case):
    # Another fault may have made the mode.
    run("xrandr", "--newmode", "800x600", 38.25, 800, 832, 912, 1024, 600, 603, 607, 624, check=False)
    run("xrandr", "--addmode", "screen", "800x600", check=False)
    settings = case.folder / "config"
    case.mount(settings, "1m")
    case.remount(settings, "ro")
    case.write_options(ShowLessMessage=1, ChangeResolution=1)
    case.start()
    case.messages(1)
    case.quit()
    expect("current 1280 x 960" in run("xrandr"), "the display was switched")
    return "1 message, and the display stays as it is"


@fault("no window manager", "no window manager")
@fault("no MIT-SHM", "no MIT-SHM")
@fault("no XInputExtension", "no XInputExtension")
@fault("no RANDR", "no RANDR")
def poorer_display(case):
    case.start()
    return case.plain_run()


@fault("no RECORD", "no RECORD")
def nothing_to_watch_with(case):
    case.write_options(ShowLessMessage=1, ProjectName=PROJECT)
    case.start()
    # The server lacks XTEST as well then: the click is sent to the window itself.
    left, top, right, bottom = case.project_box()
    begin = right + 48, (top + bottom) // 2
    run("xdotool", "mousemove", *begin, "click", "--window", case.main_window().identifier, 1)
    case.wait_box()

    def closed():
        # The window manager does not hear of a box that it has not taken over yet: asked again.
        for _, window in case.boxes():
            run("wmctrl", "-i", "-c", window.identifier, check=False)
        return case.main_window() and not case.boxes()

    wait_for("the message to go", closed, interval=0.3)
    expect(not case.stop_bar() and not case.journals(), "a run that sees nothing has begun")
    case.quit()
    return "1 message, no run, and the program ends as asked"


def main():
    build, group, wanted = sys.argv[1], sys.argv[2], sys.argv[3] if sys.argv[3:] else ""
    failed = 0
    for name, where, function in FAULTS:
        if where != group or wanted not in name:
            continue
        case = Case(build)
        began = time.monotonic()
        try:
            seen = function(case)
            print(f"ok      {name}: {seen} ({time.monotonic() - began:.1f} s)", flush=True)
        except Exception as error:  # whatever it is, the others go on
            failed += 1
            screen_picture(case.folder / "failed.png")
            print(f"FAILED  {name}: {type(error).__name__}: {error} ({case.folder})", flush=True)
        case.close()
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
