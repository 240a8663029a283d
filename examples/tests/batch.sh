# Many files:
#   sequential  all samples and two bad files, one after the other
#   threads     the same on four threads
#   unfit       arguments that are refused

# rewrites OPTION... takes the samples and two bad files through the program. m-broken.pdf ends in its
# first object; a folder stands where m-taken.pdf shall be written.
# Both stand in the middle, are reported and leave no target; all others come out as rewrite does it.
# Where the import is built, m-moved.pdf is there too: it is repaired, which the log tells by its name.
rewrites() {
    head -c 100 "$samples/typeset-report.pdf" >"$work/m-broken.pdf"
    cp "$samples/plain-2pages.pdf" "$work/m-taken.pdf"
    mkdir -p "$work/folder/m-taken.pdf"
    ! has_import || sed 's/^xref/moved by a line\n&/' "$samples/plain-2pages.pdf" >"$work/m-moved.pdf"
    set -- "$@" "$work/folder"
    for sample in "$samples"/[a-l]*.pdf "$work"/m-*.pdf "$samples"/[m-z]*.pdf; do
        set -- "$@" "$sample"
    done
    status 1 "$programs/batch" --canonical "$@"

    total=$(find "$samples"/*.pdf "$work"/m-*.pdf | wc -l)
    number=0
    while read -r place name result; do
        [ "$place" = "$total" ] && break # the summary
        number=$((number + 1))
        [ "$place" = "[$number/$total]" ] || fail "$place is not [$number/$total]"
        wanted=ok
        case $name in
        m-broken.pdf:) wanted="error [0-9]* .*: $work/m-broken.pdf" ;;
        m-taken.pdf:) wanted="error 34052 (0x8504): .*: $work/folder/m-taken.pdf: it is a folder; " ;;
        esac
        printf '%s\n' "$result" | grep -q "^$wanted" || fail "$name $result"
    done <"$work/out"
    [ "$number" -eq "$total" ] || fail "$number files of $total: $(cat "$work/out")"
    [ "$(tail -n 1 "$work/out")" = "$total files: $((total - 2)) ok, 2 failed" ] ||
        fail "the summary is another: $(cat "$work/out")"
    ! has_import || grep -q '^m-moved.pdf: .' "$work/err" || fail "the log does not name it: $(cat "$work/err")"
    grep -q '^browser-print.pdf: warning: fractions lose ' "$work/err" || fail "nothing lost is told"
    [ "$(grep -v ': warning: ' "$work/err" | grep -cv '^m-')" -eq 0 ] ||
        fail "others failed: $(cat "$work/err")"

    for sample in "$samples"/*.pdf; do
        "$programs/rewrite" --canonical "$sample" "$work/wanted.pdf"
        cmp "$work/wanted.pdf" "$work/folder/${sample##*/}" || fail "$sample came out as another"
    done
    [ "$(find "$work/folder" -type f | wc -l)" -eq $((total - 2)) ] || fail "files: $(ls -a "$work/folder")"
}

test_sequential() {
    rewrites
    sed -n 's/^\[.*\] \(.*\): .*/\1/p' "$work/out" >"$work/names"
    sort -c "$work/names" || fail "not in the order they were given"
}

test_threads() {
    rewrites -j 4
}

test_unfit() {
    status 0 "$programs/batch" -j 9 "$work/a/b" "$samples/letterhead.pdf"
    [ -f "$work/a/b/letterhead.pdf" ] || fail "the folder was not made"
    refuses "$programs/batch" <<ROWS
2 usage:
2 usage: $work/folder
2 usage: -j
2 usage: -j 0 $work/folder $samples/letterhead.pdf
2 usage: -j 257 $work/folder $samples/letterhead.pdf
2 usage: -j x $work/folder $samples/letterhead.pdf
2 usage: $work/folder --flate $samples/letterhead.pdf
2 batch:.two.files.are.named.letterhead.pdf $work/folder $samples/letterhead.pdf $work/letterhead.pdf
ROWS
    [ ! -e "$work/folder" ] || fail "refused, and yet a folder was made"
    echo file >"$work/file"
    status 1 "$programs/batch" "$work/file" "$samples/letterhead.pdf"
    grep -q '^error 34049 ' "$work/err" || fail "a file for a folder: $(cat "$work/err")"
}
