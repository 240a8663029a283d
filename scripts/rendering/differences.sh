# shellcheck shell=bash disable=SC2154 # part of scripts/check-rendering: how pictures differ.

# same_pages NAME OTHER: all pages of the two documents are drawn the same, pixel by pixel.
same_pages() {
    local name=$1 other=$2 picture page
    [ "$(count "$work/$name".*.ppm)" -eq "$(count "$work/$other".*.ppm)" ] ||
        bad "$name and $other have other numbers of pages"
    for picture in "$work/$name".*.ppm; do
        page=${picture#"$work/$name."}
        cmp -s "$picture" "$work/$other.$page" || bad "$name and $other are drawn differently: $page"
    done
}

# whitened PICTURE: a picture of the same size, all white.
whitened() {
    local picture=$1
    head -n 3 "$picture"
    pixels "$picture" | tr '\000-\377' '\377'
}

# differences PICTURE OTHER: a line for each byte that differs: where it stands, and what it becomes.
# Pictures of different sizes differ everywhere.
differences() {
    local picture=$1 other=$2
    if [ "$(head -n 3 "$picture")" = "$(head -n 3 "$other")" ]; then
        cmp -l "$picture" "$other" | awk '{ print $1, $3 }'
    else
        echo "0 other size"
    fi
}

# changed_boxes RENDERER NAME OTHER [PAGE]: names the boxes in which the two pages differ, or the two
# documents that have one page; "elsewhere" where they differ outside of all boxes. $work/boxes has the
# boxes, a line "NAME X0 Y0 X1 Y1" for each, in points of the page.
changed_boxes() {
    local renderer=$1 name=$2 other=$3 page=${4-1}
    local picture=$work/$name.$renderer.$page.ppm
    differences "$picture" "$work/$other.$renderer.$page.ppm" | awk -v scale="$scale" -v boxes="$work/boxes" \
        -v size="$(sed -n 2p "$picture")" -v header="$(head -n 3 "$picture" | wc -c)" '
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
