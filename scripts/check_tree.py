#!/usr/bin/env python3
"""Checks the rules of the source tree that no compiler knows: who may include whom, where the calls to the
machine lie, sizes of files, leftovers. Prints one line per finding; the exit code is 1 when there is any.

Usage: check_tree.py [ROOT]
"""

import pathlib
import re
import subprocess
import sys

# Cores by level: a core may use its own folder and those of lower levels.
CORE_LEVEL = {
    "platform": 0,
    "settings": 1,
    "state": 2,
    "paint": 3,
    "pagestore": 3,
    "capture": 4,
    "documents": 4,
    "annotate": 4,
}
REAL_PARTS = {"x11", "sqlite", "office", "qt", "linux", "webengine"}
MAIN = "src/app/Main.cpp"
PROMPTER = "src/platform/qt/WidgetPrompter.cpp"
LONGEST = {".cpp": 400, ".h": 200}

WIDGET_CLASSES = """
    QAbstractButton QAbstractItemView QAbstractScrollArea QAbstractSpinBox QApplication QBoxLayout QButtonGroup
    QCalendarWidget QCheckBox QColorDialog QColumnView QComboBox QCommandLinkButton QCompleter QDataWidgetMapper
    QDateEdit QDateTimeEdit QDesktopWidget QDial QDialog QDialogButtonBox QDockWidget QDoubleSpinBox QErrorMessage
    QFileDialog QFocusFrame QFontComboBox QFontDialog QFormLayout QFrame QGestureEvent QGraphicsItem
    QGraphicsScene QGraphicsView QGraphicsWidget QGridLayout QGroupBox QHBoxLayout QHeaderView QInputDialog
    QItemDelegate QKeySequenceEdit QLabel QLayout QLCDNumber QLineEdit QListView QListWidget QMainWindow QMdiArea
    QMdiSubWindow QMenu QMenuBar QMessageBox QPlainTextEdit QProgressBar QProgressDialog QPushButton QRadioButton
    QRubberBand QScrollArea QScrollBar QScroller QShortcutEvent QSizeGrip QSlider QSpinBox QSplashScreen QSplitter
    QStackedLayout QStackedWidget QStatusBar QStyle QStyledItemDelegate QStyleFactory QStyleOption
    QSystemTrayIcon QTabBar QTableView QTableWidget QTabWidget QTextBrowser QTextEdit QTimeEdit QToolBar QToolBox
    QToolButton QToolTip QTreeView QTreeWidget QUndoView QVBoxLayout QWhatsThis QWidget QWidgetAction QWizard
""".split()

# Put together so that this file does not find itself.
SPEC = "spec" + "ification"
PLANNING_WORDS = re.compile(
    rf"\b(?:the|this|per|by|see|our) (?:spec|{SPEC})\b|\b{SPEC}\b|\bspec\.md\b|\bParts? [1-7]\.[0-9]\b"
    + r"|\bleft to the imple" + r"menter\b|\bseed docu" + r"ment|\bissue #\d|\bshared/(?:design|notes)",
    re.IGNORECASE,
)
PUBLISHED_FORMATS = re.compile(
    r"desktop entry|freedesktop|\[MS-|bmp spec|html spec|wav spec|riff spec|opendocument|std::|appstream", re.IGNORECASE
)
MACHINE_PATHS = re.compile(r"/wor" + r"k/(?:main|shared|steering)|/tmp/bash" + r"_jobs|\.\./sha" + r"red")
LEFTOVERS = re.compile(
    r"\b(?:TO" + r"DO|FIX" + r"ME|XX" + r"X|HA" + r"CK)\b|not imple" + r"mented|#if " + r"0\b"
    + r"|GTEST_" + r"SKIP|QSK" + r"IP|DISA" + r"BLED_"
)

INCLUDE = re.compile(r'^\s*#\s*include\s+(?:"([^"]+)"|<([^>]+)>)')
COMMENT_OR_STRING = re.compile(
    r'R"(?P<mark>[^()\\\s]{0,16})\(.*?\)(?P=mark)"|//[^\n]*|/\*.*?\*/|"(?:\\.|[^"\\\n])*"'
    r"|(?<![0-9a-fA-F])'(?:\\.|[^'\\\n])*'",
    re.DOTALL,
)

# What may be named where, below src/: pattern, test of the path, what the finding says.
PLACES = [
    (
        re.compile(r"\b(QMessageBox|QFileDialog|QInputDialog)\b"),
        lambda path: path == PROMPTER,
        "is for WidgetPrompter.cpp alone: ask through Prompter",
    ),
    (re.compile(r"\b(QProcess)\b"), lambda path: path.startswith("src/platform/"), "belongs below src/platform/"),
    (
        re.compile(r"\b(sqlite3_\w+)\s*\("),
        lambda path: path.startswith("src/platform/sqlite/"),
        "belongs below src/platform/sqlite/",
    ),
    (
        re.compile(r"\b(xcb_\w+)\s*\("),
        lambda path: path.startswith("src/platform/x11/"),
        "belongs below src/platform/x11/",
    ),
    (
        re.compile(r"\b(snd_\w+)\s*\("),
        lambda path: path.startswith("src/platform/linux/"),
        "belongs below src/platform/linux/",
    ),
]
# A wait on an object (clock.sleep) is the program's clock; everything else would stop a test.
SLEEPS = re.compile(r"(?<![.>])\b((?:u|nano|m|qS)?sleep(?:_for|_until)?|qWait(?!\(0\)))\s*\(", re.IGNORECASE)


def tracked_files(root):
    listed = subprocess.run(
        ["git", "-C", str(root), "ls-files", "-z", "--cached", "--others", "--exclude-standard"],
        check=True,
        capture_output=True,
    ).stdout.decode()
    return sorted(name for name in listed.split("\0") if name and (root / name).is_file())


def blank_out(match):
    return re.sub(r"[^\n]", " ", match.group())


def is_form(name):
    return name.startswith("frm")


def include_finding(path, included):
    """Why the file at `path` (below src/) may not include "folder/...", or None."""
    parts = path.split("/")
    own, name = parts[1], parts[-1]
    target = included.split("/")
    other, other_name = target[0], target[-1]
    if other == "platform" and len(target) > 2 and target[1] in REAL_PARTS:
        widget_user = own == "app" or is_form(name)
        if own != "platform" and path != MAIN and not (target[1] == "qt" and widget_user):
            return "is a real part of the platform, which only Main knows"
    if own == "app":
        return None
    if other == "app":
        return "uses the program from below"
    if other not in CORE_LEVEL or own not in CORE_LEVEL:
        return None
    if own == other:
        return "makes a core depend on a form" if is_form(other_name) and not is_form(name) else None
    if is_form(other_name):
        return "is a form of another folder: screens open one another through Workspace"
    if not is_form(name) and CORE_LEVEL[other] >= CORE_LEVEL[own]:
        return f"goes against the direction of use: {own} does not stand above {other}"
    return None


def widget_finding(path, included):
    """Why the file at `path` (below src/) may not include <QSomething>, or None."""
    if included.startswith("QtWidgets"):
        return "is not the short form of a widget's header"
    allowed = path.startswith(("src/app/", "src/platform/qt/", "src/platform/webengine/")) or is_form(path.split("/")[-1])
    if included in WIDGET_CLASSES and not allowed:
        return "is a widget, in a core"
    return None


def check_cpp(path, text):
    lines = text.split("\n")
    longest = LONGEST[pathlib.PurePosixPath(path).suffix]
    if len(lines) - 1 > longest:
        yield longest + 1, f"the file has {len(lines) - 1} lines; {longest} are the limit"
    code = COMMENT_OR_STRING.sub(blank_out, text).split("\n")
    for number, (line, bare) in enumerate(zip(lines, code), 1):
        include = INCLUDE.match(line)
        if include and path.startswith("src/"):
            own, system = include.groups()
            reason = include_finding(path, own) if own else widget_finding(path, system)
            if reason:
                yield number, f"{own or system} {reason}"
        if include:
            continue
        if path.startswith("src/"):
            for pattern, allowed, reason in PLACES:
                found = pattern.search(bare)
                if found and not allowed(path):
                    yield number, f"{found.group(1)} {reason}"
        if not path.startswith("bench/") and not path.endswith(("Clock.h", "Clock.cpp")):
            found = SLEEPS.search(bare)
            if found:
                yield number, f"{found.group(1)}: every wait goes through Clock"


def check_text(path, text):
    if PLANNING_WORDS.search(path):
        yield 1, "the name of the file speaks of the planning of the program"
    for number, line in enumerate(text.split("\n"), 1):
        if PLANNING_WORDS.search(line) and not PUBLISHED_FORMATS.search(line):
            yield number, "speaks of the planning of the program"
        if MACHINE_PATHS.search(line):
            yield number, "names a path of one machine"
        if path.split("/")[0] in ("src", "tests", "bench", "scripts", "cmake") and LEFTOVERS.search(line):
            yield number, "is a leftover"


def main():
    root = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else pathlib.Path(__file__).resolve().parent.parent)
    files = tracked_files(root)
    findings = 0
    for path in files:
        try:
            text = (root / path).read_text(encoding="utf-8")
        except UnicodeDecodeError:
            continue  # pictures, sounds, documents
        found = list(check_text(path, text)) if not path.endswith(".svg") else []
        if path.startswith(("src/", "tests/", "bench/")) and path.endswith((".cpp", ".h")):
            found += check_cpp(path, text)
        for number, reason in sorted(found):
            print(f"{path}:{number}: {reason}")
        findings += len(found)
    print(f"check_tree: {len(files)} files, " + (f"{findings} findings" if findings else "no findings"))
    return 1 if findings else 0


if __name__ == "__main__":
    sys.exit(main())
