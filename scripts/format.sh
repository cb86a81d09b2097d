#!/bin/sh
# Formats the sources in place; with --check changes nothing and fails where a source is laid out differently.
set -eu
cd "$(dirname "$0")/.."

case "${1-}" in
  --check) set -- --dry-run --Werror ;;
  "") set -- -i ;;
  *)
    echo "Usage: format.sh [--check]" >&2
    exit 2
    ;;
esac

find . \( -path ./build -o -path ./out -o -path './.?*' \) -prune -o \( -name '*.h' -o -name '*.cpp' \) -print0 |
  sort -z | xargs -0 clang-format "$@"
