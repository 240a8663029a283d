# Letterheads and stamps:
#   pages   which page gets which, and where it is drawn
#   unfit   arguments and documents that are refused

# contents FILE prints how many content streams each page has.
contents() {
    grep -ao '/Contents [^/]*' "$1" | while read -r _ streams; do
        # shellcheck disable=SC2046 # the streams are words
        count $(printf '%s\n' "$streams" | grep -o '[0-9]* 0 R')
    done | tr '\n' ' ' | sed 's/ $//'
}

count() {
    echo $(($# / 3))
}

test_pages() {
    while IFS='|' read -r options each; do
        # shellcheck disable=SC2086 # the options are words
        status 0 "$programs/letterhead" $options "$samples/vector-text-3pages.pdf" \
            "$samples/plain-2pages.pdf" "$work/out.pdf"
        got=$(contents "$work/out.pdf")
        [ "$got" = "$each" ] || fail "$options: $got"
    done <<ROWS
|2 2 2
--mode 0|2 1 1
--mode 2|2 2 1
--mode 3 --above|4 4 4
--pages 2|1 2 1
--pages 1,3-3 --as-is|2 1 2
--pages 2-3 --mode 2 --above|1 4 4
ROWS
    # Its names are taken now, and it goes onto itself as well.
    status 0 "$programs/letterhead" "$work/out.pdf" "$work/out.pdf" "$work/out.pdf"
    [ "$(contents "$work/out.pdf")" = '2 5 5' ] || fail "a second time: $(contents "$work/out.pdf")"
}

test_unfit() {
    cd "$samples"
    refuses "$programs/letterhead" <<ROWS
2 usage: letterhead.pdf $work/target.pdf
2 usage: --mode 4 letterhead.pdf letterhead.pdf $work/target.pdf
2 usage: --pages 0 letterhead.pdf letterhead.pdf $work/target.pdf
2 usage: --pages 2-1 letterhead.pdf letterhead.pdf $work/target.pdf
2 usage: --pages 1, letterhead.pdf letterhead.pdf $work/target.pdf
2 usage: --pages 1- letterhead.pdf letterhead.pdf $work/target.pdf
2 usage: --below letterhead.pdf letterhead.pdf $work/target.pdf
1 error.34049 letterhead.pdf missing.pdf $work/target.pdf
1 error.34049 missing.pdf letterhead.pdf $work/target.pdf
1 error.33924.*:.letterhead.pdf:.page.2.is.asked.for;.it.has.1$ --pages 1-2 letterhead.pdf letterhead.pdf $work/target.pdf
ROWS
}
