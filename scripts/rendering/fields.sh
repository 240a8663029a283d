# shellcheck shell=sh disable=SC2034,SC2154 # part of scripts/check-rendering: fields that are filled in.

# widgets FILE: "FIELD PAGE X0 Y0 X1 Y1" for each widget of a file that rewrite wrote.
widgets() {
    mutool show "$1" pages 2>/dev/null | sed -n 's/^page \([0-9]*\) = \([0-9]*\) .*/\2 \1/p' >"$work/pages"
    awk -v pages="$work/pages" '
        BEGIN {
            while ((getline line < pages) > 0) {
                split(line, part, " ")
                page[part[1]] = part[2]
            }
        }
        / obj$/ { id = $1 }
        match($0, /\/T \([^)]*\)/) { name[id] = substr($0, RSTART + 4, RLENGTH - 5) }
        match($0, /\/Parent [0-9]+/) { parent[id] = substr($0, RSTART + 8, RLENGTH - 8) }
        match($0, /\/P [0-9]+/) { on[id] = page[substr($0, RSTART + 3, RLENGTH - 3)] }
        match($0, /\/Rect \[[^]]*/) { box[id] = substr($0, RSTART + 8, RLENGTH - 8) }
        END {
            for (id in box) {
                field = id in name ? name[id] : name[parent[id]]
                if (field != "") print field, on[id], box[id]
            }
        }' "$1"
}

# others KIND VALUE CHOICES: values that a field like that can be set to, a line each.
others() {
    case $1 in
    text) echo "Zoë (q|\\y)" ;;
    *) echo "$3" | sed 's/, /\n/g' | grep -vxF -- "$2" ;;
    esac
}

# shows_text RENDERER FILE PAGE TEXT: the renderer finds the text on the page.
shows_text() {
    case $1 in
    poppler) pdftotext -enc UTF-8 -f "$3" -l "$3" "$2" - 2>/dev/null ;;
    mupdf) mutool draw -q -F txt "$2" "$3" 2>/dev/null ;;
    esac | grep -qF -- "$4" || bad "$1 finds no $4 on page $3 of $2"
}

# Each field of each form set to something else: that is what it shows then, in its own place.
check_fields() {
    group "a field that is set shows that, and nothing else changes"
    set=0
    for file in examples/samples/*form*.pdf; do
        name=$(basename "$file" .pdf)
        "$programs/rewrite" --faithful "$file" "$work/$name-fields.pdf"
        widgets "$work/$name-fields.pdf" >"$work/widgets"
        render "$work/$name-fields.pdf"
        "$programs/fields" "$file" | grep -v '\.' >"$work/fields"
        while IFS='	' read -r field kind _ value choices; do
            place=$(sed -n "s/^$field \([0-9]*\) .*/\1/p" "$work/widgets" | head -n 1)
            sed -n "s/^$field $place /$field /p" "$work/widgets" >"$work/boxes"
            others "$kind" "$value" "$choices" >"$work/others"
            while read -r other; do
                set=$((set + 1))
                "$programs/fill" --faithful "$file" "$work/$name-filled.pdf" "$field=$other" ||
                    bad "$name: $field takes no $other"
                render "$work/$name-filled.pdf"
                for renderer in $renderers; do
                    got=$(changed "$renderer" "$name-fields" "$name-filled" "$place")
                    [ "$got" = "$field " ] || bad "$renderer: $field=$other changes ${got:-nothing}"
                    for image in "$work/$name-filled.$renderer".*.ppm; do
                        case $image in *."$place".ppm) continue ;; esac
                        cmp -s "$image" "$work/$name-fields${image#"$work/$name-filled"}" ||
                            bad "$renderer: $field=$other changes another page"
                    done
                    [ "$kind" = button ] ||
                        shows_text "$renderer" "$work/$name-filled.pdf" "$place" "$other"
                done
            done <"$work/others"
        done <"$work/fields"
    done
    [ "$set" -ge 15 ] || bad "only $set values were tried"
}

# Forms of other producers with the looks that they have.
check_flattened_forms() {
    group "a form that is flattened looks the same"
    for file in "$work"/pairs/*form*.pdf; do
        name=$(basename "$file" .pdf)
        "$programs/fill" --flatten --faithful "$file" "$work/$name-flattened.pdf" 2>"$work/said" ||
            bad "$name is not flattened: $(cat "$work/said")"
        qpdf --check "$work/$name-flattened.pdf" >"$work/said" 2>&1 || bad "$name is not sound when flattened"
        draw_nested "$name-flattened" "$work/$name-flattened.pdf"
        case $name in
        hyperref-form) shows_bare_form "$name-flattened" ;;
        *)
            draw_nested "$name-form" "$file"
            same_pages "$name-form" "$name-flattened"
            ;;
        esac
    done
}

# shows_bare_form NAME: nobody drew the fields of this form before, so renderers draw each its own
# way. Flattened it shows what is chosen, in a border of each field's own.
shows_bare_form() {
    for renderer in $renderers; do
        shows_text "$renderer" "$work/$1.pdf" 1 eins
        borders=$(body "$work/$1.$renderer.1.ppm" | od -An -v -tx1 -w3 | grep -c 'ff 00 00')
        [ "$borders" -gt 4000 ] || bad "$renderer: $1 has $borders pixels of borders"
    done
}
