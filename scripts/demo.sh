#!/bin/sh
# Builds the library and the example programs, and takes the bundled invoice form through them.
# What it writes lands in build/demo/.
set -eu

cd "$(dirname "$0")/.."
scripts/setup
cmake --preset release -B build/demo-programs \
    -DFILES_PDF_TESTS=OFF -DFILES_PDF_BENCHMARKS=OFF -DFILES_PDF_STATIC=OFF
cmake --build build/demo-programs
scripts/demo-run build/demo-programs/examples build/demo
