"""The module for 32-bit Python, by ctypes: constants, types, and the calls by name when the DLL is loaded."""
from . import types
from .headers import Callback, Constant, Function, Handle, Structure
from .lists import MADE

HEAD = f'''"""{MADE}. docs/other-languages.md tells how to use it."""
from ctypes import *
from types import SimpleNamespace


class BSTR(c_void_p):
    """A text that a call returns: handed over by byref(), read by str(), freed with this object."""

    def __str__(self):
        return wstring_at(self.value, windll.oleaut32.SysStringLen(self)) if self.value else ""

    def __del__(self):
        windll.oleaut32.SysFreeString(self)


class VARIANT(Structure):
    _fields_ = [("vt", c_ushort), ("reserved", c_ushort * 3), ("data", c_ulonglong)]'''

TAIL = '''
def load(path="tvUT22.dll"):
    """Loads the DLL. Its calls are the attributes of what is returned; parameters may be given by name. The system's
    reason is ctypes.get_last_error()."""
    calls = SimpleNamespace()
    library, variadic = WinDLL(path, use_last_error=True), CDLL(path, use_last_error=True)
    for name, result, *parameters in FUNCTIONS:
        prototype = WINFUNCTYPE(result, *(type for _, type in parameters), use_last_error=True)
        setattr(calls, name, prototype((name, library), tuple((1, parameter) for parameter, _ in parameters)))
    for name, result, *parameters in VARIADIC:
        call = getattr(variadic, name)
        call.restype, call.argtypes = result, [type for _, type in parameters]
        setattr(calls, name, call)
    return calls'''


def pairs(members):
    return "".join(f', ("{member.name}", {types.of(member.type).python})' for member in members)


def result_of(found):
    return "c_wchar_p" if found.result == "wchar_t*" else types.of(found.result).python


def constant(found):
    value = repr(found.value) if isinstance(found.value, str) else found.text
    yield f"{found.name} = {value}" + (f"  # {found.remark}" if found.remark else "")


def handle(found):
    yield f"class {found.name}(c_void_p):\n    pass"


def callback(found):
    values = [types.of(found.result).python] + [types.of(member.type).python for member in found.parameters]
    names = ", ".join(member.name for member in found.parameters)
    yield f"{found.name} = WINFUNCTYPE({', '.join(values)})  # ({names})"


def structure(found):
    yield f"class {found.name}(Structure):\n    _fields_ = ["
    for field in found.fields:
        array = f" * {field.count}" if field.count else ""
        remark = f"  # {field.remark}" if field.remark else ""
        yield f'        ("{field.name}", {types.of(field.type).python}{array}),{remark}'
    yield "    ]"


WRITERS = {Constant: constant, Handle: handle, Callback: callback, Structure: structure}


def declarations(read):
    for header in read:
        for entry in header.entries:
            found = [one for one in entry.declarations if type(one) in WRITERS]
            if found:
                yield f"\n\n# {entry.summary() if entry is not header.entries[0] else header.title}"
            for one in found:
                yield from WRITERS[type(one)](one)


def table(name, read, variadic):
    yield f"\n\n{name} = ("
    for header in read:
        for entry in header.entries:
            found = [one for one in entry.declarations if isinstance(one, Function) and one.variadic == variadic]
            if found:
                yield f"    # {entry.summary()}"
            yield from (f'    ("{one.name}", {result_of(one)}{pairs(one.parameters)}),' for one in found)
    yield ")"


def module(read):
    yield HEAD
    for system in types.SYSTEM:
        yield "\n"
        yield from structure(system)
    yield from declarations(read)
    yield from table("FUNCTIONS", read, variadic=False)
    yield from table("VARIADIC", read, variadic=True)
    yield "\n" + TAIL
