#!/bin/sh
# Installs the Debian packages, builds and runs programs against them, removes them, and checks that nothing
# of theirs is left. Whoever is not root has them unpacked into a folder instead. Exit status 77: not checked.
#
# usage: check_debian.sh PACKAGES CXX IMPORT
# IMPORT is yes where there are packages of the import.
set -eu
LC_ALL=C
export LC_ALL

packages=$(cd "$1" && pwd) cxx=$2 import=$3
here=$(cd "$(dirname "$0")" && pwd)
root=$(cd "$here/../.." && pwd)
source=$root/examples/inspect.cpp
sample=$root/examples/samples/plain-2pages.pdf
modern=$root/examples/samples/modern/object-streams-office.pdf
import_source=
import_names=
if [ "$import" = yes ]; then
    import_source=$root/examples/normalise.cpp
    import_names='libfiles-pdf-import-dev libfiles-pdf-import0.1 '
fi
work=$packages/check

fail() {
    echo "packages: $*" >&2
    exit 1
}

not_checked() {
    echo "packages: not checked: $*" >&2
    exit 77
}

# runs PROGRAM: it prints the facts of the sample.
runs() {
    echo "running $1"
    "$1" "$sample" >"$work/facts"
    grep -qx 'pages 2' "$work/facts" || fail "$1 does not know the sample's pages"
}

# Builds programs as a user of the packages would, with no word about where they are but what is in "$@".
use_packages() {
    cmake -S "$here/consumer" -B "$work/consumer" -G Ninja -DCMAKE_BUILD_TYPE=Release \
        -DCMAKE_CXX_COMPILER="$cxx" -DSTATIC=ON -DPROGRAM="$source" -DIMPORT="$import_source" "$@"
    cmake --build "$work/consumer"
    runs "$work/consumer/shared"
    runs "$work/consumer/static"
    # shellcheck disable=SC2046 # the flags are words
    "$cxx" -std=c++20 "$source" -o "$work/by-pkg-config" $(pkg-config --cflags --libs files-pdf)
    runs "$work/by-pkg-config"
    [ -z "$import_source" ] || use_import
}

use_import() {
    # shellcheck disable=SC2046 # the flags are words
    "$cxx" -std=c++20 "$import_source" -o "$work/import-by-pkg-config" \
        $(pkg-config --cflags --libs files-pdf-import)
    for program in "$work/consumer/import" "$work/import-by-pkg-config"; do
        "$program" "$modern" "$work/imported.pdf"
        "$work/by-pkg-config" "$work/imported.pdf" | grep -qx 'pages 2' || fail "$program made nothing that opens"
    done
}

check_control() {
    for package in "$packages"/*.deb; do
        dpkg-deb --field "$package" Package
    done | tr '\n' ' ' >"$work/names"
    names=$(cat "$work/names")
    [ "$names" = "libfiles-pdf-dev libfiles-pdf-doc ${import_names}libfiles-pdf0.1 " ] ||
        fail "the packages are: $names"
    version=$(dpkg-deb --field "$packages"/libfiles-pdf0.1_*.deb Version)
    for wanted in libc6 libdeflate0 libisal2 'libstdc++6'; do
        dpkg-deb --field "$packages"/libfiles-pdf0.1_*.deb Depends | grep -qF "$wanted (" ||
            fail "the library's package does not depend on $wanted"
    done
    for wanted in "libfiles-pdf0.1 (= $version)" libisal-dev libdeflate-dev; do
        dpkg-deb --field "$packages"/libfiles-pdf-dev_*.deb Depends | grep -qF "$wanted" ||
            fail "the development package does not depend on $wanted"
    done
    [ -z "$import_names" ] || check_import_control
    for package in "$packages"/*.deb; do
        if dpkg-deb --contents "$package" | grep -Ev '^(drwxr-xr-x|-rw-r--r--|lrwxrwxrwx) root/root'; then
            fail "the above in $package is not for everybody"
        fi
    done
    for package in "$packages"/*.deb; do
        dpkg-deb --fsys-tarfile "$package" | tar -t | sed -n 's|^\./|/|p'
    done | sort -u >"$work/paths"
    grep -q '^/usr/lib/[^/]*-linux-gnu[^/]*/libfiles-pdf.so.0.1$' "$work/paths" ||
        fail "the library is in no folder of the architecture"
}

# The import needs libqpdf, the library does not.
check_import_control() {
    for wanted in "libfiles-pdf0.1 (= $version)" libqpdf; do
        dpkg-deb --field "$packages"/libfiles-pdf-import0.1_*.deb Depends | grep -qF "$wanted" ||
            fail "the import's package does not depend on $wanted"
    done
    for wanted in "libfiles-pdf-import0.1 (= $version)" "libfiles-pdf-dev (= $version)"; do
        dpkg-deb --field "$packages"/libfiles-pdf-import-dev_*.deb Depends | grep -qF "$wanted" ||
            fail "the import's development package does not depend on $wanted"
    done
    for package in "$packages"/libfiles-pdf0.1_*.deb "$packages"/libfiles-pdf-dev_*.deb; do
        ! dpkg-deb --field "$package" Depends | grep -q qpdf || fail "$package depends on libqpdf"
        ! dpkg-deb --contents "$package" | grep -q import || fail "$package holds parts of the import"
    done
}

# What of the packages' paths is there, and what dpkg and the loader know of them.
present() {
    while read -r path; do
        { [ ! -e "$path" ] && [ ! -h "$path" ]; } || echo "$path"
    done <"$work/paths"
    find /var/lib/dpkg/info -name 'libfiles-pdf*'
    dpkg-query --show 'libfiles-pdf*' 2>/dev/null || :
    ldconfig -p | grep 'libfiles-pdf' || :
}

# dpkg, waiting for whoever else is just using it.
patient_dpkg() {
    for attempt in 1 2 3 4 5 6 7 8 9 10 11 12; do
        status=0
        dpkg "$@" >"$work/dpkg.log" 2>&1 || status=$?
        if [ "$status" -eq 0 ] || ! grep -q 'lock' "$work/dpkg.log"; then
            break
        fi
        echo "packages: dpkg is busy ($attempt)" >&2
        sleep 5
    done
    [ "$status" -eq 0 ] || cat "$work/dpkg.log" >&2
    return "$status"
}

remove_packages() {
    # shellcheck disable=SC2086 # the names are words
    patient_dpkg --purge $names || echo "packages: PLEASE REMOVE BY HAND: $names" >&2
}

check_installed() {
    # One at a time: other checkouts may run the same test.
    exec 9</var/lib/dpkg
    ! command -v flock >/dev/null || flock -w 600 9 || fail "another test holds on to the packages"
    ! dpkg-query --show 'libfiles-pdf*' >/dev/null 2>&1 || not_checked "packages of these names are installed"
    present >"$work/before"

    trap remove_packages EXIT
    trap 'exit 1' HUP INT TERM
    patient_dpkg --install "$packages"/*.deb
    (
        unset CMAKE_PREFIX_PATH PKG_CONFIG_PATH LD_LIBRARY_PATH LIBRARY_PATH CPLUS_INCLUDE_PATH
        use_packages
        "$work/consumer/shared" "$sample" >/dev/null
        ldd "$work/consumer/shared" | grep -q 'libfiles-pdf.so.0.1 => /lib\|libfiles-pdf.so.0.1 => /usr/lib' ||
            fail "not the installed library is used: $(ldd "$work/consumer/shared")"
    )
    trap - EXIT
    remove_packages
    present >"$work/after"
    diff "$work/before" "$work/after" >&2 || fail "the packages left the above behind"
    echo "packages: installed, used, removed without a trace"
}

check_unpacked() {
    for package in "$packages"/*.deb; do
        dpkg-deb --extract "$package" "$work/unpacked"
    done
    libdir=$(dirname "$(find "$work/unpacked" -name 'libfiles-pdf.so.0.1')")
    export PKG_CONFIG_PATH="$libdir/pkgconfig" LD_LIBRARY_PATH="$libdir"
    use_packages -DCMAKE_PREFIX_PATH="$work/unpacked/usr"
    echo "packages: unpacked and used; installing them takes root"
}

command -v dpkg >/dev/null || not_checked "this machine has no dpkg"
rm -rf "$work"
mkdir -p "$work"
check_control
if [ "$(id -u)" -eq 0 ]; then
    check_installed
else
    check_unpacked
fi
