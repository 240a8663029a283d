# shellcheck shell=sh disable=SC2154 # part of check_install.sh and check_debian.sh

# runs PROGRAM: it prints the facts of the sample.
runs() {
    program=$1
    echo "running $program"
    "$program" "$sample" >"$work/facts"
    grep -qx 'pages 2' "$work/facts" || fail "$program does not know the sample's pages"
}
