#!/usr/bin/env python3
"""Packs a folder into a ZIP archive, with a SHA-256 file beside it: make_zip.py FOLDER ARCHIVE

Equal files make an equal archive, whenever and wherever: they are packed in the order of their names, and each
bears the time in SOURCE_DATE_EPOCH, else that of the commit, else the first that the format knows. What cmake -E
tar and cpack write holds times of access, and files in the disk's order.
"""
import hashlib
import os
import subprocess
import sys
import time
import zipfile
from pathlib import Path

EARLIEST = 315532800  # 1980-01-01


def commit_time():
    log = subprocess.run(["git", "-C", Path(__file__).parent, "log", "-1", "--format=%ct"],
                         capture_output=True, text=True)
    return log.stdout.strip()


def main():
    folder, archive = (Path(argument) for argument in sys.argv[1:])
    seconds = int(os.environ.get("SOURCE_DATE_EPOCH") or commit_time() or EARLIEST)
    stamp = time.gmtime(max(seconds, EARLIEST))[:6]
    archive.parent.mkdir(parents=True, exist_ok=True)
    with zipfile.ZipFile(archive, "w") as package:
        for file in sorted(path for path in folder.rglob("*") if path.is_file()):
            entry = zipfile.ZipInfo(str(file.relative_to(folder.parent)), stamp)
            entry.external_attr = 0o100644 << 16
            package.writestr(entry, file.read_bytes(), zipfile.ZIP_DEFLATED)
    digest = hashlib.sha256(archive.read_bytes()).hexdigest()
    Path(f"{archive}.sha256").write_text(f"{digest}  {archive.name}\n", encoding="ascii")


if __name__ == "__main__":
    main()
