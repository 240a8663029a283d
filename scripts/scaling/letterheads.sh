# shellcheck shell=bash disable=SC2034,SC2154 # part of scripts/check-scaling: letterheads on many pages.

# make_pages COUNT: a document of so many, each with contents of its own, that share their resources.
make_pages() {
    local count=$1
    awk -v count="$count" '
        function object(body) {
            offset[++last] = size
            put(last " 0 obj\n" body "\nendobj\n")
        }
        function put(text) {
            printf "%s", text
            size += length(text)
        }
        BEGIN {
            put("%PDF-1.4\n")
            object("<< /Type /Catalog /Pages 2 0 R >>")
            for (page = 0; page < count; ++page) kids = kids " " 5 + 2 * page " 0 R"
            object("<< /Type /Pages /Count " count " /Kids [" kids " ] >>")
            object("<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica >>")
            object("<< /Font << /F1 3 0 R >> >>")
            for (page = 1; page <= count; ++page) {
                object("<< /Type /Page /Parent 2 0 R /MediaBox [ 0 0 595 842 ] /Resources 4 0 R /Contents " \
                    last + 2 " 0 R >>")
                text = sprintf("BT /F1 12 Tf 72 720 Td (Page %05d) Tj ET", page)
                object("<< /Length " length(text) " >>\nstream\n" text "\nendstream")
            }
            start = size
            printf "xref\n0 %d\n0000000000 65535 f \n", last + 1
            for (id = 1; id <= last; ++id) printf "%010d 00000 n \n", offset[id]
            printf "trailer\n<< /Root 1 0 R /Size %d >>\nstartxref\n%d\n%%%%EOF\n", last + 1, start
        }'
}

# objects FILE: how many it has.
objects() {
    local file=$1
    "$programs/inspect" "$file" | sed -n 's/^objects //p'
}

# lay COUNT [OPTION...]: lays a letterhead beneath the document of COUNT pages. It says what that takes as
# "ADDED MILLISECONDS KILOBYTES"; opening and saving the document count too.
lay() {
    local count=$1 start end
    shift
    start=$(now)
    /usr/bin/time -f %M -o "$work/memory" "$programs/letterhead" "$@" "$work/$count.pdf" \
        examples/samples/letterhead.pdf "$work/laid.pdf" || fail "no letterhead on $count pages"
    end=$(now)
    echo $(($(objects "$work/laid.pdf") - $(objects "$work/$count.pdf"))) $(((end - start) / 1000000)) \
        "$(cat "$work/memory")"
}

check_letterheads() {
    local count option few many
    for count in 1000 10000; do
        make_pages $count >"$work/$count.pdf"
    done
    for option in '' --above; do
        # shellcheck disable=SC2086 # no option is none
        few=$(lay 1000 $option) many=$(lay 10000 $option)
        [ "${few%% *}" = "${many%% *}" ] || fail "objects are added with the pages: ${few%% *}, then ${many%% *}"
        echo "$few $many" | awk -v option="$option" '
            { printf "Letterhead %s: %d objects added; 1,000 pages %d ms, %d kB; 10,000 pages %d ms, %d kB\n", \
                  option, $1, $2, $3, $5, $6 }
            $5 > 30 * $2 || $6 > 30 * $3 { exit 1 }' || fail "ten times the pages take more than that"
    done
}
