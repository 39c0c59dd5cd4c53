#!/usr/bin/env python3
"""Writes the change log of the project in the form that Debian packages have it.

Usage: debian_changelog.py CHANGELOG.md OUTPUT RELEASE MAINTAINER

CHANGELOG.md has a heading "## VERSION (YEAR-MONTH-DAY)" for each version, the newest first, with a list below it.
RELEASE counts the packages of the newest version; older ones had one each. MAINTAINER is a name with an address.
"""

import datetime
import pathlib
import re
import sys
import textwrap
from email.utils import format_datetime

HEADING = re.compile(r"^## (\S+) \((\d{4}-\d\d-\d\d)\)$", re.M)


def items(text):
    """The items of the list, each as one line without the marks of emphasis; what stands before them is left out."""
    for item in re.split(r"^- ", text, flags=re.M)[1:]:
        yield re.sub(r"[*`]", "", " ".join(item.split("\n\n")[0].split()))


def entry(version, date, text, maintainer):
    day = datetime.datetime.fromisoformat(date).replace(hour=12, tzinfo=datetime.timezone.utc)
    changes = [
        textwrap.fill(item, 78, initial_indent="  * ", subsequent_indent="    ", break_on_hyphens=False)
        for item in items(text)
    ]
    if not changes:
        raise SystemExit(f"debian_changelog: nothing is listed for version {version}")
    head = f"shotly ({version}) unstable; urgency=medium"
    return "\n\n".join([head, "\n".join(changes), f" -- {maintainer}  {format_datetime(day)}"]) + "\n"


def main():
    source, target, release, maintainer = sys.argv[1:]
    _, *parts = HEADING.split(pathlib.Path(source).read_text(encoding="utf-8"))
    if not parts:
        raise SystemExit(f"debian_changelog: {source} names no version")
    entries = [
        entry(f"{version}-{1 if index else release}", date, text, maintainer)
        for index, (version, date, text) in enumerate(zip(parts[0::3], parts[1::3], parts[2::3]))
    ]
    pathlib.Path(target).write_text("\n".join(entries), encoding="utf-8")


if __name__ == "__main__":
    main()
