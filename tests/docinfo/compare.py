#!/usr/bin/python3
"""Compares the properties of the fixtures with what independent readers find in them.

  tests/docinfo/compare.py [FOLDER]    FOLDER holds pairs NAME.in, NAME.expected; tests/data/docinfo without it

Mail is read by python's email, packages by its zipfile and ElementTree, HTML by its html.parser, PDF by pdfinfo (the
Info dictionary alone: what comes from the packet of XMP is not compared), all else by exiftool. What differs on purpose stands in DIFFERENCES with the
reason; any other difference fails, and so does a reason that is needed no more.
"""
import email.policy
import html.parser
import json
import re
import shutil
import subprocess
import sys
import tempfile
import zipfile
from pathlib import Path
from xml.etree import ElementTree

FOLDER = Path(__file__).resolve().parent.parent / "data" / "docinfo"

# Our name: what exiftool calls it, by the family of formats.
NAMES = {
    "html": {"Title": "title", "Author": "author", "Subject": "dc.subject", "Application": "generator",
             "Copyright": "copyright", "Language": "lang"},
    "docx pptx xlsx ooxml": {
        "Title": "title", "Author": "creator", "Subject": "subject", "Keywords": "keywords",
        "Comments": "description", "LastAuthor": "lastModifiedBy", "Category": "category", "Company": "Company",
        "Manager": "Manager", "Application": "Application", "Language": "language", "Revision": "revision",
        "Created": "created", "Modified": "modified", "Printed": "lastPrinted", "Words": "Words"},
    "odt ods odp": {
        "Title": "title", "Author": "initial-creator", "Subject": "subject", "Keywords": "keyword",
        "Comments": "description", "LastAuthor": "creator", "Application": "generator", "Language": "language",
        "Created": "creation-date", "Modified": "date", "Revision": "editing-cycles"},
    "doc xls ppt": {
        "Title": "Title", "Author": "Author", "Subject": "Subject", "Keywords": "Keywords", "Comments": "Comments",
        "LastAuthor": "LastModifiedBy", "Application": "Software", "Created": "CreateDate", "Modified": "ModifyDate",
        "Company": "Company", "Manager": "Manager", "Category": "Category"},
    "pdf": {"Title": "Title", "Author": "Author", "Subject": "Subject", "Keywords": "Keywords",
            "Application": "Creator", "Producer": "Producer", "Created": "CreationDate", "Modified": "ModDate",
            "Pages": "Pages"},
    "rtf": {"Title": "Title", "Author": "Author", "Subject": "Subject", "Keywords": "Keywords",
            "LastAuthor": "LastModifiedBy", "Created": "CreateDate", "Modified": "ModifyDate", "Words": "Words"},
    "tiff": {"Title": "XPTitle", "Author": "Artist", "Application": "Software", "Modified": "ModifyDate",
             "Copyright": "Copyright"},
}

# Fixtures and properties, as patterns: why ours is another.
DIFFERENCES = {
    "docx-strict .*": "ElementTree refuses the reference to an entity that is not declared, and with it the part",
    "ooxml-damaged Title": "ElementTree gives nothing of a part that is damaged after the title",
    "html-all Title": "&AMP; is HTML 5; the title here is white space and all",
    "html-cut Author": "html.parser drops a tag that does not end",
    "html-utf8 Title": "html.parser's page keeps the empty title",
    "mail-words .*": "email decodes words in unknown character sets, and gives up damaged people and dates",
    "pdf-.* Author": "pdfinfo ends the name at what PDFDocEncoding has there",
    "pdf-.* Application": "pdfinfo does not know texts marked as UTF-8",
    "pdf-.* Modified": "month 13: no date, so that the packet's counts",
    "ppt-unicode Title": "exiftool does not join surrogates",
    "rtf-(all|japanese) .*": "exiftool does not read groups, \\u and code pages of two bytes",
    "rtf-all Modified": "no time is given, and none is made up",
    "rtf-cut Title": "exiftool gives nothing of a file that ends within the group",
    "rtf-late Title": "properties after the first paragraph are not looked for",
    "tiff-.* Title": "exiftool does not join surrogates; Title is DocumentName where there is no XPTitle",
    "tiff-.* Author": "Author is XPAuthor before Artist",
    "tiff-.* Copyright": "two texts in one are joined as two values",
    "tiff-tiffset Modified": "exiftool takes the last directory's",
}


def ours(path):
    lines = path.read_text(encoding="utf-8").split("\n")[:-1]
    return dict(line.split("=", 1) for line in lines)


def plain(value):
    """Dates as their digits without a zone, lists joined, white space kept apart from nothing."""
    if isinstance(value, list):
        value = "; ".join(str(one) for one in value)
    value = re.sub(r"\s+", " ", str(value).replace("\\n", " ")).strip()
    date = re.fullmatch(r"(\d{4})[:-](\d\d)[:-](\d\d)(?:[T ](\d\d:\d\d:\d\d)(?:\.\d+)?)?(Z|[+-]\d\d:\d\d)?", value)
    return " ".join(part or "" for part in date.groups()[:4]) if date else value


def by_exiftool(pairs):
    """{fixture: its tags}; what exiftool does not know by contents gets a name that says it."""
    with tempfile.TemporaryDirectory() as folder:
        copies = {}
        for path, properties in pairs:
            copy = Path(folder) / f"{path.stem}.{properties.get('Format', 'none')}"
            shutil.copy(path, copy)
            copies[str(copy)] = path.stem
        answer = subprocess.run(["exiftool", "-j", *copies], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL).stdout
    return {copies[one["SourceFile"]]: one for one in json.loads(answer)}


def by_zipfile(path):
    """The texts of all elements in the parts of properties, by their local names."""
    texts = {}
    with zipfile.ZipFile(path) as package:
        for name in package.namelist():
            if Path(name).name not in ("core.xml", "app.xml", "meta.xml", "c.xml", "a.xml"):
                continue
            try:
                for element in ElementTree.fromstring(package.read(name)).iter():
                    if element.text and element.text.strip() and "}" in element.tag:
                        texts.setdefault(element.tag.split("}")[1], []).append("".join(element.itertext()))
            except ElementTree.ParseError:
                pass
    return texts


class PageReader(html.parser.HTMLParser):
    def __init__(self):
        super().__init__()
        self.found, self.title = {}, None

    def handle_starttag(self, tag, attributes):
        given = dict(attributes)
        if tag == "html" and "lang" in given:
            self.found["lang"] = given["lang"]
        elif tag == "meta" and "name" in given:
            self.found.setdefault(given["name"].lower(), given.get("content"))
        elif tag == "title" and "title" not in self.found:
            self.title = ""

    def handle_data(self, data):
        if self.title is not None:
            self.title += data

    def handle_endtag(self, tag):
        if tag == "title" and self.title is not None:
            self.found["title"], self.title = self.title or None, None


def by_parser(path):
    data, reader = path.read_bytes(), PageReader()
    encoding = "utf-16" if data[:2] in (b"\xff\xfe", b"\xfe\xff") else "windows-1252" if b"windows-1252" in data else "utf-8"
    reader.feed(data.decode(encoding))
    reader.close()
    reader.found.setdefault("title", reader.found.get("dc.title"))
    return reader.found


def by_pdfinfo(path):
    answer = subprocess.run(["pdfinfo", "-isodates", "-enc", "UTF-8", path], stdout=subprocess.PIPE,
                            stderr=subprocess.DEVNULL).stdout.decode()
    return dict(re.split(r":\s+", line, maxsplit=1) for line in answer.splitlines() if re.search(r":\s+\S", line))


def by_email(path):
    mail = email.message_from_bytes(path.read_bytes(), policy=email.policy.default)
    names = {"Title": "Subject", "MessageId": "Message-ID", "Application": "User-Agent", "Company": "Organization",
             "Comments": "Comments", "Keywords": "Keywords", "Language": "Content-Language"}
    theirs = {ours: mail[name] and str(mail[name]) for ours, name in names.items()}
    theirs["Created"] = mail["Date"] and mail["Date"].datetime and mail["Date"].datetime.isoformat()
    for ours, name in (("Author", "From"), ("To", "To"), ("Cc", "Cc")):
        people = mail[name].addresses if mail[name] else ()
        theirs[ours] = "; ".join(f"{one.display_name} <{one.addr_spec}>" if one.display_name else one.addr_spec
                                 for one in people)
    return theirs


def differences(folder):
    pairs = [(path, ours(path.with_suffix(".expected"))) for path in sorted(folder.glob("*.in"))]
    tags = by_exiftool(pairs)
    for path, properties in pairs:
        kind = properties.get("Format")
        if kind == "eml":
            theirs = by_email(path)
            names = {name: name for name in theirs}
        else:
            theirs = (by_zipfile(path) if zipfile.is_zipfile(path) else by_parser(path) if kind == "html"
                      else by_pdfinfo(path) if kind == "pdf" else tags.get(path.stem, {}))
            names = next((table for kinds, table in NAMES.items() if kind in kinds.split()), {})
        for name, their_name in names.items():
            mine, other = properties.get(name), theirs.get(their_name)
            compared = other if kind == "pdf" else mine or other
            if compared and plain(mine) != plain(other):
                yield path.stem, name, mine, other


def main(folder=FOLDER):
    failed, needed = False, set()
    for fixture, name, mine, other in differences(Path(folder)):
        reasons = {pattern for pattern in DIFFERENCES if re.fullmatch(pattern, f"{fixture} {name}")}
        needed |= reasons
        if not reasons:
            failed = True
            print(f"{fixture}: {name}: {mine!r}, other readers {other!r}")
    for pattern in DIFFERENCES.keys() - needed:
        failed = True
        print(f"{pattern}: no difference any more")
    return failed


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
