# shellcheck shell=bash disable=SC2034 # the parts use these variables
# Begins a part of scripts/check-rendering. Each part sources this file first and calls finish last.
# It sets
#   part       the name of the part
#   programs   the folder of the example programs, the argument of the part
#   work       an empty folder for what the part makes, build/rendering/PART
#   renderers  the programs that draw
#   scale      the pixels for each point
set -eu
export LC_ALL=C

part=${0##*/}
if [ $# -ne 1 ]; then
    echo "usage: scripts/rendering/$part PROGRAMS" >&2
    exit 2
fi
programs=$(cd "$1" && pwd)
cd "$(dirname "$0")/../.."
for tool in qpdf pdftoppm pdftotext mutool; do
    command -v $tool >/dev/null && continue
    echo "$part: $tool is missing; scripts/setup --ci installs it" >&2
    exit 1
done

work=$PWD/build/rendering/$part
renderers=(poppler mupdf)
scale=2
rm -rf "$work"
mkdir -p "$work"

for file in pictures differences documents samples; do
    # shellcheck disable=SC1090 # they stand beside this file
    . "scripts/rendering/$file.sh"
done

# bad WHAT...: notes a fault and goes on, so that one run tells all faults.
bad() {
    echo "$part: $*" | tee -a "$work/failures" >&2
}

# group WHAT...: says what is checked next.
group() {
    echo "== $*"
}

# count THING...: how many there are.
count() {
    echo $#
}

# finish: ends the part. It fails where a fault was noted, or where nothing was drawn.
finish() {
    local pictures
    pictures=$(find "$work" -name '*.ppm' | wc -l)
    [ "$pictures" -gt 0 ] || bad "nothing was drawn"
    if [ -s "$work/failures" ]; then
        echo "$part: $(wc -l <"$work/failures") faults; what was drawn is in $work" >&2
        exit 1
    fi
    echo "$part: no fault in $pictures pictures"
}
