#!/usr/bin/env bash
# Renders the application icon's drawing into the PNG sizes the icon theme
# and the program's resources use. Run it after changing the drawing, and
# commit the pictures with it.
#   scripts/render-icon.sh
set -euo pipefail
cd "$(dirname "$0")/../src/views/resources/icons"
command -v rsvg-convert >/dev/null || { echo "render-icon: needs rsvg-convert (librsvg2-bin)" >&2; exit 1; }
for size in 16 22 24 32 48 64 128 256 512; do
  mkdir -p "hicolor/${size}x${size}/apps"
  rsvg-convert -w "$size" -h "$size" tarnwick.svg -o "hicolor/${size}x${size}/apps/tarnwick.png"
done
