#!/bin/sh
# Builds the program, exports the sample school into out/ and shows what came of it.
set -eu
cd "$(dirname "$0")/.."

scripts/setup.sh
cmake --preset release >/dev/null
cmake --build --preset release --target velmora-console

echo
echo "\$ velmora-console export -s file -fn samples/schule.velmora -o out"
build/release/velmora-console export -s file -fn samples/schule.velmora -o out

echo "\$ ls out"
ls out
for File in Teachers.csv Rooms.csv; do
  echo
  echo "\$ head -n 4 out/$File"
  head -n 4 "out/$File"
done
