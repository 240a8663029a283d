# shellcheck shell=sh disable=SC2154 # part of check_debian.sh: the packages on this machine.

# present: the paths of the packages that exist, and what dpkg and the loader know of them.
present() {
    while read -r path; do
        { [ ! -e "$path" ] && [ ! -h "$path" ]; } || echo "$path"
    done <"$work/paths"
    find /var/lib/dpkg/info -name 'libfiles-pdf*'
    dpkg-query --show 'libfiles-pdf*' 2>/dev/null || :
    ldconfig -p | grep 'libfiles-pdf' || :
}

# patient_dpkg ARGUMENT...: runs dpkg, and waits for whoever else is using it.
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

# Installs the packages, uses them, removes them, and looks for traces.
check_installed() {
    [ "$(id -u)" -eq 0 ] || fail "installing packages takes root"
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
        uses_library_in '\(/usr\)\{0,1\}/lib/[^/]*'
    )
    trap - EXIT
    remove_packages
    present >"$work/after"
    diff "$work/before" "$work/after" >&2 || fail "the packages left the above behind"
    echo "packages: installed, used, removed without a trace"
}
