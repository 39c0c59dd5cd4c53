#!/usr/bin/python3
"""Lets each call fail that changes files, and checks what becomes of the user's work.

Usage: failing_calls.py BUILD_FOLDER [WORK [ROUNDS]]   (on a display with a window manager; see failing_calls.sh)
"""

import collections
import contextlib
import datetime
import mmap
import os
import re
import shutil
import sqlite3
import struct
import subprocess
import sys
import tempfile
import time
from pathlib import Path

from desktop_driver import PATIENCE, Failure, Session, expect, quick_click, run, screen_picture, wait_for

KEEP, UNFINISHED = "Keep existing pages?", "Unfinished capture: "
POINT = (400, 500)
MODES = ("once", "full", "short")
WRITING = ("write ", "writev ", "pwrite ", "sendfile ", "copy_file_range ")
NEEDING_ROOM = ("open(create) ", "fallocate ", "mkdir ", "link ", "symlink ") + WRITING
WORKS = {}


def work(name):
    def add(kind):
        WORKS[name] = kind
        return kind

    return add


class Control:
    """The shared memory through which tests/support/failing_calls.c is armed and asked."""

    MOST_CALLS, CALL_LENGTH = 4096, 128

    def __init__(self, path):
        self.path = path
        path.write_bytes(bytes(48 + self.MOST_CALLS * self.CALL_LENGTH))
        with open(path, "r+b") as file:
            self.memory = mmap.mmap(file.fileno(), 0)

    def arm(self, which, mode="once"):
        self.memory[:40] = struct.pack("=5Q", 0, which, MODES.index(mode), 0, 0)
        self.memory[:8] = struct.pack("=Q", 1)

    def disarm(self):
        """How many calls were counted, and how many of them failed."""
        self.memory[:8] = bytes(8)
        return struct.unpack("=2Q", self.memory[24:40])

    def call(self, number):
        place = 48 + (number - 1) * self.CALL_LENGTH
        return self.memory[place : place + self.CALL_LENGTH].split(b"\0")[0].decode(errors="replace")

    def calls(self):
        counted, _ = self.disarm()
        expect(counted <= self.MOST_CALLS, f"{counted} calls are too many")
        return [self.call(number + 1) for number in range(counted)]


def files_below(folder):
    return {str(path.relative_to(folder)): path.read_bytes() for path in folder.rglob("*") if path.is_file()}


def dump(database):
    """What a database says, after a check of its file."""
    with contextlib.closing(sqlite3.connect(database)) as connection:
        found = connection.execute("pragma integrity_check").fetchone()[0]
        expect(found == "ok", f"the database is damaged: {found}")
        return list(connection.iterdump())


def bitmap(width, height, seed):
    stride = (3 * width + 3) // 4 * 4
    rows = b"".join(
        bytes((x * (3 + seed) + y * 5) % 256 for x in range(3 * width)).ljust(stride, b"\0") for y in range(height)
    )
    head = struct.pack("<2sIHHIIiiHHIIiiII", b"BM", 54 + len(rows), 0, 0, 54, 40, width, height, 1, 24, 0, len(rows),
                       0, 0, 0, 0)  # fmt: skip
    return head + rows


class Work:
    """One piece of the program's work, in a folder of its own: everything that is counted lies in live/."""

    def __init__(self, build):
        self.folder = Path(tempfile.mkdtemp(prefix="shotly-calls-"))
        self.live = self.folder / "live"
        self.live.mkdir()
        (self.folder / "runtime").mkdir(mode=0o700)
        self.control = Control(self.folder / "control")
        self.session = Session(build, self.live)
        self.build = Path(build).absolute()
        self.figures = collections.Counter()

    def environment(self, shimmed=True):
        (self.live / "tmp").mkdir(exist_ok=True)
        environment = Session.environment(self.session)
        environment.update(TMPDIR=str(self.live / "tmp"), XDG_CACHE_HOME=str(self.folder / "cache"),
                           XDG_RUNTIME_DIR=str(self.folder / "runtime"), QT_HASH_SEED="0")  # fmt: skip
        if shimmed:
            environment.update(
                LD_PRELOAD=str(self.build / "tests/support/failing_calls.so"),
                FAILING_CALLS_FOLDER=str(self.live),
                FAILING_CALLS_CONTROL=str(self.control.path),
            )
        return environment

    def prepare(self):
        """Everything that is the same before each round."""

    def perform(self):
        """The work as on any day; the calls of it are counted."""
        raise NotImplementedError

    def round(self, which, mode):
        """The work with a failing call; raises Failure."""
        raise NotImplementedError

    def end(self):
        pass

    def keep_template(self):
        shutil.rmtree(self.folder / "template", ignore_errors=True)
        shutil.copytree(self.live, self.folder / "template")

    def restore_template(self):
        shutil.rmtree(self.live)
        shutil.copytree(self.folder / "template", self.live)

    def rounds(self, wanted, calls):
        """Pairs of a call's number and a mode."""
        modes = os.environ.get("SHOTLY_MODES", " ".join(MODES)).split()
        numbers = range(1, len(calls) + 1)
        if "-" in wanted:
            first, last = wanted.split("-")
            numbers = range(int(first), int(last) + 1)
        every = [
            (number, mode)
            for number in numbers
            for mode in modes
            if mode == "once" or calls[number - 1].startswith(NEEDING_ROOM if mode == "full" else WRITING)
        ]
        if not wanted or "-" in wanted or int(wanted) >= len(every):
            return every
        return [every[place * len(every) // int(wanted)] for place in range(int(wanted))]

    def all(self, wanted):
        self.prepare()
        return self.each_call(wanted)

    def each_call(self, wanted, about=""):
        """Does the work once, then again for each of its calls. How many calls it made, and how many rounds failed."""
        self.control.arm(0)
        self.perform()
        calls = self.control.calls()
        with open(self.folder / "calls.txt", "a") as listed:
            listed.writelines(f"{about}{number} {call}\n" for number, call in enumerate(calls, 1))
        failed = 0
        for which, mode in self.rounds(wanted, calls):
            self.figures["rounds"] += 1
            try:
                self.round(which, mode)
            except Exception as error:
                failed += 1
                if os.environ.get("DISPLAY") and isinstance(self, Capture):
                    screen_picture(self.folder / f"failed-{which}-{mode}.png")
                call = self.control.call(which)
                print(f"FAILED  {about}{which} {mode} ({call}): {type(error).__name__}: {error}", flush=True)
                self.after_failure()
        return len(calls), failed

    def after_failure(self):
        pass

    def note(self):
        """Disarms; whether a call has failed."""
        _, failed = self.control.disarm()
        self.figures["failed calls"] += failed
        self.figures["rounds without a failed call"] += not failed
        return failed


# ---- the command line


class CommandLineWork(Work):
    """Work that is one start of the program without a display."""

    PROJECT, PAGES = "guide", 3

    def words(self):
        raise NotImplementedError

    def start(self, *words, shimmed=False):
        done = subprocess.run([str(word) for word in (self.session.program, *words)], env=self.environment(shimmed),
                              capture_output=True, text=True, timeout=PATIENCE, check=False)  # fmt: skip
        return done.returncode, done.stderr

    def must(self, *words):
        code, said = self.start(*words)
        expect(code == 0, f"{words}: {code} {said}")

    def retitle(self, word):
        with contextlib.closing(sqlite3.connect(self.session.database)) as connection, connection:
            connection.execute("update PageData set PageTitle = ? || PageNumber", (word,))

    def prepare(self):
        session = self.session
        session.write_options(WordProcessor="builtin", ShowLessMessage=1)
        self.must("--list")
        self.project_folder = session.base / self.PROJECT
        self.project_folder.mkdir()
        with contextlib.closing(sqlite3.connect(session.database)) as connection, connection:
            for page in range(1, self.PAGES + 1):
                picture = self.project_folder / f"sh{page:04}.bmp"
                picture.write_bytes(bitmap(400, 300, page))
                connection.execute(
                    "insert into PageData (ProjectName, PageNumber, PageStatus, ScreenShotFilePath, ProjectDirectory,"
                    " Date) values (?, ?, 'OK', ?, ?, '2024-01-02')",
                    (self.PROJECT, page, str(picture), str(self.project_folder)),
                )

    def perform(self):
        code, said = self.start(*self.words(), shimmed=True)
        expect(code == 0, said)

    def attempt(self, which, mode):
        """Exit code and message of the work with a failing call."""
        self.restore_template()
        self.control.arm(which, mode)
        code, said = self.start(*self.words(), shimmed=True)
        self.note()
        expect(code in (0, 1), f"ended with {code}: {said}")
        expect(code == 0 or said.startswith("shotly: "), "no message")
        self.figures["told" if code else "done all the same"] += 1
        with open(self.folder / "said.txt", "a") as log:
            log.write(f"{which} {mode} ({self.control.call(which)}): {code} {said}\n")
        return code, said

    def check_rest(self, names, which):
        """No file but these; a call that fails to remove one may leave it, until the work is done again."""
        left = set(files_below(self.live)) - names
        hidden = [path for path in self.live.rglob(".*") if path.is_dir()]
        if left or hidden:
            removing = self.control.call(which).startswith(("unlink ", "rmdir "))
            expect(removing, f"left behind: {sorted(left)} {hidden}")
            self.figures["left by a failed removal"] += 1


def masked(name, data):
    """A document without what tells when it was made."""
    if name.endswith(".pdf"):
        return re.sub(rb"D:\d{14}[^)]*|/ID \[.*?\]", b"", data)
    if name.endswith(".doc"):
        # Times in the document's properties, and those in its settings: a packed day, hours and minutes.
        data = re.sub(rb"\x40\0\0\0.{8}", b"", data, flags=re.DOTALL)
        for day in (datetime.date.today(), datetime.date.today() - datetime.timedelta(1)):
            packed = day.day << 11 | day.month << 16 | day.year - 1900 << 20 | day.isoweekday() % 7 << 29
            first = (packed >> 8) & 0xF8
            hours = b"[" + b"".join(b"\\x%02x" % (first + hour) for hour in range(8)) + b"]"
            data = re.sub(rb"." + hours + re.escape(struct.pack("<I", packed)[2:]), b"", data, flags=re.DOTALL)
    return data


class Generation(CommandLineWork):
    """HTML pages, a Word document and a PDF."""

    def documents(self, folder):
        return {
            name: masked(name, data)
            for name, data in files_below(folder).items()
            if name.endswith((".htm", ".doc", ".pdf"))
        }


@work("generate")
class InPlace(Generation):
    def words(self):
        return "--generate", self.PROJECT, "--format", "all"

    def prepare(self):
        super().prepare()
        for title in ("first", "second"):
            self.retitle(title)
            self.must(*self.words())
        self.retitle("third")
        self.keep_template()
        self.before, self.old_dump = self.documents(self.project_folder), dump(self.session.database)
        self.must(*self.words())
        self.after, self.new_dump = self.documents(self.project_folder), dump(self.session.database)
        self.names = set(files_below(self.live))
        self.restore_template()

    def round(self, which, mode):
        code, said = self.attempt(which, mode)
        now = self.documents(self.project_folder)
        states = [self.state(now, endings) for endings in ((".htm",), (".doc", ".pdf"))]
        self.figures["told though done"] += code == 1 and "before" not in states
        expect(code == 1 or states == ["after", "after"], f"done, but the documents are {states}")
        self.check_rest(self.names, which)
        expect(dump(self.session.database) in (self.old_dump, self.new_dump), "the pages have changed")
        self.must(*self.words())
        again = self.documents(self.project_folder)
        shown = [name for name in self.after if "/" not in name]
        expect(all(again.get(name) == self.after[name] for name in shown), "another try does not give the documents")
        left = [path for path in self.live.rglob(".*")]
        if left:
            self.figures["left for good"] += 1
            expect(self.control.call(which).startswith(("unlink ", "rmdir ")), f"left after another try: {left}")

    def state(self, now, endings):
        """All documents of a kind are the old ones, or all are the new ones."""
        of = {name: data for name, data in now.items() if name.endswith(endings)}
        for state, wanted in (("before", self.before), ("after", self.after)):
            if of == {name: data for name, data in wanted.items() if name.endswith(endings)}:
                return state
        # One that could not be moved to the older ones is not among them.
        shown = {name: data for name, data in of.items() if "/" not in name}
        if shown == {name: self.after[name] for name in self.after if name.endswith(endings) and "/" not in name}:
            self.figures["older version not kept"] += 1
            return "after"
        kinds = {}
        for name in sorted(set(of) | {name for name in self.before if name.endswith(endings)}):
            kinds[name] = ("missing" if name not in of else "old" if of[name] == self.before.get(name) else
                           "new" if of[name] == self.after.get(name) else "other")  # fmt: skip
        raise Failure(f"documents: {kinds}")


@work("output")
class Output(Generation):
    def words(self):
        return "--generate", self.PROJECT, "--format", "all", "--output", self.live / "given"

    def prepare(self):
        super().prepare()
        self.retitle("first")
        self.must(*self.words())
        self.retitle("second")
        self.keep_template()
        self.before = self.documents(self.live / "given")
        self.own = self.user_files()
        self.must(*self.words())
        self.after = self.documents(self.live / "given")
        self.names = set(files_below(self.live))
        expect(self.user_files() == self.own, "the project was touched")
        self.restore_template()

    def user_files(self):
        return {name: data for name, data in files_below(self.live).items() if name.startswith(("Shotly/", "app/"))}

    def round(self, which, mode):
        code, said = self.attempt(which, mode)
        now = self.documents(self.live / "given")
        expect(set(now) == set(self.before), f"documents: {sorted(now)}")
        for name, data in now.items():
            expect(data in (self.before[name], self.after[name]), f"{name} is neither the old nor the new one")
        expect(code == 1 or now == self.after, "done, but not all documents are new")
        if code == 1 and now != self.before:
            self.figures["told though done" if now == self.after else "some new, some old"] += 1
        self.check_rest(self.names, which)
        expect(self.user_files() == self.own, "the project was touched")
        self.must(*self.words())
        expect(self.documents(self.live / "given") == self.after, "another try does not give the documents")


@work("backup")
class Backup(CommandLineWork):
    def words(self):
        return "--export-db", self.live / "copy.mdb"

    def prepare(self):
        super().prepare()
        self.retitle("title")
        self.keep_template()
        self.wanted = dump(self.session.database)
        self.before = files_below(self.live)

    def round(self, which, mode):
        code, said = self.attempt(which, mode)
        copy = self.live / "copy.mdb"
        if copy.exists():
            expect(dump(copy) == self.wanted, "the copy is not whole")
            self.figures["told though done"] += code
        else:
            expect(code == 1, "no copy and no message")
        self.check_rest({*self.before, "copy.mdb"}, which)
        copy.unlink(missing_ok=True)
        now = files_below(self.live)
        expect(all(now[name] == data for name, data in self.before.items()), "the database was touched")
        self.must(*self.words())
        expect(dump(copy) == self.wanted, "another try does not give the copy")


# ---- the paint editor


@work("picture")
class Picture(Work):
    SIZE = (500, 300)

    def prepare(self):
        self.program, self.said = None, self.folder / "said.txt"
        self.original = bitmap(*self.SIZE, 1)
        self.session.write_options()
        self.editor("bmp")

    def editor(self, kind):
        self.end()
        self.file = self.live / f"picture.{kind}"
        self.file.write_bytes(self.original)
        if kind == "png":
            run("convert", f"bmp:{self.file}", f"png:{self.file}")
        self.program = subprocess.Popen(
            [str(self.build / "tests/support/save_picture"), str(self.file)],
            env={**self.environment(), "QT_QPA_PLATFORM": "offscreen"},
            stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=open(self.said, "a"), text=True,
        )  # fmt: skip
        self.inverted = False
        self.save(True)

    def say(self, command):
        self.program.stdin.write(command + "\n")
        self.program.stdin.flush()

    def save(self, change):
        """Whether the editor has saved, and what it said."""
        if change:
            self.say("invert")
            self.inverted = not self.inverted
        self.say("save")
        answer = self.program.stdout.readline().strip()
        expect(answer in ("saved", "failed"), f"the editor answers {answer!r}")
        said = self.said.read_text()
        os.truncate(self.said, 0)
        return answer == "saved", said

    def perform(self):
        saved, said = self.save(True)
        expect(saved, said)

    def pixels(self):
        """Red, green and blue of every pixel, from the top, as another program reads them."""
        words = ["convert", str(self.file), "-depth", "8", "rgb:-"]
        return subprocess.run(words, capture_output=True, check=True).stdout

    def wanted(self):
        stride = len(self.original[54:]) // self.SIZE[1]
        result = bytearray()
        for row in reversed(range(self.SIZE[1])):
            for at in range(54 + row * stride, 54 + row * stride + 3 * self.SIZE[0], 3):
                result += self.original[at : at + 3][::-1]
        return bytes(255 - one for one in result) if self.inverted else bytes(result)

    def all(self, wanted):
        results = []
        self.prepare()
        for kind in ("bmp", "png"):
            self.editor(kind)
            results.append(self.each_call(wanted, kind + " "))
            self.file.unlink()
        return tuple(map(sum, zip(*results)))

    def after_failure(self):
        self.editor(self.file.suffix[1:])

    def round(self, which, mode):
        before = self.file.read_bytes()
        self.control.arm(which, mode)
        saved, said = self.save(True)
        self.note()
        expect(saved or "Cannot save the file" in said, f"no message: {said}")
        expect(saved or self.file.read_bytes() == before, "the old picture has changed")
        self.figures["done all the same" if saved else "told"] += 1
        left = [path for path in self.live.iterdir() if path.is_file() and path != self.file]
        expect(not left or self.control.call(which).startswith("unlink "), f"left behind: {left}")
        if not saved:
            saved, said = self.save(False)
            expect(saved, f"another try fails: {said}")
        expect(self.pixels() == self.wanted(), "the picture is not what was drawn")

    def end(self):
        if self.program:
            self.program.stdin.close()
            self.program.wait(timeout=PATIENCE)


# ---- a run


class ArmedSession(Session):
    """Whose programs can be armed."""

    def __init__(self, build, owner):
        super().__init__(build, owner.live)
        self.owner = owner

    def environment(self):
        return self.owner.environment()


@work("capture")
class Capture(Work):
    """Begin, three clicks and Stop in the real program, which goes on from round to round."""

    CLICKS = 3

    def prepare(self):
        self.session = ArmedSession(self.build, self)
        self.session.write_options(ShowLessMessage=1, BigPicSize=100)
        self.number = 0
        self.start()

    def start(self):
        self.session.start()
        self.idle = self.session.sockets()

    def after_failure(self):
        """A program of its own for the next round, and nothing of this one."""
        self.session.end()
        for path in [*self.session.journals(), *self.live.rglob(".shotly-*")]:
            path.unlink()
        self.start()

    def end(self):
        self.session.end()

    # ---- steps; each returns the titles of the boxes that it has answered

    def boxes(self):
        """The main window is none, whatever its size is while it comes back."""
        return [
            (title, window)
            for title, window in self.session.boxes()
            if "DIALOG" in run("xprop", "-id", window.identifier, "_NET_WM_WINDOW_TYPE", check=False)
        ]

    def answer_boxes(self, until):
        """Answers what comes until the condition holds and nothing is open any more."""
        seen = []

        def done():
            for title, window in self.boxes():
                seen.append(title)
                self.session.answer(window)
            return until(seen) and not self.boxes()

        wait_for("the end of a step", done)
        return seen

    def begin(self):
        session = self.session
        session.press_begin(self.project)

        def over(seen):
            return session.stop_bar() or ("Shotly" in seen and session.main_window())

        seen = self.answer_boxes(over)
        if session.stop_bar():
            session.wait_watching(self.idle)
        return seen

    def records(self):
        journals = self.session.journals()
        return sum(journal.read_bytes().count(b"\n") - 1 for journal in journals)

    def click(self):
        before = self.records()
        quick_click(POINT)
        return self.answer_boxes(lambda seen: seen or self.records() > before)

    def run(self, clicks):
        """The messages of a whole run, and how many snapshots it took."""
        seen = self.begin()
        if not self.session.stop_bar():
            return seen, None
        taken = 0
        for _ in range(clicks):
            told = self.click()
            seen += told
            taken += not told
        quick_click(self.session.stop_point())
        seen += self.answer_boxes(lambda told: not self.session.stop_bar() and self.session.main_window())
        return seen, taken

    def perform(self):
        self.project = "count"
        seen, _ = self.run(self.CLICKS)
        expect(not seen, f"messages: {seen}")
        self.app_files = self.application_files()

    def application_files(self):
        return {name for name in files_below(self.session.application_folder)}

    # ---- what must hold

    def pages(self):
        rows = self.session.query(
            f"select PageNumber, ScreenShotFilePath from PageData where ProjectName='{self.project}' order by 1"
        ).splitlines()
        wanted = [f"{one + 1}|{self.session.base}/{self.project}/sh{one + 1:04}.bmp" for one in range(len(rows))]
        expect(rows == wanted, f"pages: {rows}")
        expect(self.session.query("pragma integrity_check") == "ok", "the database is damaged")
        return len(rows)

    def check_files(self, pages, forgiven):
        """A picture for each page, whole, and nothing else."""
        folder = self.session.base / self.project
        names = {path.name for path in folder.iterdir()} if folder.exists() else set()
        wanted = {f"sh{one + 1:04}.bmp" for one in range(pages)}
        expect(names >= wanted, f"missing: {sorted(wanted - names)}")
        more = (names - wanted) | (self.application_files() - self.app_files)
        if more:
            expect(forgiven, f"left behind: {sorted(more)}")
            self.figures["left by a failed removal"] += 1
        for name in wanted:
            data = (folder / name).read_bytes()
            width, height = struct.unpack_from("<ii", data, 18)
            size = 54 + (3 * width + 3) // 4 * 4 * height
            expect(data[:2] == b"BM" and len(data) == size and any(data[54:]), f"{name} is not whole")

    def round(self, which, mode):
        self.number += 1
        self.project = f"r{self.number}"
        self.control.arm(which, mode)
        seen, taken = self.run(self.CLICKS)
        self.note()
        self.session.check_alive()
        removing = self.control.call(which).startswith("unlink ")
        pages = self.pages()
        waiting = self.records()
        if taken is not None:
            complete = taken == self.CLICKS and pages == self.CLICKS + 1
            expect(complete or seen, f"{pages} pages of {self.CLICKS + 1} clicks, and no message")
            expect(max(pages, waiting) in (taken, taken + 1), f"{taken} clicks, {pages} pages, {waiting} waiting")
            if not waiting:
                self.check_files(pages, removing)
        else:
            expect(pages == 0 and not waiting, "no run, but pages")
            self.figures["no run"] += 1
        self.figures["told" if seen else "done all the same"] += 1
        with open(self.folder / "said.txt", "a") as log:
            log.write(f"{which} {mode} ({self.control.call(which)}): {seen}, {taken} taken, {pages} pages, {waiting}\n")
        again, _ = self.run(1)
        # A project that has been begun but has no pages is told of at every new begin.
        known = "Shotly" if pages == waiting == 0 else KEEP
        strange = [title for title in again if title not in (KEEP, known) and not title.startswith(UNFINISHED)]
        expect(not strange, f"another run has messages: {again}")
        expect(not self.session.journals(), "a journal is left")
        now = self.pages()
        expect(now == max(pages, waiting) + 2, f"{now} pages after another run, {pages} before, {waiting} waited")
        self.check_files(now, False)


def main():
    build, wanted, rounds = sys.argv[1], (sys.argv[2:] or [""])[0], (sys.argv[3:] or [""])[0]
    code = 0
    for name, kind in WORKS.items():
        if wanted not in name:
            continue
        piece = kind(build)
        began = time.monotonic()
        calls, failed = piece.all(rounds)
        piece.end()
        figures = ", ".join(f"{count} {what}" for what, count in piece.figures.items() if count)
        print(f"{'FAILED' if failed else 'ok    '}  {name}: {calls} calls, {figures}"
              f" ({time.monotonic() - began:.0f} s)" + (f" {piece.folder}" if failed else ""), flush=True)  # fmt: skip
        if failed:
            code = 1
        else:
            shutil.rmtree(piece.folder)
    return code


if __name__ == "__main__":
    sys.exit(main())
