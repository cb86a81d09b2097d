#!/usr/bin/env bash
# Builds the libraries that the programs stand on for 64-bit Windows, static, from Debian's source packages.
# Usage: windows-libraries.sh PREFIX
set -euo pipefail
cd "$(dirname "$0")/.."

Prefix=$1
Toolchain=$PWD/cmake/mingw-w64.cmake
Triplet=x86_64-w64-mingw32
Work=$(mktemp -d)
trap 'rm -rf "$Work"' EXIT

# The lists of sources are this script's own: the system's stay as they are.
FetchSources() {
  mkdir -p "$Work/apt/lists/partial" "$Work/apt/cache/archives/partial" "$Work/src"
  apt-get indextargets --format 'deb-src $(REPO_URI) $(RELEASE) $(COMPONENT)' \
    'Created-By: Packages' 'Origin: Debian' | sort -u >"$Work/apt/sources.list"
  local Apt=(apt-get -q -o "Dir::Etc::SourceList=$Work/apt/sources.list" -o Dir::Etc::SourceParts=-
    -o "Dir::State::Lists=$Work/apt/lists" -o "Dir::Cache=$Work/apt/cache" -o APT::Sandbox::User=)
  "${Apt[@]}" update
  (cd "$Work/src" && "${Apt[@]}" source "$@")
}

# CMakeBuild NAME SOURCE OPTION...
CMakeBuild() {
  local Name=$1 Source=$2
  shift 2
  cmake -S "$Source" -B "$Work/$Name" -G Ninja -DCMAKE_TOOLCHAIN_FILE="$Toolchain" \
    -DVELMORA_WINDOWS_LIBRARIES="$Prefix" -DCMAKE_INSTALL_PREFIX="$Prefix" -DCMAKE_BUILD_TYPE=Release \
    -DBUILD_SHARED_LIBS=OFF "$@"
  cmake --build "$Work/$Name"
  cmake --install "$Work/$Name"
}

# Headers without a library, with the files by which CMake finds them.
HeaderOnly() {
  mkdir -p "$Prefix/include" "$Prefix/share/cmake" "$Prefix/utf8cpp/lib/cmake"
  cp -rL /usr/include/nlohmann /usr/include/utf8cpp "$Prefix/include/"
  cp -rL /usr/share/cmake/nlohmann_json "$Prefix/share/cmake/"
  # As many folders below the prefix as where it comes from, since it counts them.
  cp -rL /usr/lib/*/cmake/utf8cpp "$Prefix/utf8cpp/lib/cmake/"
}

Off() { printf -- "-D$1%s=OFF " "${@:2}"; }

Licences() {
  mkdir -p "$Prefix/licences"
  local Name
  for Name in pugixml libzip curl utf8proc; do
    cp "$Work"/src/$Name-[0-9]*[0-9]/debian/copyright "$Prefix/licences/$Name.txt"
  done
  cp /usr/share/doc/libz-mingw-w64-dev/copyright "$Prefix/licences/zlib.txt"
  cp /usr/share/doc/nlohmann-json3-dev/copyright "$Prefix/licences/nlohmann-json.txt"
  cp /usr/share/doc/libutfcpp-dev/copyright "$Prefix/licences/utfcpp.txt"
  cp /usr/share/doc/g++-mingw-w64-x86-64-posix/copyright "$Prefix/licences/gcc.txt"
  cp /usr/share/doc/mingw-w64-x86-64-dev/copyright "$Prefix/licences/mingw-w64.txt"
}

FetchSources pugixml libzip curl utf8proc
CMakeBuild pugixml "$Work"/src/pugixml-[0-9]*[0-9]
# shellcheck disable=SC2046  # one option a word
CMakeBuild libzip "$Work"/src/libzip-[0-9]*[0-9] \
  $(Off ENABLE_ BZIP2 LZMA ZSTD GNUTLS MBEDTLS OPENSSL COMMONCRYPTO WINDOWS_CRYPTO) \
  $(Off BUILD_ TOOLS REGRESS EXAMPLES DOC)
CMakeBuild utf8proc "$Work"/src/utf8proc-[0-9]*[0-9]
CMakeBuild googletest /usr/src/googletest
CMakeBuild curl "$Work"/src/curl-[0-9]*[0-9] -DCURL_USE_SCHANNEL=ON -DENABLE_UNICODE=ON -DUSE_WIN32_IDN=ON \
  -DHTTP_ONLY=ON -DBUILD_CURL_EXE=OFF -DBUILD_TESTING=OFF -DCURL_USE_LIBSSH2=OFF -DCURL_USE_LIBPSL=OFF -DUSE_LIBIDN2=OFF
HeaderOnly
Licences
