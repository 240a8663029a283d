#!/bin/sh
# Installs the build, moves the installation, and uses what is in it the way applications would: by
# CMake's find_package, by pkg-config, and by building the installed examples.
#
# usage: check_install.sh CMAKE BUILD CXX LIBDIR DOCDIR STATIC CONFIG IMPORT
# IMPORT is yes where the import was built.
set -eu

cmake=$1 build=$2 cxx=$3 libdir=$4 docdir=$5 static=$6 config=$7 import=$8
case $static in
ON | TRUE | 1 | YES) static=ON ;;
*) static=OFF ;;
esac
here=$(cd "$(dirname "$0")" && pwd)
root=$(cd "$here/../.." && pwd)
source=$root/examples/inspect.cpp
sample=$root/examples/samples/plain-2pages.pdf
modern=$root/examples/samples/modern/object-streams-office.pdf
work=$build/package-check
prefix=$work/moved

fail() {
    echo "package: $*" >&2
    exit 1
}

# shellcheck source=cmake/package/runs.sh
. "$here/runs.sh"

# imports PROGRAM: it makes a document of two pages one that opens.
imports() {
    program=$1
    echo "running $program"
    "$program" "$modern" "$work/imported.pdf"
    "$work/consumer/shared" "$work/imported.pdf" | grep -qx 'pages 2' || fail "$program made nothing that opens"
}

# loads PROGRAM yes|no: whether it loads the shared library.
loads() {
    program=$1 wanted=$2 got=no
    ! readelf -dW "$program" | grep -q 'NEEDED.*libfiles-pdf' || got=yes
    [ $got = "$wanted" ] || fail "$program loads the shared library: $got"
}

check_tree() {
    # Nothing may tell where it was built or first installed.
    if grep -rlF --include='*.cmake' --include='*.pc' -e "$build" -e "$root/include" "$prefix"; then
        fail "the files above name folders of the build"
    fi
    [ -h "$prefix/$libdir/libfiles-pdf.so.0.1" ] || fail "no libfiles-pdf.so.0.1"
    (cd "$prefix/include" && [ "$(echo *)" = files-pdf ]) || fail "headers outside include/files-pdf"
    for page in "$prefix/$docdir"/*.md "$prefix/$docdir"/docs/*.md; do
        sed -n 's/](\([^)]*\))/\n<\1\n/gp' "$page" | sed -n 's/^<\([^:#]*\)\(#.*\)\{0,1\}$/\1/p' |
            while read -r link; do
                [ -z "$link" ] || [ -e "$(dirname "$page")/$link" ] || echo "$page: $link"
            done
    done >"$work/dead"
    [ ! -s "$work/dead" ] || fail "links lead nowhere: $(cat "$work/dead")"
}

check_find_package() {
    "$cmake" -S "$here/consumer" -B "$work/consumer" -G Ninja -DCMAKE_BUILD_TYPE="$config" \
        -DCMAKE_CXX_COMPILER="$cxx" -DCMAKE_PREFIX_PATH="$prefix" -DSTATIC=$static -DPROGRAM="$source" \
        -DIMPORT="$import_source"
    "$cmake" --build "$work/consumer"
    runs "$work/consumer/shared"
    loads "$work/consumer/shared" yes
    if [ $static = ON ]; then
        runs "$work/consumer/static"
        loads "$work/consumer/static" no
    fi
    [ -z "$import_source" ] || imports "$work/consumer/import"
    # The shared library is found where nothing of the codecs is.
    PKG_CONFIG_PATH='' PKG_CONFIG_LIBDIR=$work "$cmake" -S "$here/consumer" -B "$work/without-codecs" -G Ninja \
        -DCMAKE_CXX_COMPILER="$cxx" -DCMAKE_PREFIX_PATH="$prefix" -DPROGRAM="$source"
}

check_pkg_config() {
    PKG_CONFIG_PATH=$prefix/$libdir/pkgconfig${PKG_CONFIG_PATH:+:$PKG_CONFIG_PATH}
    export PKG_CONFIG_PATH
    # shellcheck disable=SC2046 # the flags are words
    "$cxx" -std=c++20 "$source" -o "$work/by-pkg-config" \
        $(pkg-config --cflags --libs files-pdf) -Wl,-rpath,"$prefix/$libdir"
    runs "$work/by-pkg-config"
    loads "$work/by-pkg-config" yes
    if [ -n "$import_source" ]; then
        # shellcheck disable=SC2046 # the flags are words
        "$cxx" -std=c++20 "$import_source" -o "$work/import-by-pkg-config" \
            $(pkg-config --cflags --libs files-pdf-import) -Wl,-rpath,"$prefix/$libdir"
        imports "$work/import-by-pkg-config"
    fi
    [ $static != ON ] || check_static_pkg_config
}

# Only the static library is there. The C compiler links no C++ runtime of its own accord.
check_static_pkg_config() {
    mkdir "$work/static-only"
    cp -R "$prefix/." "$work/static-only"
    rm "$work/static-only/$libdir"/libfiles-pdf.so*
    PKG_CONFIG_PATH=$work/static-only/$libdir/pkgconfig:$PKG_CONFIG_PATH
    pkg-config --static --cflags files-pdf | grep -q 'FILES_PDF_STATIC_DEFINE' ||
        fail "pkg-config --static does not define FILES_PDF_STATIC_DEFINE"
    # shellcheck disable=SC2046 # the flags are words
    "$cxx" -std=c++20 -c "$source" -o "$work/inspect.o" $(pkg-config --static --cflags files-pdf)
    # shellcheck disable=SC2046 # the flags are words
    cc "$work/inspect.o" -o "$work/static-by-pkg-config" $(pkg-config --static --libs files-pdf)
    runs "$work/static-by-pkg-config"
    loads "$work/static-by-pkg-config" no
}

check_examples() {
    "$cmake" -S "$prefix/$docdir/examples" -B "$work/examples" -G Ninja -DCMAKE_BUILD_TYPE="$config" \
        -DCMAKE_CXX_COMPILER="$cxx" -DCMAKE_PREFIX_PATH="$prefix"
    "$cmake" --build "$work/examples"
    runs "$work/examples/inspect"
    for program in "$root"/examples/*.cpp; do
        [ "$program" != "$root/examples/normalise.cpp" ] || [ -n "$import_source" ] || continue
        [ -x "$work/examples/$(basename "$program" .cpp)" ] || fail "$program was not built"
    done
    sh "$root/examples/tests/run.sh" documents recompress "$work/examples" "$root/examples/samples" \
        "$work/example-run" plain-2pages.pdf
}

import_source=
[ "$import" != yes ] || import_source=$root/examples/normalise.cpp
rm -rf "$work"
mkdir -p "$work"
"$cmake" --install "$build" --config "$config" --prefix "$work/first" >"$work/install.log"
mv "$work/first" "$prefix"
check_tree
check_find_package
check_examples
check_pkg_config
