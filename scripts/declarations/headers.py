"""Reads the declarations of the public headers, in their order, with the comments above them.

The headers are C, but of few forms: what is none of them is an error, so that nothing is passed over in silence.
"""
import re
from dataclasses import dataclass, field
from pathlib import Path

FOLDER = Path(__file__).resolve().parents[2] / "include" / "tvut22"

COMMENT = r"/\*.*?\*/"
TOKEN = re.compile(rf"""
    /\*(?P<comment>.*?)\*/
  | ^\#define\ (?P<constant>\w+)(?P<value>(?:[^/\n\\]|\\.)*)(?:/\*(?P<remark>.*?)\*/)?
  | ^\#(?:[^\n\\]|\\.)*
  | (?P<statement>[a-zA-Z](?:{COMMENT}|\{{(?:{COMMENT}|[^}}])*\}}|[^;{{])*;)
  | \s+
""", re.DOTALL | re.MULTILINE | re.VERBOSE)
INCLUDE = re.compile(r"^#include <tvut22/(\w+\.h)>", re.MULTILINE)
SECTION = re.compile(r"-{4} (.*?) -+")
OWN = re.compile(r"(?:Prof|Util|Pas|Logpan)[A-Z]")

HANDLE = re.compile(r"typedef struct \w+\* (\w+);")
STRUCTURE = re.compile(r"typedef struct (\w+) \{(.*)\} \1;", re.DOTALL)
FIELD = re.compile(r"\s*([^;]+?)(\w+)(?:\[(\w+)\])?;[ \t]*(?:/\*(.*?)\*/)?", re.DOTALL)
CALLBACK = re.compile(r"typedef (\w+)\(TVUT22_CALL\* (\w+)\)\((.*)\);")
FUNCTION = re.compile(r"TVUT22_API (.+?) (TVUT22_CALL|TVUT22_CALL_VARIADIC) (\w+)\((.*)\);")
FOREIGN = re.compile(r"(?:typedef )?(?:struct|interface|union|\w+) [\w* ]*?(\w+);")  # types of the system


@dataclass
class Constant:
    name: str
    text: str  # the literal without its suffix
    value: int | str
    unsigned: bool
    remark: str


@dataclass
class Handle:
    name: str


@dataclass
class Member:
    """A parameter, or a field of a structure."""
    type: str
    name: str
    count: int = 0  # of elements, for an array
    remark: str = ""


@dataclass
class Structure:
    name: str
    fields: list


@dataclass
class Callback:
    name: str
    result: str
    parameters: list


@dataclass
class Function:
    name: str
    result: str
    parameters: list
    variadic: bool


@dataclass
class Entry:
    """What stands under one comment. A section's line is one with nothing under it."""
    section: str
    comment: list
    declarations: list = field(default_factory=list)

    def summary(self):
        """The first sentence."""
        if self.section:
            return self.section
        end = self.comment.index("") if "" in self.comment else len(self.comment)
        return re.split(r"(?<=[.!])(?: |$)|; ", " ".join(self.comment[:end]))[0].rstrip(".")


@dataclass
class Header:
    name: str
    title: str
    entries: list

    def all(self, kind):
        return [found for entry in self.entries for found in entry.declarations if isinstance(found, kind)]


def plain(comment):
    """A comment's lines without what draws it."""
    return [re.sub(r"^ *\* ?", "", line).strip() for line in comment.strip().split("\n")]


def members(parameters):
    """Parameters, as they stand between the parentheses. The three dots are none."""
    for parameter in re.sub(r"\s+", " ", parameters).split(","):
        if parameter.strip() not in ("void", "..."):
            yield Member(*re.fullmatch(r"\s*(.*?) ?(\w+)", parameter).groups())


def constant(name, text, remark, known):
    """A text, a number, or an expression of numbers and constants that are known."""
    text = text.replace("\\\n", "").strip()
    if found := re.fullmatch(r'L?"(.*)"', text):
        value = found[1].replace("\\\\", "\\")
        return Constant(name, value, value, False, remark)
    if found := re.fullmatch(r"\(?(-?(?:0x[0-9a-fA-F]+|\d+))(u?)\)?", text):
        return Constant(name, found[1], int(found[1], 0), found[2] == "u", remark)
    expression = re.sub(r"[A-Z]\w+", lambda found: str(known.get(found[0], "?")), text)
    if not re.fullmatch(r"[\d ()|<+-]+", expression):
        raise ValueError(f"{name}: {text} is not understood")
    value = eval(expression)  # of nothing but numbers and operators
    return Constant(name, hex(value), value, False, remark)


def statement(text, constants):
    """A declaration, or None for a type of the system."""
    if found := FUNCTION.fullmatch(re.sub(r"\s+", " ", text)):
        result, convention, name, parameters = found.groups()
        return Function(name, result, list(members(parameters)), convention != "TVUT22_CALL")
    if found := CALLBACK.fullmatch(re.sub(r"\s+", " ", text)):
        return Callback(found[2], found[1], list(members(found[3])))
    if found := STRUCTURE.fullmatch(text):
        fields = [Member(type.strip(), name, int(constants.get(count, count) or 0), " ".join(plain(remark)))
                  for type, name, count, remark in FIELD.findall(found[2])]
        return Structure(found[1], fields)
    if found := HANDLE.fullmatch(text):
        return Handle(found[1])
    if (found := FOREIGN.fullmatch(text)) and not OWN.match(found[1]):
        return None
    raise ValueError(f"{text} is not understood")


def entries(text):
    """How functions are declared, and include guards, are no declarations."""
    constants, end = {}, 0
    for token in TOKEN.finditer(text):
        if token.start() != end:
            raise ValueError(f"{text[end:token.start()]} is not understood")
        end = token.end()
        if token["comment"] is not None:
            section = SECTION.fullmatch(token["comment"].strip())
            yield (entry := Entry(section[1] if section else "", plain(token["comment"])))
        elif token["constant"] and token["value"].strip() and not re.match("TVUT22_(API|IMPORT|CALL)", token["constant"]):
            found = constant(token["constant"], token["value"], " ".join(plain(token["remark"] or "")), constants)
            constants[found.name] = found.value
            entry.declarations.append(found)
        elif token["statement"] and (found := statement(token["statement"], constants)):
            entry.declarations.append(found)
    if end != len(text):
        raise ValueError(f"{text[end:]} is not understood")


def paths(header="tvut22.h"):
    """A header after those that it includes."""
    for name in INCLUDE.findall((FOLDER / header).read_text(encoding="utf-8")):
        yield from paths(name)
    yield FOLDER / header


def read():
    """All headers, each once: the one that includes most, then the others."""
    for path in dict.fromkeys([*paths(), *sorted(FOLDER.glob("*.h"))]):
        try:
            found = list(entries(path.read_text(encoding="utf-8")))
        except ValueError as fault:
            raise SystemExit(f"{path}: {fault}")
        yield Header(path.name, found[0].comment[0].rstrip("."), found)
