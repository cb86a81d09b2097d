#!/bin/sh
# Makes samples/schule.velmora anew, for a change of the generator or of the data format.
set -eu
cd "$(dirname "$0")/.."

scripts/setup.sh
cmake --preset release >/dev/null
cmake --build --preset release --target velmora-school
build/release/samples/generator/velmora-school --small --seed 1 samples/schule.velmora
