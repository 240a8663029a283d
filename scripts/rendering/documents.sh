# shellcheck shell=bash disable=SC2154 # part of scripts/check-rendering: documents of its own.
# begin_file, put_object for each object from 2 on, end_file.

# begin_file FILE [ENTRIES]: begins the document with its header and its catalog, which has the
# entries besides.
begin_file() {
    made=$1
    local entries=${2-}
    printf '%%PDF-1.4\n' >"$made"
    : >"$work/offsets"
    put_object 1 "<< /Type /Catalog /Pages 2 0 R $entries >>"
}

# put_object ID LINE...: adds an object.
put_object() {
    local id=$1
    shift
    printf '%010d 00000 n \n' "$(wc -c <"$made")" >>"$work/offsets"
    printf '%s 0 obj\n' "$id" >>"$made"
    printf '%s\n' "$@" endobj >>"$made"
}

# end_file: adds the cross-reference table and the trailer.
end_file() {
    local start size
    start=$(wc -c <"$made")
    size=$(($(wc -l <"$work/offsets") + 1))
    {
        printf 'xref\n0 %d\n0000000000 65535 f \n' $size
        cat "$work/offsets"
        printf 'trailer\n<< /Root 1 0 R /Size %d >>\nstartxref\n%d\n%%%%EOF\n' $size "$start"
    } >>"$made"
}

# make_nested FILE: a document with five pages below nodes. Boxes, turns and resources come from
# above, and contents are an array by reference.
make_nested() {
    local file=$1
    begin_file "$file"
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
