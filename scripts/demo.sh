#!/bin/sh
# Builds the library and the example programs, and takes the bundled invoice form through them.
# What it writes lands in build/demo/.
set -eu

cd "$(dirname "$0")/.."
scripts/setup
scripts/demo-build
scripts/demo-run build/demo-programs/examples build/demo
