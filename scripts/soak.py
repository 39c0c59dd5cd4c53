#!/usr/bin/python3
"""Works Shotly for longer than anybody would, and checks that it takes no more of the machine at the end than at the
beginning.

Usage: soak.py BUILD_FOLDER SNAPSHOTS OPENINGS   (on a display with a window manager)
"""

import collections
import re
import shutil
import subprocess
import sys
import tempfile
import time

from desktop_driver import DesktopError, Session, exit_code, expect, quick_click, run, screen_picture, wait_for

PROJECT = "soak"
POINT = 300, 440  # of the plain ground, where the program has nothing while it captures
WARM = 500  # snapshots, and a tenth of it openings, after which nothing may grow any more
FLAT = 20 * 1024  # kB
AHEAD = 3  # clicks that wait while the one before is worked on

Sample = collections.namedtuple("Sample", "rss pss files threads segments server")


def kept_by_the_server():
    """How many of each kind of thing the X server keeps for all programs but the one that asks."""
    kept = collections.Counter()
    for client in re.split(r"^\d+ - ", run("xrestop", "-b", "-m", "1"), flags=re.M)[1:]:
        if not client.startswith("xrestop"):
            for kind in ("windows", "GCs", "pixmaps", "pictures", "cursors", "passive grabs"):
                kept[kind] += int(re.search(rf"^\t{kind} *: (\d+)", client, re.M)[1])
    return kept


def segments(maker):
    """Shared memory of the kind that outlives its makers."""
    with open("/proc/sysvipc/shm", encoding="ascii") as listed:
        names = listed.readline().split()
        return sum(line.split()[names.index("cpid")] == str(maker) for line in listed)


class Soak:
    def __init__(self, build):
        self.session = Session(build, tempfile.mkdtemp(prefix="shotly-soak-"))
        self.main = None  # window
        self.place = self.closed = self.opened = None  # of it: where it is, and how it looks
        self.session.write_options(["[HotKeys]"], ShowLessMessage=1, BigPicSize=50)

    def memory(self):
        """RSS, and PSS of what is in no file: the rest depends on which other programs have the same libraries. In kB."""
        with open(f"/proc/{self.session.shotly.pid}/smaps_rollup", encoding="ascii") as rollup:
            text = rollup.read()
        return tuple(int(re.search(rf"^{kind}: +(\d+)", text, re.M)[1]) for kind in ("Rss", "Pss_Anon"))

    def entries(self, folder):
        listed = subprocess.run(["ls", f"/proc/{self.session.shotly.pid}/{folder}"], capture_output=True, text=True,
                                check=True)  # fmt: skip
        return len(listed.stdout.split())

    def sample(self):
        """Once the program rests: what is there for a moment only is not counted."""
        seen = []

        def rests():
            pid = self.session.shotly.pid
            seen.append((self.entries("fd"), self.entries("task"), segments(pid), kept_by_the_server()))
            return len(seen) > 2 and seen[-1] == seen[-2] == seen[-3]

        wait_for("the program to rest", rests, 0.3)
        return Sample(*self.memory(), *seen[-1])

    @staticmethod
    def show(what, sample):
        server = ", ".join(f"{count} {kind}" for kind, count in sample.server.items())
        print(f"{what}: RSS {sample.rss / 1024:.1f} MB, its own PSS {sample.pss / 1024:.1f} MB, {sample.files} descriptors, "
              f"{sample.threads} threads, {sample.segments} segments; in the server {server}", flush=True)  # fmt: skip

    def compare(self, first, last):
        for kind in ("rss", "pss"):
            grown = getattr(last, kind) - getattr(first, kind)
            expect(grown <= FLAT, f"the {kind.upper()} has grown by {grown} kB")
        for kind in ("files", "threads", "segments"):
            before, after = getattr(first, kind), getattr(last, kind)
            expect(after <= before, f"{kind}: {before} at the beginning, {after} at the end")
        more = last.server - first.server
        expect(not more, f"the server keeps more: {dict(more)}")

    # ---- a capture run

    def capture(self, count):
        session = self.session
        session.begin(PROJECT)
        [path] = session.journals()
        began = time.monotonic()
        memories = []
        with open(path, "rb") as journal:
            journal.readline()  # the facts of the run
            self.sent = self.taken = 0
            self.click_until(journal, min(WARM, count // 2))
            first = self.sample()
            self.show(f"after {self.taken} snapshots", first)
            while self.taken < count:
                self.click_until(journal, min(self.taken + 100, count))
                memories.append(self.memory()[1])
            last = self.sample()
        self.show(f"after {self.taken} snapshots", last)
        print(f"its own PSS between them: {min(memories) / 1024:.1f} to {max(memories) / 1024:.1f} MB; "
              f"{count / (time.monotonic() - began):.1f} snapshots a second", flush=True)  # fmt: skip
        self.compare(first, last)
        expect(max(memories) - first.pss <= FLAT, f"the PSS was {max(memories)} kB on the way")
        self.stop(count + 1)

    def click_until(self, journal, wanted):
        """As fast as the program takes it; a snapshot counts once it is in the journal."""
        changed = time.monotonic()
        while self.taken < wanted:
            if self.sent < min(self.taken + AHEAD, wanted):
                quick_click(POINT)
                self.sent += 1
            if new := journal.read().count(b"\n"):
                self.taken += new
                changed = time.monotonic()
            elif self.sent == min(self.taken + AHEAD, wanted):
                time.sleep(0.01)
            if time.monotonic() - changed > 30:
                raise DesktopError(f"{self.sent} clicks, {self.taken} snapshots")

    def stop(self, pages):
        session = self.session
        began = time.monotonic()
        quick_click(session.stop_point())
        wait_for("the end of the run", lambda: not session.journals() and session.main_window(), 0.2, patience=600)
        rows = session.query("select PageNumber, ScreenShotFilePath from PageData order by 1").splitlines()
        folder = session.base / PROJECT
        expect(rows == [f"{one + 1}|{folder}/sh{one + 1:04}.bmp" for one in range(pages)], f"{len(rows)} pages")
        files = sum(path.stat().st_size > 54 for path in folder.glob("*.bmp"))
        expect(files == pages, f"{files} files for {pages} pages")
        print(f"after Stop: {pages} pages without a gap, all with their files, "
              f"{time.monotonic() - began:.1f} s", flush=True)  # fmt: skip

    # ---- screens that are opened and closed

    def main_picture(self):
        x, y, width, height = self.place
        return run("import", "-window", "root", "-crop", f"{width}x{height}+{x}+{y}", "-format", "%#", "info:-")

    def settled_picture(self, before):
        """The first picture of the main window that stays, other than one."""
        seen = []

        def settled():
            seen.append(self.main_picture())
            return seen[-1] != before and len(seen) > 4 and len(set(seen[-5:])) == 1

        wait_for("the main window to come to rest", settled, 0.1)
        return seen[-1]

    def viewer(self):
        """A tab of the main window, closed by its key. How both look is learnt the first time."""
        before = self.closed or self.main_picture()
        run("xdotool", "key", "alt+e", "key", "Return")
        self.opened = self.opened or self.settled_picture(before)
        wait_for("the viewer", lambda: self.main_picture() == self.opened)
        run("xdotool", "key", "ctrl+w")
        self.closed = self.closed or self.settled_picture(self.opened)
        wait_for("the viewer to go", lambda: self.main_picture() == self.closed)

    def editor(self):
        """A window of its own, closed by the window manager."""
        run("xdotool", "key", "alt+e", "key", "e")

        def others():
            return [window for title, window in self.session.windows()
                    if title not in ("", "shotly") and window.identifier != self.main.identifier]  # fmt: skip

        window = wait_for("the paint editor", others)[0]
        run("wmctrl", "-i", "-c", window.identifier)
        wait_for("the paint editor to go", lambda: not others())

    def open_and_close(self, what, action, count):
        self.main = wait_for("the main window", self.session.main_window)
        self.place = self.main.steady_rectangle()
        run("xdotool", "windowactivate", "--sync", self.main.identifier)
        began = time.monotonic()
        warm = min(WARM // 10, count // 2)
        for number in range(count):
            if number == warm:
                first = self.sample()
                self.show(f"the {what}, {number} times", first)
            action()
        last = self.sample()
        self.show(f"the {what}, {count} times", last)
        print(f"{count / (time.monotonic() - began):.1f} a second", flush=True)
        self.compare(first, last)

    def all(self, snapshots, openings):
        run("xsetroot", "-solid", "#3b6ea5")
        self.session.start()
        self.capture(snapshots)
        self.open_and_close("viewer", self.viewer, openings)
        self.open_and_close("paint editor", self.editor, openings)
        self.session.quit()
        left = segments(self.session.shotly.pid)
        expect(left == 0, f"{left} segments of shared memory are left")
        print("no shared memory is left", flush=True)


def main():
    soak = Soak(sys.argv[1])
    folder = soak.session.folder
    code = exit_code(f"soak ({folder})", lambda: soak.all(int(sys.argv[2]), int(sys.argv[3])))
    if code:
        screen_picture(folder / "failed.png")
    soak.session.end()
    if not code:
        shutil.rmtree(folder)
    return code


if __name__ == "__main__":
    sys.exit(main())
