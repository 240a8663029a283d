#!/bin/sh
# Checks what the Debian packages say of themselves, unpacks them into a folder of the build, and builds and
# runs programs against them there. With FILES_PDF_INSTALL_PACKAGES=yes in the environment it installs them on
# this machine instead, as root, removes them again, and checks that nothing of theirs is left. Exit status 77:
# not checked.
#
# usage: check_debian.sh PACKAGES CXX IMPORT
# IMPORT is yes where there are packages of the import.
# shellcheck disable=SC2034 # the parts use the variables
set -eu
LC_ALL=C
export LC_ALL

packages=$(cd "$1" && pwd) cxx=$2 import=$3
here=$(cd "$(dirname "$0")" && pwd)
root=$(cd "$here/../.." && pwd)
sample=$root/examples/samples/plain-2pages.pdf
work=$packages/check

fail() {
    echo "packages: $*" >&2
    exit 1
}

not_checked() {
    echo "packages: not checked: $*" >&2
    exit 77
}

for part in runs debian_control debian_use debian_installation; do
    # shellcheck disable=SC1090 # they stand beside it
    . "$here/$part.sh"
done

check_unpacked() {
    for package in "$packages"/*.deb; do
        dpkg-deb --extract "$package" "$work/unpacked"
    done
    libdir=$(dirname "$(find "$work/unpacked" -name 'libfiles-pdf.so.0.1')")
    export PKG_CONFIG_PATH="$libdir/pkgconfig" LD_LIBRARY_PATH="$libdir"
    use_packages -DCMAKE_PREFIX_PATH="$work/unpacked/usr"
    uses_library_in "$libdir"
    echo "packages: unpacked and used; not installed: FILES_PDF_INSTALL_PACKAGES=yes asks for that"
}

command -v dpkg >/dev/null || not_checked "this machine has no dpkg"
rm -rf "$work"
mkdir -p "$work"
check_control
if [ "${FILES_PDF_INSTALL_PACKAGES-}" = yes ]; then
    check_installed
else
    check_unpacked
fi
