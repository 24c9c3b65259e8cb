#!/usr/bin/env python3
"""Has programs of others read the dumps that crash_test has left: read_dumps.py FOLDER PROGRAMS

Each is "place-crash-function.dmp". obj2yaml must find every stream; the debugger must name the function that
crashed, and its callers up to the system's start.
"""
import re
import subprocess
import sys
from pathlib import Path

STREAMS = ["SystemInfo", "MiscInfo", "ThreadList", "ModuleList", "Exception", "MemoryList", "CommentW"]
NOTES = "Document=C:\\x\\m\u00e4rz.rpt\nStep=two  lines\0".encode("utf-16-le").hex().upper()


def faults_of_yaml(path):
    text = subprocess.run(["obj2yaml", path], check=True, capture_output=True, text=True).stdout
    if re.findall(r"^  - Type: +(\w+)", text, re.MULTILINE) != STREAMS:
        yield "streams"
    misc = re.search(r"MiscInfo\n    Content: +'?([0-9A-F]{48})", text)[1]
    process = int.from_bytes(bytes.fromhex(misc)[8:12], "little")
    if "crash_child.exe'" not in text or not process:
        yield "module or process"
    if NOTES not in text.split("CommentW")[1]:
        yield "notes"
    if len(re.findall("Start of Memory Range", text)) < 3:
        yield "memory"


# Out of the compiler's runtime, which keeps no frame pointers, the debugger's way misses who calls it.
BY_THE_CHAIN = {"CrashTerminate": "wmain", "CrashThrow": "wmain"}


def backtraces(paths, programs):
    """One run of the debugger; its answers in the order of the dumps."""
    command = ["lldb-14", "--no-lldbinit", "--batch", "-o", f"settings set target.exec-search-paths {programs}"]
    for path in paths:
        command += ["-o", f"target create --core {path}", "-o", "bt"]
    text = subprocess.run(command, capture_output=True, text=True, timeout=100).stdout
    return text.split("(lldb) target create --core ")[1:]


def main(folder, programs):
    paths = sorted(Path(folder).glob("*.dmp"))
    if not paths:
        sys.exit(f"no dumps in {folder}")
    failed = 0
    for path, trace in zip(paths, backtraces(paths, programs), strict=True):
        faults = list(faults_of_yaml(path))
        frames = re.findall(r"frame #\d+: .*", trace)
        function = path.stem.split("-")[2]
        names = rf"{function}|{BY_THE_CHAIN.get(function, function)}"
        if not any(re.search(rf"`.*({names})\(", frame) for frame in frames[:9]):
            faults.append("function")
        # Through modules without symbols, and the loader's own frames, the debugger has no way.
        if "wmain(" in trace and not re.search(r"kernel32\.dll|ntdll\.dll", "".join(frames[-4:])):
            faults.append("callers")
        if faults:
            failed += 1
            print(f"{path.name}: {faults}\n  " + "\n  ".join(frames[:8]))
    print(f"{len(paths)} dumps, {failed} not as they should be")
    sys.exit(failed != 0)


if __name__ == "__main__":
    main(*sys.argv[1:])
