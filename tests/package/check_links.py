#!/usr/bin/env python3
"""Follows every relative link in the Markdown pages of folders: to a file there, or to a heading of a page.

Build folders and what begins with a dot are left out.
"""
import os
import re
import sys
from pathlib import Path

CODE = re.compile(r"^```.*?^```|`[^`\n]*`", re.DOTALL | re.MULTILINE)
LINK = re.compile(r"\]\(([^()\s]+)\)")
HEADING = re.compile(r"^#+ +(.*)$", re.MULTILINE)


def pages(root):
    for folder, folders, files in os.walk(root):
        folders[:] = [name for name in folders if name != "build" and not name.startswith(".")]
        yield from (Path(folder, name) for name in files if name.endswith(".md"))


def anchors(page):
    """The names that a page's headings get on the usual code hosts."""
    for heading in HEADING.findall(page.read_text(encoding="utf-8")):
        yield re.sub(r"[^\w\- ]", "", heading.strip().lower()).replace(" ", "-")


def fault(root, page, link):
    target, _, anchor = link.partition("#")
    path = (page.parent / target).resolve() if target else page
    if not path.exists():
        return "is not there"
    if not path.is_relative_to(root):
        return f"lies outside {root}"
    if anchor and anchor not in anchors(path):
        return "has no such heading"
    return None


def main():
    links = 0
    faults = []
    for root in (Path(argument).resolve() for argument in sys.argv[1:]):
        for page in pages(root):
            for link in LINK.findall(CODE.sub("", page.read_text(encoding="utf-8"))):
                if re.match(r"[a-z]+:", link):
                    continue
                links += 1
                if reason := fault(root, page, link):
                    faults.append(f"{page}: {link} {reason}")
    print("\n".join(faults) or f"{links} links lead somewhere")
    return 1 if faults or not links else 0


if __name__ == "__main__":
    sys.exit(main())
