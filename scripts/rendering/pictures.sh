# shellcheck shell=bash disable=SC2154 # part of scripts/check-rendering: what renderers draw.
# Page N of a document NAME becomes the picture $work/NAME.RENDERER.N.ppm.

# draw RENDERER FILE PAGE PICTURE: draws one page.
draw() {
    local renderer=$1 file=$2 page=$3 picture=$4
    case $renderer in
    poppler) pdftoppm -cropbox -r $((72 * scale)) -f "$page" -l "$page" -singlefile "$file" "${picture%.ppm}" ;;
    mupdf) mutool draw -q -r $((72 * scale)) -o "$picture" "$file" "$page" ;;
    esac
}

# draw_pages NAME FILE: draws all pages of the file. What the renderers say does not count.
draw_pages() {
    local name=$1 file=$2 page renderer
    for page in $(seq "$(qpdf --show-npages "$file")"); do
        for renderer in "${renderers[@]}"; do
            draw "$renderer" "$file" "$page" "$work/$name.$renderer.$page.ppm" >"$work/said" 2>&1 ||
                bad "$renderer fails at page $page of $name"
        done
    done
}

# pixels PICTURE: its pixels, three bytes each.
pixels() {
    local picture=$1
    tail -n +4 "$picture"
}

# is_blank PICTURE: every pixel is white.
is_blank() {
    local picture=$1
    [ "$(pixels "$picture" | tr -d '\377' | head -c 1 | wc -c)" -eq 0 ]
}

# These two messages are no complaints. Where poppler builds the mark of a check box anew, it looks
# for a font that the form's resources need not have, and takes its own.
known_messages="^warning: ICC support is not available\$|^Syntax Error: Unknown font tag 'ZaDb'\$"

# render_page RENDERER FILE PAGE [BLANK]: the renderer draws the page without a complaint, and draws
# something on it unless it is page BLANK.
render_page() {
    local renderer=$1 file=$2 page=$3 blank=${4-}
    local name=${file##*/}
    name=${name%.pdf}
    local picture=$work/$name.$renderer.$page.ppm
    draw "$renderer" "$file" "$page" "$picture" >"$work/said" 2>&1 ||
        bad "$renderer fails at page $page of $name"
    if grep -Ev "$known_messages" "$work/said"; then
        bad "$renderer complains about page $page of $name"
    fi
    if [ ! -s "$picture" ]; then
        bad "$renderer draws no page $page of $name"
    elif [ "$page" != "$blank" ] && is_blank "$picture"; then
        bad "$renderer draws nothing on page $page of $name"
    fi
}

# render FILE: the file is sound, and both renderers draw something on each of its pages. The
# documents office-* begin with an empty page.
render() {
    local file=$1 blank='' pages page renderer
    case ${file##*/} in office-*) blank=1 ;; esac
    qpdf --check "$file" >"$work/said" 2>&1 || bad "$file is not sound: $(cat "$work/said")"
    pages=$("$programs/inspect" "$file" | sed -n 's/^pages //p')
    [ "$pages" = "$(qpdf --show-npages "$file")" ] || bad "$file: we count $pages pages, qpdf others"
    [ "$pages" -gt 0 ] || bad "$file has no page"
    for page in $(seq "$pages"); do
        for renderer in "${renderers[@]}"; do
            render_page "$renderer" "$file" "$page" "$blank"
        done
    done
}

# shows_text RENDERER FILE PAGE TEXT: the renderer finds the text on the page.
shows_text() {
    local renderer=$1 file=$2 page=$3 text=$4
    case $renderer in
    poppler) pdftotext -enc UTF-8 -f "$page" -l "$page" "$file" - 2>/dev/null ;;
    mupdf) mutool draw -q -F txt "$file" "$page" 2>/dev/null ;;
    esac | grep -qF -- "$text" || bad "$renderer finds no $text on page $page of $file"
}
