#!/bin/sh
# Compares the symbols that a shared library exports with the list that is kept: exported-symbols.txt,
# exported-symbols-import.txt for libfiles-pdf-import.
#
# usage: check_exports.sh LIBRARY [--update]
# --update writes the list anew.
set -eu
LC_ALL=C
export LC_ALL

library=$1
part=$(basename "$library" | sed 's/^libfiles-pdf//; s/[.]so.*//')
list=$(cd "$(dirname "$0")" && pwd)/exported-symbols$part.txt
found=$(mktemp)
trap 'rm -f "$found"' EXIT
trap 'exit 1' HUP INT TERM

nm --dynamic --defined-only --with-symbol-versions "$library" | awk '{ print $3 }' | sort >"$found"
[ -s "$found" ] || {
    echo "exports: $library exports nothing" >&2
    exit 1
}
if [ "${2-}" = --update ]; then
    cat "$found" >"$list"
    exit 0
fi
if ! diff "$list" "$found" >/dev/null; then
    echo "exports: the list (<) and the library (>) differ:" >&2
    diff "$list" "$found" | grep '^[<>]' | c++filt >&2 || :
    echo "exports: where the change is meant, run: cmake/check_exports.sh $library --update" >&2
    exit 1
fi
echo "exports: $(wc -l <"$list") symbols, as listed"
