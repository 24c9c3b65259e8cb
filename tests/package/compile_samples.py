#!/usr/bin/env python3
"""Compiles every sample of C and C++ that a reader meets: in the pages, and at the head of the public headers.

  compile_samples.py --compiler GCC --root REPOSITORY
      compiles the samples; nothing is linked
  compile_samples.py --compiler GCC --root REPOSITORY --package FOLDER --run COMMAND
      does what the pages say to do, with the package that was unpacked into FOLDER

A sample is a fence ```c or ```cpp, or the indented lines of a header's first comment. One with a main function is
compiled as it stands. Of any other the functions, includes and types stay outside, the rest goes into a function,
and a line "..." stands for what the reader has there. What samples name without declaring it is in sample_names.h.

A page that says how to build its programs names each in the comment of its first line, has commands in a fence ```sh,
and what they print in the fence after it, ```text. Other commands are not run.
"""
import argparse
import concurrent.futures
import itertools
import re
import subprocess
import sys
import tempfile
from pathlib import Path

FENCE = re.compile(r"^```(\w+)\n(.*?)^```$", re.MULTILINE | re.DOTALL)
FIRST_COMMENT = re.compile(r"\A/\*.*?\*/|\A(?://[^\n]*\n)+", re.DOTALL)
OUTSIDE = re.compile(r"^(#|typedef |struct |class |enum |template|using |namespace |static |"
                     r"\w[\w:<>*& ]* \w+\([^;]*[{,]$)") # the last one is a function
CONTROL = re.compile(r"^(if|for|while|switch|do|else|return)\b")
KINDS = {"c": "c", "cpp": "c++"}
STANDARDS = {"c": "-std=c11", "cpp": "-std=c++17"}
NAMES = Path(__file__).with_name("sample_names.h")
WARNINGS = ["-Wall", "-Wextra", "-Werror", "-Wno-unused", "-Wno-missing-field-initializers"]


class Sample:
    def __init__(self, path, line, language, text):
        self.path, self.line, self.language, self.text = path, line, language, text

    def is_program(self):
        return re.search(r"^\w[\w ]*\bw?(main|WinMain)\(", self.text, re.MULTILINE) is not None


def fences(path, languages=tuple(KINDS)):
    text = path.read_text(encoding="utf-8")
    for fence in FENCE.finditer(text):
        if fence[1] in languages:
            yield Sample(path, text.count("\n", 0, fence.start()) + 2, fence[1], fence[2])


def pages(root):
    return [root / "README.md", *sorted((root / "docs").glob("*.md"))]


def of_header(path):
    """The indented paragraphs of the first comment, one sample."""
    comment = FIRST_COMMENT.match(path.read_text(encoding="utf-8"))
    language = "cpp" if path.suffix == ".hpp" else "c"
    lines = [re.sub(r"^(?:/\*| \*|//) ?", "", line) for line in comment[0].split("\n")] if comment else []
    begin = next((at for at, line in enumerate(lines) if re.match(r" {4}\S", line) and not lines[at - 1]), None)
    if begin is not None:
        code = itertools.takewhile(lambda line: not line or line.startswith("    "), lines[begin:])
        yield Sample(path, begin + 1, language, "\n".join(code) + "\n")


def split(text):
    """What stands outside of functions, and what stands within: line by line, with blanks for the others."""
    outside, inside, is_outside = [], [], False
    for line in re.sub(r"^(\s*)\.\.\.", r"\1{}", text, flags=re.MULTILINE).split("\n"):
        plain = line.split("  //")[0].split("  /*")[0].rstrip()
        is_outside = is_outside or (OUTSIDE.match(plain) and not CONTROL.match(plain))
        outside.append(line if is_outside else "")
        inside.append("" if is_outside else line)
        if plain[:1].strip() and (plain[0] in "#}" or plain.endswith((";", "}"))):
            is_outside = False
    return "\n".join(outside), "\n".join(inside)


def source(sample):
    where = f'#line {sample.line} "{sample.path}"\n'
    if sample.is_program():
        return where + sample.text
    indent = re.match(r" *", sample.text)[0]
    outside, inside = split("\n".join(line.removeprefix(indent) for line in sample.text.split("\n")))
    return f'#include "{NAMES.name}"\n{where}{outside}\nvoid Sample() {{\n{where}{inside}\n}}\n'


def compile_source(options, folder, language, kind, *arguments, text=None):
    command = [options.compiler, "-x", kind, *WARNINGS, STANDARDS[language], "-I", Path(folder, language),
               "-I", options.root / "include", *arguments]
    done = subprocess.run(command, input=text, capture_output=True, text=True)
    return done.stderr or (f"exit code {done.returncode}" if done.returncode != 0 else "")


def read_names_once(options, folder, language, kind):
    """What all samples include takes half a second to read."""
    Path(folder, language).mkdir()
    return compile_source(options, folder, language, kind + "-header", NAMES,
                          "-o", Path(folder, language, NAMES.name + ".gch"))


def compile_all(options):
    headers = sorted((options.root / "include" / "tvut22").glob("*.h*"))
    samples = [sample for page in pages(options.root) for sample in fences(page)]
    samples += [sample for header in headers for sample in of_header(header)]
    with tempfile.TemporaryDirectory() as folder, concurrent.futures.ThreadPoolExecutor() as threads:
        found = list(threads.map(lambda kind: read_names_once(options, folder, *kind), KINDS.items()))
        found += threads.map(lambda sample: compile_source(options, folder, sample.language, KINDS[sample.language],
                                                           "-fsyntax-only", "-", text=source(sample)), samples)
    found = [text for text in found if text]
    print("\n".join(found) or f"{len(samples)} samples compile")
    return 1 if found or not samples else 0


def plain(text):
    return text.replace("\r", "").strip()


def follow(page, options):
    """Does what a page says, in an empty folder beside the unpacked package; returns how many steps there were."""
    steps = list(fences(page, (*KINDS, "sh", "text")))
    with tempfile.TemporaryDirectory() as folder:
        Path(folder, "tvUT22").symlink_to(options.package.resolve())
        for step in steps:
            if name := step.language in KINDS and re.match(r"(?://|/\*) (\S+\.\w+)", step.text):
                Path(folder, name[1]).write_text(step.text, encoding="utf-8")
        printing = [(step, after) for step, after in itertools.pairwise(steps)
                    if (step.language, after.language) == ("sh", "text")]
        for step, after in printing:
            commands = re.sub(r"^(?=\S+\.exe\b)", options.run + " ./", step.text, flags=re.MULTILINE)
            done = subprocess.run(["sh", "-ec", commands], cwd=folder, capture_output=True, text=True)
            if done.returncode != 0 or plain(done.stdout) != plain(after.text):
                sys.exit(f"{step.path}:{step.line}: exit code {done.returncode}\n{done.stdout}{done.stderr}")
    return len(printing)


def follow_all(options):
    steps = sum(follow(page, options) for page in pages(options.root))
    print(f"{steps} steps do what the pages say")
    return 0 if steps else 1


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--compiler", required=True)
    parser.add_argument("--root", type=Path, required=True)
    parser.add_argument("--package", type=Path)
    parser.add_argument("--run", default="")
    options = parser.parse_args()
    return follow_all(options) if options.package else compile_all(options)


if __name__ == "__main__":
    sys.exit(main())
