#!/bin/bash
# completion_test.sh COMPLETION PROGRAM...: what bash offers for words of prof's command line; the last word is
# the one that is typed. PROGRAM is how prof is started.
set -u
completion=$1
shift
program=("$@")
prof() { "${program[@]}" "$@" | tr -d '\r'; }
source "$completion"

errors=$(mktemp)
trap 'rm -f "$errors"' EXIT
failed=0
offers() { # offers EXPECTED WORD...
    local expected=$1
    shift
    COMP_WORDS=(prof "$@") COMP_CWORD=$# COMPREPLY=()
    _prof 2>"$errors"
    if [[ "${COMPREPLY[*]}" != "$expected" || -s $errors ]]; then
        echo "prof $*: '${COMPREPLY[*]}' instead of '$expected'; $(cat "$errors")"
        failed=1
    fi
}

offers "show set" s
offers "--type" get x.prf --t
offers "int int64" get x.prf --type i
offers "text" convert a b --form t
offers "--only-new" merge a b --on
offers "" get x.prf Window
offers "--ini" show "a\\[b/c d.prf" --in
exit $failed
