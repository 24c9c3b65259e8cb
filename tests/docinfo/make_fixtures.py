#!/usr/bin/python3
"""Makes documents of tests/data/docinfo with programs and libraries that are not ours.

  tests/docinfo/make_fixtures.py            makes those that are missing
  tests/docinfo/make_fixtures.py NAME...    makes these anew

They are checked in: makers write the time or an identifier into some. What is read of each stands in NAME.expected,
which the unit test writes anew with TVUT22_REWRITE=1; look at the difference then.
"""
import datetime
import io
import sys
import zipfile
from pathlib import Path

FOLDER = Path(__file__).resolve().parent.parent / "data" / "docinfo"
TIME = datetime.datetime(2024, 5, 6, 7, 8, 9)


def docx():
    import docx

    document = docx.Document()
    document.add_paragraph("Text of the document")
    core = document.core_properties
    core.title, core.author, core.subject = "Ein Übersichtsbericht", "Ana Łukasz", "Figures & <tables>"
    core.keywords, core.comments, core.category = "one, two", "First line\nsecond line", "Reports"
    core.last_modified_by, core.revision, core.language = "Боб", 7, "de-DE"
    core.created = core.modified = core.last_printed = TIME
    return saved(document.save)


def xlsx():
    import openpyxl

    book = openpyxl.Workbook()
    properties = book.properties
    properties.title, properties.creator, properties.keywords = "表", "山田 太郎", "数"
    properties.created = properties.modified = TIME
    return saved(book.save)


def odt(subject="text", maker="OpenDocumentText"):
    import odf.dc
    import odf.meta
    import odf.opendocument

    document = getattr(odf.opendocument, maker)()
    meta = document.meta
    for element, text in (
        (odf.dc.Title, "A " + subject), (odf.dc.Description, "One\n  two"), (odf.dc.Subject, "Testing"),
        (odf.meta.InitialCreator, "First Author"), (odf.dc.Creator, "Last Author"),
        (odf.meta.CreationDate, "2024-05-06T07:08:09"), (odf.dc.Date, "2024-05-07T08:09:10.123456789"),
        (odf.meta.PrintDate, "2024-05-08T09:10:11Z"), (odf.meta.Keyword, "eins"), (odf.meta.Keyword, "zwei"),
        (odf.dc.Language, "en-GB"), (odf.meta.EditingCycles, "3"),
    ):
        meta.addElement(element(text=text))
    meta.addElement(odf.meta.DocumentStatistic(pagecount=2, wordcount=345, charactercount=6789))
    for name, kind, text in (("Client", "string", "Müller & Söhne"), ("Final", "boolean", "true"),
                             ("Due", "date", "2024-12-31"), ("Rate", "float", "1.5"), ("Took", "time", "PT1H")):
        meta.addElement(odf.meta.UserDefined(name=name, valuetype=kind, text=text))
    return saved(document.save)


def saved(save):
    room = io.BytesIO()
    save(room)
    return room.getvalue()


def archive(parts):
    room = io.BytesIO()
    with zipfile.ZipFile(room, "w", zipfile.ZIP_DEFLATED) as packed:
        for name, text in parts:
            packed.writestr(zipfile.ZipInfo(name, (2024, 5, 6, 7, 8, 8)), text)
    return room.getvalue()


RELATIONS = "http://schemas.openxmlformats.org/officeDocument/2006/relationships/"
STRICT = "http://purl.oclc.org/ooxml/officeDocument/relationships/"


def ooxml(content_type, relations, parts):
    """A package by hand: parts lie elsewhere than usual, and relationships come in an order of their own."""
    rels = "".join(f'<r:Relationship Id="i{n}" Type="{kind}" Target="{target}"/>'
                   for n, (kind, target) in enumerate(relations))
    return archive([
        ("[Content_Types].xml",
         '<?xml version="1.0"?><Types xmlns="http://schemas.openxmlformats.org/package/2006/content-types">'
         f'<Default Extension="xml" ContentType="application/xml"/>'
         f'<Override PartName="/main/part.xml" ContentType="{content_type}"/></Types>'),
        ("_rels/.rels",
         '<r:Relationships xmlns:r="http://schemas.openxmlformats.org/package/2006/relationships">'
         + rels + "</r:Relationships>"),
        ("main/part.xml", "<x/>")] + parts)


EXTENDED = ('<p:Properties xmlns:p="{}"><p:Application>Maker</p:Application><p:Company>ACME</p:Company>'
            '<p:Manager>The Boss</p:Manager><p:Slides>12</p:Slides><p:Words>34</p:Words>'
            '<p:Characters>-5</p:Characters></p:Properties>')
CUSTOM = ('<?xml version="1.0" encoding="UTF-16"?>'
          '<Properties xmlns="http://schemas.openxmlformats.org/officeDocument/2006/custom-properties" '
          'xmlns:v="http://schemas.openxmlformats.org/officeDocument/2006/docPropsVTypes">'
          '<property pid="2" name="Größe"><v:lpwstr>very\r\nlarge &#x1F600;</v:lpwstr></property>'
          '<property pid="3" name="Count"><v:i4>-42</v:i4></property>'
          '<property pid="4" name="Yes"><v:bool>1</v:bool></property>'
          '<property pid="5" name="When"><v:filetime>2024-05-06T07:08:09Z</v:filetime></property>'
          '<property pid="6" name="Blob"><v:blob>AAAA</v:blob></property>'
          '<property pid="7" name="Ratio"><v:r8>0.25</v:r8></property></Properties>')


def pptx_macro():
    return ooxml("application/vnd.ms-powerpoint.template.macroEnabled.main+xml", [
        (RELATIONS + "custom-properties", "/other/custom.xml"), (RELATIONS + "extended-properties", "other/app.xml"),
        (RELATIONS + "officeDocument", "main/part.xml")], [
        ("other/app.xml", EXTENDED.format("http://schemas.openxmlformats.org/officeDocument/2006/extended-properties")),
        ("other/custom.xml", CUSTOM.encode("utf-16"))])


def docx_strict():
    core = ('<!DOCTYPE c [<!ENTITY e "<no>">]><!-- >>> --><c:coreProperties '
            'xmlns:c="http://schemas.openxmlformats.org/package/2006/metadata/core-properties" '
            'xmlns:t="http://purl.org/dc/elements/1.1/" xmlns:d="http://purl.org/dc/terms/">'
            '<t:title><![CDATA[A <raw> ]] title]]> &amp; more &e; &#0;</t:title><title>no namespace</title>'
            '<t:creator/><d:created>2024-02-30T00:00:00Z</d:created><d:modified>2024-05-06T07:08:09Z</d:modified>'
            '<c:keywords>a <c:value>b</c:value></c:keywords></c:coreProperties>')
    return ooxml("application/vnd.openxmlformats-officedocument.wordprocessingml.template.main+xml", [
        (STRICT + "officeDocument", "/main/part.xml"), (STRICT + "extendedProperties", "/a.xml"),
        ("http://schemas.openxmlformats.org/package/2006/relationships/metadata/core-properties", "/c.xml")], [
        ("a.xml", EXTENDED.format("http://purl.oclc.org/ooxml/officeDocument/extendedProperties")),
        ("c.xml", core)])


def ooxml_damaged():
    return ooxml("application/vnd.openxmlformats-officedocument.spreadsheetml.sheet.main+xml", [
        (RELATIONS + "officeDocument", "main/part.xml"), (RELATIONS + "metadata/core-properties", "core.xml"),
        (RELATIONS + "extended-properties", "app.xml")], [
        ("core.xml", '<c:coreProperties xmlns:c="x" xmlns:t="http://purl.org/dc/elements/1.1/"><t:title>Kept</t:title>'
                     '<t:creator>Lost</t:title>'),
        ("app.xml", EXTENDED.format("http://schemas.openxmlformats.org/officeDocument/2006/extended-properties"))])


def odt_encrypted():
    return archive([("mimetype", "application/vnd.oasis.opendocument.text"), ("meta.xml", b"\x93\x00enciphered"),
                    ("META-INF/manifest.xml",
                     '<m:manifest xmlns:m="urn:oasis:names:tc:opendocument:xmlns:manifest:1.0"><m:file-entry '
                     'm:full-path="meta.xml"><m:encryption-data/></m:file-entry></m:manifest>')])


HTML = """<!-- saved from nowhere <title>no</title> -->
<?xml version="1.0"?>
<!DOCTYPE html>
<HTML lang=de-AT>
<head>
<meta http-equiv="Content-Type" content="text/html; charset=windows-1252">
<script>document.write("<title>no</title>")</script><style>a:after { content: "<meta name=author content=no>" }</style>
<title> The title\n &mdash; &uuml;ber &#8364; &#x1F600; &#150; &AMP; &nosuch; ü </title>
<META NAME='Author' CONTENT='Ana "the" Bo'><meta name=keywords content=one>
<meta name="dc.title" content="not this"><meta property="og:description" content="prefixed">
<meta name="description" content="plain\n&lt;second line&gt;"><meta name="DC.Subject" content="a subject">
<meta content="Maker 1.0" name="generator" /><meta name=copyright content="&copy; ACME">
<meta name="date" content="Mon, 6 May 2024 07:08:09 +0200"><meta name="last-modified" content="2024-05-07">
<meta name="dcterms.created" content="1999"><meta name="viewport" content="width=device-width">
<meta name="keywords" content="two"><meta name="empty" content=""><meta charset="utf-8">
</head><body><title>no</title></body></html>"""


def message(kind):
    from email.header import Header
    from email.message import EmailMessage
    from email.policy import SMTP

    mail = EmailMessage(policy=SMTP)
    mail["Received"] = "from b.example by a.example id 1; Mon, 6 May 2024 07:08:20 +0000 (UTC)"
    mail["Received"] = "from c.example by b.example id 2; Mon, 6 May 2024 07:08:15 +0000"
    mail["Subject"] = "Ein langer Betreff mit Umlauten, öäü, und 日本語, der auf mehrere Zeilen umbrochen werden muss"
    mail["From"] = '"Łukasz, Ana" <ana@example.com>'
    mail["To"] = "Bob <bob@example.com>, carla@example.com, Team: dora@example.com, Emil <emil@example.com>;"
    mail["Cc"] = "Zoë <zoe@example.com>"
    mail["Date"] = "Mon, 06 May 2024 09:08:09 +0200"
    mail["Message-ID"] = "<1234@example.com>"
    mail["Keywords"], mail["Comments"], mail["Organization"] = "one, two", "Größe\tzählt", "ACME"
    mail["User-Agent"], mail["X-Mailer"] = "Maker/1.0", "other"
    mail.set_content("Text\n")
    mail["Content-Language"] = "de"
    data = mail.as_bytes()
    return data if kind == "smtp" else b"From ana@example.com Mon May  6 07:08:09 2024\n" + data.replace(b"\r\n", b"\n")


MAIL = b"""Return-Path: <a@example.com>
Subject: =?utf-8?B?w7bDpA==?= =?UTF-8*de?q?=C3?=
 =?utf-8?Q?=BC_x?= plain =?x-unknown?Q?stays?= =?utf-8?B?!!?= =?iso-8859-1?q?=E9=zz?= =?broken
From : ana@example.com (Ana (the first) B\\)), "Unended <b@example.com
To: =?koi8-r?B?4s/C?= <bob@example.com>, ,<c@example.com>;, Only A Name
X-Mailer: \xc3\xbc and \xfc
Not a field
Date: 6 May 24 07:08 EST
"""

FIXTURES = {
    "html-all": lambda: HTML.encode("latin-1"),
    "html-utf16": lambda: "\ufeff  <html><head><title>日本 &yen;</title>".encode("utf-16-be"),
    "html-utf8": lambda: '<title></title><meta name=dc.title content="Größe"><body><title>no'.encode(),
    "html-cut": lambda: b"<!doctype html><title>Kept</title><meta name=author content='Lost",
    "html-none": lambda: b"<?xml version='1.0'?><!-- html --><svg><title>no</title></svg>",
    "mail-python": lambda: message("smtp"), "mail-mbox": lambda: message("mbox"), "mail-words": lambda: MAIL,
    "mail-none": lambda: b"Title: no mail\nAuthor: nobody\n\nTo: nobody\n",
    "docx-python": docx, "docx-strict": docx_strict, "pptx-macro": pptx_macro, "ooxml-damaged": ooxml_damaged,
    "xlsx-openpyxl": xlsx, "odt-odfpy": odt, "odt-encrypted": odt_encrypted,
    "ods-odfpy": lambda: odt("table", "OpenDocumentSpreadsheet"),
    "odp-odfpy": lambda: odt("talk", "OpenDocumentPresentation"),
    "zip-plain": lambda: archive([("a.txt", "no document")]),
}


def main(names):
    for name, make in FIXTURES.items():
        target = FOLDER / f"{name}.in"
        if name in names or (not names and not target.exists()):
            target.write_bytes(make())
            print(target.relative_to(FOLDER), target.stat().st_size)


if __name__ == "__main__":
    main(sys.argv[1:])
