# shellcheck shell=sh disable=SC2034,SC2154 # part of scripts/check-rendering: the files of the demo.

# boxes FILE: "NAME X0 Y0 X1 Y1" for each top-level field of a file that rewrite wrote.
boxes() {
    sed -n 's,.*/Rect \[ \([^]]*\) \].*/T (\([^)]*\)).*,\2 \1,p' "$1"
}

# shown FILE X0 Y0 X1 Y1: the text that poppler shows in this box of the first page.
shown() {
    pdftotext -enc UTF-8 -r $((72 * scale)) -f 1 -l 1 -x $(($2 * scale)) -y $((height - $5 * scale)) \
        -W $((($4 - $2) * scale)) -H $((($5 - $3) * scale)) "$1" - 2>/dev/null |
        tr -s ' \n\f' ' ' | sed 's/^ //; s/ $//'
}

# shows_values NAME: poppler shows in each field what the demo says it holds, and mupdf reads that.
shows_values() {
    height=$(sed -n '2s/.* //p' "$work/$1.poppler.1.ppm")
    number=0
    while IFS='	' read -r field kind flags value _; do
        number=$((number + 1))
        held=$(mutool show "$demo/$1.pdf" "trailer/Root/AcroForm/Fields/$number/V" 2>/dev/null |
            sed 's,^[(/],,; s,)$,,')
        [ "$held" = "$value" ] || bad "$1: $field holds $value, mupdf reads $held"
        [ "$kind" != button ] || value= # its mark is no text
        # shellcheck disable=SC2046 # the edges are words
        text=$(shown "$demo/$1.pdf" $(sed -n "s/^$field //p" "$work/boxes"))
        [ "$text" = "$value" ] || bad "$1: $field ($kind, $flags) is $value, poppler shows $text"
    done <"$demo/fields.txt"
    [ "$number" -gt 0 ] || bad "the demo names no fields"
}

# shows_change NAME OTHER RENDERER BOX...: these differ, and nothing else.
shows_change() {
    before=$1 after=$2 renderer=$3
    shift 3
    got=$(changed "$renderer" "$before" "$after")
    wanted=$(printf '%s\n' "$@" | sort | tr '\n' ' ')
    [ "$got" = "$wanted" ] ||
        bad "$renderer: $after differs from $before in ${got:-nothing }instead of $wanted"
}

check_every_page() {
    group "every file is sound, every page is drawn"
    for file in "$demo"/*.pdf; do
        case ${file##*/} in
        office-*) render "$file" 1 ;; # it begins with an empty page
        *) render "$file" ;;
        esac
    done
}

check_rewrites() {
    group "a rewrite and another compression look the same"
    same_pages invoice-form invoice-form-rewritten
    same_pages office-export office-unpacked
    same_pages office-export office-packed
    same_pages office-export office-unpacked-again
    same_pages invoice-on-letterhead invoice-final
}

check_filled_form() {
    group "the filled form shows what it holds"
    boxes "$demo/invoice-form-rewritten.pdf" >"$work/boxes"
    for renderer in $renderers; do
        shows_change invoice-form invoice-filled "$renderer" customer date total paid country
    done
    for name in invoice-filled invoice-on-letterhead invoice-final; do
        shows_values $name
    done
}

# What the letterhead adds to the invoice is what it draws on white paper; nothing of the invoice
# lies over it.
check_letterhead() {
    group "the invoice on its letterhead shows the two, and nothing else"
    for renderer in $renderers; do
        letterhead=$work/letterhead.$renderer.1.ppm
        { head -n 3 "$letterhead" && body "$letterhead" | tr '\000-\377' '\377'; } >"$work/white.ppm"
        differences "$work/white.ppm" "$letterhead" >"$work/wanted"
        differences "$work/invoice-filled.$renderer.1.ppm" \
            "$work/invoice-on-letterhead.$renderer.1.ppm" >"$work/got"
        [ -s "$work/wanted" ] || bad "$renderer draws no letterhead"
        cmp -s "$work/wanted" "$work/got" || bad "$renderer draws another letterhead, or another invoice"
    done
}

check_picture() {
    group "the picture in README.md was drawn from these files"
    for name in invoice-form invoice-filled invoice-on-letterhead; do
        grep -qxF "$(cd "$demo" && cksum $name.pdf)" docs/images/demo.svg ||
            bad "$name.pdf is not what docs/images/demo.svg shows: look at it, then scripts/draw-demo-picture"
    done
}

check_demo() {
    check_every_page
    check_rewrites
    check_filled_form
    check_letterhead
    check_picture
}
