#!/usr/bin/env python3
"""Fails when what runs on the crash thread refers to anything but itself and what is known to need nothing.

  crash_symbols.py FOLDER [OBJECT...]   the folder of the library's object files; further ones count as well
"""
import subprocess
import sys
from pathlib import Path

NM = "i686-w64-mingw32-nm"

# What the thread runs; the rest of the library it may not reach.
OBJECTS = ["platform/bare_system", "platform/guarded", "runtime/crash/bare_*", "runtime/crash/crash_*",
           "runtime/crash/dump_*", "runtime/crash/frame_*", "runtime/crash/hand_over", "runtime/crash/live_process",
           "runtime/crash/module_names", "runtime/crash/module_walk", "runtime/crash/notes",
           "runtime/crash/process_notes", "runtime/crash/system_facts", "runtime/diagnostic_line",
           "runtime/frame_line", "runtime/symbols/*"]

ALLOWED = {
    "_memcpy", "_memmove", "_memset", "_memcmp", "_strlen",  # of the C runtime: leaves that hold nothing
    "___chkstk_ms", "___divdi3", "___moddi3", "___udivdi3", "___udivmoddi4", "___umoddi3",  # arithmetic of the compiler
    "_RtlUnwind@16", "__imp__VirtualQuery@12", "__imp__VirtualProtect@16",  # system calls, in the guard
    "__imp__GetCurrentThreadId@0",  # a word of the thread's own block
    "__ZN4tvut11g_bareCallsE",  # the table of system calls
    "__ZN4tvut13PlatformPauseEj",  # while another thread sets a note; readers wait for none
    "__ZNK4tvut11clsHandOver10ShowNoticeERKNS_12scCrashFilesE",  # after all is written
    # Tables that are named and never followed: of unwinding, and of types.
    "___gxx_personality_v0", "__ZTVN10__cxxabiv117__class_type_infoE", "__ZTVN10__cxxabiv120__si_class_type_infoE",
}


def symbols(path):
    for line in subprocess.run([NM, path], check=True, capture_output=True, text=True).stdout.splitlines():
        kind, name = line[9:].split(None, 1)
        yield kind, name


def main(folder, *further):
    objects = [path for pattern in OBJECTS for path in sorted(Path(folder).glob(f"*.dir/{pattern}.cpp.obj"))]
    missing = [pattern for pattern in OBJECTS if "*" not in pattern and not list(Path(folder).glob(f"*.dir/{pattern}.cpp.obj"))]
    if missing:
        sys.exit(f"no such objects: {missing}")
    found = [(path, *symbol) for path in objects + list(further) for symbol in symbols(path)]
    own = {name for _, kind, name in found if kind != "U"}
    foreign = [f"{Path(path).name}: {name}" for path, kind, name in found
               if kind == "U" and name not in own and name not in ALLOWED]
    print(f"{len(objects)} objects, {len(found)} symbols")
    if foreign:
        sys.exit("on the crash thread:\n  " + "\n  ".join(foreign))


if __name__ == "__main__":
    main(*sys.argv[1:])
