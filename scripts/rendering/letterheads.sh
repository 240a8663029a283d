# shellcheck shell=sh disable=SC2034,SC2154 # part of scripts/check-rendering: letterheads and stamps.

# words FILE PAGE: its text in the order in which it is drawn, a word on each line.
words() {
    pdftotext -q -raw -enc UTF-8 -f "$2" -l "$2" "$1" - 2>/dev/null | tr -s ' \n\f' '\n' | grep . || :
}

# keep_words: those of each page of each sample, in $work/words, and of the first ones as letterheads.
keep_words() {
    mkdir -p "$work/words"
    for file in "$work"/pairs/*.pdf; do
        name=${file##*/}
        words "$work/bare/$name" 1 >"$work/words/$name"
        for page in $(seq "$(qpdf --show-npages "$file")"); do
            words "$file" "$page" >"$work/words/$name.$page"
        done
    done
}

# shows_both FILE PAPER TIMES: the text of PAPER so many times and then that of the page, on each page.
shows_both() {
    for kept in "$work/words/$1".*; do
        page=${kept##*.}
        {
            for _ in $(seq "$3"); do cat "$work/words/$2"; done
            cat "$kept"
        } >"$work/wanted"
        words "$work/laid.pdf" "$page" | cmp -s - "$work/wanted" || bad "$1 on $2: text is missing on page $page"
    done
}

# lay [OPTION...] FILE PAPER OUT: it is laid, and the result is sound.
lay() {
    "$programs/letterhead" --faithful --no-verify "$@" 2>"$work/said" || bad "letterhead $*: $(cat "$work/said")"
    for out in "$@"; do :; done
    qpdf --check "$out" >"$work/said" 2>&1 || bad "letterhead $*: $(cat "$work/said")"
}

# make_paper NAME OPERATORS: a file with a page of 300 by 400 points, its left edge at 100.
make_paper() {
    begin_file "$work/$1.pdf"
    put_object 2 '<< /Type /Pages /Count 1 /Kids [ 3 0 R ] /MediaBox [ 100 0 400 400 ]' \
        '/Resources << /Font << /F1 5 0 R >> >> >>'
    put_object 3 '<< /Type /Page /Parent 2 0 R /Contents 4 0 R >>'
    put_object 4 '<< /Length 100 >>' stream "$(printf '%-100s' "$2")" endstream
    put_object 5 '<< /Type /Font /Subtype /Type1 /BaseFont /Symbol >>'
    end_file
}

# corner_of IMAGE: where the lower left 15 by 15 points of such paper come to lie on that page.
corner_of() {
    sed -n 2p "$1" | awk -v scale="$scale" '{
        width = $1 / scale; height = $2 / scale
        fit = width / 300 < height / 400 ? width / 300 : height / 400
        left = (width - 300 * fit) / 2; bottom = (height - 400 * fit) / 2
        print "corner", left, bottom, left + 15 * fit, bottom + 15 * fit }'
}

# changes_corner FILE OPTION...: nothing else of its first page changes, and with --above that does.
changes_corner() {
    file=$1
    shift
    lay "$@" "$file" "$work/corner.pdf" "$work/laid.pdf"
    for renderer in $renderers; do
        draw "$renderer" "$file" 1 "$work/clean.$renderer.1.ppm" >"$work/said" 2>&1
        draw "$renderer" "$work/laid.pdf" 1 "$work/laid.$renderer.1.ppm" >"$work/said" 2>&1
        corner_of "$work/clean.$renderer.1.ppm" >"$work/boxes"
        got=$(changed "$renderer" clean laid)
        case $got$* in
        'corner ' | 'corner --above' | '') ;; # what a page paints itself may lie over it
        *) bad "$renderer: $file changes in ${got:-nothing} with a letterhead in its corner, $*" ;;
        esac
    done
}

# Every sample on every other, and on itself.
check_letterheads() {
    group "a letterhead shows, and so does the page, whatever the two are"
    keep_words
    for file in "$work"/pairs/*.pdf; do
        name=${file##*/}
        for paper in "$work"/bare/*.pdf; do
            lay "$file" "$paper" "$work/laid.pdf"
            shows_both "$name" "${paper##*/}" 1
        done
        lay "$work/laid.pdf" "$paper" "$work/laid.pdf"
        shows_both "$name" "${paper##*/}" 2
    done
    group "what a letterhead does not draw stays as it is"
    # It leaves behind all that it can: a colour, a matrix, a clipping path, open states, and has a
    # font by a name that most have.
    make_paper corner \
        '1 0 0 rg q q 100 0 15 15 re f BT /F1 9 Tf 104 3 Td (x) Tj ET 0 0 1 1 re W n 9 0 0 9 9 9 cm'
    make_paper stamp '150 150 99 99 re f'
    make_paper surplus 'q 150 150 60 60 re f Q Q 3 0 0 3 7 7 cm' # takes back more than it saved
    for file in "$work"/pairs/*.pdf "$work/nested.pdf" "$work/surplus.pdf"; do
        changes_corner "$file"
        changes_corner "$file" --above
    done
    lay --above "$work/corner.pdf" "$work/stamp.pdf" "$work/laid.pdf"
    for renderer in $renderers; do
        draw "$renderer" "$work/stamp.pdf" 1 "$work/clean.$renderer.1.ppm" >"$work/said" 2>&1
        draw "$renderer" "$work/laid.pdf" 1 "$work/laid.$renderer.1.ppm" >"$work/said" 2>&1
        corner_of "$work/clean.$renderer.1.ppm" >"$work/boxes"
        [ "$(changed "$renderer" clean laid)" = 'corner ' ] || bad "$renderer: a page moves its stamp"
    done
}
