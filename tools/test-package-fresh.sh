#!/usr/bin/env bash
# Installs and tests the Debian package on a fresh Debian 12 system: a minimal
# root (the essential packages and apt, nothing of Qt) made by mmdebstrap from
# this machine's apt sources, where tools/test-package.sh deb runs under chroot
# and so has to bring in the Qt run-time packages through the package's Depends:
#   tools/test-package-fresh.sh <norvale-setup_*.deb>
# The driver tools/norvale-drive is taken from the build folder of the package.
# Needs root and mmdebstrap (Debian package mmdebstrap).
set -euo pipefail
[[ $# -eq 1 ]] || { echo "usage: $0 <package.deb>" >&2; exit 2; }
[[ $(id -u) -eq 0 ]] || { echo "needs root (mmdebstrap, chroot)" >&2; exit 2; }
command -v mmdebstrap >/dev/null || { echo "mmdebstrap is missing: apt-get install mmdebstrap" >&2; exit 2; }
deb=$(realpath "$1")
repo=$(realpath "$(dirname "$0")/..")
root=$(mktemp -d)
cleanup() {
    umount "$root/proc" 2>/dev/null || true
    rm -rf --one-file-system "$root"
}
trap cleanup EXIT

sources=()
for f in /etc/apt/sources.list /etc/apt/sources.list.d/*.sources /etc/apt/sources.list.d/*.list; do
    [[ -s $f ]] && sources+=("$f")
done
# The package lists are kept: dpkg -i leaves the missing Qt packages to apt-get -f install.
mmdebstrap --variant=apt --skip=cleanup/apt/lists bookworm "$root" "${sources[@]}"

mkdir -p "$root/src/tools" "$root/src/tests/data"
cp "$repo/CMakeLists.txt" "$root/src/"
cp "$repo/tools/test-package.sh" "$root/src/tools/"
cp "$repo/tests/data/three-satellites.nvl" "$root/src/tests/data/"
cp "$deb" "$root/src/"
cp "$(dirname "$deb")/tools/norvale-drive" "$root/src/tools/"
cp /etc/resolv.conf "$root/etc/resolv.conf"
mount -t proc proc "$root/proc" # the program finds its folder through /proc/self/exe
chroot "$root" /usr/bin/env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root \
    bash /src/tools/test-package.sh deb "/src/$(basename "$deb")"
