#!/usr/bin/python3
"""Uses an installed Shotly as somebody does who has just got it: package_test.sh calls this on a private display.

Usage: package_session.py record|again TREE USER-ID PROJECT

TREE is the root of the system that Shotly is installed in, with a home folder for USER-ID in it, /home/ann. "record"
starts the program for the first time, records clicks into PROJECT and generates its pages; "again" starts it and
generates them once more.
"""

import os
import re
import subprocess
import sys
from pathlib import Path

from desktop_driver import DesktopError, Session, User, exit_code, screen_picture, wait_for

HOME = "/home/ann"
# Another root for the program, which is not a mere chroot: in such a one the web engine may not shut itself in.
ENTER = (
    'mount --rbind "$0" "$0" && cd "$0" && pivot_root . mnt && umount -l /mnt && cd / && '
    'exec setpriv --reuid "$1" --regid "$1" --clear-groups env -i HOME="$2" DISPLAY="$3" '
    "PATH=/usr/bin:/bin LANG=C.UTF-8 shotly"
)


class Installed(Session):
    """Shotly with the folders that it chooses itself."""

    def __init__(self, tree, user_id):
        super().__init__(tree, tree + HOME)
        self.tree = tree
        self.user_id = user_id
        self.application_folder = self.folder / ".local/share/shotly"
        self.database = self.application_folder / "Shotly.mdb"

    def start(self):
        words = ["unshare", "--mount", "--propagation", "private", "sh", "-c", ENTER]
        words += [self.tree, self.user_id, HOME, os.environ["DISPLAY"]]
        with open(Path(self.tree).parent / "program.log", "ab") as log:
            self.shotly = subprocess.Popen(words, stdout=log, stderr=log)
        self.processes.append(self.shotly)
        wait_for("the main window", lambda: self.main_window() or self.boxes())

    def uses_engine(self):
        return "shotly_webengine.so" in Path(f"/proc/{self.shotly.pid}/maps").read_text()


class Trial:
    def __init__(self, tree, user_id, project):
        self.session = Installed(tree, user_id)
        self.user = User()
        self.project = project
        self.folder = self.session.base / project

    def open(self, first):
        self.session.start()
        if first:  # it tells that it makes the folder of the projects
            self.session.answer(self.session.wait_box()[1])
        wait_for("the main window", self.session.main_window).activate()

    def record(self):
        self.session.begin(self.project, {"Shotly": "Return"})
        self.user.counting = True
        for point in ((1100, 700), (900, 800), (1000, 600)):
            self.user.click(point)
        self.user.click(self.session.stop_point())
        wait_for("the pages", lambda: self.pages() == self.user.clicks)
        wait_for("the main window", self.session.main_window)
        print(f"recorded: {self.user.clicks} clicks are {self.pages()} pages in the database")

    def pages(self):
        return int(self.session.query(f"select count(*) from PageData where ProjectName='{self.project}'"))

    def generate(self):
        contents = self.folder / "index.htm"
        before = contents.stat().st_mtime_ns if contents.exists() else 0
        self.session.main_window().activate()
        self.user.key("alt+m", pause=0.3)
        self.user.key("g", pause=0.3)

        def written():
            for _, box in self.session.boxes():
                self.session.answer(box)
            return contents.exists() and contents.stat().st_mtime_ns != before

        wait_for("the guide", written)
        wait_for("the end of the generation", lambda: not self.session.boxes())
        links = re.findall(r"<a href='([^']*)'>", contents.read_bytes().decode("cp1252"))
        for link in links:
            page = (self.folder / link).read_bytes().decode("cp1252")
            pictures = re.findall(r"<img[^>]*\ssrc=\s*['\"]([^'\"]*)", page, re.I)
            if not pictures or not all((self.folder / name).is_file() for name in pictures):
                raise DesktopError(f"{link} shows no picture that is there")
        if len(links) != self.pages() or not links:
            raise DesktopError(f"{len(links)} pages are linked, {self.pages()} were recorded")
        print(f"generated: {len(links)} HTML pages, each with its picture, and a page of contents")

    def select(self):
        left, top, right, bottom = self.session.project_box()
        self.user.click(((left + right) // 2 - 30, (top + bottom) // 2))
        self.user.key("ctrl+a")
        self.user.type(self.project)

    def close(self):
        owners = {path.stat().st_uid for path in [*self.folder.rglob("*"), self.session.database]}
        if owners != {int(self.session.user_id)}:
            raise DesktopError(f"files of the user belong to {owners}")
        self.session.quit()
        print("ended: with the code 0, all files belong to the user")

    def all(self, what):
        self.open(first=what == "record")
        if what == "record":
            self.record()
        else:
            self.select()
        self.generate()
        if what == "again":
            wait_for("the web engine", self.session.uses_engine)
            print("shown: in the browser of the web engine")
        self.close()


def main():
    what, tree, user_id, project = sys.argv[1:]
    trial = Trial(tree, user_id, project)
    code = exit_code("package_session", lambda: trial.all(what))
    if code:
        screen_picture(Path(tree).parent / "failed.png")
    trial.session.end()
    return code


if __name__ == "__main__":
    sys.exit(main())
