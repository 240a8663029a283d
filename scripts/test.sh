#!/bin/sh
# Sets up, builds the release preset and runs all tests. Arguments go to the CMake configuration.
set -eu

cd "$(dirname "$0")/.."
scripts/setup
cmake --preset release "$@"
cmake --build --preset release
ctest --preset release -j "$(getconf _NPROCESSORS_ONLN)"
