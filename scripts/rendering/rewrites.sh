# shellcheck shell=sh disable=SC2034,SC2154 # part of scripts/check-rendering: what a rewrite or a flat page tree must not change.

# numbers FILE: all with a point that stand in its objects, in order of size; not those in streams.
numbers() {
    mutool show "$1" grep 2>/dev/null | sed 's/^[^:]*:[0-9]*://; s/([^)]*)//g; s/<[0-9A-Fa-f]*>//g' |
        tr -c '0-9.+-' '\n' | grep '\.' | sort -n
}

# Whatever opens, rewritten with its numbers as they were.
check_faithful() {
    group "a faithful rewrite of each sample looks the same"
    mkdir -p "$work/faithful"
    for file in examples/samples/*.pdf; do
        name=${file##*/}
        name=${name%.pdf}
        cp "$file" "$work/faithful/$name-before.pdf"
        "$programs/rewrite" --faithful "$file" "$work/faithful/$name-after.pdf" ||
            bad "$name is not rewritten"
        for stage in before after; do
            case $name in
            office-*) render "$work/faithful/$name-$stage.pdf" 1 ;;
            *) render "$work/faithful/$name-$stage.pdf" ;;
            esac
            numbers "$work/faithful/$name-$stage.pdf" >"$work/$stage.numbers"
        done
        same_pages "$name-before" "$name-after"
        cmp -s "$work/before.numbers" "$work/after.numbers" || bad "$name has other numbers"
    done
    # One of them must have what there is to lose.
    "$programs/rewrite" "$work/faithful/browser-print-before.pdf" "$work/plain.pdf" 2>/dev/null
    numbers "$work/plain.pdf" >"$work/after.numbers"
    numbers "$work/faithful/browser-print-before.pdf" >"$work/before.numbers"
    if cmp -s "$work/before.numbers" "$work/after.numbers"; then bad "no sample has numbers to lose"; fi
}

# Five pages below nodes: boxes, turns and resources come from above, contents are an array by
# reference.
make_nested() {
    begin_file "$work/nested.pdf"
    put_object 2 '<< /Type /Pages /Count 5 /Kids [ 3 0 R 4 0 R 8 0 R ] /MediaBox [ 0 0 200 13 0 R ] >>'
    put_object 3 '<< /Type /Pages /Parent 2 0 R /Count 2 /Rotate 90 /Kids [ 5 0 R 6 0 R ]' \
        '/Resources << /Font << /F1 11 0 R >> >> >>'
    put_object 4 '<< /Type /Pages /Parent 2 0 R /Count 2 /Kids [ 7 0 R ] /Resources 12 0 R >>'
    put_object 5 '<< /Type /Page /Parent 3 0 R /Contents 9 0 R >>'
    put_object 6 '<< /Type /Page /Parent 3 0 R /Contents 10 0 R /Rotate 0 /CropBox [ 0 0 150 150 ] >>'
    put_object 7 '<< /Type /Pages /Parent 4 0 R /Count 2 /CropBox [ 10 10 190 90 ] /Kids [ 14 0 R 15 0 R ] >>'
    put_object 8 '<< /Type /Page /Parent 2 0 R /Contents 10 0 R /Resources 12 0 R >>'
    put_object 9 '[ 10 0 R 10 0 R ]'
    put_object 10 '<< /Length 69 >>' stream \
        '0.5 g 20 20 40 30 re f 0 g BT /F1 18 Tf 30 60 Td (Real pages) Tj ET   ' endstream
    put_object 11 '<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica >>'
    put_object 12 '<< /Font << /F1 16 0 R >> >>'
    put_object 13 200
    put_object 14 '<< /Type /Page /Parent 7 0 R /Contents 9 0 R /MediaBox [ 0 0 300 100 ] >>'
    put_object 15 '<< /Type /Page /Parent 7 0 R /Contents [ 10 0 R ] /Rotate 180 >>'
    put_object 16 '<< /Type /Font /Subtype /Type1 /BaseFont /Times-Roman >>'
    end_file
}

# The pages of a tree with nodes, which inspect does not count.
draw_nested() { # NAME FILE
    for page in $(seq "$(qpdf --show-npages "$2")"); do
        for renderer in $renderers; do
            draw "$renderer" "$2" "$page" "$work/$1.$renderer.$page.ppm" >"$work/said" 2>&1 ||
                bad "$renderer fails at page $page of $1"
        done
    done
}

check_flattening() {
    group "flattened pages are sound, and look the same"
    for file in "$work/nested.pdf" examples/samples/*.pdf; do
        name=${file##*/}
        name=${name%.pdf}
        flat=$work/$name-flat.pdf
        "$programs/flatten_pages" --faithful "$file" "$flat" >"$work/said" || bad "$name is not flattened"
        draw_nested "$name-before" "$file"
        case $name in
        office-*) render "$flat" 1 ;;
        *) render "$flat" ;;
        esac
        same_pages "$name-before" "$name-flat"
    done
    [ "$(count "$work"/nested-flat.*.ppm)" -eq 10 ] || bad "the nested tree has not five pages"
    cmp -s "$work/nested-flat.poppler.1.ppm" "$work/nested-flat.poppler.2.ppm" && bad "its pages are all one"
    "$programs/recipe_content" examples/samples/plain-2pages.pdf "$work/content.pdf" ||
        bad "no page is added"
    render "$work/content.pdf"
    pdftotext -f 3 -l 3 "$work/content.pdf" - 2>"$work/said" | grep -q 'The end' ||
        bad "the page that was added shows something else"
}
