#!/usr/bin/env bash
# Builds the programs for 64-bit Windows, runs their tests under Wine, and packs them.
# Usage: windows.sh [CMAKE-OPTION...], such as -DVELMORA_WERROR=ON
set -euo pipefail
cd "$(dirname "$0")/.."

Build=$PWD/build/windows
Step() { printf '\n-- %s (after %d s)\n' "$1" "$SECONDS"; }

Step "packages"
scripts/setup.sh g++-mingw-w64-x86-64-posix libz-mingw-w64-dev wine64 libgnutls30 ca-certificates googletest \
  dpkg-dev xz-utils

Step "libraries"
# Built anew with the recipe, the compiler, or the sources, whose versions are those of this system's own libraries.
Key=$({
  cat scripts/windows-libraries.sh cmake/mingw-w64.cmake
  dpkg-query --show g++-mingw-w64-x86-64-posix libz-mingw-w64-dev libcurl4-openssl-dev libpugixml-dev libzip-dev \
    libutf8proc-dev nlohmann-json3-dev libutfcpp-dev googletest
} | sha256sum | cut -c 1-16)
Libraries=${XDG_CACHE_HOME:-$HOME/.cache}/velmora-windows/$Key
if [ ! -f "$Libraries/complete" ]; then
  rm -rf "$Libraries"
  mkdir -p "$Libraries"
  scripts/windows-libraries.sh "$Libraries" >"$Libraries/log" 2>&1 || {
    tail -n 50 "$Libraries/log" >&2
    exit 1
  }
  touch "$Libraries/complete"
fi
echo "$Libraries"

Step "build"
# The programs of this system, whose files those of Windows must be equal to.
cmake --preset release >/dev/null
cmake --build --preset release --target velmora-console velmora-host velmora-forms
# CMake keeps the places where it has found libraries.
Fresh=--fresh
grep -qsxF "VELMORA_WINDOWS_LIBRARIES:UNINITIALIZED=$Libraries" "$Build/CMakeCache.txt" && Fresh=""
# shellcheck disable=SC2086  # no word at all where nothing is to be found anew
cmake $Fresh --preset windows -DVELMORA_WINDOWS_LIBRARIES="$Libraries" -DVELMORA_LINUX_PROGRAMS="$PWD/build/release" "$@"
cmake --build --preset windows

Step "tests under Wine"
export HOME=$Build/wine/home WINEPREFIX=$Build/wine/prefix WINEDEBUG=-all LC_ALL=C.UTF-8 TZ=UTC
export WINEDLLOVERRIDES='mscoree,mshtml=;winemenubuilder.exe=d;winedbg.exe=d'
unset DISPLAY
mkdir -p "$HOME" "$WINEPREFIX"
Wine=/usr/lib/wine
# Among random addresses one start of a thousand has something of its own where Wine wants a page that all share.
Steadily=(setarch --addr-no-randomize)
"${Steadily[@]}" true 2>/dev/null || Steadily=()
trap '"$Wine/wineserver64" -k || true' EXIT
# One of a run that was ended would refuse a second one.
"$Wine/wineserver64" -k </dev/null >/dev/null 2>&1 || true
"$Wine/wineserver64" -p </dev/null >/dev/null 2>&1
# The first program starts Wine's services, which keep its output open as long as they live.
"${Steadily[@]}" "$Wine/wine64" wineboot -i </dev/null >/dev/null 2>&1
"${Steadily[@]}" "$Wine/wine64" winecfg -v win10 </dev/null >/dev/null 2>&1
# ctest's exit code is told last, behind what was left out.
Result=0
"${Steadily[@]}" ctest --preset windows --parallel "$(nproc)" || Result=$?
python3 tests/windows/left_out.py "$Build/Testing/Temporary/LastTest.log" tests
[ "$Result" -eq 0 ] || exit "$Result"

Step "archive"
rm -f "$Build"/velmora-console-*-windows-x64.zip
(cd "$Build" && cpack --config CPackConfig.cmake)
"${Steadily[@]}" python3 tests/windows/archive_test.py "$Build"/velmora-console-*-windows-x64.zip
printf '\n-- done (after %d s)\n' "$SECONDS"
