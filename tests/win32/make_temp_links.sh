#!/bin/sh
# Makes FOLDER/tvUT22 with what only the host can make for temp_files_test: links, and a folder of another owner.
set -eu
rm -rf "$1"
mkdir -p "$1/target" "$1/tvUT22/1-1/sub" "$1/tvUT22/2-2"
touch "$1/target/keep" "$1/target/~lock" "$1/tvUT22/1-1/a" "$1/tvUT22/1-1/~lock" "$1/tvUT22/2-2/a" "$1/tvUT22/2-2/~lock"
ln -s ../../../target "$1/tvUT22/1-1/sub/link"
ln -s ../target "$1/tvUT22/3-3"
chown -R nobody "$1/tvUT22/2-2"
