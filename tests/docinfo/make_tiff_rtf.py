#!/usr/bin/env python3
"""Makes the TIFF and RTF fixtures: make_tiff_rtf.py FOLDER. Needs ghostscript and tiffset (libtiff-tools)."""
import struct
import subprocess
import sys
from pathlib import Path

folder = Path(sys.argv[1])


def write(name, data):
    (folder / f"{name}.in").write_bytes(data)


# Two pages by ghostscript, tags by tiffset.
pages = folder / "tiff-tiffset.in"
subprocess.run(["gs", "-q", "-dBATCH", "-dNOPAUSE", "-sDEVICE=tiffg4", "-r9", f"-sOutputFile={pages}", "-c",
                "<< /PageSize [72 72] >> setpagedevice showpage showpage"], check=True)
for tag, text in (("269", "Überschrift"), ("315", "An Artist"), ("306", "2005:03:14 13:01:01"),
                  ("33432", "(c) us"), ("270", "Line 1\nLine 2")):
    subprocess.run(["tiffset", "-s", tag, text, pages], check=True)


def tiff(order, big, first, exif=(), pages=1, circle=False):
    """Directories one after the other, each before what its entries point to."""
    number, count, size = ("Q", "Q", 8) if big else ("I", "H", 4)
    out = bytearray({"<": b"II", ">": b"MM"}[order] + struct.pack(order + "H", 43 if big else 42))
    out += struct.pack(order + "HHQ", 8, 0, 16) if big else struct.pack(order + "I", 8)

    def directory(entries, following):
        at = len(out)
        head = struct.calcsize("=" + count) + len(entries) * (4 + 2 * size) + size
        data, body = b"", struct.pack(order + count, len(entries))
        for tag, kind, value in entries:
            if isinstance(value, int):
                body += struct.pack(order + "HH" + number + number, tag, kind, 1, value)
                continue
            body += struct.pack(order + "HH" + number, tag, kind, len(value))
            if len(value) <= size:
                body += value.ljust(size, b"\0")
            else:
                body += struct.pack(order + number, at + head + len(data))
                data += value
        end = at + head + len(data)
        out.extend(body + struct.pack(order + number, following(at, end)) + data)
        return at

    entries = list(first)
    if exif:
        # Its position is known once the first directory's size is: it comes right after that.
        probe = bytearray(out)
        directory(sorted(entries + [(34665, 4, 0)]), lambda at, end: 0)
        position = len(out)
        out[:] = probe
        entries.append((34665, 4, position))
        exif_size = (8 if big else 2) + len(exif) * (4 + 2 * size) + size + sum(
            len(value) for _, _, value in exif if len(value) > size)
        begin = directory(sorted(entries), lambda at, end: end + exif_size if pages > 1 else 0)
        directory(list(exif), lambda at, end: 0)
    else:
        begin = directory(sorted(entries), lambda at, end: end if pages > 1 else 0)
    for page in range(1, pages):
        last = page == pages - 1
        directory([(256, 3, 1)], lambda at, end: (begin if circle else 0) if last else end)
    return bytes(out)


wide = lambda text: (text + "\0").encode("utf-16le")
named = [(40091, 1, wide("Fenster 😀")), (269, 2, b"plain\0"), (40092, 1, wide("said")), (40093, 1, wide("A")),
         (40094, 1, wide("k1;k2")), (40095, 1, wide("Thema")), (305, 2, b"Made by\0"), (315, 2, b"Ren\xe9\0"),
         (33432, 2, b"Photo: one\0Text: two\0"), (306, 2, b"2005:03:14 13:01:01\0")]
write("tiff-big-endian", tiff(">", False, named, [(36867, 2, b"2004:02:29 00:00:00\0")], pages=3))
write("tiff-large", tiff("<", True, named, [(36867, 2, b"0000:00:00 00:00:00\0")], pages=2))
write("tiff-circle", tiff("<", False, [(270, 2, b"abc\0"), (269, 2, b"x" * 9)], pages=4, circle=True))

write("rtf-all", rb"""{\rtf1\ansi\ansicpg1251\deff0{\fonttbl{\f0\fnil\fcharset204 Arial;}}{\colortbl;\red0\green0\blue0;}
{\stylesheet{\s0 Normal;}{\s1 {\title not here} heading;}}{\*\generator Writer 1.2;}
{\info{\title \'ce\'f2\'f7\'b8\'f2 \u8364? {\b bold}{\*\unknown gone} {\uc2\u-10179\'81\'82\u-8704xx}.}{\subject \ldblquote S\rdblquote\~x}
{\author \u1048 ?\u1074 ?\u1072 ?\u1085 ?}{\manager M}{\company C \{x\}}{\operator O\_p}{\category Cat}{\keywords a, b}
{\comment short}{\doccomm Line 1\line Line 2}{\version7}{\creatim\yr2005\mo3\dy14\hr13\min1\sec1}{\revtim\yr2006\mo4\dy15}
{\printim\yr2006\mo13\dy1}{\edmins3}{\nofpages12}{\nofwords345}{\nofchars-1}{\*\nofcharsws 5}{\vern59}}
{\*\userprops {\propname Owner}\proptype30{\staticval Us}{\linkval no}{\propname Count}\proptype3{\staticval 42}
{\propname Ready}\proptype11{\staticval 1}{\propname Day}\proptype64{\staticval 2005-03-14}}
\pard Body \par {\info{\title late}}}""")
write("rtf-japanese", rb"{\rtf1\ansi\ansicpg932{\info{\title \'93\'fa\'96\'7b}{\author A\bin4 {}}{B}}x\par}")
write("rtf-late", rb"{\rtf1\mac text\par{\info{\title after the first paragraph}}}")
write("rtf-cut", rb"{\rtf1{\info{\title whole}{\author half")
