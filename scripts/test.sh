#!/bin/sh
# Builds everything and runs all tests; ctest's lines are the last ones.
# Usage: test.sh [CMAKE-OPTION...], such as -DVELMORA_WERROR=ON
set -eu
cd "$(dirname "$0")/.."

scripts/setup.sh
cmake --preset release "$@"
cmake --build --preset release
ctest --preset release --parallel "$(nproc)"
