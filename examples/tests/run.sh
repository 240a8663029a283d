#!/bin/sh
# usage: run.sh GROUP CASE PROGRAMS SAMPLES WORK [SAMPLE]
# One test of the example programs in PROGRAMS, in the folder WORK: the CASE of the file GROUP.sh
# beside this one, a function that may use what follows.
set -eu
LC_ALL=C
export LC_ALL

group=$1
case_name=$2
programs=$3
samples=$4
work=$5
sample=${6:-}

# Whether the programs were built with the import.
has_import() {
    [ -x "$programs/normalise" ]
}

fail() {
    echo "FAILED: $*" >&2
    exit 1
}

same() {
    cmp -s "$1" "$2" || fail "$1 and $2 differ"
}

# status WANTED COMMAND... runs the command, whose output lands in $work/out and $work/err.
status() {
    wanted=$1
    shift
    got=0
    "$@" >"$work/out" 2>"$work/err" || got=$?
    [ "$got" -eq "$wanted" ] || fail "$* gave $got instead of $wanted: $(cat "$work/err")"
}

# reports CODE HEX checks that the program that ran last printed one error line, of this code.
reports() {
    [ "$(grep -c '^error ' "$work/err")" -eq 1 ] || fail "error lines: $(cat "$work/err")"
    grep -Eq "^error $1 \(0x$2\): [^ ].*\$" "$work/err" || fail "not $1: $(cat "$work/err")"
    [ ! -s "$work/out" ] || fail "something on standard output beside error $1"
}

# refuses COMMAND... runs it once for each line of standard input, "STATUS SAID ARGUMENT...", with
# the arguments behind its own: it ends with that status, says that, and leaves $work/target.pdf.
refuses() {
    echo mine >"$work/target.pdf"
    while read -r wanted said arguments; do
        # shellcheck disable=SC2086 # the arguments are words
        status "$wanted" "$@" $arguments
        grep -q "^$said" "$work/err" || fail "$arguments: $(cat "$work/err")"
        [ "$(cat "$work/target.pdf")" = mine ] || fail "$arguments: the target was written"
    done
}

rm -rf "$work"
mkdir -p "$work"
. "$(dirname "$0")/$group.sh"
"test_$case_name"
