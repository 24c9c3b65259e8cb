"""The class for .NET: P/Invoke, in the Unicode character set unless a call takes 8-bit text.

Pointers to one value are "ref". Texts that a call changes are StringBuilders, those that it only reads strings; where
it returns a pointer into one of its texts, they are plain pointers, which stay where they are.
"""
from xml.sax.saxutils import escape

from . import types
from .headers import Callback, Constant, Function, Handle, Member, Structure
from .lists import MADE

HEAD = f"""// {MADE}. docs/other-languages.md tells how to use it.
using System;
using System.Runtime.InteropServices;
using System.Runtime.InteropServices.ComTypes;
using System.Text;

public static class TvUT22
{{
    const string Dll = "tvUT22.dll";"""

# What C# calls otherwise where it stands, though C writes it the same.
ARRAYS = {
    ("UtilLocGetCountryList", "list"): "[In, Out] UtilLocCountry[]",
    ("UtilConvertBLOBToString", "bytes"): "byte[]",
    ("UtilConvertStringToBLOB", "destination"): "byte[]",
    ("UtilZIPAppendList", "sources"): "[In, MarshalAs(UnmanagedType.LPArray, ArraySubType = UnmanagedType.LPWStr)] string[]",
    ("UtilDebugHelpWriteSupportArchive", "files"):
        "[In, MarshalAs(UnmanagedType.LPArray, ArraySubType = UnmanagedType.LPWStr)] string[]",
}

KEYWORDS = {"base", "string", "out", "object", "params", "event", "ref", "in", "is", "lock", "checked", "fixed"}


def identifier(name):
    return "@" + name if name in KEYWORDS else name


def returns_into_text(found):
    return found.result in ("wchar_t*", "void*")


def declared(found, member):
    type = ARRAYS.get((found.name, member.name)) or types.of(member.type).csharp
    if returns_into_text(found) and type in ("string", "StringBuilder"):
        type = "IntPtr"
    return f"{type} {identifier(member.name)}"


def signature(found):
    """Variable arguments are one text: what a format "%s" shows."""
    result = "IntPtr" if returns_into_text(found) else types.of(found.result).csharp
    members = found.parameters + [Member("const wchar_t*", "text")] * getattr(found, "variadic", False)
    return f"{result} {found.name}({', '.join(declared(found, member) for member in members)})"


def constant(found):
    type = "string" if isinstance(found.value, str) else "uint" if found.unsigned else "int"
    value = f'@"{found.value}"' if type == "string" else found.text
    if found.remark:
        yield f"    /// <summary>{escape(found.remark)}</summary>"
    yield f"    public const {type} {found.name} = {value};"


def handle(found):
    """A pointer of its own type, so that a job is not taken for a list."""
    yield f"    public struct {found.name} {{ public IntPtr Handle; }}"


def callback(found):
    yield f"    [UnmanagedFunctionPointer(CallingConvention.StdCall, CharSet = CharSet.{character_set(found)})]"
    yield f"    public delegate {signature(found)};"


def structure(found):
    yield "    [StructLayout(LayoutKind.Sequential, CharSet = CharSet.Unicode)]"
    yield f"    public struct {found.name}"
    yield "    {"
    for field in found.fields:
        type = types.of(field.type).csharp
        if field.remark:
            yield f"        /// <summary>{escape(field.remark)}</summary>"
        if field.count:
            yield f"        [MarshalAs(UnmanagedType.ByValTStr, SizeConst = {field.count})]"
            type = "string"
        yield f"        public {type} {identifier(field.name)};"
    yield "    }"


def character_set(found):
    return "Ansi" if any("char*" in m.type and "wchar_t" not in m.type for m in found.parameters) else "Unicode"


def function(found):
    convention = "CallingConvention = CallingConvention.Cdecl, " if found.variadic else ""
    yield (f"    [DllImport(Dll, {convention}CharSet = CharSet.{character_set(found)}, ExactSpelling = true, "
           "SetLastError = true)]")
    yield f"    public static extern {signature(found)};"


WRITERS = {Constant: constant, Handle: handle, Callback: callback, Structure: structure, Function: function}


def source(read):
    yield HEAD
    for system in types.SYSTEM:
        yield ""
        yield from structure(system)
    for header in read:
        for entry in header.entries:
            for number, found in enumerate(entry.declarations):
                if number == 0:
                    yield ""
                if entry is not header.entries[0] and not isinstance(found, Constant):
                    yield f"    /// <summary>{escape(entry.summary())}</summary>"
                yield from WRITERS[type(found)](found)
    yield "}"
