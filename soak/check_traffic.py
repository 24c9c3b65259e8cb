#!/usr/bin/env python3
"""Checks what tvut22_traffic has written: a log file, or the JSON lines of a viewer.

Every line must be whole; each thread's lines must come in order. In a log file none may be missing and
the sequence digits must count without a gap; a viewer may lose lines, which are counted.
"""
import argparse
import json
import re
import sys

STAMP = re.compile(r"(?:\S+ *: )?\d\d:\d\d:\d\d\.\d{3} [0-9a-f]{8}/[0-9a-f]{2} (\d)  ")
TEXT = re.compile(r" *<(\d+) (\d+) (\d+) (\.*) (\d+)>$")


class Check:
    def __init__(self):
        self.lines = self.torn = self.disordered = self.lost = 0
        self.next = {}

    def text(self, text):
        match = TEXT.match(text)
        if not match or match[1] != match[5] or int(match[3]) != len(match[4]):
            self.torn += 1
            print("torn:", text[:120], file=sys.stderr)
            return
        thread, number = match[1], int(match[2])
        expected = self.next.get(thread, 0)
        if number < expected:
            self.disordered += 1
        self.lost += max(0, number - expected)
        self.next[thread] = number + 1
        self.lines += 1


def is_of_modules(text):
    return text.lstrip().startswith(("++", "--"))


def check_log(path, check):
    digit, gaps = None, 0
    with open(path, encoding="latin-1", newline="") as file:
        for line in file.read().split("\r\n")[:-1]:
            stamp = STAMP.match(line)
            if not stamp:
                check.torn += 1
                print("torn:", line[:120], file=sys.stderr)
                continue
            if digit is not None and int(stamp[1]) != (digit + 1) % 10:
                gaps += 1
            digit = int(stamp[1])
            if not is_of_modules(line[stamp.end():]):
                check.text(line[stamp.end():])
    return gaps


def check_json(path, check):
    with open(path, encoding="utf-8") as file:
        for line in file:
            text = json.loads(line)["text"]
            if not is_of_modules(text):
                check.text(text)
    return 0


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--json", action="store_true", help="the file holds a viewer's JSON lines")
    parser.add_argument("--expect", type=int, required=True, help="lines that were written")
    parser.add_argument("file")
    options = parser.parse_args()
    check = Check()
    gaps = (check_json if options.json else check_log)(options.file, check)
    lost = options.expect - check.lines
    print(f"{check.lines} whole, {check.torn} torn, {check.disordered} out of order, {gaps} gaps in the sequence, "
          f"{lost} lost")
    return 1 if check.torn or check.disordered or gaps or (lost and not options.json) else 0


if __name__ == "__main__":
    sys.exit(main())
