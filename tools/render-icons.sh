#!/usr/bin/env bash
# Renders the application icon's PNG sizes from its SVG drawings into the
# hicolor layout under desktop/icons/, where the install rules take them:
#   tools/render-icons.sh
# The PNGs are committed; run this again only after changing an SVG.
# Needs rsvg-convert (Debian package librsvg2-bin).
set -euo pipefail
cd "$(dirname "$0")/../desktop/icons"
command -v rsvg-convert >/dev/null || {
    echo "rsvg-convert is missing: apt-get install librsvg2-bin" >&2
    exit 1
}
for size in 16 24 32 48 64 128 256; do
    # The large drawing's lattice blurs below 32 pixels; the small one is drawn for them.
    source=norvale-setup.svg
    [[ $size -lt 32 ]] && source=norvale-setup-16.svg
    mkdir -p "hicolor/${size}x${size}/apps"
    rsvg-convert --width "$size" --height "$size" "$source" \
        --output "hicolor/${size}x${size}/apps/norvale-setup.png"
    echo "desktop/icons/hicolor/${size}x${size}/apps/norvale-setup.png"
done
