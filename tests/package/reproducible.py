#!/usr/bin/env python3
"""Makes again what is shipped, later and elsewhere, from the same objects: it must come out byte for byte.

What an object holds of its own folder would differ between checkouts: no file may name the folder. And what comes
from others and is linked in must stand in THIRD-PARTY.md.
"""
import os
import re
import subprocess
import sys
from pathlib import Path

# How a build makes a file, and what else comes out of it.
MADE = {name: [f"{name}.debug"] for name in
        ("bin/tvUT22.dll", "bin/prof.exe", "bin/tvut.exe", "bin/logpan.exe", "bin/logpan.com")}
MADE |= {"lib/libtvUT22.a": [], "lib/tvUT22.lib": []}


def make_again(build, target):
    """Runs the build's own last command for a target, with another folder in the place of its own. The libraries of
    others that the linker opened are returned."""
    commands = subprocess.run(["ninja", "-C", build, "-t", "commands", target], capture_output=True, text=True,
                              check=True).stdout
    command = commands.strip().split("\n")[-1].replace(target, f"again/{target}")
    folder = Path(target).parent
    (build / "again" / folder).mkdir(parents=True, exist_ok=True)
    command = command.replace(f"cd {build}/{folder} ", f"cd {build}/again/{folder} ")
    command = command.replace(" -o ", " -Wl,--trace -o ")
    trace = subprocess.run(command, shell=True, cwd=build, check=True, capture_output=True, text=True).stdout
    return {Path(name).name for name in re.findall(r"^\(?(/usr/[^)\s]+\.[ao])\b", trace, re.MULTILINE)}


def faults(source, build, staged):
    notices = (source / "THIRD-PARTY.md").read_text(encoding="utf-8")
    for target, others in MADE.items():
        for library in sorted(make_again(build, target)):
            if f"`{library}`" not in notices:
                yield f"{library} is linked into {target} and not named in THIRD-PARTY.md"
        for debug_file in others:
            if Path(debug_file).name.encode() + b"\0" not in (build / target).read_bytes():
                yield f"{target} does not link to {debug_file}"
        for name in [target, *others]:
            first = (build / name).read_bytes()
            if first != (build / "again" / name).read_bytes():
                yield f"{name} differs when it is made again"
            if any(str(source).encode(code) in first for code in ("utf-8", "utf-16-le")):
                yield f"{name} names {source}"
    if pack(source, staged, build / "again/one.zip", "UTC-11") != pack(source, staged, build / "again/two.zip", "UTC+11"):
        yield "the package differs when it is packed again"


def pack(source, staged, archive, zone):
    """Packs files that all got another time just before, in a time zone."""
    for file in staged.rglob("*"):
        os.utime(file, (file.stat().st_atime - 86400, file.stat().st_mtime - 86400))
    subprocess.run([sys.executable, source / "cmake/make_zip.py", staged, archive], check=True,
                   env=os.environ | {"TZ": zone})
    return archive.read_bytes()


def main():
    found = list(faults(*(Path(argument).resolve() for argument in sys.argv[1:])))
    print("\n".join(found) or "everything came out again")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
