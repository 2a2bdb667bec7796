#!/usr/bin/env bash
# Runs the configuration-file fuzzer for a number of seconds (default 180) over a
# working copy of the seed corpus, so that the seeds in fuzz/corpus stay as they are.
# Usage: tools/run-fuzz.sh BUILD_DIR [SECONDS]
# A finding is written to BUILD_DIR/fuzz-artifacts/ and makes the script fail.
set -euo pipefail

root="$(cd "$(dirname "$0")/.." && pwd)"
build="${1:?usage: tools/run-fuzz.sh BUILD_DIR [SECONDS]}"
seconds="${2:-180}"
[[ "$seconds" =~ ^[0-9]+$ ]] || { echo "SECONDS must be a whole number, not '$seconds'" >&2; exit 2; }

fuzzer="$build/fuzz/fuzz_configfile"
[[ -x "$fuzzer" ]] || { echo "$fuzzer is missing: build the preset 'fuzz' first" >&2; exit 2; }

work="$root/fuzz/corpus-work/configfile"
artifacts="$build/fuzz-artifacts"
mkdir -p "$work" "$artifacts"
cp -n "$root"/fuzz/corpus/* "$work"/

# Every input is written to a scratch file: keep them in memory when we can.
if [[ -z "${TMPDIR:-}" && -d /dev/shm && -w /dev/shm ]]; then
    export TMPDIR=/dev/shm
fi
export ASAN_OPTIONS="${ASAN_OPTIONS:-detect_leaks=1:strict_string_checks=1}"
export LSAN_OPTIONS="${LSAN_OPTIONS:-suppressions=$root/tests/lsan.supp:print_suppressions=0}"
export UBSAN_OPTIONS="${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}"

# One job on one core leaves the machine usable; -max_len keeps inputs near the
# size of real files while still reaching past a few kilobytes.
"$fuzzer" "$work" \
    -dict="$root/fuzz/configfile.dict" \
    -max_total_time="$seconds" \
    -max_len=8192 \
    -timeout=20 \
    -rss_limit_mb=2048 \
    -print_final_stats=1 \
    -artifact_prefix="$artifacts/"
