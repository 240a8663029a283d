# shellcheck shell=sh disable=SC2034,SC2154 # part of scripts/check-rendering: what renderers draw, and how it differs.

# bad WHAT...: notes what is wrong and goes on, so that one run tells all of it.
bad() {
    echo "check-rendering: $*" | tee -a "$work/failures" >&2
}

group() {
    echo "== $*"
}

count() {
    echo $#
}

# Page N of a file NAME.pdf becomes $work/NAME.RENDERER.N.ppm.

draw() { # RENDERER FILE PAGE IMAGE
    case $1 in
    poppler) pdftoppm -cropbox -r $((72 * scale)) -f "$3" -l "$3" -singlefile "$2" "${4%.ppm}" ;;
    mupdf) mutool draw -q -r $((72 * scale)) -o "$4" "$2" "$3" ;;
    esac
}

# Whatever else a renderer says is a failure. Where poppler builds the mark of a check box anew, it
# looks for a font that the form's resources need not have, and takes its own.
known_messages="^warning: ICC support is not available\$|^Syntax Error: Unknown font tag 'ZaDb'\$"

# body IMAGE: its pixels, three bytes each.
body() {
    tail -n +4 "$1"
}

is_blank() { # IMAGE
    [ "$(body "$1" | tr -d '\377' | head -c 1 | wc -c)" -eq 0 ]
}

# render FILE [BLANK]: it is sound, and both renderers draw each page without a complaint, and
# something on each but page BLANK.
render() {
    stem=${1##*/}
    stem=${stem%.pdf}
    qpdf --check "$1" >"$work/said" 2>&1 || bad "$stem is not sound: $(cat "$work/said")"
    pages=$("$programs/inspect" "$1" | sed -n 's/^pages //p')
    [ "$pages" = "$(qpdf --show-npages "$1")" ] || bad "$stem: we count $pages pages, qpdf others"
    page=0
    while [ "$page" -lt "$pages" ]; do
        page=$((page + 1))
        for renderer in $renderers; do
            image=$work/$stem.$renderer.$page.ppm
            draw "$renderer" "$1" "$page" "$image" >"$work/said" 2>&1 ||
                bad "$renderer fails at page $page of $stem"
            if grep -Ev "$known_messages" "$work/said"; then
                bad "$renderer complains about page $page of $stem"
            fi
            if [ ! -s "$image" ]; then
                bad "$renderer draws no page $page of $stem"
            elif is_blank "$image"; then
                [ "$page" = "${2-}" ] || bad "$renderer draws nothing on page $page of $stem"
            fi
        done
    done
    [ "$page" -gt 0 ] || bad "$stem has no page"
}

# Comparing what was drawn.

# same_pages NAME OTHER: all pages of the two, pixel by pixel.
same_pages() {
    [ "$(count "$work/$1".*.ppm)" -eq "$(count "$work/$2".*.ppm)" ] ||
        bad "$1 and $2 have other numbers of pages"
    for image in "$work/$1".*.ppm; do
        page=${image#"$work/$1."}
        cmp -s "$image" "$work/$2.$page" || bad "$1 and $2 are drawn differently: $page"
    done
}

# differences IMAGE OTHER: a line for each byte that is another one: where, and which it becomes.
# Images of different sizes differ everywhere.
differences() {
    if [ "$(head -n 3 "$1")" = "$(head -n 3 "$2")" ]; then
        cmp -l "$1" "$2" | awk '{ print $1, $3 }'
    else
        echo "0 other size"
    fi
}

# changed RENDERER NAME OTHER [PAGE]: names the boxes of $work/boxes, lines of "NAME X0 Y0 X1 Y1" in
# points of the page, in which these pages, or the first ones, of the two differ; "elsewhere" where
# they do outside of all.
changed() {
    first=$work/$2.$1.${4-1}.ppm
    differences "$first" "$work/$3.$1.${4-1}.ppm" | awk -v scale="$scale" -v boxes="$work/boxes" \
        -v size="$(sed -n 2p "$first")" -v header="$(head -n 3 "$first" | wc -c)" '
        BEGIN {
            split(size, extent)
            while ((getline line < boxes) > 0) box[++count] = line
        }
        {
            pixel = int(($1 - 1 - header) / 3)
            x = pixel % extent[1]
            y = extent[2] - 1 - int(pixel / extent[1])
            place = "elsewhere"
            for (i = 1; i <= count; ++i) { # a line is drawn a pixel beyond its box at most
                split(box[i], edge, " ")
                if (x >= edge[2] * scale - 1 && x <= edge[4] * scale + 1 &&
                    y >= edge[3] * scale - 1 && y <= edge[5] * scale + 1) place = edge[1]
            }
            seen[place] = 1
        }
        END { for (place in seen) print place }' | sort | tr '\n' ' '
}
