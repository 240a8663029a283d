#!/bin/sh
# Checks that the public headers stay light: every unit of an application compiles what they include.
# <string>, <vector> and <span> stand in their interfaces; beside these a header may bring 1,500 lines.
# The headers of the tools are not looked at.
#
# usage: check_header_weight.sh COMPILER [ROOT]
# Prints each header that is too heavy and fails; a tree without headers fails too.
set -eu

compiler=$1
cd "${2:-$(dirname "$0")/..}"

# The lines that the compiler sees of what it is given.
weigh() {
    "$compiler" -std=c++20 -Iinclude -E -P -x c++ - | wc -l
}

needed=$(printf '#include <%s>\n' string vector span | weigh)
limit=$((needed + 1500))
count=0
heavy=0
for header in include/host/*.h include/pdf/*.h; do
    lines=$(echo "#include <${header#include/}>" | weigh)
    count=$((count + 1))
    if [ "$lines" -eq 0 ] || [ "$lines" -gt "$limit" ]; then
        echo "$header: $lines lines, at most $limit"
        heavy=$((heavy + 1))
    fi
done
echo "header-weight: $count headers, $heavy too heavy"
[ "$count" -gt 0 ] && [ "$heavy" -eq 0 ]
