#!/bin/sh
# Checks that the built shared library, and each object in it, carries what hardening.cmake asks for.
#
# usage: check_hardening.sh LIBRARY OBJECTS COMPILE_COMMANDS
# OBJECTS is the folder of the library's objects, named after their target.
set -eu
LC_ALL=C
export LC_ALL

library=$1 objects=$2 commands=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
trap 'exit 1' HUP INT TERM
faults=0

fault() {
    echo "hardening: $*" >&2
    faults=$((faults + 1))
}

readelf -hW "$library" >"$work/header"
readelf -dW "$library" >"$work/dynamic"
readelf -lW "$library" >"$work/segments"
nm --dynamic --undefined-only "$library" >"$work/undefined"

grep -q 'GNU_RELRO' "$work/segments" || fault "no part is read-only after relocation"
grep -Eq '\((BIND_NOW|FLAGS)\).*BIND_NOW|\(BIND_NOW\)' "$work/dynamic" || fault "symbols are bound lazily"
grep -q 'GNU_STACK' "$work/segments" || fault "no word about the stack"
! grep 'GNU_STACK' "$work/segments" | grep -q 'E ' || fault "the stack is executable"
! grep -q 'LOAD.* RWE ' "$work/segments" || fault "a segment is writable and executable"
! grep -Eq '\((RPATH|RUNPATH)\)' "$work/dynamic" || fault "a search path for libraries is built in"
! grep -Eq 'TEXTREL' "$work/dynamic" || fault "code is relocated"
grep -q ' __stack_chk_fail' "$work/undefined" || fault "no function guards its stack"

# Nothing in the library calls what has a checked variant with a size the compiler knows, so the commands
# have to tell. Without optimisation the definition does nothing.
target=$(basename "$objects" .dir)
grep '"command": .*/'"$target"'[.]dir/' "$commands" >"$work/commands" ||
    fault "$commands has no command for the library"
while read -r line; do
    case $line in
    *'-D_FORTIFY_SOURCE='[23]*) ;;
    *) fault "not fortified: $line" ;;
    esac
    case $line in
    *' -O'[123s]*) ;;
    *) fault "not optimised: $line" ;;
    esac
done <"$work/commands"

# The linker is told to note that the library is fit for control-flow enforcement (hardening.cmake). That
# is so where all objects are, and nothing jumps to _init and _fini, which may lack their landing pads.
noted() {
    readelf -nW "$1" 2>/dev/null | grep -q 'x86 feature: IBT, SHSTK'
}
if grep -q 'Machine:.*X86-64' "$work/header"; then
    noted "$library" || fault "no note about control-flow enforcement"
    ! grep -Eq '\((INIT|FINI)\)' "$work/dynamic" || fault "_init or _fini is called"
    find "$objects" -name '*.o' >"$work/objects"
    [ -s "$work/objects" ] || fault "no objects in $objects"
    while read -r object; do
        noted "$object" || fault "$object is not made for control-flow enforcement"
    done <"$work/objects"
fi

[ "$faults" -eq 0 ]
echo "hardening: $(wc -l <"$work/commands") compile commands and the library have it all"
