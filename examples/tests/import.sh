# Documents that the exact rules refuse:
#   normalise  the programs' way to one that opens, and what stands in it
#   any        the same on the way, for each program that opens a file, told with --any or not
#   decoded    contents that the library does not decode, on the way

# A line for each document: its name, its pages.
moderns() {
    cat <<ROWS
encrypted-empty-password 3
linearized 3
object-on-one-line 1
object-streams-office 2
space-behind-startxref 3
damaged 2
ROWS
}

# damage FILE: the same document, whose table leads to other places than its objects.
damage() {
    sed 's/^xref/moved by a line\n&/' "$1"
}

test_normalise() {
    mkdir "$work/samples"
    cp "$samples"/modern/*.pdf "$work/samples"
    damage "$samples/form-2pages.pdf" >"$work/samples/damaged.pdf"
    moderns | while read -r name pages; do
        case $name in
        encrypted*) wanted=1 hint='34085 .*; decrypt it: normalise --password-file FILE IN OUT' ;;
        damaged) wanted=1 hint='34084 .*; repair it: normalise IN OUT' ;;
        *) wanted=0 hint= ;; # sound
        esac
        status $wanted "$programs/recipe_vector" "$work/samples/$name.pdf" "$work/$name.pdf"
        [ -z "$hint" ] || grep -q "^error $hint$" "$work/err" || fail "$name: $(cat "$work/err")"
        status 0 "$programs/normalise" "$work/samples/$name.pdf" "$work/$name.pdf"
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

# Each program gives what it gives for the document that the import made, or for one that is the same
# but of the exact structure.
test_any() {
    password='--password secret'
    secret=$samples/modern/encrypted-password-secret.pdf
    form=$work/damaged-form.pdf
    print=$work/spaced-print.pdf
    damage "$samples/invoice-form.pdf" >"$form"
    sed 's/^startxref/startxref /' "$samples/browser-print.pdf" >"$print"
    cp "$samples/browser-print.pdf" "$work/print.pdf"
    # shellcheck disable=SC2086 # the option is words
    "$programs/normalise" $password "$secret" "$work/secret.pdf"
    "$programs/normalise" "$form" "$work/form.pdf"
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

# A page whose contents are joined, but stored by filters that the library does not decode.
test_decoded() {
    stamped=$samples/users/stamped-ascii85.pdf
    "$programs/normalise" --plain-filters "$stamped" "$work/stamped.pdf"
    "$programs/normalise" --plain-filters "$samples/letterhead.pdf" "$work/letterhead.pdf"
    for program in letterhead 'letterhead --above' recipe_letterhead; do
        for files in "$stamped $samples/letterhead.pdf" "$samples/letterhead.pdf $stamped"; do
            # shellcheck disable=SC2086 # these are words
            status 0 "$programs/"$program $files "$work/laid.pdf"
            [ ! -s "$work/err" ] || fail "$program $files: $(cat "$work/err")"
        done
        # shellcheck disable=SC2086 # the same
        "$programs/"$program "$work/letterhead.pdf" "$work/stamped.pdf" "$work/wanted.pdf"
        same "$work/wanted.pdf" "$work/laid.pdf"
    done
}
