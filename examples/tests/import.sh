# Documents that the library refuses:
#   normalise  the programs' way to one that opens, and what stands in it
#   any        the same on the way, for each program that opens a file, told with --any or not
#   without    what the programs say that were built without the import

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
        status 1 "$programs/recipe_vector" "$samples/modern/$name.pdf" "$work/$name.pdf"
        grep -q "^error $code .*/$name.pdf; \"normalise IN OUT\" " "$work/err" ||
            fail "$name: $(cat "$work/err")"
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
2 usage: --canonical letterhead.pdf $work/target.pdf
2 usage: letterhead.pdf $work/target.pdf --password
1 error.34065 modern/encrypted-password-secret.pdf $work/target.pdf
1 error.34067 modern/truncated.pdf $work/target.pdf
1 error.34064 ../CMakeLists.txt $work/target.pdf
ROWS
}

# Each program gives what it gives for the document that the import made.
test_any() {
    password='--password secret'
    secret=$samples/modern/encrypted-password-secret.pdf
    form=$work/spaced-form.pdf
    print=$work/spaced-print.pdf
    sed 's/^startxref/startxref /' "$samples/invoice-form.pdf" >"$form"
    sed 's/^startxref/startxref /' "$samples/browser-print.pdf" >"$print"
    # shellcheck disable=SC2086 # the option is words
    "$programs/normalise" $password "$secret" "$work/secret.pdf"
    "$programs/normalise" "$form" "$work/form.pdf"
    "$programs/normalise" "$print" "$work/print.pdf"
    stream=$("$programs/inspect" "$work/secret.pdf" | sed -n 's/^object \([0-9]*\) 0 7$/\1/p' | head -n 1)
    cat >"$work/rows" <<ROWS
inspect $secret
streams $secret $stream 0 --decode
fields $form
rewrite $secret $work/result.pdf
recompress none $secret $work/result.pdf
fill $form $work/result.pdf customer=Jane
underlay 1 $form $print $work/result.pdf
edit_values $secret $work/result.pdf Title
batch $work/result $secret
ROWS
    while read -r program arguments; do
        # shellcheck disable=SC2086 # the arguments are words
        status 0 "$programs/$program" --any $password $arguments
        collect any
        # shellcheck disable=SC2086 # the arguments are words
        status 0 "$programs/$program" $password $arguments
        collect told
        same "$work/any" "$work/told"
        arguments=$(echo "$arguments" | sed "s|$secret|$work/secret.pdf|; s|$form|$work/form.pdf|
            s|$print|$work/print.pdf|")
        # shellcheck disable=SC2086 # the same
        status 0 "$programs/$program" $arguments
        collect wanted
        same "$work/wanted" "$work/any"
    done <"$work/rows"
}

# collect NAME puts what the program that ran last gave into $work/NAME.
collect() {
    sed 's/[^ ]*secret.pdf:/secret.pdf:/' "$work/out" >"$work/$1"
    for result in "$work/result.pdf" "$work"/result/*.pdf; do
        [ ! -f "$result" ] || cat "$result" >>"$work/$1"
    done
    rm -rf "$work/result.pdf" "$work/result"
}

test_without() {
    status 0 "$programs/inspect" --any "$samples/letterhead.pdf"
    status 1 "$programs/inspect" "$samples/modern/linearized.pdf"
    reports 1284 504
    grep -q "linearized.pdf; this program was built without the import" "$work/err" || fail "not said what helps: $(cat "$work/err")"
}
