#!/usr/bin/env python3
"""Compares what the library reads from a module's symbols with what nm and addr2line do: at the beginning of each
function, and at every 61st byte of code.

Where an object file without symbols was linked in, nm names its section: that is no function's name, and addr2line
takes the one of another object. The library names none.
"""
import argparse
import bisect
import re
import shlex
import subprocess
import sys
from pathlib import Path

TOOLS = "i686-w64-mingw32-"
STEP = 61


def output(*command, lines=()):
    return subprocess.run(command, input="".join(f"{line}\n" for line in lines), capture_output=True, text=True,
                          check=True).stdout.splitlines()


def functions_of(file, base):
    """{offset: names} of the code, as linked."""
    names = {}
    for line in output(f"{TOOLS}nm", file):
        if found := re.fullmatch(r"([0-9a-f]{8}) [tT] (.*)", line):
            names.setdefault(int(found[1], 16) - base, set()).add(found[2])
    return names


def known_names(linked):
    """What the library may call a place that has these names."""
    sections = {name.removeprefix(".text$") if name.startswith(".text$") else "-" for name in linked}
    return {name.removeprefix("_") for name in linked if not name.startswith(".")} or sections


def known_line(text):
    """addr2line's answer: "folder/file.cpp:12 (discriminator 1)", with ? for what it does not know."""
    path, line = re.fullmatch(r"(.*):(\d+|\?)(?: .*)?", text).groups()
    return (re.split(r"[/\\]", path)[-1], int(line)) if line not in ("?", "0") else ("-", 0)


def faults(reader, module, symbols):
    headers = "\n".join(output(f"{TOOLS}objdump", "-p", "-h", symbols))
    base = int(re.search(r"^ImageBase\s+([0-9a-f]+)", headers, re.MULTILINE)[1], 16)
    code = re.search(r"\.text +([0-9a-f]+) +([0-9a-f]+)", headers)
    first = int(code[2], 16) - base
    functions = functions_of(symbols, base)
    begins = sorted(functions)
    offsets = sorted({*begins, *range(max(first, begins[0]), first + int(code[1], 16), STEP)})
    ours = output(*reader, module, *([symbols] if symbols != module else []), lines=[f"{at:x}" for at in offsets])
    theirs = output(f"{TOOLS}addr2line", "-e", symbols, lines=[f"{at + base:#x}" for at in offsets])
    if len(offsets) < 1000 or not len(offsets) == len(ours) == len(theirs):
        yield f"{len(offsets)} places, {len(ours)} and {len(theirs)} answers"
    for at, our, their in zip(offsets, ours, theirs):
        name, within, file, line = our.split(" ")
        begin = begins[bisect.bisect(begins, at) - 1]
        if name not in known_names(functions[begin]) or int(within, 16) != (at - begin if name != "-" else 0):
            yield f"{at:#x}: {our}, not {functions[begin]}+{at - begin:#x}"
        if (file, int(line)) != known_line(their):
            yield f"{at:#x}: {our}, not {their}"


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--reader", required=True, type=shlex.split)
    parser.add_argument("--module", required=True)
    options = parser.parse_args()
    debug = f"{options.module}.debug"
    found = list(faults(options.reader, options.module, debug if Path(debug).exists() else options.module))
    print("\n".join(found[:20]) or "all places have their names")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
