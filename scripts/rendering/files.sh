# shellcheck shell=sh disable=SC2034,SC2154 # part of scripts/check-rendering: files of its own, and those that are looked at.

# Files of our own: begin_file FILE [ENTRIES OF THE CATALOG], put_object ID LINE... for each object from 1 on, end_file.

begin_file() {
    made=$1
    printf '%%PDF-1.4\n' >"$made"
    : >"$work/offsets"
    put_object 1 "<< /Type /Catalog /Pages 2 0 R ${2-} >>"
}

put_object() {
    printf '%010d 00000 n \n' $(($(wc -c <"$made"))) >>"$work/offsets"
    printf '%s 0 obj\n' "$1" >>"$made"
    shift
    printf '%s\n' "$@" endobj >>"$made"
}

end_file() {
    start=$(($(wc -c <"$made")))
    size=$(($(wc -l <"$work/offsets") + 1))
    {
        printf 'xref\n0 %d\n0000000000 65535 f \n' $size
        cat "$work/offsets"
        printf 'trailer\n<< /Root 1 0 R /Size %d >>\nstartxref\n%d\n%%%%EOF\n' $size "$start"
    } >>"$made"
}

# collect: every sample as one that the library reads, in $work/pairs; and as a letterhead, whose
# contents it must decode and which has no annotations, in $work/bare.
collect() {
    mkdir -p "$work/pairs" "$work/bare"
    for file in examples/samples/*.pdf examples/samples/*/*.pdf; do
        name=${file##*/}
        case $name in
        truncated*) continue ;; # is beyond repair
        *secret*) set -- --password secret ;;
        *) set -- ;;
        esac
        if [ -x "$programs/normalise" ]; then
            "$programs/normalise" "$@" "$file" "$work/pairs/$name" 2>"$work/said" || bad "$name is not imported"
            "$programs/normalise" --plain-filters "$@" "$file" "$work/plain.pdf" 2>"$work/said" ||
                bad "$name is not imported"
        else # built without the import
            "$programs/inspect" "$file" >"$work/said" 2>&1 && cp "$file" "$work/pairs/$name" && cp "$file" "$work/plain.pdf"
        fi
        [ ! -e "$work/pairs/$name" ] || sed 's,/Annots,/Xnnots,g' "$work/plain.pdf" >"$work/bare/$name"
    done
}

