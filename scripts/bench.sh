#!/bin/sh
# Builds the optimised program and measures the export of schools against a bare parse of their files.
# Usage: bench.sh [BENCHMARK-OPTION...], for instance --benchmark_filter=scale:8$ or --benchmark_format=json
set -eu
cd "$(dirname "$0")/.."

scripts/setup.sh
cmake --preset release >/dev/null
cmake --build --preset release --target velmora-bench
build/release/bench/velmora-bench "$@"
