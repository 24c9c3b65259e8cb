#!/usr/bin/env python3
"""Asks a language's declarations for the constants, sizes and offsets of docs/abi.txt, and builds the sample of
docs/other-languages.md.

  bindings_test.py LANGUAGE --dll DLL --compiler COMPILER [--emulator COMMAND]

c        the headers themselves, as the compiler has them
pascal   programs that run: sample, calls of each kind; what one imports that names every call
csharp   the compiled class, by reflection; C# has no 32-bit runtime here, so the sample is only compiled
python   the module, with types of 32-bit Windows; Python has no 32-bit Windows here, so the sample's names are looked up
"""
import argparse
import ast
import ctypes
import os
import re
import shlex
import shutil
import subprocess
import sys
from pathlib import Path
from types import ModuleType

ROOT = Path(__file__).resolve().parents[2]
HERE = ROOT / "tests/package"
sys.dont_write_bytecode = True
sys.path.insert(0, str(ROOT / "scripts"))
from declarations.pascal import identifier


def interface():
    """{name: value} of docs/abi.txt: numbers as their 32 bits, and texts."""
    lines = (ROOT / "docs/abi.txt").read_text(encoding="utf-8").splitlines()
    pairs = [line.split(" ", 1) for line in lines if not line.startswith("#")]
    return {name: int(value, 0) & 0xFFFFFFFF if re.fullmatch(r"-?\d\w*", value) else value for name, value in pairs}


def exports():
    """{name: bytes of arguments, None where they vary} of the export list."""
    text = (ROOT / "src/exports/tvut22.def").read_text(encoding="utf-8").split("EXPORTS")[1]
    return {name: int(size) if size else None for name, size in re.findall(r"(\w+)(?:@(\d+))?", text)}


def run(*command, **options):
    result = subprocess.run([str(part) for part in command], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, **options)
    output = result.stdout.decode("utf-8", "replace").replace("\r", "")
    if result.returncode:
        sys.exit(f"{' '.join(map(str, command))} fails with {result.returncode}\n{output}")
    return output


def compare(listed):
    """What a program printed, "name value" a line, with what it should be."""
    found = dict(line.split(" ", 1) for line in listed.splitlines())
    for name, value in interface().items():
        got = found.get(name, "missing")
        if (int(got) & 0xFFFFFFFF if re.fullmatch(r"-?\d+", got) else got) != value:
            yield f"{name} is {got}, not {value}"


def kinds():
    """The names of the interface by what they are."""
    values = interface()
    fields = [name for name in values if "." in name]
    structures = {name.split(".")[0] for name in fields}
    texts = [name for name in values if isinstance(values[name], str)]
    return fields, structures, texts, [name for name in values if name not in {*fields, *structures, *texts}]


def sample(language, file):
    page = (ROOT / "docs/other-languages.md").read_text(encoding="utf-8")
    file.write_text(re.search(rf"^```{language}\n(.*?)^```", page, re.DOTALL | re.MULTILINE)[1], encoding="utf-8")
    return file


def c(options, folder):
    fields, structures, texts, numbers = kinds()
    show = [f'printf("{name} %lu\\n", (unsigned long)({name}));' for name in numbers]
    show += [f'printf("{name} %ls\\n", {name});' for name in texts]
    show += [f'printf("{name} %u\\n", sizeof({name}));' for name in structures]
    show += ['printf("{0}.{1} %u\\n", offsetof({0}, {1}));'.format(*name.split(".")) for name in fields]
    source = folder / "listing.c"
    source.write_text("#include <stddef.h>\n#include <stdio.h>\n#include <tvut22/tvut22.h>\n#include <tvut22/viewer.h>\n"
                      f"int main(void) {{\n{chr(10).join(show)}\nreturn 0;\n}}\n", encoding="utf-8")
    run(options.compiler, "-I", ROOT / "include", source, "-o", folder / "listing.exe")
    yield from compare(run(*options.emulator, folder / "listing.exe"))


def pascal(options, folder):
    def built(source):
        run(options.compiler, "-v0e", f"-FU{folder}", f"-FE{folder}", f"-Fu{ROOT}/bindings/pascal", source)
        return folder / f"{source.stem}.exe"

    fields, structures, texts, numbers = kinds()
    show = [f"WriteLn('{name} ', Int64({name}));" for name in numbers] + [f"WriteLn('{name} ', {name});" for name in texts]
    show += [f"WriteLn('{name} ', SizeOf({name}));" for name in structures]
    show += ["WriteLn('{0}.{1} ', PtrUInt(@P{0}(nil)^.{2}));".format(*name.split("."), identifier(name.split(".")[1]))
             for name in fields]
    show += [f"linked := @{name};" for name in exports()]
    source = folder / "listing.pas"
    source.write_text("program listing;\n{$MODE OBJFPC}{$APPTYPE CONSOLE}\nuses tvut22;\nvar linked: Pointer;\nbegin\n"
                      f"{chr(10).join(show)}\nend.\n", encoding="utf-8")
    yield from compare(run(*options.emulator, built(source)))
    table = run("i686-w64-mingw32-objdump", "-p", folder / "listing.exe").split("DLL Name: tvUT22.dll")[1].split("\n\n")[0]
    imports = set(re.findall(r"\d+ +([A-Z]\w+)$", table, re.MULTILINE))
    yield from (f"{name} is imported or exported alone" for name in imports ^ exports().keys())
    run(*options.emulator, built(HERE / "pascal_calls.pas"), cwd=folder)
    log = folder / "lines.log"
    log.unlink(missing_ok=True)
    (folder / "sample.prf").unlink(missing_ok=True)
    output = run(*options.emulator, built(sample("pascal", folder / "sample.pas")), cwd=folder,
                 env=os.environ | {"TVUT22_LOG": f"Z:{log}"})
    if output != "Starts = 1\nC:\\Data\\France\n":
        yield f"the sample says {output}"
    if b"C:\\Data\\France" not in log.read_bytes().replace(b"\0", b""):
        yield "the sample's diagnostic line is not in the log file"


def csharp(options, folder):
    library = ROOT / "bindings/csharp/TvUT22.cs"
    strict = options.compiler, "-warnaserror+", "-warn:4"
    run(*strict, "-platform:x86", f"-out:{folder}/sample.exe", sample("csharp", folder / "sample.cs"), library)
    run(*strict, f"-out:{folder}/listing.exe", HERE / "listing.cs", library)
    listed = run("mono", folder / "listing.exe")
    yield from compare(listed)
    yield from calls({name: int(size) for name, size in re.findall(r"^(\w+)@(\d+) ", listed, re.MULTILINE)})


def python(options, folder):
    """The module meets a ctypes whose pointers and characters are those of 32-bit Windows."""
    word = ctypes.c_uint32
    names = {name: getattr(ctypes, name) for name in ("c_ushort", "c_int", "c_uint", "c_longlong", "c_ulonglong", "c_double",
                                                      "c_char", "Structure")}
    windows = ModuleType("ctypes")
    windows.__dict__.update(names, c_wchar=ctypes.c_uint16, c_void_p=word, c_char_p=word, c_wchar_p=word,
                            POINTER=lambda _: word, WINFUNCTYPE=lambda *_: type("Callback", (word,), {}))
    module = {}
    text = (ROOT / "bindings/python/tvut22.py").read_text(encoding="utf-8")
    sys.modules["ctypes"] = windows
    exec(compile(text, "tvut22.py", "exec"), module)
    sys.modules["ctypes"] = ctypes

    fields, structures, texts, numbers = kinds()
    lines = [f"{name} {module[name]}" for name in numbers + texts]
    lines += [f"{name} {ctypes.sizeof(module[name])}" for name in structures]
    lines += [f"{name} {getattr(module[name.split('.')[0]], name.split('.')[1]).offset}" for name in fields]
    yield from compare("\n".join(lines))
    found = {name: sum(-(-ctypes.sizeof(type) // 4) * 4 for _, type in parameters)
             for name, _, *parameters in module["FUNCTIONS"] + module["VARIADIC"]}
    yield from calls(found)

    names = ast.walk(ast.parse(sample("python", folder / "sample.py").read_text(encoding="utf-8")))
    for node in names:
        if isinstance(node, ast.Attribute) and ast.unparse(node.value) == "calls" and node.attr not in found:
            yield f"the sample calls {node.attr}"
        if isinstance(node, ast.Name) and node.id[0].isupper() and node.id not in module:
            yield f"the sample uses {node.id}"


def calls(found):
    """The declared functions and their bytes against the export list."""
    for name, size in exports().items():
        if name not in found or size not in (None, found[name]):
            yield f"{name} has {found.get(name)} bytes of arguments, not {size}"
    yield from (f"{name} is no export" for name in found.keys() - exports().keys())


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("language", choices=("c", "pascal", "csharp", "python"))
    parser.add_argument("--folder", required=True, type=Path)
    parser.add_argument("--dll")
    parser.add_argument("--compiler")
    parser.add_argument("--emulator", type=shlex.split, default=[])
    options = parser.parse_args()
    folder = options.folder / options.language
    folder.mkdir(parents=True, exist_ok=True)
    if options.dll:
        shutil.copy(options.dll, folder)
    found = list(globals()[options.language](options, folder))
    print("\n".join(found) or f"{len(interface())} values and {len(exports())} calls are right")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
