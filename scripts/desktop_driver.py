"""What the scripts share that drive Shotly as a user does: windows, mouse, keyboard, and a folder of its own for
each session of the program. Everything goes through the X server that DISPLAY names."""

import os
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time
from pathlib import Path

PINK = (0xFF, 0xD6, 0xE7)
PATIENCE = 30  # seconds until something that must come is given up
LOOKS = 50  # at windows that come and go, until that is given up


class DesktopError(Exception):
    """The desktop did not do what was asked of it."""


class Failure(Exception):
    """The program did not do what it must."""


def expect(condition, what):
    if not condition:
        raise Failure(what)


def exit_code(name, session):
    """Runs a session that is a script's whole work; its error becomes one line."""
    try:
        session()
    except (DesktopError, Failure, subprocess.SubprocessError, OSError) as error:
        print(f"{name}: {error}", file=sys.stderr)
        return 1
    return 0


def run(*words, check=True):
    done = subprocess.run([str(word) for word in words], capture_output=True, text=True, check=False)
    if check and done.returncode != 0:
        raise DesktopError(f"{' '.join(map(str, words))}: {done.stderr.strip()}")
    return done.stdout.strip()


def look(*words):
    """The output of a program that looks at windows, as it is; nothing where it finds nothing. Such a program gives
    up with an X error when a window goes, whoever's it is, while it looks: it looks again then."""
    for _ in range(LOOKS):
        done = subprocess.run([str(word) for word in words], capture_output=True, text=True, check=False)
        if "X Error" not in done.stderr:
            return done.stdout
    raise DesktopError(f"{' '.join(map(str, words))}: {done.stderr.strip()}")


def wait_for(what, condition, interval=0.03, patience=PATIENCE):
    """The condition's first true value; polls."""
    deadline = time.monotonic() + patience
    while time.monotonic() < deadline:
        value = condition()
        if value:
            return value
        time.sleep(interval)
    raise DesktopError(f"gave up waiting for {what}")


class Window:
    """A window of some program, found by its title."""

    def __init__(self, identifier):
        self.identifier = identifier

    @staticmethod
    def all(title):
        return [Window(word) for word in look("xdotool", "search", "--onlyvisible", "--name", title).split()]

    @staticmethod
    def wait(title):
        return wait_for(f"the window {title}", lambda: Window.all(title))[0]

    def rectangle(self):
        text = run("xwininfo", "-id", self.identifier)
        keys = "Absolute upper-left X", "Absolute upper-left Y", "Width", "Height"
        return tuple(int(re.search(rf"{key}: +(-?\d+)", text)[1]) for key in keys)

    def size(self):
        """Width and height; nothing of a window that has gone."""
        try:
            return self.rectangle()[2:]
        except DesktopError:
            return None

    def steady_rectangle(self):
        """Once the window manager has done with the window."""
        seen = []

        def steady():
            seen.append(self.rectangle())
            return len(seen) > 2 and len(set(seen[-3:])) == 1 and seen[-1]

        return wait_for("a window to come to rest", steady)

    def place(self, x, y, width=None, height=None):
        if width:
            run("xdotool", "windowsize", "--sync", self.identifier, width, height)
        run("xdotool", "windowmove", self.identifier, x, y)
        time.sleep(0.3)

    def activate(self):
        run("xdotool", "windowactivate", "--sync", self.identifier)

    def point(self, across, down):
        """A point inside: pixels from the left and top, or fractions of the size."""
        x, y, width, height = self.rectangle()
        return (
            x + (int(width * across) if isinstance(across, float) else across),
            y + (int(height * down) if isinstance(down, float) else down),
        )


class User:
    """Mouse and keyboard; counts what a capture run must count."""

    def __init__(self):
        self.clicks = 0  # releases of the left button
        self.right_clicks = 0
        self.keys = 0  # Tab and Return
        self.counting = False

    def press(self, point, button):
        run("xdotool", "mousemove", *point, "sleep", "0.15", "mousedown", button, "sleep", "0.06", "mouseup", button)

    def click(self, point, pause=0.6):
        self.press(point, 1)
        self.clicks += self.counting
        time.sleep(pause)

    def right_click(self, point):
        self.press(point, 3)
        self.right_clicks += self.counting
        time.sleep(0.6)

    def key(self, name, pause=0.6):
        run("xdotool", "key", "--delay", "40", name)
        self.keys += self.counting and name in ("Tab", "Return")
        time.sleep(pause)

    def type(self, text):
        run("xdotool", "type", "--delay", "40", text)
        time.sleep(0.3)


def quick_click(point):
    run("xdotool", "mousemove", *point, "mousedown", 1, "mouseup", 1)


def screen_picture(path):
    run("import", "-window", "root", path, check=False)


def pink_area():
    """The rectangle of the project box on the screen: all pixels of its colour."""
    raw = subprocess.run(["import", "-window", "root", "-depth", "8", "ppm:-"], capture_output=True, check=True).stdout
    header = re.match(rb"P6\s+(\d+)\s+(\d+)\s+255\s", raw)
    width, height = int(header[1]), int(header[2])
    pixels = raw[header.end() :]
    rows, columns = [], []
    row_bytes = width * 3
    wanted = bytes(PINK)
    for y in range(height):
        row = pixels[y * row_bytes : (y + 1) * row_bytes]
        at = row.find(wanted)
        while at >= 0 and at % 3:
            at = row.find(wanted, at + 1)
        if at >= 0:
            last = row.rfind(wanted)
            rows.append(y)
            columns += [at // 3, last // 3]
    if not rows:
        return None
    return min(columns), min(rows), max(columns), max(rows)


def root_windows():
    text = look("xwininfo", "-root", "-tree")
    pattern = re.compile(r"^ {5}(0x[0-9a-f]+) .*?(\d+)x(\d+)\+(-?\d+)\+(-?\d+)  \+(-?\d+)\+(-?\d+)$", re.M)
    return [
        (m[1], int(m[2]), int(m[3]), int(m[6]), int(m[7]))
        for m in pattern.finditer(text)
        if "IsViewable" in run("xwininfo", "-id", m[1], check=False)
    ]


class Session:
    """Shotly with folders of its own: app/ (the application folder) and Shotly/ (the base directory)."""

    def __init__(self, build, folder):
        self.folder = Path(folder)
        self.program = Path(build).absolute() / "src/app/shotly"
        self.delivered = Path(build).absolute() / "delivered"
        self.application_folder = self.folder / "app"
        self.base = self.folder / "Shotly"
        self.database = self.application_folder / "Shotly.mdb"
        self.shotly = None
        self.processes = []

    def environment(self):
        """Shotly's own folders, and in place of the desktop's opener one that writes down what it got."""
        tools = self.folder / "tools"
        tools.mkdir(exist_ok=True)
        opener = tools / "xdg-open"
        opener.write_text(f'#!/bin/sh\necho "$1" >> "{self.folder}/opened.txt"\n')
        opener.chmod(0o755)
        environment = dict(os.environ)
        environment.update(
            HOME=str(self.folder),
            SHOTLY_HOME=str(self.application_folder),
            SHOTLY_DATA_DIR=str(self.delivered),
            XDG_CONFIG_HOME=str(self.folder / "config"),
            PATH=f"{tools}:{environment['PATH']}",
            NO_AT_BRIDGE="1",
        )
        return environment

    def write_options(self, sections=(), **options):
        self.application_folder.mkdir(parents=True, exist_ok=True)
        self.base.mkdir(parents=True, exist_ok=True)
        lines = ["[Options]", f"BaseDirectory={self.base}"]
        lines += [f"{key}={value}" for key, value in options.items()] + list(sections)
        (self.application_folder / "options.ini").write_text("".join(line + "\r\n" for line in lines))

    def launch(self, *words):
        with open(self.folder / "programs.log", "ab") as log:
            process = subprocess.Popen(
                [str(word) for word in words], env=self.environment(), stdout=log, stderr=log
            )
        self.processes.append(process)
        return process

    def start(self):
        """Starts Shotly; the main window is there when this returns, or a message that comes before it."""
        self.shotly = self.launch(self.program)
        wait_for("the main window", lambda: self.main_window() or self.boxes())

    def command(self, *words):
        """The exit code of a later start."""
        with open(self.folder / "programs.log", "ab") as log:
            return subprocess.run([self.program, *words], env=self.environment(), stdout=log, stderr=log,
                                  timeout=PATIENCE).returncode  # fmt: skip

    # ---- its windows

    def windows(self):
        """Title and window of everything that Shotly shows; a dead program shows nothing."""
        for _ in range(LOOKS):
            found = look("xdotool", "search", "--onlyvisible", "--pid", self.shotly.pid).split()
            if not found:
                return []
            ask = [word for one in found for word in ("getwindowname", one)]
            done = subprocess.run(["xdotool", *ask], capture_output=True, text=True, check=False)
            if done.returncode == 0:
                return list(zip(done.stdout.split("\n"), map(Window, found)))
        raise DesktopError("Shotly's windows come and go without an end")

    def main_window(self):
        """The large one of the windows that bear the program's name; its messages do as well."""
        self.check_alive()
        return next((window for title, window in self.windows() if self.is_main(title, window.size())), None)

    @staticmethod
    def is_main(title, size):
        return title == "Shotly" and size is not None and size[0] >= 600 and size[1] >= 400

    def boxes(self):
        """Title and window of each message and question that is open."""
        self.check_alive()
        shown = [(title, window, window.size()) for title, window in self.windows()]
        return [
            (title, window)
            for title, window, size in shown
            if title not in ("", "Shotly Stop Bar", "shotly") and size and not self.is_main(title, size)
        ]

    def check_alive(self):
        if self.shotly.poll() is not None:
            raise DesktopError(f"Shotly has ended with {self.shotly.returncode}")

    def wait_box(self):
        return wait_for("a message", self.boxes)[0]

    def answer(self, window, key="Return"):
        """Presses a key in a box, which must go then."""
        run("xdotool", "windowfocus", window.identifier, check=False)

        def gone():
            return window.identifier not in [other.identifier for _, other in self.boxes()]

        for attempt in range(3):
            run("xdotool", "key", key)
            deadline = time.monotonic() + PATIENCE / 10
            while time.monotonic() < deadline:
                if gone():
                    return
                time.sleep(0.03)
        raise DesktopError(f"a box does not go with {key}")

    def stop_bar(self):
        found = [window for title, window in self.windows() if title == "Shotly Stop Bar"]
        return found[0] if found else None

    # ---- a capture run

    places = {}  # of the project box in the main window, by the window's size

    def project_box(self):
        """Left, top, right and bottom of the project box on the screen."""
        main = wait_for("the main window", self.main_window)
        x, y, width, height = main.steady_rectangle()
        if (width, height) not in Session.places:
            area = wait_for("the project box", pink_area)
            Session.places[width, height] = (area[0] - x, area[1] - y, area[2] - x, area[3] - y)
        left, top, right, bottom = Session.places[width, height]
        return x + left, y + top, x + right, y + bottom

    def press_begin(self, project):
        left, top, right, bottom = self.project_box()
        middle = (top + bottom) // 2
        quick_click(((left + right) // 2 - 30, middle))
        run("xdotool", "key", "ctrl+a", "type", "--delay", "4", project)
        quick_click((right + 48, middle))  # the first button behind the box

    def begin(self, project, answers=None):
        """Begins a run and answers the questions on the way; `answers` maps titles to keys. Returns the titles."""
        idle = self.sockets()
        self.press_begin(project)
        seen = []

        def started():
            self.check_alive()
            for title, window in self.boxes():
                if title not in (answers or {}):
                    raise DesktopError(f"unexpected message: {title}")
                seen.append(title)
                self.answer(window, answers[title])
            return self.stop_bar()

        wait_for("the stop bar", started)
        self.wait_watching(idle)
        return seen

    def wait_watching(self, idle):
        """Clicks count from the moment on when there are two more connections to the display than before."""
        wait_for("the watching of the mouse", lambda: self.sockets() >= idle + 2)

    def sockets(self):
        folder = f"/proc/{self.shotly.pid}/fd"
        return sum(os.path.lexists(name) and os.readlink(name).startswith("socket:")
                   for name in (f"{folder}/{entry}" for entry in os.listdir(folder)))

    def stop_point(self):
        x, y, width, height = self.stop_bar().rectangle()
        return x + int(width * 0.55), y + height // 2

    def kill(self):
        self.shotly.kill()
        self.shotly.wait()

    def quit(self):
        """Ends the program by its window's close request."""
        run("wmctrl", "-i", "-c", self.main_window().identifier)
        if self.shotly.wait(timeout=PATIENCE) != 0:
            raise DesktopError(f"Shotly ended with {self.shotly.returncode}")

    def end(self):
        """Ends whatever this session has started."""
        for process in self.processes:
            if process.poll() is None:
                process.send_signal(signal.SIGKILL if process is self.shotly else signal.SIGTERM)
                process.wait(timeout=PATIENCE)

    # ---- what came of it

    def journals(self):
        return sorted(self.application_folder.glob("run-*.journal"))

    def query(self, statement):
        """Asks a copy of the database: the program's own files stay as they are."""
        with tempfile.TemporaryDirectory() as copies:
            for path in self.application_folder.glob("Shotly.mdb*"):
                shutil.copy(path, copies)
            return run("sqlite3", Path(copies) / "Shotly.mdb", statement)
