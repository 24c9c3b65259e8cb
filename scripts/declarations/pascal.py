"""The unit for Delphi and Free Pascal.

Pointers stay pointers, so that nil is possible wherever null is. A PWideString leads to what BSTR* wants.
"""
from . import types
from .headers import Callback, Constant, Function, Handle, Structure
from .lists import MADE

HEAD = f"""// {MADE}. docs/other-languages.md tells how to use it.
unit tvut22;

{{$IFDEF FPC}}{{$MODE DELPHI}}{{$ENDIF}}
{{$ALIGN 8}}

interface

uses
  Windows, ActiveX;

const
  tvut22_dll = 'tvUT22.dll';

type
  PUtilTexts = ^PWideChar;"""

# Names that mean something else in Pascal, in whatever case.
TAKEN = set("and array as begin case class const div do else end except file finally for function goto if in inline is "
            "label mod nil not object of on or out packed pointer procedure property record repeat result set shl shr string "
            "then to try type unit until uses var while with xor".split())


def identifier(name):
    return name + "_" if name.lower() in TAKEN else name


def declared(member):
    return f"{identifier(member.name)}: {types.of(member.type).pascal}"


def parameters(members):
    # Interfaces are passed as they are, without a reference of their own.
    found = ["const " * (member.type == "IStream*") + declared(member) for member in members]
    return f"({'; '.join(found)})" if found else ""


def routine(name, found):
    kind, result = ("procedure", "") if found.result == "void" else ("function", ": " + types.of(found.result).pascal)
    return f"{kind}{' ' * bool(name)}{name}{parameters(found.parameters)}{result};"


def constant(found):
    value = f"'{found.value}'" if isinstance(found.value, str) else found.text.replace("0x", "$")
    yield f"  {found.name} = {value};" + (f" // {found.remark}" if found.remark else "")


def handle(found):
    yield f"  {found.name}Object = record end;"
    yield f"  {found.name} = ^{found.name}Object;"


def callback(found):
    yield f"  {found.name} = {routine('', found)} stdcall;"


def structure(found):
    yield f"  {found.name} = record"
    for field in found.fields:
        type = types.of(field.type).pascal
        array = f"array[0..{field.count - 1}] of " if field.count else ""
        yield f"    {identifier(field.name)}: {array}{type};" + (f" // {field.remark}" if field.remark else "")
    yield "  end;"
    yield f"  P{found.name} = ^{found.name};"


def function(found):
    convention = "cdecl; varargs" if found.variadic else "stdcall"
    yield f"{routine(found.name, found)} {convention}; external tvut22_dll;"


BLOCKS = {Constant: ("const", constant), Handle: ("type", handle), Callback: ("type", callback),
          Structure: ("type", structure), Function: ("", function)}


def declarations(header):
    """Blocks of one kind each, with the first sentence of a comment above what it is said of."""
    block = None
    for entry in header.entries:
        if not entry.declarations:
            continue
        first = True
        for found in entry.declarations:
            word, write = BLOCKS[type(found)]
            if first or word != block:
                yield ""
            if first and entry is not header.entries[0]:
                yield f"// {entry.summary()}"
            if word != block and word:
                yield word
            block, first = word, False
            yield from write(found)


def unit(read):
    yield HEAD
    for header in read:
        if any(entry.declarations for entry in header.entries):
            yield f"\n// ==== {header.title}"
            yield from declarations(header)
    yield "\nimplementation\n\nend."
