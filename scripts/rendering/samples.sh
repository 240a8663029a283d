# shellcheck shell=bash disable=SC2154 # part of scripts/check-rendering: the samples.

# import_sample FILE TARGET [OPTION...]: what the import makes of a sample. Without the import it is
# the sample itself, where the library opens that.
import_sample() {
    local file=$1 target=$2
    shift 2
    case ${file##*/} in *secret*) set -- --password secret "$@" ;; esac
    if [ -x "$programs/normalise" ]; then
        "$programs/normalise" "$@" "$file" "$target" 2>"$work/said" || bad "$file is not imported"
    elif "$programs/inspect" "$file" >"$work/said" 2>&1; then
        cp "$file" "$target"
    fi
}

# import_samples FOLDER: imports every sample that can be repaired.
import_samples() {
    local folder=$1 file
    mkdir -p "$folder"
    for file in examples/samples/*.pdf examples/samples/*/*.pdf; do
        case $file in */truncated*) continue ;; esac # it is beyond repair
        import_sample "$file" "$folder/${file##*/}"
    done
}

# import_papers FOLDER: imports every sample as a letterhead. The letterhead has no annotations, and
# its contents can be decoded.
import_papers() {
    local folder=$1 file
    mkdir -p "$folder"
    for file in examples/samples/*.pdf examples/samples/*/*.pdf; do
        case $file in */truncated*) continue ;; esac
        rm -f "$work/plain.pdf"
        import_sample "$file" "$work/plain.pdf" --plain-filters
        [ ! -e "$work/plain.pdf" ] || sed 's,/Annots,/Xnnots,g' "$work/plain.pdf" >"$folder/${file##*/}"
    done
}
