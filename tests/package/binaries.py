#!/usr/bin/env python3
"""Looks at what Windows reads of the binaries that are shipped: binaries.py VERSION BIN-FOLDER

The oldest Windows in the header, the version resource, and of programs the manifest and the window's icon.
"""
import struct
import sys
import xml.etree.ElementTree as ElementTree
from pathlib import Path

from export_table import Image

ICON, VERSION, MANIFEST = 3, 16, 24
BINARIES = ("tvUT22.dll", "prof.exe", "tvut.exe", "logpan.exe", "logpan.com")
WITH_ICON = {"logpan.exe"}
WINDOWS_7_TO_11 = {"{35138b9a-5d96-4fbd-8e2d-a2440225f93a}", "{4a2f28e3-53b9-4441-ba9c-d69d4a4a6e38}",
                   "{1f676c76-80e1-4239-95bb-83d0f6d0da78}", "{8e0f7a12-bfb3-4fe8-b9a5-48fd50a15a9a}"}
SETTINGS = {"dpiAware": "true/pm", "dpiAwareness": "PerMonitorV2, PerMonitor", "longPathAware": "true"}


def resources(image):
    """All of (kind, bytes): the tree of kinds, names and languages."""
    start = image.offset(image.u32(image.directories + 16))

    def walk(table, kind=None):
        named, numbered = struct.unpack_from("<HH", image.data, table + 12)
        for entry in range(table + 16, table + 16 + 8 * (named + numbered), 8):
            number, target = struct.unpack_from("<II", image.data, entry)
            of_kind = number if kind is None else kind
            if target >> 31:
                yield from walk(start + (target & 0x7FFFFFFF), of_kind)
            else:
                address, size = struct.unpack_from("<II", image.data, start + target)
                yield of_kind, image.data[image.offset(address):][:size]

    return list(walk(start))


def version_faults(resource, name, version):
    numbers = struct.unpack_from("<HHHH", resource, resource.index(b"\xbd\x04\xef\xfe") + 8)
    if numbers[1::-1] + numbers[:1:-1] != tuple(map(int, version.split("."))) + (0, 0):
        yield f"the version resource says {numbers}"
    text = resource.decode("utf-16-le", "replace")
    for key, value in {"FileVersion": version, "ProductVersion": version, "OriginalFilename": name}.items():
        if text[text.index(key) + len(key):].lstrip("\0").split("\0")[0] != value:
            yield f"{key} is not {value}"


def manifest_faults(text):
    elements = list(ElementTree.fromstring(text).iter())
    named = {element.tag.rpartition("}")[2]: element for element in elements}
    if named["requestedExecutionLevel"].attrib != {"level": "asInvoker", "uiAccess": "false"}:
        yield "the manifest asks for rights"
    if {element.get("Id") for element in elements if element.tag.endswith("}supportedOS")} != WINDOWS_7_TO_11:
        yield "the manifest knows other systems"
    yield from (f"the manifest's {key} is not {value}" for key, value in SETTINGS.items() if named[key].text != value)


def faults(path, version):
    image = Image(path)
    optional = image.u32(0x3C) + 24
    for what, at in (("system", 40), ("subsystem", 48)):
        if struct.unpack_from("<HH", image.data, optional + at) != (6, 1):
            yield f"the {what} in the header is not 6.1"
    held = {}
    for kind, resource in resources(image):
        held.setdefault(kind, []).append(resource)
    counts = {kind: len(held.get(kind, [])) for kind in (ICON, VERSION, MANIFEST)}
    wanted = {ICON: 4 if path.name in WITH_ICON else 0, VERSION: 1, MANIFEST: 0 if path.suffix == ".dll" else 1}
    if counts != wanted:
        yield f"the resources are {counts}, not {wanted}"
        return
    yield from version_faults(held[VERSION][0], path.name, version)
    for manifest in held.get(MANIFEST, []):
        yield from manifest_faults(manifest.decode("utf-8"))


def main():
    version, folder = sys.argv[1], Path(sys.argv[2])
    found = [f"{name}: {fault}" for name in BINARIES for fault in faults(folder / name, version)]
    print("\n".join(found) or "the binaries are right")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
