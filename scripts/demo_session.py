#!/usr/bin/python3
"""Drives Shotly and two other programs as a user does, and checks what comes of it.

Usage: demo_session.py BUILD_FOLDER DIRECTORY   (on a display with a window manager)

DIRECTORY receives app/ (the application folder), Shotly/ (the base directory with the project) and pictures of
what was to be seen. Ends with an error when any number disagrees.
"""

import os
import re
import signal
import subprocess
import sys
import time
from pathlib import Path

PROJECT = "calculator-guide"
PINK = (0xFF, 0xD6, 0xE7)
PATIENCE = 30  # seconds until something that must come is given up


# Loads the contents page, then each page that it links, and counts those whose picture has a size.
FOLLOW_LINKS = """<!DOCTYPE html><body><p></p><script>
const load = address => new Promise(done => {
    const frame = document.createElement("iframe");
    frame.onload = () => done(frame.contentDocument);
    frame.src = address;
    document.body.append(frame);
});
(async () => {
    const contents = await load("CONTENTS");
    const links = [...contents.querySelectorAll("a")].map(link => link.href);
    let shown = 0;
    for (const link of links)
        shown += [...(await load(link)).images].some(image => image.naturalWidth > 0) ? 1 : 0;
    document.querySelectorAll("iframe").forEach(frame => frame.remove());
    document.querySelector("p").textContent = `${shown} of ${links.length}`;
})().catch(error => document.querySelector("p").textContent = error);
</script></body>
"""


class DemoError(Exception):
    pass


def run(*words, check=True):
    done = subprocess.run([str(word) for word in words], capture_output=True, text=True, check=False)
    if check and done.returncode != 0:
        raise DemoError(f"{' '.join(map(str, words))}: {done.stderr.strip()}")
    return done.stdout.strip()


def wait_for(what, condition):
    """The condition's first true value; polls."""
    deadline = time.monotonic() + PATIENCE
    while time.monotonic() < deadline:
        value = condition()
        if value:
            return value
        time.sleep(0.05)
    raise DemoError(f"gave up waiting for {what}")


class Window:
    """A window of some program, found by its title."""

    def __init__(self, identifier):
        self.identifier = identifier

    @staticmethod
    def all(title):
        found = run("xdotool", "search", "--onlyvisible", "--name", title, check=False)
        return [Window(word) for word in found.split()]

    @staticmethod
    def wait(title):
        return wait_for(f"the window {title}", lambda: Window.all(title))[0]

    def rectangle(self):
        text = run("xdotool", "getwindowgeometry", "--shell", self.identifier)
        values = dict(line.split("=") for line in text.splitlines() if "=" in line)
        return tuple(int(values[key]) for key in ("X", "Y", "WIDTH", "HEIGHT"))

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


def screen_picture(path):
    run("import", "-window", "root", path)


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
        raise DemoError("the project box is not to be seen")
    return min(columns), min(rows), max(columns), max(rows)


def override_redirect_popup(before):
    """The window of a context menu: one on the root that was not there before."""
    for identifier, width, height, x, y in root_windows():
        if identifier not in before and width > 60 and height > 40:
            return x, y, width, height
    return None


def root_windows():
    text = run("xwininfo", "-root", "-tree")
    pattern = re.compile(r"^ {5}(0x[0-9a-f]+) .*?(\d+)x(\d+)\+(-?\d+)\+(-?\d+)  \+(-?\d+)\+(-?\d+)$", re.M)
    return [
        (m[1], int(m[2]), int(m[3]), int(m[6]), int(m[7]))
        for m in pattern.finditer(text)
        if "IsViewable" in run("xwininfo", "-id", m[1], check=False)
    ]


class Demonstration:
    def __init__(self, build, directory):
        self.directory = directory
        self.delivered = build / "delivered"
        self.program = build / "src/app/shotly"
        self.application_folder = directory / "app"
        self.base = directory / "Shotly"
        self.user = User()
        self.processes = []

    # ---- setting up

    def environment(self):
        """Shotly's own folders, and in place of the desktop's opener one that writes down what it got."""
        tools = self.directory / "tools"
        tools.mkdir()
        opener = tools / "xdg-open"
        opener.write_text(f'#!/bin/sh\necho "$1" >> "{self.directory}/opened.txt"\n')
        opener.chmod(0o755)
        environment = dict(os.environ)
        environment.update(
            SHOTLY_HOME=str(self.application_folder),
            SHOTLY_DATA_DIR=str(self.delivered),
            XDG_CONFIG_HOME=str(self.directory / "config"),
            PATH=f"{tools}:{environment['PATH']}",
            NO_AT_BRIDGE="1",
        )
        return environment

    def write_options(self):
        self.application_folder.mkdir()
        self.base.mkdir()
        (self.application_folder / "options.ini").write_text(
            "[Options]\r\n"
            f"BaseDirectory={self.base}\r\n"
            "SnapShotByPressTab=1\r\n"
            "SnapShotByPressReturn=1\r\n"
            "MouseInsideColor=1\r\n"
        )

    def start(self, *words, environment):
        log = open(self.directory / "programs.log", "ab")
        process = subprocess.Popen([str(word) for word in words], env=environment, stdout=log, stderr=log)
        self.processes.append(process)
        return process

    def start_programs(self):
        environment = self.environment()
        run("xsetroot", "-solid", "#3b6ea5")
        self.start("galculator", environment=environment)
        self.start("mousepad", "--disable-server", environment=environment)
        self.calculator = Window.wait("galculator")
        self.calculator.place(840, 420)
        self.editor = Window.wait("Mousepad")
        self.editor.place(60, 400, 640, 380)
        self.shotly = self.start(self.program, environment=environment)
        self.main = Window.wait("^Shotly$")
        self.main.place(90, 40)
        self.main.activate()
        time.sleep(0.5)
        screen_picture(self.directory / "main-window.png")

    # ---- the demonstration

    def begin(self):
        left, top, right, bottom = pink_area()
        middle = (top + bottom) // 2
        self.user.click(((left + right) // 2 - 30, middle))
        self.user.key("ctrl+a")
        self.user.type(PROJECT)
        self.user.click((right + 48, middle), pause=0.3)  # the first button behind the box
        wait_for("the message where the snapshots go", lambda: len(Window.all("^Shotly$")) > 1)
        time.sleep(0.4)
        self.user.key("Return")
        self.stop_bar = Window.wait("^Shotly Stop Bar$")
        time.sleep(1.2)
        self.user.counting = True

    def calculate(self):
        """7 + 5 = with the mouse."""
        for across, down in ((0.11, 0.57), (0.70, 0.92), (0.30, 0.69), (0.89, 0.86)):
            self.user.click(self.calculator.point(across, down))

    def write_text(self):
        self.user.click(self.editor.point(0.4, 0.5))
        self.user.type("Add the two numbers")
        self.user.key("Tab")
        self.user.key("Return")
        self.user.type("Then look at the result")
        before = {entry[0] for entry in root_windows()}
        self.user.right_click(self.editor.point(0.45, 0.45))
        x, y, width, height = wait_for("the context menu", lambda: override_redirect_popup(before))
        self.user.click((x + width // 3, y + height - 20))  # its last item

    def stop(self):
        time.sleep(0.5)
        screen_picture(self.directory / "stop-bar.png")
        x, y, width, height = self.stop_bar.rectangle()
        self.user.click((x + int(width * 0.55), y + height // 2))
        self.user.counting = False
        wait_for("the pages", lambda: self.count_pages() >= self.expected())
        wait_for("the main window", lambda: Window.all("^Shotly$"))
        time.sleep(0.5)

    def generate(self):
        self.main.activate()
        self.user.key("alt+m", pause=0.3)
        self.user.key("g", pause=0.3)
        wait_for("the report of the pages", lambda: len(Window.all("^Shotly$")) > 1)
        time.sleep(0.3)
        screen_picture(self.directory / "generated.png")
        self.user.key("Return")
        contents = self.project_folder() / "index.htm"
        wait_for("the guide to be opened", lambda: str(contents) in self.opened())

    def quit(self):
        self.main.activate()
        self.user.key("ctrl+q")
        if self.shotly.wait(timeout=PATIENCE) != 0:
            raise DemoError(f"Shotly ended with {self.shotly.returncode}")

    # ---- what came of it

    def project_folder(self):
        return self.base / PROJECT

    def opened(self):
        path = self.directory / "opened.txt"
        return path.read_text() if path.exists() else ""

    def expected(self):
        return self.user.clicks + self.user.keys

    def query(self, statement):
        return run("sqlite3", self.application_folder / "Shotly.mdb", statement)

    def count_pages(self):
        return int(self.query(f"select count(*) from PageData where ProjectName='{PROJECT}' and PageStatus='OK'"))

    def snapshots(self):
        return sorted(self.project_folder().glob("sh[0-9]*.bmp"))

    def browse(self, page, *options):
        """What a browser without a window prints about a page."""
        return run(
            "chromium", "--headless", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
            "--disable-background-networking", "--disable-component-update", "--disable-sync",
            f"--user-data-dir={self.directory}/browser", *options, page.as_uri(),
        )  # fmt: skip

    def render(self, page, picture, height):
        """A picture of a page as a browser shows it."""
        self.browse(page, "--hide-scrollbars", f"--window-size=1240,{height}", f"--screenshot={picture}")
        if not picture.exists():
            raise DemoError(f"no picture of {page}")

    def follow_links(self):
        """Has the browser follow every link of the contents page; returns how many pages showed their picture."""
        page = self.directory / "follow.html"
        page.write_text(FOLLOW_LINKS.replace("CONTENTS", (self.project_folder() / "index.htm").as_uri()))
        shown = self.browse(page, "--allow-file-access-from-files", "--virtual-time-budget=60000", "--dump-dom")
        result = re.search(r"<p>(.*?)</p>", shown)
        if not result or not re.fullmatch(r"\d+ of \d+", result[1]):
            raise DemoError(f"following the links: {result[1] if result else shown}")
        followed, total = (int(word) for word in result[1].split(" of "))
        if followed != total:
            raise DemoError(f"only {followed} of {total} linked pages show their picture")
        return followed

    def check(self):
        snapshots = self.snapshots()
        pages = self.count_pages()
        contents = (self.project_folder() / "index.htm").read_bytes().decode("cp1252")
        links = re.findall(r"<a href='([^']*)'>", contents)
        written = sorted(path.name for path in self.project_folder().glob("sh*.htm"))
        print(f"clicks sent:  {self.user.clicks} left, {self.user.right_clicks} right, {self.user.keys} Tab and Return")
        print(f"snapshots:    {len(snapshots)}")
        print(f"pages:        {pages}, as HTML {len(written)}, in the contents {len(links)}")
        print(f"guide:        {self.project_folder() / 'index.htm'}")
        numbers = {self.expected(), len(snapshots), pages, len(written), len(links)}
        names = [f"sh{number:04}" for number in range(1, self.expected() + 1)]
        if len(numbers) != 1:
            raise DemoError("the numbers disagree")
        if [path.stem for path in snapshots] != names or links != [name + ".htm" for name in names]:
            raise DemoError("the pages are not numbered without a gap")
        if self.query("pragma integrity_check") != "ok":
            raise DemoError("the database is damaged")
        print(f"in a browser: {self.follow_links()} links followed to a page with its picture")
        # The page of the click in the context menu is the last but one.
        self.render(self.project_folder() / "index.htm", self.directory / "contents.png", 500)
        self.render(self.project_folder() / (names[-2] + ".htm"), self.directory / "page.png", 1150)
        print(f"pictures:     {self.directory / 'contents.png'}, {self.directory / 'page.png'}")

    def record(self):
        self.write_options()
        try:
            self.start_programs()
            self.begin()
            self.calculate()
            self.write_text()
            self.stop()
            self.generate()
            self.quit()
        except Exception:
            screen_picture(self.directory / "failed.png")
            raise
        finally:
            for process in self.processes:
                if process.poll() is None:
                    process.send_signal(signal.SIGTERM)
                    process.wait(timeout=PATIENCE)
        self.check()


def main():
    try:
        Demonstration(Path(sys.argv[1]), Path(sys.argv[2])).record()
    except (DemoError, subprocess.SubprocessError) as error:
        print(f"demo: {error}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
