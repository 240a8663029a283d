#!/bin/sh
# usage: run_pages_test.sh CASE PROGRAMS SAMPLE WORK
# One test of the example programs that the pages show, in the folder WORK:
#   quick_start    SAMPLE, whose Info entry is a reference, gets a title
#   custom_stripe  SAMPLE is opened and written in storage, as rewrite does it with files
set -eu

programs=$2
sample=$3
work=$4

fail() {
    echo "FAILED: $*" >&2
    exit 1
}

test_quick_start() {
    "$programs/quick_start" "$sample" "$work/out.pdf" 'A (new) title'
    LC_ALL=C grep -aqF '/Title (A \(new\) title)' "$work/out.pdf" || fail "the title is not there"
    "$programs/inspect" "$sample" >"$work/before"
    "$programs/inspect" "$work/out.pdf" >"$work/after"
    cmp "$work/before" "$work/after" || fail "more than the title has changed"
    if "$programs/quick_start" "$work/missing.pdf" "$work/never.pdf" title 2>"$work/err"; then
        fail "a missing file got a title"
    fi
    grep -q '^error 34049 ' "$work/err" || fail "not said why: $(cat "$work/err")"
    [ ! -e "$work/never.pdf" ] || fail "there is a result without an input"
}

test_custom_stripe() {
    "$programs/rewrite" "$sample" "$work/wanted.pdf"
    "$programs/custom_stripe" "$sample" "$work/out.pdf"
    cmp "$work/wanted.pdf" "$work/out.pdf" || fail "storage gives another document"
}

rm -rf "$work"
mkdir -p "$work"
"test_$1"
