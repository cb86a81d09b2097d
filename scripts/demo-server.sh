#!/bin/sh
# Starts a stand-in for the data server with the sample school, exports from it and imports a set into it.
# Usage: demo-server.sh [FOLDER]
#   FOLDER  of a build whose programs are taken; without it they are built first
set -eu
cd "$(dirname "$0")/.."

if [ $# -eq 0 ]; then
  scripts/setup.sh
  cmake --preset release >/dev/null
  cmake --build --preset release --target velmora-console velmora-host velmora-forms
fi
StandIn="$PWD/tests/remote/standin"
Sample="$PWD/samples/schule.velmora"
PATH="$(cd "${1:-build/release}" && pwd):$PATH"
PATH="${PATH%%:*}/tests:$PATH"

Folder="$(mktemp -d)"
Server=""
finish() {
  [ -z "$Server" ] || kill "$Server" 2>/dev/null || true
  rm -rf "$Folder"
}
trap finish EXIT
trap 'exit 1' HUP INT TERM
cd "$Folder"

run() {
  echo "\$ $*"
  "$@"
  echo
}

Id="{0E984725-C51C-4BF4-9960-E1C80E27ABA0}"
velmora-forms convert "$Sample" plan.z
python3 "$StandIn" --user anna:secret --plan "$Id=plan.z" --life 120 >port &
Server=$!
Tries=0
until [ -s port ]; do
  Tries=$((Tries + 1))
  if [ "$Tries" -gt 100 ] || ! kill -0 "$Server" 2>/dev/null; then
    echo "demo-server: the stand-in does not start" >&2
    exit 1
  fi
  sleep 0.1
done
Port="$(sed 's/.*://' port)"
echo "\$ python3 tests/remote/standin --user anna:secret --plan $Id=plan.z &"
cat port
echo

run velmora-console export -s server -sn 127.0.0.1 -sp "$Port" -un anna -up secret -sf "$Id" -o out -minimal-display
run grep A000 out/Rooms.csv

mkdir in
printf 'Id;Code;Name;Capacity\n6d2e1c9a-1b7f-4d4c-9c3e-2f0a51b7a001;Z99;Neubau;17\n' >in/Rooms.csv
cat >import.json <<END
{
  "Velmora": {
    "ocfExport": { "sourceProvider": "Server" },
    "ocfImport": {
      "targetProvider": "Server",
      "serverName": "127.0.0.1",
      "serverPort": $Port,
      "serverUserName": "anna",
      "serverPassword": "secret",
      "serverFileId": "$Id",
      "sourceFolderName": "in"
    }
  }
}
END
run cat in/Rooms.csv
run velmora-host import import.json -minimal-display
run velmora-console export -s server -sn 127.0.0.1 -sp "$Port" -un anna -up secret -sf "$Id" -o out -minimal-display
run grep Neubau out/Rooms.csv
run velmora-console export -s server -sn 127.0.0.1 -sp "$Port" -un anna -up wrong -sf "$Id" -o out -minimal-display || true
