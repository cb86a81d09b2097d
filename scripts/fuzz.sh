#!/usr/bin/env bash
# Builds the fuzz targets and feeds each for some seconds, as many at a time as there are processors.
# Exit code 1 where an input crashes, hangs, grows or fails an assertion; it is kept in build/fuzz/findings.
# Usage: fuzz.sh SECONDS [TARGET...]
set -euo pipefail
cd "$(dirname "$0")/.."

if [[ ! "${1-}" =~ ^[1-9][0-9]*$ ]]; then
  echo "Usage: fuzz.sh SECONDS [TARGET...]" >&2
  exit 2
fi
Seconds=$1
shift
Targets=("$@")
if [ $# -eq 0 ]; then
  mapfile -t Targets < <(ls fuzz/corpus)
fi

scripts/setup.sh clang libclang-rt-14-dev
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz --target "${Targets[@]/#/fuzz_}"

# What the targets write stays in memory where the system has such a folder.
Scratch=$(mktemp -d -p "$([ -w /dev/shm ] && echo /dev/shm || echo "${TMPDIR:-/tmp}")")
trap 'rm -rf "$Scratch"' EXIT

Feed() {
  local Target=$1 Seconds=$2 Folder=build/fuzz/fuzz
  local Found=build/fuzz/corpus/$Target Log=build/fuzz/findings/$Target.log Dictionary=()
  mkdir -p "$Found" build/fuzz/findings
  case $Target in
    load_plan | export_plan | read_xml) Dictionary=(-dict=fuzz/xml.dict) ;;
    import_set) Dictionary=(-dict=fuzz/ocf.dict) ;;
  esac
  if "$Folder/fuzz_$Target" -max_total_time="$Seconds" -timeout=10 -rss_limit_mb=2048 -max_len=16384 \
    "${Dictionary[@]}" -artifact_prefix="build/fuzz/findings/$Target-" \
    "$Found" "fuzz/corpus/$Target" >"$Log" 2>&1; then
    echo "$Target: $(tail -n 1 "$Log")"
  else
    echo "$Target: a finding, see $Log"
    grep -a -A 12 -m 1 -E '^Finding|ERROR|runtime error|terminate called' "$Log" || tail -n 12 "$Log"
    return 1
  fi
}
export -f Feed
export TMPDIR=$Scratch

# Each job's words are told together; xargs goes on after a finding and fails at the end.
printf '%s\n' "${Targets[@]}" | xargs -P "$(nproc)" -I '{}' bash -c 'Feed {} '"$Seconds" || exit 1
