# shellcheck shell=sh disable=SC2154 # part of check_debian.sh: what the packages say of themselves.

# needs PACKAGE WANTED...: the package depends on each of these.
needs() {
    package=$1
    shift
    depends=$(dpkg-deb --field "$packages/${package}"_*.deb Depends)
    for wanted in "$@"; do
        case $depends in *"$wanted"*) continue ;; esac
        fail "$package does not depend on $wanted"
    done
}

# The names of the packages are those that are wanted, and stand in $names.
check_names() {
    import_packages=
    [ "$import" != yes ] || import_packages='libfiles-pdf-import-dev libfiles-pdf-import0.1 '
    for package in "$packages"/*.deb; do
        dpkg-deb --field "$package" Package
    done | tr '\n' ' ' >"$work/names"
    names=$(cat "$work/names")
    [ "$names" = "libfiles-pdf-dev libfiles-pdf-doc ${import_packages}libfiles-pdf0.1 " ] ||
        fail "the packages are: $names"
}

# The import needs libqpdf, the library does not.
check_import_needs() {
    needs libfiles-pdf-import0.1 "libfiles-pdf0.1 (= $version)" libqpdf
    needs libfiles-pdf-import-dev "libfiles-pdf-import0.1 (= $version)" "libfiles-pdf-dev (= $version)"
    for package in "$packages"/libfiles-pdf0.1_*.deb "$packages"/libfiles-pdf-dev_*.deb; do
        ! dpkg-deb --field "$package" Depends | grep -q qpdf || fail "$package depends on libqpdf"
        ! dpkg-deb --contents "$package" | grep -q import || fail "$package holds parts of the import"
    done
}

# Everybody may read the files, and root owns them. $work/paths lists them.
check_files() {
    for package in "$packages"/*.deb; do
        if dpkg-deb --contents "$package" | grep -Ev '^(drwxr-xr-x|-rw-r--r--|lrwxrwxrwx) root/root'; then
            fail "the above in $package is not for everybody"
        fi
        dpkg-deb --fsys-tarfile "$package" | tar -t | sed -n 's|^\./|/|p' >>"$work/all-paths"
    done
    sort -u "$work/all-paths" >"$work/paths"
    grep -q '^/usr/lib/[^/]*-linux-gnu[^/]*/libfiles-pdf.so.0.1$' "$work/paths" ||
        fail "the library is in no folder of the architecture"
}

check_control() {
    check_names
    version=$(dpkg-deb --field "$packages"/libfiles-pdf0.1_*.deb Version)
    needs libfiles-pdf0.1 'libc6 (' 'libdeflate0 (' 'libisal2 (' 'libstdc++6 ('
    needs libfiles-pdf-dev "libfiles-pdf0.1 (= $version)" libisal-dev libdeflate-dev
    [ "$import" != yes ] || check_import_needs
    check_files
}
