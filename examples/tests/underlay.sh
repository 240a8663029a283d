# Pages beneath others:
#   modes   which page gets which, drawn first, from one stream
#   unfit   arguments and documents that are refused

# contents FILE prints the content streams of each page, by their object numbers.
contents() {
    grep -ao '/Contents [^/]*' "$1" | sed 's/ 0 R//g; s/ *$//'
}

# The pages have the content streams 4, 9 and 13; those of the foreign document become 24 and up.
test_modes() {
    while IFS='|' read -r mode wanted; do
        "$programs/underlay" "$mode" "$samples/vector-text-3pages.pdf" \
            "$samples/plain-2pages.pdf" "$work/out.pdf"
        got=$(contents "$work/out.pdf" | tr '\n' ';')
        [ "$got" = "$wanted" ] || fail "mode $mode: $got"
    done <<ROWS
0|/Contents [ 23 4 ];/Contents 9;/Contents 13;
1|/Contents [ 25 4 ];/Contents [ 25 9 ];/Contents [ 25 13 ];
2|/Contents [ 24 4 ];/Contents [ 25 9 ];/Contents 13;
3|/Contents [ 25 4 ];/Contents [ 26 9 ];/Contents [ 26 13 ];
ROWS
    "$programs/streams" "$samples/plain-2pages.pdf" 9 0 >"$work/wanted"
    "$programs/streams" "$work/out.pdf" 26 0 >"$work/got"
    cmp "$work/wanted" "$work/got" || fail "the copied stream is another"
    "$programs/inspect" "$work/out.pdf" >"$work/facts"
    grep -qx 'pages 3' "$work/facts" || fail "pages: $(cat "$work/facts")"
}

test_unfit() {
    cd "$samples"
    refuses "$programs/underlay" <<ROWS
2 usage: 1 letterhead.pdf $work/target.pdf
2 usage: 4 letterhead.pdf letterhead.pdf $work/target.pdf
2 usage: first letterhead.pdf letterhead.pdf $work/target.pdf
1 error.34049 1 letterhead.pdf missing.pdf $work/target.pdf
1 error.34049 1 missing.pdf letterhead.pdf $work/target.pdf
1 error.33859 1 plain-2pages.pdf vector-text-3pages.pdf $work/target.pdf
ROWS
    grep -q '^A resource already exists with name ' "$work/err" || fail "no clash: $(cat "$work/err")"
}
