#!/usr/bin/python3
"""Drives Shotly and two other programs as a user does, and checks what comes of it.

Usage: demo_session.py BUILD_FOLDER DIRECTORY   (on a display with a window manager)

DIRECTORY receives app/ (the application folder), Shotly/ (the base directory with the project) and pictures of
what was to be seen. Ends with an error when any number disagrees.
"""

import re
import sys
import time
from pathlib import Path

from desktop_driver import (
    PATIENCE,
    DesktopError,
    Session,
    User,
    Window,
    exit_code,
    pink_area,
    root_windows,
    run,
    screen_picture,
    wait_for,
)  # fmt: skip

PROJECT = "calculator-guide"

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


def override_redirect_popup(before):
    """The window of a context menu: one on the root that was not there before."""
    for identifier, width, height, x, y in root_windows():
        if identifier not in before and width > 60 and height > 40:
            return x, y, width, height
    return None


class Demonstration:
    def __init__(self, build, directory):
        self.directory = directory
        self.session = Session(build, directory)
        self.user = User()

    # ---- setting up

    def start_programs(self):
        run("xsetroot", "-solid", "#3b6ea5")
        self.session.launch("galculator")
        self.session.launch("mousepad", "--disable-server")
        self.calculator = Window.wait("galculator")
        self.calculator.place(840, 420)
        self.editor = Window.wait("Mousepad")
        self.editor.place(60, 400, 640, 380)
        self.session.start()
        self.main = self.session.main_window()
        self.main.place(90, 40)
        self.main.activate()
        time.sleep(0.5)
        screen_picture(self.directory / "main-window.png")

    # ---- the demonstration

    def begin(self):
        left, top, right, bottom = wait_for("the project box", pink_area)
        middle = (top + bottom) // 2
        idle = self.session.sockets()
        self.user.click(((left + right) // 2 - 30, middle))
        self.user.key("ctrl+a")
        self.user.type(PROJECT)
        self.user.click((right + 48, middle), pause=0.3)  # the first button behind the box
        wait_for("the message where the snapshots go", lambda: len(Window.all("^Shotly$")) > 1)
        time.sleep(0.4)
        self.user.key("Return")
        self.stop_bar = Window.wait("^Shotly Stop Bar$")
        self.session.wait_watching(idle)
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
        wait_for("the guide", contents.exists)
        wait_for("the warning before documents are written", lambda: len(Window.all("^Please Close")) > 0)
        time.sleep(1.5)  # the built-in browser shows the guide beside it
        screen_picture(self.directory / "guide.png")
        self.user.key("Return")
        wait_for("the document to be opened", lambda: str(self.document(".doc")) in self.opened())

    def document(self, suffix):
        return self.project_folder() / (PROJECT + suffix)

    def quit(self):
        self.main.activate()
        self.user.key("ctrl+q")
        if self.session.shotly.wait(timeout=PATIENCE) != 0:
            raise DesktopError(f"Shotly ended with {self.session.shotly.returncode}")

    # ---- what came of it

    def project_folder(self):
        return self.session.base / PROJECT

    def opened(self):
        path = self.directory / "opened.txt"
        return path.read_text() if path.exists() else ""

    def expected(self):
        return self.user.clicks + self.user.keys

    def count_pages(self):
        return int(self.session.query(f"select count(*) from PageData where ProjectName='{PROJECT}' and PageStatus='OK'"))

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
            raise DesktopError(f"no picture of {page}")

    def follow_links(self):
        """Has the browser follow every link of the contents page; returns how many pages showed their picture."""
        page = self.directory / "follow.html"
        page.write_text(FOLLOW_LINKS.replace("CONTENTS", (self.project_folder() / "index.htm").as_uri()))
        shown = self.browse(page, "--allow-file-access-from-files", "--virtual-time-budget=60000", "--dump-dom")
        result = re.search(r"<p>(.*?)</p>", shown)
        if not result or not re.fullmatch(r"\d+ of \d+", result[1]):
            raise DesktopError(f"following the links: {result[1] if result else shown}")
        followed, total = (int(word) for word in result[1].split(" of "))
        if followed != total:
            raise DesktopError(f"only {followed} of {total} linked pages show their picture")
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
            raise DesktopError("the numbers disagree")
        if [path.stem for path in snapshots] != names or links != [name + ".htm" for name in names]:
            raise DesktopError("the pages are not numbered without a gap")
        if self.session.query("pragma integrity_check") != "ok":
            raise DesktopError("the database is damaged")
        print(f"in a browser: {self.follow_links()} links followed to a page with its picture")
        # The page of the click in the context menu is the last but one.
        self.render(self.project_folder() / "index.htm", self.directory / "contents.png", 500)
        self.render(self.project_folder() / (names[-2] + ".htm"), self.directory / "page.png", 1150)
        print(f"pictures:     {self.directory / 'contents.png'}, {self.directory / 'page.png'}")
        self.check_documents()

    def check_documents(self):
        """What other programs read in the document and in the PDF; pictures of them."""
        document, pdf = self.document(".doc"), self.document(".pdf")
        text = run("catdoc", "-d", "utf-8", str(document))
        if not text.startswith("Contents") or f"\n{self.expected()}." not in text:
            raise DesktopError(f"the document does not begin with its contents: {text[:80]!r}")
        information = run("pdfinfo", str(pdf))
        pages = int(re.search(r"Pages:\s+(\d+)", information)[1])
        shown = [line for line in run("pdfimages", "-list", str(pdf)).splitlines() if " image " in line]
        large = [line for line in shown if int(line.split()[4]) > 100]
        print(f"document:     {document}")
        print(f"PDF:          {pdf}, {pages} pages, {len(large)} snapshots in it")
        if pages != self.expected() + 1 or len(large) != self.expected():
            raise DesktopError("the PDF has other pages than the guide")
        picture = self.directory / "document-page"
        run("pdftoppm", "-r", "60", "-png", "-singlefile", "-f", "2", "-l", "2", str(pdf), str(picture))
        print(f"picture:      {picture}.png")

    def record(self):
        self.session.write_options(SnapShotByPressTab=1, SnapShotByPressReturn=1, MouseInsideColor=1,
                                   FinalDocumentFormat=3, AutoConvertWord2PDF=1, WordProcessor="builtin")  # fmt: skip
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
            self.session.end()
        self.check()


if __name__ == "__main__":
    sys.exit(exit_code("demo", Demonstration(Path(sys.argv[1]), Path(sys.argv[2])).record))
