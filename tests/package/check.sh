#!/bin/sh
# Installs the build into a prefix of its own, builds an example against it through CMake and
# through pkg-config, and runs what came out.
set -eu

cmake=$1 build=$2 cxx=$3 libdir=$4 static=$5 config=$6
here=$(cd "$(dirname "$0")" && pwd)
source=$here/../../examples/inspect.cpp
sample=$here/../../examples/samples/plain-2pages.pdf
work=$build/package-check
prefix=$work/prefix

rm -rf "$work"
mkdir -p "$work"
"$cmake" --install "$build" --config "$config" --prefix "$prefix" >"$work/install.log"

"$cmake" -S "$here" -B "$work/consumer" -G Ninja -DCMAKE_BUILD_TYPE="$config" \
    -DCMAKE_CXX_COMPILER="$cxx" -DCMAKE_PREFIX_PATH="$prefix"
"$cmake" --build "$work/consumer"

PKG_CONFIG_PATH=$prefix/$libdir/pkgconfig${PKG_CONFIG_PATH:+:$PKG_CONFIG_PATH}
export PKG_CONFIG_PATH
# shellcheck disable=SC2046 # the flags are words
"$cxx" -std=c++20 "$source" -o "$work/inspect-pkg-config" \
    $(pkg-config --cflags --libs files-pdf) -Wl,-rpath,"$prefix/$libdir"

programs="$work/consumer/inspect-shared $work/inspect-pkg-config"
case $static in
ON | TRUE | 1 | YES) programs="$programs $work/consumer/inspect-static" ;;
esac
for program in $programs; do
    echo "running $program"
    "$program" "$sample" >"$work/facts"
    grep -qx 'pages 2' "$work/facts"
done
