#!/usr/bin/env bash
# Runs the benchmarks built in BUILD_DIR (the `bench` preset) and prints the machine
# they ran on, then the one table of figures. Exits non-zero when a budget is
# missed or a figure could not be taken.
#   tools/run-bench.sh build/bench [--xvfb] [--quick] [--only startup,pause,idle,files,live,serial,cli]
# --xvfb runs on an X server (Xvfb) instead of Qt's offscreen platform.
set -euo pipefail

build_dir=${1:?usage: tools/run-bench.sh BUILD_DIR [--xvfb] [norvale-bench options]}
shift
bench="$build_dir/bench/norvale-bench"
[[ -x "$bench" ]] || { echo "no $bench: build the preset 'bench' first" >&2; exit 2; }

xvfb=0
args=()
for arg in "$@"; do
    if [[ "$arg" == --xvfb ]]; then xvfb=1; else args+=("$arg"); fi
done

# Qt wants a private runtime folder; without one it says so on every start.
if [[ -z "${XDG_RUNTIME_DIR:-}" ]]; then
    XDG_RUNTIME_DIR=$(mktemp -d)
    export XDG_RUNTIME_DIR
    trap 'rm -rf "$XDG_RUNTIME_DIR"' EXIT
fi

platform=offscreen
if [[ $xvfb -eq 1 ]]; then
    platform=xcb
    unset QT_QPA_PLATFORM
else
    export QT_QPA_PLATFORM=offscreen
fi

repo=$(cd "$(dirname "$0")/.." && pwd)
field() { sed -n "s/^$1[[:space:]]*:[[:space:]]*//p" /proc/cpuinfo | head -n1; }
echo "Norvale Setup benchmarks"
echo "  commit    $(git -C "$repo" rev-parse --short HEAD 2>/dev/null || echo unknown)"
echo "  build     $(sed -n 's/^CMAKE_BUILD_TYPE:STRING=//p' "$build_dir/CMakeCache.txt"), $(c++ --version | head -n1)"
echo "  Qt        $(dpkg-query -W -f='${Version}' qt6-base-dev 2>/dev/null || echo unknown), platform $platform"
echo "  CPU       $(field 'model name'), $(nproc) cores"
echo "  memory    $(awk '/MemTotal/ {printf "%.1f GiB", $2 / 1048576}' /proc/meminfo)"
echo "  system    $(. /etc/os-release && echo "$PRETTY_NAME"), kernel $(uname -r)"
echo "  disk      $(df -T "$build_dir" | awk 'NR == 2 {print $2}') under $build_dir"
echo "  load      $(cut -d' ' -f1-3 /proc/loadavg) (1, 5, 15 min) before the run"
echo

# The offscreen platform's note about size hints is expected and says nothing.
filter() { grep -v 'does not support propagateSizeHints' >&2 || true; }
status=0
if [[ $xvfb -eq 1 ]]; then
    xvfb-run -a -s '-screen 0 1280x1024x24' "$bench" "${args[@]}" 2> >(filter) || status=$?
else
    "$bench" "${args[@]}" 2> >(filter) || status=$?
fi
echo "  load      $(cut -d' ' -f1-3 /proc/loadavg) (1, 5, 15 min) after the run"
exit $status
