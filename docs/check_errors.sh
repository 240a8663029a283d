#!/bin/sh
# usage: check_errors.sh ROOT
# Checks that docs/errors.md has a row for each error code of the headers and for nothing else, and
# that each code has a text.
set -eu

cd "$1"
LC_ALL=C awk '
function offend(reason) {
    print "errors: " reason
    failed = 1
}
FNR == 1 { ++part }
# "    NoError = 0, ///< ..." of the headers; those with a name behind the sign only repeat one.
part <= 2 && $1 ~ /^[A-Za-z]+$/ && $2 == "=" && $3 ~ /^[0-9]+,$/ {
    code = $3 + 0
    if (code in names) offend($1 " and " names[code] " are both " code)
    names[code] = $1
}
# "    {Host::NoError, "no error"}," of the texts; a longer one stands in the next line.
part == 3 && /^    {[A-Za-z:]+,/ {
    name = $1
    gsub(/Host::|[{,]/, "", name)
    texts[name] = 1
}
part == 4 && $1 == "|" && $4 ~ /^0x/ { rows[$2 + 0] = $4 " " $6 }
END {
    for (code in names) {
        ++count
        row = sprintf("0x%X `%s`", code, names[code])
        if (!(code in rows) || rows[code] != row) offend("docs/errors.md has no row " code ", " row)
        # A failure of a foreign document is told as 256 below it, of the own one.
        told = code >= 1792 && code < 2048 && !(names[code] in texts) ? code - 256 : code
        if (!(names[told] in texts)) offend(names[code] " has no text")
        delete rows[code]
    }
    for (code in rows) offend("docs/errors.md has a row of no code: " code)
    if (count < 40) offend("only " count + 0 " codes seen")
    if (!failed) print "errors: " count " codes, each with a text and a row"
    exit failed
}' include/host/error.h include/pdf/errors.h src/values/errors.cpp docs/errors.md
