#!/usr/bin/python3
"""Kills Shotly at random moments and checks that nothing is lost and nothing done twice.

Usage: kill_rounds.py BUILD_FOLDER ROUNDS|calls [SEED]   (on a display with a window manager)
"""

import collections
import contextlib
import ctypes
import json
import os
import random
import shutil
import struct
import subprocess
import sys
import tempfile
import threading
import time
from pathlib import Path

from desktop_driver import DesktopError, Session, Window, expect, quick_click, run, screen_picture, wait_for

REDUCTION = 70  # percent: a position that is scaled twice shows
KEEP, UNFINISHED = "Keep existing pages?", "Unfinished capture: "
xxhash = ctypes.CDLL("libxxhash.so.0")
xxhash.XXH3_64bits.restype = ctypes.c_uint64
xxhash.XXH3_64bits.argtypes = ctypes.c_char_p, ctypes.c_size_t

# number, hash of the bytes as they were taken, file, pointer in the grabbed picture, whether that was reduced
Shot = collections.namedtuple("Shot", "number hash path pointer reduced")


def hash_of(data):
    return xxhash.XXH3_64bits(data, len(data))


class Bitmap:
    """A Windows bitmap of 24 bits, whole or not at all."""

    def __init__(self, data, name):
        expect(len(data) >= 54 and data[:2] == b"BM", f"{name} is no bitmap")
        self.width, self.height = struct.unpack_from("<ii", data, 18)
        self.stride = (3 * self.width + 3) // 4 * 4
        wanted = 54 + self.stride * self.height
        expect(struct.unpack_from("<I", data, 2)[0] == wanted == len(data), f"{name} is not whole")
        self.data = bytearray(data)

    def offset(self, x, y):
        inside = 0 <= x < self.width and 0 <= y < self.height
        return 54 + (self.height - 1 - y) * self.stride + 3 * x if inside else None


def tip(shot):
    return tuple(round(at * 0.01 * REDUCTION) if shot.reduced else at for at in shot.pointer)


def read_journal(path):
    """The facts and the snapshots of a run; a last record that was cut off does not count."""
    records = [json.loads(line) for line in path.read_bytes().split(b"\n")[:-1]]
    shots = [
        Shot(r[0], int(r[1], 16), Path(r[3]), (int(r[4]), int(r[5])), r[7] == "True") for r in records[1:]
    ]
    return (records[0] if records else None), shots


class Copies:
    """Keeps the bytes of each snapshot as it was taken: a second link to the file, made before it is marked."""

    def __init__(self, session):
        self.session = session
        self.folder = session.folder / "taken"
        self.folder.mkdir(exist_ok=True)
        self.seen = set()
        self.going = True
        self.thread = threading.Thread(target=self.watch, daemon=True)

    def watch(self):
        while self.going:
            self.look()
            time.sleep(0.002)

    def look(self):
        for path in self.session.base.glob("*/sh*.bmp"):
            with contextlib.suppress(OSError):
                node = path.stat().st_ino
                if node not in self.seen:
                    os.link(path, self.folder / str(node))
                    self.seen.add(node)

    def __enter__(self):
        self.thread.start()
        return self

    def __exit__(self, *_):
        self.going = False
        self.thread.join()
        self.look()

    def by_hash(self):
        return {hash_of(data): data for data in (path.read_bytes() for path in self.folder.iterdir())}


class Rounds:
    def __init__(self, build, rounds, seed):
        self.build, self.rounds = build, rounds
        self.random = random.Random(seed)
        self.figures = collections.Counter()
        self.stamp = None  # what marking once changes: colours by their place from the pointer's tip

    def remove_folder(self):
        """What the program had started may still be writing there."""
        folder = self.session.folder
        wait_for("the folder to go", lambda: shutil.rmtree(folder, ignore_errors=True) or not folder.exists())

    # ---- one round

    def start_round(self, number):
        if number % 2 == 0:
            self.session = Session(self.build, tempfile.mkdtemp(prefix="shotly-kill-"))
            self.session.write_options(
                ["[HotKeys]"], ShowLessMessage=1, BigPicSize=REDUCTION, MouseInsideColor=1
            )
            self.aside = 0  # files that must lie in oldDocument
        self.project = f"round{number // 2}"
        self.folder = self.session.base / self.project
        self.edited = {}  # snapshots that the user has changed after the kill, and their bytes

    def click_about(self, point, count):
        for _ in range(count):
            quick_click(point)
            time.sleep(self.random.uniform(0, 0.15))

    def capture(self, in_stop):
        """A run that is killed; returns how many clicks it was sent."""
        point = (self.random.randint(150, 700), self.random.randint(60, 550))
        count = self.random.randint(1, 10)
        with Copies(self.session):
            self.session.begin(self.project, {KEEP: "Return", "Shotly": "Return"})
            return self.kill_run(point, count, self.session.stop_point(), in_stop)

    def kill_run(self, point, count, stop, in_stop):
        if not in_stop:
            self.kill_after(self.random.uniform(0, 0.25 * count), lambda: self.click_about(point, count))
            return count
        self.click_about(point, count)
        if self.random.random() < 0.5:
            self.kill_after(0.01 * 150 ** self.random.random(), lambda: quick_click(stop))
        else:
            # Marking and registering are a matter of milliseconds, soon after the last snapshot.
            [journal] = self.session.journals()
            quick_click(stop)
            wait_for("the last snapshot", lambda: self.has_taken(journal, count + 1), 0.0005)
            self.kill_after(self.random.uniform(0.04, 0.09))
        return count + 1

    def is_in_stop(self):
        return self.random.random() < 0.5

    def kill_after(self, delay, meanwhile=None):
        killer = threading.Timer(delay, self.session.shotly.kill)
        killer.start()
        with contextlib.suppress(DesktopError):
            if meanwhile:
                meanwhile()
        killer.join()
        self.session.kill()

    @staticmethod
    def has_taken(journal, count):
        try:
            return journal.read_bytes().count(b"\n") > count
        except FileNotFoundError:
            return True  # registered, all of it

    def one(self, number):
        self.start_round(number)
        in_stop = self.is_in_stop()
        self.session.start()
        expect(not self.unfinished(), "what was settled is offered again")
        # Low on the screen the window alone is taken, else the whole screen, reduced.
        run("xdotool", "windowmove", self.client.identifier, 120, self.random.choice((40, 400)))
        pages = self.count_pages()
        sent = self.capture(in_stop)
        self.figures["in stop" if in_stop else "in run"] += 1
        journals = self.session.journals()
        shots = read_journal(journals[0])[1] if journals else []
        expect(len(journals) <= 1, "more than one journal")
        expect([shot.number for shot in shots] == list(range(1, len(shots) + 1)), "numbers with a gap")
        expect(len(shots) <= sent, "more snapshots than clicks")
        self.figures["snapshots"] += len(shots)
        self.figures["half"] += len(list(self.session.folder.rglob(".shotly-*")))
        if journals:
            self.settle(journals, shots)
        else:
            expect(in_stop, "the journal has gone")
            expect(self.count_pages() == pages + sent, f"not {sent} pages more")
        self.check(shots)

    # ---- after a kill

    def has_page(self, shot):
        return f"from PageData where ProjectName='{self.project}' and ScreenShotFilePath='{shot.path}'"

    def count_pages(self):
        return int(self.session.query(f"select count(*) from PageData where ProjectName='{self.project}'"))

    def missing(self, shots):
        return [shot for shot in shots if self.session.query(f"select count(*) {self.has_page(shot)}") == "0"]

    def unfinished(self):
        return [(title, window) for title, window in self.session.boxes() if title.startswith(UNFINISHED)]

    def box(self, missing):
        """The question about the run, which must name what is missing."""
        [(title, window)] = wait_for("the question about the run", self.unfinished)
        expect(title == f"{UNFINISHED}{len(missing)} snapshots", f"{title}, but {len(missing)} are missing")
        return window

    def wait_settled(self):
        wait_for("the journal to go", lambda: not self.session.journals())

    def settle(self, journals, shots):
        """Starts the program until all is settled: now and then it is killed again on the way."""
        while missing := self.missing(shots):
            choice = self.random.choices(["yes", "no", "killed", "killed in yes", "new run"], [10, 3, 2, 3, 3])[0]
            self.figures[choice] += 1
            self.edit(self.random.choice(missing))
            if choice == "new run":
                return self.new_run(journals[0], missing)
            self.session.start()
            window = self.box(missing)
            if choice == "killed in yes":
                self.kill_after(self.random.uniform(0, 0.08), lambda: self.session.answer(window))
            elif choice != "killed":
                self.session.answer(window, "Return" if choice == "yes" else "Escape")
                self.wait_settled()
                self.aside += len(missing) if choice == "no" else 0
            self.session.kill()
            if choice == "no":
                return self.check_aside(missing)
        # All pages are there: nothing is asked, and the journal goes, the empty one as well.
        self.session.start()
        self.wait_settled()
        expect(not self.unfinished(), "a run without anything missing is offered")
        self.session.kill()

    def edit(self, shot):
        """What has other bytes than the journal says, because it is marked or because of the user, stays so."""
        if self.random.random() < 0.3:
            data = bytearray(shot.path.read_bytes())
            data[54:84] = bytes(range(30))
            shot.path.write_bytes(data)
            self.edited[shot.path] = data

    def new_run(self, journal, missing):
        """The same project is begun again in a program that found no journal when it started."""
        away = self.session.folder / journal.name
        journal.rename(away)
        self.session.start()
        away.rename(journal)
        title = f"{UNFINISHED}{len(missing)} snapshots"
        seen = self.session.begin(self.project, {title: "Return", KEEP: "Return", "Shotly": "Return"})
        expect(title in seen, "the pending run is not offered before a new one")
        with Copies(self.session):
            quick_click(self.session.stop_point())
            wait_for("the main window", self.session.main_window)
            self.wait_settled()
        self.session.kill()

    def check_aside(self, missing):
        for shot in missing:
            expect(not shot.path.exists(), f"{shot.path} was not set aside")

    # ---- what must hold

    def check(self, shots):
        query = self.session.query
        expect(query("pragma integrity_check") == "ok", "the database is damaged")
        numbers = query(f"select PageNumber from PageData where ProjectName='{self.project}' order by 1").split()
        expect(numbers == [str(one + 1) for one in range(len(numbers))], f"page numbers {numbers}")
        doubles = query("select * from PageData group by ScreenShotFilePath having count(*) > 1")
        expect(not doubles, f"snapshots twice: {doubles}")
        paths = query("select ScreenShotFilePath from PageData").splitlines()
        expect(all(map(os.path.exists, paths)), "a page without its picture")
        left = [path for path in self.session.folder.rglob(".shotly-*")]
        expect(not left, f"half-written files are left: {left}")
        aside = [path for path in self.folder.glob("oldDocument/*.bmp")]
        expect(len(aside) == self.aside, f"{len(aside)} files set aside, not {self.aside}")
        for path in [*aside, *self.folder.glob("*.bmp")]:
            Bitmap(path.read_bytes(), path)
        taken = Copies(self.session).by_hash()
        for shot in shots:
            if str(shot.path) in paths:
                self.check_marked(shot, taken.get(shot.hash))
        self.figures["pages"] = self.pages_before + len(paths)

    def check_marked(self, shot, taken):
        """Exactly what marking the bytes that were taken once gives; drawn at the journalled place."""
        now = Bitmap(shot.path.read_bytes(), shot.path)
        if shot.path in self.edited:
            expect(now.data == self.edited[shot.path], f"{shot.path} was changed by the user and marked")
            return
        x, y = tip(shot)
        marked = Bitmap(bytes(now.data) if taken is None else taken, shot.path)
        for (across, down), colour in self.stamp.items():
            if (at := marked.offset(x + across, y + down)) is not None:
                marked.data[at : at + 3] = colour
        expect(marked.data == now.data, f"{shot.path} is not marked exactly once")
        self.figures["compared"] += taken is not None

    # ---- all rounds

    def learn_stamp(self):
        """From a run that nobody disturbs, on a plain ground."""
        run("xsetroot", "-solid", "#3b6ea5")
        self.start_round(0)
        self.session.start()
        with Copies(self.session) as copies:
            self.session.begin(self.project)
            quick_click((400, 400))
            [journal] = self.session.journals()
            wait_for("the snapshot", lambda: read_journal(journal)[1])
            shot = read_journal(journal)[1][0]
            copies.look()
            quick_click(self.session.stop_point())
            self.wait_settled()
        self.session.kill()
        before = Bitmap(copies.by_hash()[shot.hash], "the copy")
        after = Bitmap(shot.path.read_bytes(), shot.path)
        x, y = tip(shot)
        self.stamp = {}
        for down in range(-30, 31):
            for across in range(-30, 31):
                at = before.offset(x + across, y + down)
                if before.data[at : at + 3] != after.data[at : at + 3]:
                    self.stamp[across, down] = bytes(after.data[at : at + 3])
        expect(self.stamp.get((0, 0)) == bytes(3) and len(self.stamp) > 100, "the mark is not to be seen")
        self.remove_folder()

    def all(self):
        self.learn_stamp()
        with subprocess.Popen(["xterm", "-geometry", "60x10", "-T", "client"], stderr=subprocess.DEVNULL) as client:
            self.client = Window.wait("^client$")
            try:
                self.run_rounds()
            finally:
                client.terminate()

    def run_rounds(self):
        self.pages_before = 0
        for number in range(self.rounds):
            self.one(number)
            if number % 2 or number == self.rounds - 1:
                self.pages_before = self.figures["pages"]
                self.remove_folder()

    def report(self):
        f = self.figures
        return (
            f"{f['in run'] + f['in stop']} rounds: {f['in run']} kills during the run, {f['in stop']} during the "
            f"stop, {f['killed'] + f['killed in yes']} while settling; {f['snapshots']} snapshots journalled, "
            f"{f['compared']} compared byte for byte, {f['half']} files half-written; {f['yes']} times Yes, {f['no']} No, {f['new run']} "
            f"new runs; {f['pages']} pages"
        )


class CallRounds(Rounds):
    """Kills the program just before each system call of the stop that changes a file, one call in each round."""

    CALLS = {"openat": 14, "writev": 4, "rename": 5, "write": 15, "pwrite64": 18, "fsync": 8, "fdatasync": 4, "unlink": 2}
    CLICKS = 3

    def __init__(self, build, seed):
        self.plan = [(call, which + 1) for call, count in self.CALLS.items() for which in range(count)]
        super().__init__(build, len(self.plan), seed)

    def is_in_stop(self):
        return True

    def kill_run(self, point, count, stop, in_stop):
        [journal] = self.session.journals()
        for _ in range(self.CLICKS):
            quick_click(point)
        wait_for("the snapshots", lambda: self.has_taken(journal, self.CLICKS), 0.0005)
        call, which = self.plan.pop(0)
        tracer = subprocess.Popen(
            ["strace", "-f", "-qq", "-o", "/dev/null", "-e", "trace=" + call, "-e",
             f"inject={call}:signal=SIGKILL:when={which}", "-p", str(self.session.shotly.pid)],
        )  # fmt: skip
        wait_for("the tracer", self.is_traced)
        quick_click(stop)
        ended = self.session.shotly.poll
        wait_for("an end", lambda: ended() is not None or self.has_taken(journal, sys.maxsize))
        self.session.kill()
        tracer.wait()
        return self.CLICKS + 1

    def is_traced(self):
        return "TracerPid:\t0\n" not in Path(f"/proc/{self.session.shotly.pid}/status").read_text()


def main():
    seed = int(sys.argv[3]) if sys.argv[3:] and sys.argv[3] else random.SystemRandom().randrange(10**6)
    print(f"seed {seed}", flush=True)
    build = Path(sys.argv[1])
    rounds = CallRounds(build, seed) if sys.argv[2] == "calls" else Rounds(build, int(sys.argv[2]), seed)
    began = time.monotonic()
    try:
        rounds.all()
    except Exception as error:  # whatever it is, the round's folder stays
        screen_picture(rounds.session.folder / "failed.png")
        rounds.session.end()
        print(f"FAILED: {type(error).__name__}: {error}\nafter {rounds.report()}\nfolder: {rounds.session.folder}", file=sys.stderr)
        return 1
    print(f"{rounds.report()}; {time.monotonic() - began:.0f} s; no violation")
    return 0


if __name__ == "__main__":
    sys.exit(main())
