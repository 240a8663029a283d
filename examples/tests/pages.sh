# What the pages show, on SAMPLE:
#   quick_start    gets a title, where its Info entry is a reference and where there is none
#   first_program  is described, and written as rewrite does it
#   summary        has pages and no form, which is no failure; another one has fields; a box that
#                  is none is a failure that names the page's object
#   edit_values    gets a title twice, and opens at its last page
#   flatten_pages  has its page hold what it inherits, and then stays as it is
#   custom_stripe  is opened and written in storage, as rewrite does it with files
sample=$samples/$sample

test_quick_start() {
    "$programs/quick_start" "$sample" "$work/out.pdf" 'A (new) title'
    LC_ALL=C grep -aqF '/Title (A \(new\) title)' "$work/out.pdf" || fail "the title is not there"
    "$programs/inspect" "$sample" >"$work/before"
    "$programs/inspect" "$work/out.pdf" >"$work/after"
    cmp "$work/before" "$work/after" || fail "more than the title has changed"
    sed 's,^/Info ,/Note ,' "$sample" >"$work/no-info.pdf"
    status 0 "$programs/quick_start" "$work/no-info.pdf" "$work/out.pdf" Made
    LC_ALL=C grep -aqF '/Title (Made)' "$work/out.pdf" || fail "no Info was made"
}

test_first_program() {
    "$programs/first_program" "$sample" "$work/out.pdf" >"$work/said"
    "$programs/rewrite" "$sample" "$work/wanted.pdf"
    cmp "$work/wanted.pdf" "$work/out.pdf" || fail "it writes another document"
    "$programs/inspect" "$sample" >"$work/facts"
    pages=$(sed -n 's/^pages //p' "$work/facts")
    grep -qx "$(sed -n 's/^objects //p' "$work/facts") objects, $pages pages" "$work/said" ||
        fail "other numbers: $(cat "$work/said")"
    [ "$(grep -c ' Page$' "$work/said")" -eq "$pages" ] || fail "other pages: $(cat "$work/said")"
}

test_summary() {
    for file in "$sample" "$samples/form-2pages.pdf"; do
        echo "pages $("$programs/pages" "$file" | wc -l)" >"$work/wanted"
        "$programs/fields" "$file" >"$work/fields" 2>/dev/null || : # there may be no form
        echo "fields $(wc -l <"$work/fields")" >>"$work/wanted"
        status 0 "$programs/summary" "$file"
        same "$work/wanted" "$work/out"
    done
    sed 's,/MediaBox \[ \(.*\) \],/MediaBox ( \1 ),' "$samples/form-2pages.pdf" >"$work/box.pdf"
    status 1 "$programs/summary" "$work/box.pdf"
    grep -q '^error 1543 .*: object 26: MediaBox is of a wrong kind' "$work/err" ||
        fail "$(cat "$work/err")"
}

test_edit_values() {
    "$programs/edit_values" "$sample" "$work/first.pdf" 'Zoë' >/dev/null
    "$programs/edit_values" "$work/first.pdf" "$work/second.pdf" 'Draft' >"$work/said"
    grep -qx 'was: Zoë' "$work/said" || fail "the first title is not there: $(cat "$work/said")"
    LC_ALL=C grep -aqF '/Title (Draft)' "$work/second.pdf" || fail "the second title is not there"
    last=$("$programs/inspect" "$sample" | sed -n 's/^page [0-9]* \([0-9]* [0-9]*\)$/\1/p' | tail -n 1)
    LC_ALL=C grep -aqF "/OpenAction [ $last R /Fit ]" "$work/second.pdf" || fail "opens elsewhere"
    if LC_ALL=C grep -aq /PageMode "$work/second.pdf"; then fail "PageMode is still there"; fi
    sed 's,^/Info ,/Note ,' "$sample" >"$work/no-info.pdf"
    "$programs/edit_values" "$work/no-info.pdf" "$work/third.pdf" 'Made' >"$work/said"
    LC_ALL=C grep -aqF '/Title (Made)' "$work/third.pdf" || fail "no Info was made"
    [ ! -s "$work/said" ] || fail "there was no title: $(cat "$work/said")"
}

test_flatten_pages() {
    status 0 "$programs/flatten_pages" "$sample" "$work/flat.pdf"
    "$programs/pages" "$sample" >"$work/wanted"
    "$programs/pages" "$work/flat.pdf" >"$work/got"
    same "$work/wanted" "$work/got"
    grep -qx "$(wc -l <"$work/got") pages" "$work/out" || fail "$(cat "$work/out")"
    if LC_ALL=C grep -aq '/Kids.*/MediaBox' "$work/flat.pdf"; then fail "the root has a box"; fi
    "$programs/flatten_pages" "$work/flat.pdf" "$work/again.pdf" >/dev/null
    same "$work/flat.pdf" "$work/again.pdf"
}

test_custom_stripe() {
    "$programs/rewrite" "$sample" "$work/wanted.pdf"
    "$programs/custom_stripe" "$sample" "$work/out.pdf"
    cmp "$work/wanted.pdf" "$work/out.pdf" || fail "storage gives another document"
}
