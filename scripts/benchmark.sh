#!/bin/sh
# Measures the export beside usual tools on a generated school, and the uploads, and prints tables.
# Usage: benchmark.sh [SCALE...]; without, 8 and 64
set -eu
cd "$(dirname "$0")/.."

scripts/setup.sh python3-lxml
cmake --preset release >/dev/null
cmake --build --preset release --target velmora-console velmora-parse velmora-school
Folder=$(mktemp -d)
trap 'rm -rf "$Folder"' EXIT
trap 'exit 1' HUP INT TERM
[ $# -gt 0 ] || set -- 8 64
for Scale in "$@"; do
  build/release/samples/generator/velmora-school --scale "$Scale" "$Folder/plan.velmora"
  printf '\nscale %s\n\n' "$Scale"
  # The system's Python, whose packages these are.
  PATH=/usr/bin:$PATH python3 bench/compare.py build/release/velmora-console build/release/bench/velmora-parse \
    "$Folder/plan.velmora" 5
  echo
  python3 bench/uploads.py build/release/velmora-console "$Folder/plan.velmora" 5
done
