"""The types of the declarations: their sizes on 32-bit Windows, and what other languages call them.

Handles and callbacks are pointers under names of their own; structures are laid out as every compiler does it by
default: each field at a multiple of its alignment.
"""
from dataclasses import dataclass

from . import headers


@dataclass
class Type:
    size: int
    alignment: int
    pascal: str
    csharp: str
    python: str


# Of values: bytes, alignment, names.
VALUES = {
    "void": Type(0, 1, "", "void", "None"),
    "wchar_t": Type(2, 2, "WideChar", "char", "c_wchar"),
    "WCHAR": Type(2, 2, "WideChar", "char", "c_wchar"),
    "WORD": Type(2, 2, "Word", "ushort", "c_ushort"),
    "INT": Type(4, 4, "Integer", "int", "c_int"),
    "LONG": Type(4, 4, "Integer", "int", "c_int"),
    "HRESULT": Type(4, 4, "HRESULT", "int", "c_int"),
    "BOOL": Type(4, 4, "BOOL", "bool", "c_int"),
    "UINT": Type(4, 4, "Cardinal", "uint", "c_uint"),
    "UINT32": Type(4, 4, "Cardinal", "uint", "c_uint"),
    "DWORD": Type(4, 4, "Cardinal", "uint", "c_uint"),
    "COLORREF": Type(4, 4, "Cardinal", "uint", "c_uint"),
    "INT64": Type(8, 8, "Int64", "long", "c_longlong"),
    "UINT64": Type(8, 8, "UInt64", "ulong", "c_ulonglong"),
    "ULONGLONG": Type(8, 8, "UInt64", "ulong", "c_ulonglong"),
    "double": Type(8, 8, "Double", "double", "c_double"),
    "UINT_PTR": Type(4, 4, "Cardinal", "UIntPtr", "c_uint"),
    "WPARAM": Type(4, 4, "WPARAM", "UIntPtr", "c_uint"),
    "LPARAM": Type(4, 4, "LPARAM", "IntPtr", "c_int"),
    "LRESULT": Type(4, 4, "LRESULT", "IntPtr", "c_int"),
    "HWND": Type(4, 4, "HWND", "IntPtr", "c_void_p"),
    "HANDLE": Type(4, 4, "THandle", "IntPtr", "c_void_p"),
    "HGLOBAL": Type(4, 4, "HGLOBAL", "IntPtr", "c_void_p"),
    "va_list": Type(4, 4, "Pointer", "IntPtr", "c_void_p"),
}


def pointer(pascal, csharp, python):
    return Type(4, 4, pascal, csharp, python)


# Pointers that are not just "pointer to one of these"; the rest follows from what they point to.
POINTERS = {
    "void*": pointer("Pointer", "IntPtr", "c_void_p"),
    "const void*": pointer("Pointer", "IntPtr", "c_void_p"),
    "char*": pointer("PAnsiChar", "StringBuilder", "POINTER(c_char)"),
    "const char*": pointer("PAnsiChar", "string", "c_char_p"),
    "wchar_t*": pointer("PWideChar", "StringBuilder", "POINTER(c_wchar)"),
    "const wchar_t*": pointer("PWideChar", "string", "c_wchar_p"),
    "const wchar_t* const*": pointer("PUtilTexts", "string[]", "POINTER(c_wchar_p)"),
    "const volatile LONG*": pointer("PInteger", "IntPtr", "POINTER(c_int)"),
    "COLORREF*": pointer("PCardinal", "ref uint", "POINTER(c_uint)"),
    "BOOL*": pointer("PBOOL", "ref bool", "POINTER(c_int)"),
    "HGLOBAL*": pointer("PHandle", "ref IntPtr", "POINTER(c_void_p)"),
    "BSTR*": pointer("PWideString", "[MarshalAs(UnmanagedType.BStr)] ref string", "POINTER(BSTR)"),
    "IStream*": pointer("IStream", "IStream", "c_void_p"),
    "VARIANT*": pointer("POleVariant", "[MarshalAs(UnmanagedType.Struct)] ref object", "POINTER(VARIANT)"),
    "const VARIANT*": pointer("POleVariant", "[In, MarshalAs(UnmanagedType.Struct)] ref object", "POINTER(VARIANT)"),
    "const CONTEXT*": pointer("Pointer", "IntPtr", "c_void_p"),
    "EXCEPTION_POINTERS*": pointer("Pointer", "IntPtr", "c_void_p"),
}

# Structures of the system; Pascal has them in its unit Windows.
SYSTEM = [headers.Structure(name, [headers.Member(type, field) for field in fields.split()]) for name, type, fields in (
    ("POINT", "LONG", "x y"),
    ("RECT", "LONG", "left top right bottom"),
    ("FILETIME", "DWORD", "dwLowDateTime dwHighDateTime"),
    ("SYSTEMTIME", "WORD", "wYear wMonth wDayOfWeek wDay wHour wMinute wSecond wMilliseconds"),
)]
PASCAL_SYSTEM = {"POINT": "Point", "RECT": "Rect", "FILETIME": "FileTime", "SYSTEMTIME": "SystemTime"}

# Filled from the headers.
structures = {structure.name: structure for structure in SYSTEM}


def learn(read):
    """Makes known what the headers declare."""
    for header in read:
        for kind in (headers.Handle, headers.Callback):
            for found in header.all(kind):
                VALUES[found.name] = pointer(found.name, found.name, found.name)
        for found in header.all(headers.Structure):
            structures[found.name] = found


def layout(structure):
    """Its size, its alignment, and the offset of each field."""
    offset, alignment, offsets = 0, 1, []
    for field in structure.fields:
        type = of(field.type)
        offset += -offset % type.alignment
        offsets.append(offset)
        offset += type.size * (field.count or 1)
        alignment = max(alignment, type.alignment)
    return offset + -offset % alignment, alignment, offsets


def of(name):
    """What a C type is, on 32-bit Windows and elsewhere."""
    if found := VALUES.get(name) or POINTERS.get(name):
        return found
    if structure := structures.get(name):
        size, alignment, _ = layout(structure)
        return Type(size, alignment, "T" + PASCAL_SYSTEM[name] if name in PASCAL_SYSTEM else name, name, name)
    if name.endswith("*"):
        target = of(name.removeprefix("const ")[:-1])
        reference = "[In] ref " if name.startswith("const ") else "ref "
        return pointer("P" + target.pascal.removeprefix("T"), reference + target.csharp, f"POINTER({target.python})")
    raise SystemExit(f"{name} is not in scripts/declarations/types.py")


def argument_bytes(function):
    """What a call puts on the stack."""
    return sum(-(-of(parameter.type).size // 4) * 4 for parameter in function.parameters)
