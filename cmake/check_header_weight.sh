#!/bin/sh
# Checks that the public headers stay light: every unit of an application compiles what they include.
# <string>, <vector> and <span> stand in their interfaces, and in those of the tools and the import <exception>,
# <optional> and <variant>; beside these a header may bring 1,500 lines.
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

# The lines that a header may have which stands on these headers of the standard library.
limit_with() {
    echo $(($(printf '#include <%s>\n' "$@" | weigh) + 1500))
}

core_limit=$(limit_with string vector span)
tools_limit=$(limit_with string vector span exception optional variant)
count=0
heavy=0
for header in include/host/*.h include/pdf/*.h include/pdf/tools/*.h; do
    case $header in
    include/pdf/tools/* | include/pdf/import.h) limit=$tools_limit ;;
    *) limit=$core_limit ;;
    esac
    lines=$(echo "#include <${header#include/}>" | weigh)
    count=$((count + 1))
    if [ "$lines" -eq 0 ] || [ "$lines" -gt "$limit" ]; then
        echo "$header: $lines lines, at most $limit"
        heavy=$((heavy + 1))
    fi
done
echo "header-weight: $count headers, $heavy too heavy"
[ "$count" -gt 0 ] && [ "$heavy" -eq 0 ]
