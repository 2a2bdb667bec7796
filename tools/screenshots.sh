#!/usr/bin/env bash
# Screenshots of the real window under Xvfb, in English and in French:
#   tools/screenshots.sh <build folder> <output folder>
# The high-DPI look, with a screen grown by the same factor:
#   QT_SCALE_FACTOR=2 tools/screenshots.sh <build folder> <output folder>
set -euo pipefail
tool=$(realpath "$1/tools/norvale-screenshot")
out=$(realpath -m "${2:-docs}")
mkdir -p "$out"
work=$(mktemp -d)
display=:$((90 + RANDOM % 100))
screen=$(awk -v f="${QT_SCALE_FACTOR:-1}" 'BEGIN { printf "%dx%dx24", 1280 * f, 800 * f }')
Xvfb "$display" -screen 0 "$screen" -nolisten tcp >/dev/null 2>&1 &
xvfb=$!
trap 'kill $xvfb 2>/dev/null || true; rm -rf "$work"' EXIT
export DISPLAY=$display QT_QPA_PLATFORM=xcb
for _ in $(seq 100); do xdpyinfo >/dev/null 2>&1 && break; sleep 0.1; done

demo=$(realpath "$(dirname "$0")/../examples/demo.nvl")
network=""
shoot() { # language tab file [configuration [port]]
    printf '[General]\r\nVersion=TALMOR NORVALE CONFIGURATION FILE\r\nLanguage=%s\r\n%s' "$1" \
        "$network" >"$work/Setup.ini"
    "$tool" "$work" "$2" "$out/$3" "${@:4}"
    echo "$out/$3"
}
shoot US test test-en.png "$demo"
shoot FR test test-fr.png "$demo"
shoot US 0 main-en.png
shoot FR 0 main-fr.png
shoot US 1 satellites-en.png
shoot FR 1 satellites-fr.png
shoot US log network-log-en.png "$demo"

# Over a serial line to the emulator on a pseudo-terminal: the device it prints,
# typed into the Port box.
"$(dirname "$tool")/../norvale-netsim" --pty >"$work/netsim.out" &
netsim=$!
trap 'kill $netsim $xvfb 2>/dev/null || true; rm -rf "$work"' EXIT
for _ in $(seq 100); do [[ -s "$work/netsim.out" ]] && break; sleep 0.1; done
device=$(head -n 1 "$work/netsim.out")
network=$'[Network]\r\nLink=Serial\r\n'
shoot US test serial-en.png "$demo" "$device"
shoot FR 1 serial-fr.png "$demo" "$device"
