# shellcheck shell=sh disable=SC2034,SC2154 # part of scripts/check-rendering: text in fields of all heights.

# make_fields FILE "HEIGHT SIZE [ENTRY...]"...: a page for each, with a text field of that height
# whose text has that size; the fields are named f1, f2 and so on.
make_fields() {
    begin_file "$1" '/AcroForm 3 0 R'
    shift
    kids='' fields='' number=5
    for _ in "$@"; do
        kids="$kids$number 0 R " fields="$fields$((number + 1)) 0 R " number=$((number + 2))
    done
    put_object 2 "<< /Type /Pages /Count $# /Kids [ $kids] /MediaBox [ 0 0 140 120 ] >>"
    put_object 3 "<< /Fields [ $fields] /DR << /Font << /Helv 4 0 R >> >> >>"
    put_object 4 '<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica /Encoding /WinAnsiEncoding >>'
    number=5
    for field in "$@"; do
        put_object $number "<< /Type /Page /Parent 2 0 R /Annots [ $((number + 1)) 0 R ] >>"
        # shellcheck disable=SC2086 # the parts are words
        put_field $((number + 1)) $number $field
        number=$((number + 2))
    done
    end_file
}

put_field() { # ID PAGE HEIGHT SIZE [ENTRY...]
    id=$1 on=$2 height=$3 size=$4
    shift 4
    put_object "$id" "<< /Type /Annot /Subtype /Widget /FT /Tx /T (f$((id / 2 - 2))) /P $on 0 R /F 4 $*" \
        "/Rect [ 20 30 120 $((30 + height)) ] /DA (/Helv $size Tf 0 g) >>"
}

# ink IMAGE: the rows from the first to the last with something dark, and the columns.
ink() {
    { head -n 3 "$1" && body "$1" | tr '\000-\377' '\377'; } >"$work/white.ppm"
    differences "$work/white.ppm" "$1" | awk -v header="$(head -n 3 "$1" | wc -c)" \
        -v width="$(sed -n '2s/ .*//p' "$1")" '
        $2 < 200 { # octal
            pixel = int(($1 - 1 - header) / 3); x = pixel % width; y = int(pixel / width)
            if (!seen++) { top = bottom = y; left = right = x }
            if (y > bottom) bottom = y
            if (x < left) left = x
            if (x > right) right = x
        }
        END { print seen ? bottom - top + 1 : 0, seen ? right - left + 1 : 0 }'
}

# whole RENDERER NAME PAGE REFERENCE PAGE: the first page has as much ink as the other, a field with
# room for everything.
whole() {
    got=$(ink "$work/$2.$1.$3.ppm") wanted=$(ink "$work/$4.$1.$5.ppm")
    echo "$got $wanted" | awk -v slack=2 '{ exit !($3 > 0 && $1 >= $3 - slack && $2 >= $4 - slack) }' ||
        bad "$1: page $3 of $2 shows ink of $got pixels, not $wanted as with room"
}

# draw_filled NAME FILE: its pages, large.
draw_filled() {
    scale=4
    draw_nested "$1" "$2"
    scale=2
}

# fill_all NAME TEXT FIELD...: all of $work/NAME.pdf, drawn as NAME-filled.
fill_all() {
    name=$1 text=$2
    shift 2
    make_fields "$work/$name.pdf" "$@"
    settings=0
    for _ in "$@"; do
        shift
        settings=$((settings + 1))
        set -- "$@" "f$settings=$text"
    done
    "$programs/fill" --faithful "$work/$name.pdf" "$work/$name-filled.pdf" "$@" 2>"$work/said" ||
        bad "$name takes no text: $(cat "$work/said")"
    qpdf --check "$work/$name-filled.pdf" >"$work/said" 2>&1 || bad "$name is not sound when filled"
    draw_filled "$name-filled" "$work/$name-filled.pdf"
}

# sizes FILE: those of the text in the looks of its fields.
sizes() {
    "$programs/recompress" none "$1" "$work/plain.pdf"
    sed -n '/^stream/,/^endstream/s,.*/Helv \([0-9.]*\) Tf.*,\1,p' "$work/plain.pdf"
}

all_whole() { # NAME REFERENCE PAGE...
    for renderer in $renderers; do
        page=0
        for wanted in $3; do
            page=$((page + 1))
            whole "$renderer" "$1-filled" $page "$2-filled" "$wanted"
        done
    done
}

# Accents and descenders, nothing of which is cut, in fields with more and less room.
check_text() {
    group "text in fields is whole: accents at four heights, sizes chosen, low fields, passwords"
    accents='ÄÖÜÉÑ gjpqy'
    fill_all room "$accents" '80 12'
    fill_all heights "$accents" '14 12' '16 12' '18 12' '24 12'
    all_whole heights room '1 1 1 1'
    fill_all chosen "$accents" '11 0' '14 0' '18 0' '24 0'
    sizes "$work/chosen-filled.pdf" | sed 's/^/80 /' >"$work/sizes"
    [ "$(wc -l <"$work/sizes")" -eq 4 ] || bad "four fields of size 0 have looks of $(wc -l <"$work/sizes") sizes"
    # shellcheck disable=SC2046 # a field on each line
    eval fill_all fixed "'$accents'" $(sed "s/.*/'&'/" "$work/sizes")
    all_whole chosen fixed '1 2 3 4'
    fill_all low 'Hxgp' '11 12' '80 12' '11 12 /Ff 8192' '80 12 /Ff 8192'
    all_whole low low '2 2 4 4'
    for name in heights chosen low; do
        "$programs/fill" --flatten --faithful "$work/$name-filled.pdf" "$work/$name-flat.pdf" ||
            bad "$name is not flattened"
        draw_filled "$name-flat" "$work/$name-flat.pdf"
        same_pages "$name-filled" "$name-flat"
    done
}
