#!/bin/sh
# Compiles misuse.cpp with none of its mistakes, which must do, and with each, which must not.
#
# usage: check_misuse.sh COMPILER INCLUDE
set -eu

compiler=$1
include=$2
source=$(dirname "$0")/misuse.cpp

compiles() {
    "$compiler" -std=c++20 -fsyntax-only -Werror=unused-result -I "$include" \
        -DMISUSE="$1" "$source" >/dev/null 2>&1
}

if ! compiles 0; then
    echo "misuse: it does not compile without a mistake" >&2
    exit 1
fi
virtual=no
if "$compiler" --version | grep -q clang; then
    virtual=yes
fi
failed=0
count=0
for number in $(sed -n 's/^#.* MISUSE == \([0-9]*\).*/\1/p' "$source"); do
    if [ $virtual = no ] && grep -q "MISUSE == $number // virtual" "$source"; then
        continue
    fi
    count=$((count + 1))
    if compiles "$number"; then
        echo "misuse: number $number compiles" >&2
        failed=1
    fi
done
echo "misuse: $count mistakes tried"
[ $count -gt 10 ] && [ $failed -eq 0 ]
