#!/usr/bin/env python3
"""Makes the PDF fixtures: make_pdf.py FOLDER. Needs qpdf and ghostscript.

Two documents are written by hand, byte by byte; qpdf and ghostscript make the others of them.
"""
import re
import subprocess
import sys
import tempfile
from pathlib import Path

folder = Path(sys.argv[1])

XMP = """<?xpacket begin="\ufeff" id="W5M0MpCehiHzreSzNTczkc9d"?>
<x:xmpmeta xmlns:x="adobe:ns:meta/"><rdf:RDF xmlns:rdf="http://www.w3.org/1999/02/22-rdf-syntax-ns#">
<rdf:Description rdf:about="" xmlns:q="http://ns.adobe.com/pdf/1.3/" q:Producer="Packet producer" q:Keywords="k1"/>
<rdf:Description rdf:about="" xmlns:dc="http://purl.org/dc/elements/1.1/" xmlns:xmp="http://ns.adobe.com/xap/1.0/">
<dc:title><rdf:Alt><rdf:li xml:lang="de">Titel</rdf:li><rdf:li xml:lang="x-default">Packet title</rdf:li></rdf:Alt></dc:title>
<dc:creator><rdf:Seq><rdf:li>First A.</rdf:li><rdf:li>Second B.</rdf:li></rdf:Seq></dc:creator>
<dc:subject><rdf:Bag><rdf:li>k1</rdf:li><rdf:li>k2</rdf:li></rdf:Bag></dc:subject>
<dc:language><rdf:Bag><rdf:li>fr</rdf:li></rdf:Bag></dc:language>
<xmp:CreateDate>2001-02-03T04:05:06+07:00</xmp:CreateDate><xmp:ModifyDate>2002</xmp:ModifyDate>
</rdf:Description></rdf:RDF></x:xmpmeta><?xpacket end="w"?>""".encode()

INFO = (rb"/Title <FEFF00DC0062006500720020D83DDE00> /Author (Ren\351 \(\\\n A.\)) /Creator (\357\273\277\303\251)"
        rb" /CreationDate (D:20050314130101+01'30') /ModDate (D:20051399) /Trapped /False /Own#20Key (own \2021)"
        rb" /Subject 6 0 R /Number 12")

OBJECTS = {
    1: b"<< /Type /Catalog /Pages 2 0 R /Metadata 5 0 R /Lang (en-GB) >>",
    2: b"<< /Type /Pages /Kids [3 0 R] /Count 1 >>",
    3: b"<< /Type /Page /Parent 2 0 R /MediaBox [0 0 72 72] >>",
    4: b"<< " + INFO + b" >>",
    5: b"<< /Type /Metadata /Subtype /XML /Length %d >>\nstream\n%s\nendstream" % (len(XMP), XMP),
    6: b"(by itself)",
}


def table(places):
    """A table of cross references; object 0 and those that are missing are free."""
    lines = b"xref\n0 %d\n" % (max(places) + 1)
    for number in range(max(places) + 1):
        lines += b"%010d 00000 n \n" % places[number] if number in places else b"0000000000 65535 f \n"
    return lines


def document(objects, trailer=b"/Info 4 0 R", before=b"", shift=0):
    text, places = before + b"%PDF-1.5\n%\xe2\xe3\xcf\xd3\n", {}
    for number, body in objects.items():
        places[number] = len(text) - shift
        text += b"%d 0 obj\n%s\nendobj\n" % (number, body)
    start = len(text) - shift
    return text + table(places) + b"trailer\n<< /Size %d /Root 1 0 R %s >>\nstartxref\n%d\n%%%%EOF\n" % (
        max(places) + 1, trailer, start)


def write(name, text):
    (folder / f"pdf-{name}.in").write_bytes(text)


def qpdf(name, *arguments, source="plain"):
    subprocess.run(["qpdf", "--static-id", "--static-aes-iv", *arguments, folder / f"pdf-{source}.in",
                    folder / f"pdf-{name}.in"], check=True)


plain = document(OBJECTS)
start = plain.rindex(b"xref\n", 0, plain.rindex(b"startxref"))
write("plain", plain)
write("shifted", document(OBJECTS, before=b"junk\n", shift=5))
write("unshifted", document(OBJECTS, before=b"junk\n"))
write("circle", document(OBJECTS, b"/Info 4 0 R /Prev %d" % start))
write("no-info", document(OBJECTS, b""))
write("not-one", b"<html><title>About %PDF- files</title>")

# A new Info at the end, the rest by /Prev.
at = len(plain)
update = plain + b"4 0 obj\n<< /Title (Newer) >>\nendobj\n"
write("incremental", update + b"xref\n4 1\n%010d 00000 n \ntrailer\n<< /Size 7 /Root 1 0 R /Info 4 0 R /Prev %d >>\n"
      b"startxref\n%d\n%%%%EOF\n" % (at, start, len(update)))

# An object that only readers of streams see.
at = len(plain)
hybrid = plain + b"7 0 obj\n<< /Title (Hidden) >>\nendobj\n"
stream_at = len(hybrid)
hybrid += (b"8 0 obj\n<< /Type /XRef /Size 9 /W [1 4 0] /Index [7 1] /Root 1 0 R /Length 5 >>\nstream\n"
           + b"\1" + at.to_bytes(4, "big") + b"\nendstream\nendobj\n")
write("hybrid", hybrid + b"xref\n7 1\n0000000000 00000 f \ntrailer\n<< /Size 9 /Root 1 0 R /Info 7 0 R /Prev %d"
      b" /XRefStm %d >>\nstartxref\n%d\n%%%%EOF\n" % (start, stream_at, len(hybrid)))

qpdf("packed", "--object-streams=generate", "--compress-streams=y")
qpdf("linearized", "--object-streams=generate", "--linearize")
weak = "--allow-weak-crypto"
qpdf("r2", weak, "--encrypt", "", "owner", "40", "--")
qpdf("r3", weak, "--encrypt", "", "owner", "128", "--use-aes=n", "--")
qpdf("r4", weak, "--encrypt", "", "owner", "128", "--use-aes=y", "--cleartext-metadata", "--")
qpdf("r5", weak, "--encrypt", "", "owner", "256", "--force-R5", "--")
qpdf("r6", "--object-streams=generate", "--encrypt", "", "owner", "256", "--print=none", "--")
qpdf("locked", "--encrypt", "user", "owner", "256", "--cleartext-metadata", "--")
qpdf("locked-wholly", "--object-streams=generate", "--encrypt", "user", "owner", "256", "--")

for name in ("plain", "packed", "r6"):
    text = (folder / f"pdf-{name}.in").read_bytes()
    write(f"{name}-repaired", re.sub(rb"startxref\n\d+", b"startxref\n99", text))
# Info is not where it should be.
write("moved", plain.replace(b"%010d" % plain.index(b"4 0 obj"), b"0000000017"))

with tempfile.TemporaryDirectory() as work:
    page = Path(work) / "page.ps"
    page.write_bytes(b"%!\n[ /Title (Ghost \\(script\\)) /Author <FEFF0141> /DOCINFO pdfmark\nshowpage\n")
    subprocess.run(["gs", "-q", "-dBATCH", "-dNOPAUSE", "-sDEVICE=pdfwrite", "-sDocumentUUID=0",
                    f"-sOutputFile={folder / 'pdf-gs.in'}", page], check=True)
