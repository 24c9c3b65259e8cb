"""The export list, the text file of what programs rely on, and the page of all calls."""
from . import types
from .headers import Constant, Function, Structure

MADE = "Made by scripts/bindings from the headers"


def export_list(read):
    yield f"; The export list. {MADE}. Names carry the bytes of their arguments"
    yield "; (name@n) for the import library's sake; the DLL itself is linked with --kill-at and exports them plain."
    yield "; Names without a number are __cdecl."
    yield "LIBRARY tvUT22.dll"
    yield "EXPORTS"
    for header in read:
        for function in header.all(Function):
            yield f"    {function.name}" + ("" if function.variadic else f"@{types.argument_bytes(function)}")


def binary_interface(read):
    yield f"# {MADE}: what is compiled into programs, beside the"
    yield "# names in tvUT22.def. Values of constants; sizes of structures and offsets of their fields, in bytes."
    yield "# In one major version lines are added, and none is removed or changed but the size of a structure that"
    yield "# begins with its size."
    for header in read:
        for constant in header.all(Constant):
            if not constant.name.startswith("TVUT22_VERSION"):
                yield f"{constant.name} {constant.text}"
        for structure in header.all(Structure):
            size, _, offsets = types.layout(structure)
            yield f"{structure.name} {size}"
            yield from (f"{structure.name}.{field.name} {offset}" for field, offset in zip(structure.fields, offsets))


def families(names):
    """ProfGetIntA and ProfGetIntW are one call in two forms: ProfGetInt."""
    every = set(names)
    for name in names:
        if name[-1] == "A" and name[:-1] + "W" in every:
            yield name[:-1] + " A, W"
        elif not (name[-1] == "W" and name[:-1] + "A" in every):
            yield name


def rows(header):
    """A table for each section."""
    section = None
    for entry in header.entries:
        section = entry.section or section
        names = [found.name for found in entry.declarations if isinstance(found, Function)]
        if not names:
            continue
        if section:
            yield f"\n**{section}**\n\n| call | |\n|---|---|"
            section = None
        yield f"| {'<br>'.join(f'`{name}`' for name in families(names))} | {entry.summary()} |"


def reference(read):
    yield "# Reference\n"
    yield "Every call with what it is for. Parameters, results, errors, ownership and thread rules are described at"
    yield "its declaration. Written by `scripts/bindings` from the headers."
    for header in sorted(read, key=lambda header: header.name):
        if header.all(Function):
            yield f"\n## {header.title}\n\n`#include <tvut22/{header.name}>`"
            yield from rows(header)
