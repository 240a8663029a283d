# Documents that the library refuses:
#   normalise  the programs' way to one that opens, and what stands in it

# A line for each document: its name, what the library says to it, its pages.
moderns() {
    cat <<ROWS
encrypted-empty-password 1284 3
linearized 1284 3
object-on-one-line 1287 1
object-streams-office 1284 2
space-behind-startxref 1283 3
ROWS
}

test_normalise() {
    moderns | while read -r name code pages; do
        status 1 "$programs/inspect" "$samples/modern/$name.pdf"
        grep -q "^error $code " "$work/err" || fail "$name: $(cat "$work/err")"
        status 0 "$programs/normalise" "$samples/modern/$name.pdf" "$work/$name.pdf"
        status 0 "$programs/normalise" "$work/$name.pdf" "$work/again.pdf"
        same "$work/$name.pdf" "$work/again.pdf"
        status 0 "$programs/inspect" "$work/$name.pdf"
        grep -qx "pages $pages" "$work/out" || fail "$name: $(cat "$work/out")"
        status 0 "$programs/recompress" none "$work/$name.pdf" "$work/none.pdf"
    done
    status 0 "$programs/normalise" --password secret "$samples/modern/encrypted-password-secret.pdf" "$work/o.pdf"
    status 0 "$programs/normalise" --plain-filters "$samples/modern/filter-arrays.pdf" "$work/plain.pdf"
    [ "$(LC_ALL=C grep -ao '/Filter \[.*\]' "$work/plain.pdf")" = '/Filter [ /ASCII85Decode /DCTDecode ]' ] ||
        fail "other lists of filters are left than the one of a photo"
    cd "$samples"
    refuses "$programs/normalise" <<ROWS
2 usage: letterhead.pdf
2 usage: --any letterhead.pdf $work/target.pdf
2 usage: letterhead.pdf $work/target.pdf --password
1 error.34049 missing.pdf $work/target.pdf
1 error.34065 modern/encrypted-password-secret.pdf $work/target.pdf
1 error.34067 modern/truncated.pdf $work/target.pdf
1 error.34064 ../CMakeLists.txt $work/target.pdf
ROWS
}
