#!/usr/bin/python3
"""Records a short guide and takes a picture of each screen for the help.

Usage: help_session.py BUILD_FOLDER DIRECTORY PICTURES   (on a display with a window manager)

DIRECTORY receives what demo_session.py writes, PICTURES the pictures.
"""

import sys
import time
from pathlib import Path

from demo_session import PROJECT, Demonstration
from desktop_driver import Window, exit_code, run, wait_for

SIZE = 1080, 660  # of the main window
TEXTS = (
    ("Add two numbers", "Enter the first number", "Click on 7. The number stands in the display."),
    ("Choose what to do", "Press the plus key", "The calculator waits for the second number."),
    ("The second number", "Enter 5", ""),
    ("The result", "Press the key =", "The sum stands in the display."),
)


class HelpPictures(Demonstration):
    def __init__(self, build, directory, pictures):
        super().__init__(build, directory)
        self.pictures = pictures

    def picture(self, name, window, width=None):
        """Of a window without its frame, once it has painted."""
        time.sleep(0.8)
        target = self.pictures / f"{name}.png"
        smaller = ["-resize", f"{width}x>"] if width else []
        raw = self.directory / "raw.png"
        run("import", "-window", window.identifier, raw)
        run("convert", raw, *smaller, "-strip", "-colors", "255", "-define", "png:compression-level=9", f"png8:{target}")

    def choose(self, menu, *steps):
        """An item of the main menu: the menu's key, then the keys in it."""
        self.main.activate()
        self.user.key(f"alt+{menu}", pause=0.4)
        for step in steps:
            self.user.key(step, pause=0.15)
        time.sleep(1)

    def close_tabs(self):
        """By the button that closes all screens: it is the second of three at the right."""
        x, y, width, _ = self.main.rectangle()
        _, _, _, bottom = self.session.project_box()
        self.user.click((x + width - 47, bottom + 29))

    def start_again(self, layout):
        """With another layout of pages."""
        self.session.write_options(MouseInsideColor=1, FinalDocumentFormat=0, PageLayout=layout, ShowLessMessage=1,
                                   ProjectName=PROJECT)  # fmt: skip
        self.session.start()
        self.main = self.session.main_window()
        self.main.place(90, 40, *SIZE)
        self.main.activate()
        time.sleep(0.5)

    def write_texts(self):
        statements = [
            f"update PageData set PageTitle='{title}', SubTitle='{sub}', PageSummary='{body}' where PageNumber={number};"
            for number, (title, sub, body) in enumerate(TEXTS, 1)
        ]
        run("sqlite3", self.session.database, "".join(statements))

    # ---- the pictures

    def recording(self):
        self.start_programs()
        self.main.place(90, 40, *SIZE)
        self.picture("main", self.main)
        self.begin()
        self.picture("stop-bar", self.stop_bar)
        self.calculate()
        self.stop()
        self.quit()

    def screens(self):
        self.choose("m", "a")
        self.picture("page-editor", self.main)
        self.choose("e", "Down", "Down", "Down", "Down", "Return")
        self.picture("page-list", self.main)
        self.choose("a", "Return")
        self.picture("options", self.main)
        for _ in range(3):
            self.user.key("ctrl+Tab", pause=0.2)
        self.picture("options-styles", self.main)
        self.choose("a", "b")
        backup = Window.wait("Backup a Database")
        self.picture("backup", backup)
        self.user.key("Escape")
        self.choose("e", "Return")  # the viewer says which picture is the one of the paint editor
        for _ in range(2):
            self.user.key("Down", pause=0.3)
        self.picture("viewer", self.main)
        self.choose("e", "Down", "Return")
        paint = Window.wait("Easel$")
        paint.place(200, 60, 900, 680)
        self.picture("paint", paint)
        self.user.key("alt+f", pause=0.4)
        self.user.key("e")

    def generated(self, layout):
        self.choose("m", "g")
        contents = self.project_folder() / "index.htm"
        wait_for("the guide", contents.exists)
        wait_for("the page's file", (self.project_folder() / "sh0001.htm").exists)
        time.sleep(2)
        page = self.directory / f"layout{layout}.png"
        self.render(self.project_folder() / "sh0001.htm", page, 1150)
        run("convert", page, "-trim", "-bordercolor", "white", "-border", "12", "-resize", "560x", "-strip",
            "-colors", "255", f"png8:{self.pictures}/layout{layout}.png")  # fmt: skip

    def make(self):
        self.session.write_options(MouseInsideColor=1, FinalDocumentFormat=0, ShowLessMessage=0)
        try:
            self.recording()
            self.write_texts()
            self.start_again(layout=1)
            self.screens()
            self.close_tabs()
            self.generated(1)
            self.picture("browser", self.main)
            self.quit()
            self.start_again(layout=2)
            self.generated(2)
            self.quit()
        except Exception:
            run("import", "-window", "root", self.pictures.parent.parent / "build/help-failed.png", check=False)
            raise
        finally:
            self.session.end()


if __name__ == "__main__":
    sys.exit(exit_code("help pictures", HelpPictures(*map(Path, sys.argv[1:4])).make))
