#!/bin/sh
# Makes the modules and debug files that the tests of names and lines read, in this folder.
set -eu
cd "$(dirname "$0")"
link="-shared -nostdlib -Wl,--image-base=0x10000000 -Wl,--entry=_SampleEntry@12 -Wl,--kill-at -Wl,--no-insert-timestamp"

split() { # MODULE DEBUG-FILE
    i686-w64-mingw32-objcopy -p --only-keep-debug "$1" "$2"
    i686-w64-mingw32-strip -p --strip-all "$1"
    i686-w64-mingw32-objcopy -p --add-gnu-debuglink="$2" "$1"
}

for version in 2 3 4 5; do
    i686-w64-mingw32-g++-posix -O1 -gdwarf-$version -gstrict-dwarf -gno-as-loc-support -ffile-prefix-map="$PWD"=/sample $link \
        sample.cpp -o sample.dll
    split sample.dll sample-$version.debug
done
# Another compiler, which does not list the addresses of its units.
clang++ --target=i686-w64-windows-gnu -O1 -gdwarf-4 -ffile-prefix-map="$PWD"=/sample -c sample.cpp -o unlisted.obj
i686-w64-mingw32-g++-posix $link unlisted.obj -o unlisted.dll
rm unlisted.obj
