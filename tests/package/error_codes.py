#!/usr/bin/env python3
"""Holds docs/error-codes.md against the headers: every result code with its number, and no other.

Result codes are the macros whose value is a negative number, and 0 and 1 where they are answers. A row of the page
begins with a number and a name, | -4 | `UTIL_FAILED` |.
"""
import re
import sys
from pathlib import Path

CODE = re.compile(r"^#define ((?:PROF|UTIL)_\w+) \((-\d+)\)", re.MULTILINE)
ANSWER = re.compile(r"^#define ((?:PROF|UTIL)_(?:OK|YES|NO)) (\d)", re.MULTILINE)
ROW = re.compile(r"^\| (-?\d+) \| `(\w+)` \|", re.MULTILINE)


def main():
    root = Path(sys.argv[1])
    declared = set()
    for header in (root / "include" / "tvut22").glob("*.h"):
        text = header.read_text(encoding="utf-8")
        declared |= {(name, number) for name, number in CODE.findall(text) + ANSWER.findall(text)}
    rows = {(name, number) for number, name in ROW.findall((root / "docs/error-codes.md").read_text(encoding="utf-8"))}
    faults = [f"missing on the page: {name} {number}" for name, number in declared - rows]
    faults += [f"not in the headers: {name} {number}" for name, number in rows - declared]
    print("\n".join(sorted(faults)) or f"{len(rows)} codes")
    return 1 if faults or not rows else 0


if __name__ == "__main__":
    sys.exit(main())
