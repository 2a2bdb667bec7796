#!/usr/bin/env bash
# Runs each fuzzer for a number of seconds (default 180), one after the other, over a
# working copy of its seed corpus, so that the seeds in fuzz/ stay as they are:
# fuzz_configfile on configuration files (fuzz/corpus), fuzz_wireframe on bytes from a
# serial line (fuzz/corpus-wire).
# Usage: tools/run-fuzz.sh BUILD_DIR [SECONDS]
# A finding is written to BUILD_DIR/fuzz-artifacts/ and makes the script fail.
set -euo pipefail

root="$(cd "$(dirname "$0")/.." && pwd)"
build="${1:?usage: tools/run-fuzz.sh BUILD_DIR [SECONDS]}"
seconds="${2:-180}"
[[ "$seconds" =~ ^[0-9]+$ ]] || { echo "SECONDS must be a whole number, not '$seconds'" >&2; exit 2; }

for name in configfile wireframe; do
    [[ -x "$build/fuzz/fuzz_$name" ]] ||
        { echo "$build/fuzz/fuzz_$name is missing: build the preset 'fuzz' first" >&2; exit 2; }
done

artifacts="$build/fuzz-artifacts"
mkdir -p "$artifacts"

# Every configuration input is written to a scratch file: keep them in memory when we can.
if [[ -z "${TMPDIR:-}" && -d /dev/shm && -w /dev/shm ]]; then
    export TMPDIR=/dev/shm
fi
export ASAN_OPTIONS="${ASAN_OPTIONS:-detect_leaks=1:strict_string_checks=1}"
export LSAN_OPTIONS="${LSAN_OPTIONS:-suppressions=$root/tests/lsan.supp:print_suppressions=0}"
export UBSAN_OPTIONS="${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}"

# fuzz NAME SEEDS [OPTION...]: one job on one core leaves the machine usable.
fuzz() {
    local name="$1" seeds="$2"
    shift 2
    local work="$root/fuzz/corpus-work/$name"
    mkdir -p "$work"
    cp -n "$seeds"/* "$work"/
    echo "== fuzz_$name for $seconds s"
    "$build/fuzz/fuzz_$name" "$work" \
        -max_total_time="$seconds" \
        -timeout=20 \
        -rss_limit_mb=2048 \
        -print_final_stats=1 \
        -artifact_prefix="$artifacts/$name-" \
        "$@"
}

# -max_len keeps inputs near the size of real files while still reaching past a few
# kilobytes.
fuzz configfile "$root/fuzz/corpus" -dict="$root/fuzz/configfile.dict" -max_len=8192
# A dozen of the longest frames: enough for runs that overflow, resume and overflow again.
fuzz wireframe "$root/fuzz/corpus-wire" -max_len=1024
