#!/usr/bin/env python3
"""Compares the DLL's export table with the public headers, both ways.

The headers are read through the compiler's preprocessor, so what counts is what a caller sees. With
--write-table a line VISIT(name) for every declared name is written, for import_library_test.c.
"""
import argparse
import re
import struct
import subprocess
import sys

SYSTEM_DLLS = {"kernel32.dll", "advapi32.dll", "msvcrt.dll"}  # others are bound at first use


class Image:
    """The few parts of a 32-bit PE file that matter here."""

    def __init__(self, path):
        with open(path, "rb") as file:
            self.data = file.read()
        header = self.u32(0x3C)
        machine, sections = struct.unpack_from("<HH", self.data, header + 4)
        if self.data[header:header + 4] != b"PE\0\0" or machine != 0x14C:
            raise ValueError(f"{path} is not a 32-bit PE file")
        optional_size, = struct.unpack_from("<H", self.data, header + 20)
        self.directories = header + 24 + 96
        table = header + 24 + optional_size
        self.sections = [struct.unpack_from("<IIII", self.data, table + 40 * i + 8) for i in range(sections)]

    def u32(self, offset):
        return struct.unpack_from("<I", self.data, offset)[0]

    def offset(self, address):
        for size, start, raw_size, raw in self.sections:
            if start <= address < start + max(size, raw_size):
                return address - start + raw
        raise ValueError(f"address {address:#x} lies in no section")

    def text(self, address):
        start = self.offset(address)
        return self.data[start:self.data.index(b"\0", start)].decode("ascii")

    def exports(self):
        table = self.offset(self.u32(self.directories))
        functions, names = self.u32(table + 20), self.u32(table + 24)
        if functions != names:
            raise ValueError(f"{functions} exported functions, but {names} names")
        addresses = self.offset(self.u32(table + 32))
        return [self.text(self.u32(addresses + 4 * i)) for i in range(names)]

    def imports(self):
        entry = self.offset(self.u32(self.directories + 8))
        while self.u32(entry + 12):
            yield self.text(self.u32(entry + 12))
            entry += 20


def declared_names(compiler, include):
    source = "#include <tvut22/tvut22.h>\n"
    text = subprocess.run([compiler, "-std=c11", "-E", "-P", "-I", include, "-"], input=source,
                          capture_output=True, text=True, check=True).stdout
    imported = r"__attribute__\s*\(\(\s*dllimport\s*\)\)[^;(){}]*(?:__attribute__\s*\(\(\s*__(?:stdcall|cdecl)__\s*\)\)\s*)?"
    return re.findall(imported + r"\b((?:Prof|Util|Pas)\w+)\s*\(", text)


def pair_faults(names):
    """A name with an A or W form needs the other one and must not exist without suffix."""
    known = set(names)
    for name in names:
        for suffix, other in (("A", "W"), ("W", "A")):
            if name.endswith(suffix) and name[:-1] + other not in known:
                yield f"{name} has no {other} form"


def faults(options):
    image = Image(options.dll)
    exported = image.exports()
    declared = declared_names(options.compiler, options.include)
    if len(declared) < 50:
        yield f"only {len(declared)} declarations found in the headers; does the search still fit them?"
    yield from (f"{name} is in the DLL but not in the headers" for name in sorted(set(exported) - set(declared)))
    yield from (f"{name} is in the headers but not in the DLL" for name in sorted(set(declared) - set(exported)))
    yield from (f"{name} is there twice" for name in sorted(set(declared)) if declared.count(name) > 1)
    yield from (f"{name} is exported with decoration" for name in exported if not name.isidentifier())
    yield from pair_faults(exported)
    yield from (f"{dll} is imported" for dll in image.imports() if dll.lower() not in SYSTEM_DLLS)
    if options.most_bytes and len(image.data) >= options.most_bytes:
        yield f"the DLL has {len(image.data)} bytes, the limit is {options.most_bytes}"


def write_table(options):
    with open(options.write_table, "w", encoding="ascii") as file:
        file.writelines(f"VISIT({name})\n" for name in sorted(declared_names(options.compiler, options.include)))


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--compiler", required=True)
    parser.add_argument("--include", required=True)
    parser.add_argument("--dll")
    parser.add_argument("--most-bytes", type=int)
    parser.add_argument("--write-table")
    options = parser.parse_args()
    if options.write_table:
        return write_table(options)
    found = list(faults(options))
    print("\n".join(found) or "the export table is right")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
