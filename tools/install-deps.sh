#!/usr/bin/env bash
# Installs the Debian packages the build, the tests and the screenshots need,
# only those missing; uses sudo when not root.
set -euo pipefail

packages=(cmake ninja-build g++ make qt6-base-dev qt6-base-dev-tools libgl-dev
          qt6-serialport-dev xvfb x11-utils fonts-dejavu-core)
case "${1:-}" in
    --bench) packages+=(libbenchmark-dev) ;;
    --fuzz) packages+=(clang libclang-rt-14-dev) ;;
    --package) packages+=(dpkg-dev file desktop-file-utils) ;;
esac

missing=()
for p in "${packages[@]}"; do
    status=$(dpkg-query -W -f='${Status}' "$p" 2>/dev/null || true)
    [[ "$status" == "install ok installed" ]] || missing+=("$p")
done
[[ ${#missing[@]} -eq 0 ]] && exit 0

echo "Installing: ${missing[*]}"
sudo=()
[[ $(id -u) -eq 0 ]] || sudo=(sudo)
export DEBIAN_FRONTEND=noninteractive
"${sudo[@]}" apt-get update -qq
"${sudo[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
