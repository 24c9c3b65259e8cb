#!/usr/bin/env python3
"""Tells how many of the words that w3m shows of a page a converter shows, too.

  page_words.py [--at-least PERCENT] --converter "COMMAND" PAGE...

The command reads a page from standard input and writes UTF-8. A word is a run of letters and digits, and counts as often
as it is there. A page below the percentage is a failure. Where html2text is installed it is measured beside. w3m is
told to believe alt="": by itself it shows the file names of pictures that say so.
"""
import argparse
import re
import shlex
import shutil
import subprocess
import sys
from collections import Counter
from pathlib import Path


W3M = ["w3m", "-dump", "-cols", "10000", "-T", "text/html", "-O", "UTF-8", "-o", "ignore_null_img_alt=0"]


def words_of(command, page):
    with open(page, "rb") as source:
        run = subprocess.run(command, stdin=source, capture_output=True, check=True)
    return Counter(re.findall(r"\w+", run.stdout.decode("utf-8", "replace")))


def percentage(wanted, found):
    return 100 * (wanted & found).total() / max(wanted.total(), 1)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--converter", required=True)
    parser.add_argument("--at-least", type=float, default=0)
    parser.add_argument("--missing", action="store_true", help="print what is missing most often")
    parser.add_argument("pages", nargs="+", type=Path)
    arguments = parser.parse_args()
    other = shutil.which("html2text")
    faults = 0
    for page in arguments.pages:
        wanted = words_of(W3M, page)
        found = words_of(shlex.split(arguments.converter), page)
        reached = percentage(wanted, found)
        beside = f"{percentage(wanted, words_of([other, '-utf8', '-width', '10000'], page)):9.2f}" if other else ""
        print(f"{reached:7.2f}{beside}{wanted.total():9} {page}")
        if arguments.missing:
            print("        ", (wanted - found).most_common(8))
        faults += reached < arguments.at_least or not wanted
    sys.exit(f"{faults} of {len(arguments.pages)} pages are below {arguments.at_least} %" if faults else 0)


main()
