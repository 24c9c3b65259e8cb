#!/usr/bin/env python3
"""Archives between tvut and programs that nobody here wrote: zip, unzip, 7z, bsdtar and Python's zipfile.

    programs.py --tvut "EMULATOR tvut.exe" --folder FOLDER

Each program opens what tvut packs, and tvut unpacks what each of them packs: names of all scripts, times, empty
files and folders, ciphers both ways. What zipfile makes of evil names, links and bombs is refused. Prints what differs; the exit code says whether anything does.
"""
import argparse
import io
import os
import shutil
import subprocess
import sys
import zipfile
from pathlib import Path

PASSWORD = "secret \u00e4"
FILES = {
    "plain.txt": b"plain\n" * 3000,
    "\u00e4\u00f6\u00fc \u00df.txt": b"umlauts",
    "\u304b\u306a/\u30d5\u30a1\u30a4\u30eb.txt": b"kana",
    "emoji \U0001f600/\U0001f600": b"emoji",
    "empty.txt": b"",
    "noise.bin": bytes((i * i * 2654435761 >> 13) & 0xFF for i in range(100000)),
    "a/b/c/.profile": b"dots",
    "caf\u00e9 na\u00efve (1) [2].txt": b"marks",
}
# One odd second, which DOS times cannot tell; one after 2038, which Unix times of 32 bits cannot.
TIMES = {"plain.txt": 981173105, "empty.txt": 2209032000}

faults = []


def run(*words, cwd=None, code=0, stdin=None):
    words = [str(word) for word in words]
    done = subprocess.run(words, cwd=cwd, stdin=stdin or subprocess.DEVNULL, capture_output=True, check=False)
    if code is not None and done.returncode != code:
        output = (done.stdout + done.stderr).decode(errors="replace")[-2000:]
        faults.append(f"{' '.join(words)}: exit code {done.returncode}, not {code}\n{output}")
    return done


def fresh(folder):
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    return folder


def make_tree(folder):
    for name, contents in FILES.items():
        path = folder / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(contents)
    (folder / "empty folder").mkdir()
    for name, time in TIMES.items():
        os.utime(folder / name, (time, time))


def tree_of(folder):
    return {
        str(path.relative_to(folder)): None if path.is_dir() else path.read_bytes() for path in folder.rglob("*")
    }


def compare(what, expected, found, times=1):
    """Both folders; times may differ by so many seconds, None: are not compared."""
    before, after = tree_of(expected), tree_of(found)
    if before != after:
        names = {name for name in before.keys() | after.keys() if before.get(name, 0) != after.get(name, 0)}
        faults.append(f"{what}: other contents: {sorted(names)}")
    for name in TIMES if times is not None else []:
        wanted, got = ((folder / name).stat().st_mtime if (folder / name).exists() else 0
                       for folder in (expected, found))
        if abs(wanted - got) > times:
            faults.append(f"{what}: {name} is of {got}, not of {wanted}")


def made_by_zipfile(entries, **options):
    made = io.BytesIO()
    with zipfile.ZipFile(made, "w", **options) as archive:
        for name, contents in entries:
            archive.writestr(name, contents)
    return made.getvalue()


class Checks:
    def __init__(self, tvut, folder):
        self.tvut, self.folder = tvut.split(), folder
        self.source = fresh(folder / "source")
        make_tree(self.source)
        self.password = folder / "password"
        self.password.write_text(PASSWORD, encoding="utf-8")

    def unpacked(self, name):
        return fresh(self.folder / f"by {name}")

    def ours(self, *options):
        archive = self.folder / "ours.zip"
        archive.unlink(missing_ok=True)
        run(*self.tvut, "zip", archive.name, "source", *options, cwd=self.folder)
        return archive

    def by_tvut(self, what, archive, *options, code=0, times=1):
        """Unpacks what another program has packed of the folder's contents."""
        to = self.unpacked("tvut")
        run(*self.tvut, "unzip", archive.name, "--to", to.name, *options, cwd=self.folder, code=code)
        if code == 0:
            compare(what, self.source, to, times)
        elif any(contents for contents in tree_of(to).values()):
            faults.append(f"{what}: refused, and unpacked all the same")

    def secret(self):
        return "--password-file", self.password.name

    # ---- Ours, opened by others -------------------------------------------------------------------------

    def packed_by_us(self):
        archive = self.ours()
        for name, words in {
            "unzip": ["unzip", "-q", archive, "-d"],
            "7z": ["7z", "x", "-y", archive, "-o"],
            "bsdtar": ["bsdtar", "-xf", archive, "-C"],
        }.items():
            to = self.unpacked(name)
            run(*(words[:-1] + [words[-1] + str(to)] if name == "7z" else words + [to]))
            # 7z and bsdtar know the later time of the NTFS field; unzip has 32 bits for it
            compare(f"{name} of ours", self.source, to / "source", None if name == "unzip" else 1)
        for words in (["unzip", "-tq"], ["7z", "t"], ["bsdtar", "-tf"]):
            run(*words, archive)
        with zipfile.ZipFile(archive) as opened:
            if opened.testzip():
                faults.append("zipfile: ours is damaged")
            to = self.unpacked("zipfile")
            opened.extractall(to)
        compare("zipfile of ours", self.source, to / "source", None)

    def enciphered_by_us(self):
        archive = self.ours(*self.secret())
        to = self.unpacked("7z")
        run("7z", "x", "-y", f"-p{PASSWORD}", archive, f"-o{to}")
        compare("7z of ours, enciphered", self.source, to / "source")
        run("7z", "t", "-pwrong", archive, code=2)
        run("bsdtar", "--passphrase", PASSWORD, "-xOf", archive, "source/plain.txt")

    # ---- Others', opened by us --------------------------------------------------------------------------

    def packed_by_others(self):
        archive = self.folder / "theirs.zip"
        ways = {
            "zip": ["zip", "-qr", archive, "."],
            "zip -fz": ["zip", "-qr", "-fz", archive, "."],
            "zip -0": ["zip", "-qr0", archive, "."],
            "zip to a pipe": ["sh", "-c", f"zip -qr - . | cat >'{archive}'"],
            "7z": ["7z", "a", "-tzip", archive, "."],
            "7z -mx=9": ["7z", "a", "-tzip", "-mx=9", archive, "."],
            "bsdtar": ["bsdtar", "--format", "zip", "-cf", archive, "."],
            "bsdtar to a pipe": ["sh", "-c", f"bsdtar --format zip -cf - . | cat >'{archive}'"],
        }
        for what, words in ways.items():
            archive.unlink(missing_ok=True)
            run(*words, cwd=self.source)
            self.by_tvut(what, archive)
        for what, options in {"zipfile": {}, "zipfile, deflated": {"compression": zipfile.ZIP_DEFLATED}}.items():
            with zipfile.ZipFile(archive, "w", **options) as made:
                for path in sorted(self.source.rglob("*")):
                    made.write(path, path.relative_to(self.source))
            self.by_tvut(what, archive, times=2)  # it knows DOS times alone
        with zipfile.ZipFile(archive, "w") as made:
            with made.open("large.txt", "w", force_zip64=True) as entry:
                entry.write(b"Zip64 although it is small")
        run(*self.tvut, "unzip", archive.name, "--test", cwd=self.folder)

    def enciphered_by_others(self):
        archive = self.folder / "theirs.zip"
        ways = {
            "zip -e": ["zip", "-qr", "-P", "secret", archive, "."],
            "7z ZipCrypto": ["7z", "a", "-tzip", "-psecret", "-mem=ZipCrypto", archive, "."],
            **{
                f"7z AES-{bits}": ["7z", "a", "-tzip", "-psecret", f"-mem=AES{bits}", archive, "."]
                for bits in (128, 192, 256)
            },
            "bsdtar AES-256": ["bsdtar", "--format", "zip", "--options", "zip:encryption=aes256", "--passphrase",
                               "secret", "-cf", archive, "."],
        }
        self.password.write_text("secret", encoding="utf-8")
        for what, words in ways.items():
            archive.unlink(missing_ok=True)
            run(*words, cwd=self.source)
            self.by_tvut(what, archive, *self.secret())
            self.by_tvut(what + " without password", archive, code=6)
        self.password.write_text(PASSWORD, encoding="utf-8")

    def methods_that_are_not_known(self):
        archive = self.folder / "theirs.zip"
        for method in ("Deflate64", "LZMA", "BZip2", "PPMd"):
            archive.unlink(missing_ok=True)
            run("7z", "a", "-tzip", f"-mm={method}", archive, "plain.txt", cwd=self.source)
            self.by_tvut(method, archive, code=4)

    # ---- Strangers' -------------------------------------------------------------------------------------

    def refused(self, what, contents, *options, left=()):
        """Nothing may be written outside of the target; inside of it only what is left."""
        archive, world = self.folder / "evil.zip", fresh(self.folder / "world")
        archive.write_bytes(contents)
        done = run(*self.tvut, "unzip", "../../evil.zip", "--to", "target", *options, cwd=fresh(world / "a"), code=4)
        expected = {"a", *(f"a/{name}" for name in left)}
        if set(tree_of(world)) != expected:
            faults.append(f"{what}: there is {sorted(tree_of(world))}")
        if not done.stderr:
            faults.append(f"{what}: nobody says why")

    def hostile(self):
        for name in ("../x", "..\\x", "/x", "\\x", "C:x", "C:\\x", "\\\\h\\s\\x", "a/../../x", "a/.."):
            self.refused(name, made_by_zipfile([("good", b"g"), (name, b"x")]))
        link = zipfile.ZipInfo("link")
        link.create_system, link.external_attr = 3, 0o120777 << 16
        self.refused("a link and a file through it", made_by_zipfile([(link, b".."), ("link/x", b"x")]),
                     left=("target", "target/link", "target/link/x"))
        two = made_by_zipfile([("one", b"data" * 20), ("two", b"data" * 20)])
        directory = two.find(b"PK\1\2")
        first, second = (two.find(name, directory) - 4 for name in (b"one", b"two"))  # where they say they are
        self.refused("entries at one place", two[:second] + two[first:first + 4] + two[second + 4:])
        bomb = made_by_zipfile([("zeros", b"\0" * 10_000_000)], compression=zipfile.ZIP_DEFLATED)
        self.refused("a bomb", bomb, "--limit", "1MB")
        at = bomb.find(b"PK\1\2") + 24  # the directory's word on the size
        self.refused("a bomb that lies", bomb[:at] + b"\0\1\0\0" + bomb[at + 4:], "--limit", "1MB", left=("target",))

    def many(self):
        archive = self.folder / "many.zip"
        for count in (0, 65536):
            with zipfile.ZipFile(archive, "w") as made:
                for number in range(count):
                    made.writestr(f"{number % 256}/{number}", b"")
            listed = run(*self.tvut, "list", "--json", archive.name, cwd=self.folder).stdout.count(b"\n")
            if listed != count:
                faults.append(f"zipfile: {count} entries, {listed} listed")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--tvut", required=True)
    parser.add_argument("--folder", required=True, type=Path)
    arguments = parser.parse_args()
    os.environ["LC_ALL"] = "C.UTF-8"
    checks = Checks(arguments.tvut, fresh(arguments.folder).resolve())
    for check in ("packed_by_us", "enciphered_by_us", "packed_by_others", "enciphered_by_others",
                  "methods_that_are_not_known", "hostile", "many"):
        getattr(checks, check)()
    print("\n".join(faults) or "all of them agree")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
