#!/bin/sh
# usage: run_batch_test.sh CASE PROGRAMS SAMPLES WORK
# One test of the example program for many files, in the folder WORK:
#   sequential  all samples and two bad files, one after the other
#   threads     the same on four threads
#   unfit       arguments that are refused
set -eu
LC_ALL=C
export LC_ALL

programs=$2
samples=$3
work=$4

fail() {
    echo "FAILED: $*" >&2
    exit 1
}

# status WANTED COMMAND... runs the command, whose output lands in $work/report and $work/log.
status() {
    wanted=$1
    shift
    got=0
    "$@" >"$work/report" 2>"$work/log" || got=$?
    [ "$got" -eq "$wanted" ] || fail "$* gave $got instead of $wanted: $(cat "$work/log")"
}

# rewrites OPTION... takes the samples and two bad files through the program. Of m-broken.pdf an
# object cannot be read; m-lost.pdf has a text that is not kept, so that its rewrite does not open.
# Both stand in the middle, are reported and leave no target; all others come out as rewrite does it.
rewrites() {
    sed 's/^4 0 obj/4 0 obx/' "$samples/typeset-report.pdf" >"$work/m-broken.pdf"
    sed 's/(anonymous)/(\\134danon)/' "$samples/plain-2pages.pdf" >"$work/m-lost.pdf"
    set -- "$@" "$work/out"
    for sample in "$samples"/[a-l]*.pdf "$work"/m-*.pdf "$samples"/[m-z]*.pdf; do
        set -- "$@" "$sample"
    done
    status 1 "$programs/batch" "$@"

    total=$(($(find "$samples" -name '*.pdf' | wc -l) + 2))
    number=0
    while read -r place name result; do
        [ "$place" = "$total" ] && break # the summary
        number=$((number + 1))
        [ "$place" = "[$number/$total]" ] || fail "$place is not [$number/$total]"
        wanted=ok
        case $name in m-*) wanted='error 1287 (0x507): ' ;; esac
        case $result in
        "$wanted"*) ;;
        *) fail "$name $result" ;;
        esac
    done <"$work/report"
    [ "$number" -eq "$total" ] || fail "$number files of $total: $(cat "$work/report")"
    [ "$(tail -n 1 "$work/report")" = "$total files: $((total - 2)) ok, 2 failed" ] ||
        fail "the summary is another: $(cat "$work/report")"
    for name in m-broken.pdf m-lost.pdf; do
        grep -q "^$name: Failed" "$work/log" || fail "the log does not name $name: $(cat "$work/log")"
    done
    [ "$(grep -cv '^m-' "$work/log")" -eq 0 ] || fail "others failed: $(cat "$work/log")"

    for sample in "$samples"/*.pdf; do
        "$programs/rewrite" "$sample" "$work/wanted.pdf"
        cmp "$work/wanted.pdf" "$work/out/${sample##*/}" || fail "$sample came out as another"
    done
    [ "$(find "$work/out" -type f | wc -l)" -eq $((total - 2)) ] || fail "files: $(ls -a "$work/out")"
}

test_sequential() {
    rewrites
    sed -n 's/^\[.*\] \(.*\): .*/\1/p' "$work/report" >"$work/names"
    sort -c "$work/names" || fail "not in the order they were given"
}

test_threads() {
    rewrites -j 4
}

test_unfit() {
    status 0 "$programs/batch" -j 9 "$work/a/b" "$samples/letterhead.pdf"
    [ -f "$work/a/b/letterhead.pdf" ] || fail "the folder was not made"
    while read -r said arguments; do
        # shellcheck disable=SC2086 # the arguments are words
        status 2 "$programs/batch" $arguments
        grep -q "^$said" "$work/log" || fail "$arguments: $(cat "$work/log")"
    done <<ROWS
usage:
usage: $work/out
usage: -j
usage: -j 0 $work/out $samples/letterhead.pdf
usage: -j 257 $work/out $samples/letterhead.pdf
usage: -j x $work/out $samples/letterhead.pdf
usage: $work/out --flate $samples/letterhead.pdf
batch:.two.files.are.named.letterhead.pdf $work/out $samples/letterhead.pdf $work/letterhead.pdf
ROWS
    [ ! -e "$work/out" ] || fail "refused, and yet a folder was made"
    echo file >"$work/file"
    status 1 "$programs/batch" "$work/file" "$samples/letterhead.pdf"
    grep -q '^error 34049 ' "$work/log" || fail "a file for a folder: $(cat "$work/log")"
}

rm -rf "$work"
mkdir -p "$work"
"test_$1"
