# The recipes of docs/recipes.md, each a case of its program's name.

data_of() { # FILE ID: a stream's data
    "$programs/streams" "$1" "$2" 0 --decode
}

test_mail_merge() {
    printf 'customer\ttotal\nJane Doe\t12.50\nZoë\t1\n' >"$work/table"
    mkdir "$work/folder"
    status 0 "$programs/recipe_mail_merge" "$samples/invoice-form.pdf" "$work/table" "$work/folder"
    "$programs/fields" "$work/folder/2.pdf" >"$work/fields"
    grep -q "^customer.*Zoë$" "$work/fields" || fail "not filled in: $(cat "$work/fields")"
    [ "$(ls "$work/folder" | tr '\n' ' ')" = '1.pdf 2.pdf ' ] || fail "$(ls "$work/folder")"
    # A row that is done is left alone; only the rows that are asked for are made.
    echo mine >"$work/folder/1.pdf"
    rm "$work/folder/2.pdf"
    status 0 "$programs/recipe_mail_merge" "$samples/invoice-form.pdf" "$work/table" \
        "$work/folder" 1 1
    [ "$(cat "$work/folder/1.pdf")" = mine ] || fail "row 1 was made again"
    [ ! -e "$work/folder/2.pdf" ] || fail "row 2 was made"
    printf 'customer\tabsent\nx\ty\n' >"$work/table"
    rm "$work/folder/1.pdf"
    status 1 "$programs/recipe_mail_merge" "$samples/invoice-form.pdf" "$work/table" "$work/folder"
    grep -q '^error 34819 .*: There is no field absent' "$work/err" || fail "$(cat "$work/err")"
    printf 'country\tcustomer\nXX\ty\nIT\tz\n' >"$work/table"
    status 1 "$programs/recipe_mail_merge" "$samples/invoice-form.pdf" "$work/table" "$work/folder"
    grep -q ': row 1: field country: it has no option XX; ' "$work/err" || fail "the bad row is not told"
    [ "$(ls "$work/folder")" = 2.pdf ] || fail "not the good row alone: $(ls "$work/folder")"
}

test_letterhead() {
    . "$(dirname "$0")/documents.sh"
    document nested.pdf '1 <</Type/Catalog/Pages 2 0 R>>
2 <</Type/Pages/Count 2/MediaBox[0 0 500 500]/Kids[3 0 R]>>
3 <</Type/Pages/Kids[4 0 R 5 0 R]>>
4 <</Type/Page>>
5 <</Type/Page>>' '0 f
1 n
2 n
3 n
4 n
5 n'
    status 0 "$programs/recipe_letterhead" "$work/nested.pdf" "$samples/letterhead.pdf" \
        "$work/out.pdf"
    [ "$("$programs/inspect" "$work/out.pdf" | sed -n 's/^pages //p')" = 2 ] || fail "pages"
    [ "$(LC_ALL=C grep -ac '/Contents' "$work/out.pdf")" -eq 2 ] || fail "a page has no letterhead"
}

test_resources() {
    status 0 "$programs/recipe_resources" "$samples/plain-2pages.pdf"
    [ "$(grep -c '^page ' "$work/out")" -eq 2 ] || fail "two pages: $(cat "$work/out")"
    grep -q '^font Helvetica' "$work/out" || fail "no font: $(cat "$work/out")"
}

test_info() {
    status 0 "$programs/recipe_info" "$samples/typeset-report.pdf" "$work/one.pdf" Author Zoë
    status 0 "$programs/recipe_info" "$work/one.pdf" "$work/two.pdf" Title Draft
    grep -qx 'Author: Zoë' "$work/out" || fail "no author: $(cat "$work/out")"
    LC_ALL=C grep -aqF '/Title (Draft)' "$work/two.pdf" || fail "no title"
}

test_streams() {
    mkdir "$work/folder"
    status 0 "$programs/recipe_streams" "$samples/typeset-report.pdf" "$work/folder"
    data_of "$samples/typeset-report.pdf" 4 >"$work/wanted"
    same "$work/wanted" "$work/folder/4.bin"
}

test_vector() {
    status 0 "$programs/recipe_vector" "$samples/letterhead.pdf" "$work/out.pdf"
    LC_ALL=C grep -aq '/Mark /Seen' "$work/out.pdf" || fail "no mark"
    status 0 "$programs/inspect" "$work/out.pdf"
    status 1 "$programs/recipe_vector" "$work/err" "$work/never.pdf"
    reports 34064 8510
    status 0 "$programs/recipe_vector" "$samples/modern/object-streams.pdf" "$work/out.pdf"
    LC_ALL=C grep -aq '/Mark /Seen' "$work/out.pdf" || fail "no mark"
    status 1 "$programs/recipe_vector" "$samples/modern/truncated.pdf" "$work/never.pdf"
    reports 34084 8524
}

test_logger() {
    printf '%%PDF-1.4\n1 0 obj\n<< /A >>\nendobj\nxref\n0 2\n0000000000 65535 f \n0000000009 00000 n \n' \
        >"$work/bad.pdf"
    printf 'trailer\n<< /Root 1 0 R >>\nstartxref\n33\n%%%%EOF\n' >>"$work/bad.pdf"
    status 1 "$programs/recipe_logger" "$work/bad.pdf"
    grep -q '^app\[E\] PDF: Object 1h (1): in this dictionary a key has no value' "$work/out" ||
        fail "$(cat "$work/out")"
    [ "$(grep -cv '^error ' "$work/err")" -eq 0 ] || fail "something went past the logger: $(cat "$work/err")"
    tail -n 1 "$work/out" | grep -Eqx 'not opened, [1-9][0-9]* errors' || fail "$(cat "$work/out")"
    status 0 "$programs/recipe_logger" "$samples/letterhead.pdf"
    grep -qx 'opened, 0 errors' "$work/out" || fail "$(cat "$work/out")"
}

test_content() {
    status 0 "$programs/recipe_content" "$samples/plain-2pages.pdf" "$work/out.pdf"
    status 0 "$programs/pages" "$work/out.pdf"
    [ "$(wc -l <"$work/out")" -eq 3 ] || fail "three pages: $(cat "$work/out")"
    last=$(sed -n 's/^page 3 \([0-9]*\) .*/\1/p' "$work/out")
    [ "$(data_of "$work/out.pdf" "$((last - 1))")" = 'BT /F1 24 Tf 72 500 Td (The end) Tj ET' ] ||
        fail "the last page shows something else"
}

test_threads() {
    cp "$samples"/*.pdf "$work/"
    echo 'no document' >"$work/bad.pdf"
    status 1 "$programs/recipe_threads" "$work"/*.pdf
    grep -q "^error 34064 .*: $work/bad.pdf: .*; " "$work/err" || fail "$(cat "$work/err")"
    for file in "$samples"/*.pdf; do
        "$programs/recompress" flate "$file" "$work/wanted"
        same "$work/wanted" "$work/${file##*/}.new"
    done
    [ ! -e "$work/bad.pdf.new" ] || fail "there is a result without a document"
}

test_mixed_input() {
    echo 'no document' >"$work/text.pdf"
    head -c 900 "$samples/letterhead.pdf" >"$work/cut.pdf"
    cp "$samples/modern/encrypted-empty-password.pdf" "$work/encrypted.pdf"
    cp "$samples/modern/incremental-update.pdf" "$work/revised.pdf"
    cd "$work"
    status 1 "$programs/recipe_mixed_input" "$samples/plain-2pages.pdf" text.pdf cut.pdf \
        encrypted.pdf revised.pdf missing.pdf .
    cat >"$work/wanted" <<ROWS
$samples/plain-2pages.pdf: fine, 2 pages
text.pdf: no PDF
cut.pdf: damaged: Import::open may repair it
encrypted.pdf: encrypted: Import::open decrypts it
revised.pdf: fine, 3 pages
missing.pdf: not there, or not permitted
.: no file
ROWS
    same "$work/wanted" "$work/out"
    [ "$(grep -c '^error 340[0-9]* .*: [m.].*;' "$work/err")" -eq 2 ] || fail "$(cat "$work/err")"
}
