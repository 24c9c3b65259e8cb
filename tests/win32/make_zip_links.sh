#!/bin/sh
# Makes FOLDER with what only the host can make for zip_test: a link in a folder that archives are unpacked into.
set -eu
rm -rf "$1"
mkdir -p "$1/into" "$1/outside"
touch "$1/outside/keep"
ln -s ../outside "$1/into/link"
