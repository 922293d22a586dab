#!/usr/bin/env bash
# Makes the PNG icons from their SVG sources. Needs librsvg2-bin. Qt's base package reads no SVG, hence the PNGs.
set -euo pipefail
cd "$(dirname "$0")/icons"
for state in on off; do
  for size in 16 22 24 32 48 64 128; do # pixels
    rsvg-convert --width "$size" --height "$size" --output "strokemind-$state-$size.png" "strokemind-$state.svg"
  done
done
rsvg-convert --width 414 --height 368 --output about.png about.svg
rsvg-convert --width 32 --height 32 --output pointer.png pointer.svg
# Only for the menus of desktops; the program itself has no use for it, so it stays out of the binary.
rsvg-convert --width 256 --height 256 --output ../../packaging/icons/strokemind-256.png strokemind-on.svg
