#!/bin/sh
# Installs the Debian packages that the build and the tests need; does nothing where all are there.
# Usage: setup.sh [FURTHER-PACKAGE...]
set -eu

set -- g++ cmake ninja-build python3 file dpkg-dev libxml2-utils openssl stunnel4 tzdata \
  libpugixml-dev nlohmann-json3-dev libzip-dev zlib1g-dev libutfcpp-dev libutf8proc-dev nettle-dev \
  libcurl4-openssl-dev libgtest-dev libgmock-dev libbenchmark-dev "$@"

if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
  echo "setup: this system has no apt-get; install the counterparts of these Debian packages by hand: $*" >&2
  exit 1
fi

Missing=""
for Package in "$@"; do
  dpkg-query --show --showformat='${db:Status-Status}\n' "$Package" 2>/dev/null | grep -qx installed ||
    Missing="$Missing $Package"
done
if [ -z "$Missing" ]; then
  exit 0
fi

if [ "$(id -u)" -eq 0 ]; then
  AsRoot="env"
elif command -v sudo >/dev/null; then
  AsRoot="sudo env"
else
  echo "setup: these packages are missing, and installing them takes root's rights or sudo:$Missing" >&2
  echo "setup: run as root: apt-get install$Missing" >&2
  exit 1
fi

echo "setup: installing$Missing"
# The list is split into its packages on purpose.
# shellcheck disable=SC2086
if ! { $AsRoot apt-get update &&
  $AsRoot DEBIAN_FRONTEND=noninteractive apt-get install --yes --no-install-recommends $Missing; }; then
  echo "setup: apt-get could not install the missing packages:$Missing" >&2
  exit 1
fi
