# shellcheck shell=sh disable=SC2154 # part of check_debian.sh: programs that use the packages.

# use_packages [OPTION...]: builds and runs programs as a user of the packages does. Only the options of CMake
# and the environment say where the packages are.
use_packages() {
    import_source=
    [ "$import" != yes ] || import_source=$root/examples/normalise.cpp
    cmake -S "$here/consumer" -B "$work/consumer" -G Ninja -DCMAKE_BUILD_TYPE=Release \
        -DCMAKE_CXX_COMPILER="$cxx" -DSTATIC=ON -DPROGRAM="$root/examples/inspect.cpp" -DIMPORT="$import_source" "$@"
    cmake --build "$work/consumer"
    runs "$work/consumer/shared"
    runs "$work/consumer/static"
    # shellcheck disable=SC2046 # the flags are words
    "$cxx" -std=c++20 "$root/examples/inspect.cpp" -o "$work/by-pkg-config" $(pkg-config --cflags --libs files-pdf)
    runs "$work/by-pkg-config"
    [ -z "$import_source" ] || use_import
}

use_import() {
    # shellcheck disable=SC2046 # the flags are words
    "$cxx" -std=c++20 "$import_source" -o "$work/import-by-pkg-config" \
        $(pkg-config --cflags --libs files-pdf-import)
    for program in "$work/consumer/import" "$work/import-by-pkg-config"; do
        "$program" "$root/examples/samples/modern/object-streams-office.pdf" "$work/imported.pdf"
        "$work/by-pkg-config" "$work/imported.pdf" | grep -qx 'pages 2' || fail "$program made nothing that opens"
    done
}

# uses_library_in FOLDER: the program that was built finds the shared library there. FOLDER is a regular
# expression.
uses_library_in() {
    folder=$1
    ldd "$work/consumer/shared" | grep -q "libfiles-pdf.so.0.1 => $folder/libfiles-pdf" ||
        fail "no library in $folder is used: $(ldd "$work/consumer/shared")"
}
