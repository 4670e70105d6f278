#!/bin/sh
# Draws icone.ico from icone.svg; needs rsvg-convert (librsvg2-bin) and convert (imagemagick). The result is committed,
# so that a build needs neither.
set -eu
cd "$(dirname "$0")"
pasta=$(mktemp -d)
trap 'rm -rf "$pasta"' EXIT
for lado in 16 32 48 256; do
    rsvg-convert -w "$lado" -h "$lado" icone.svg -o "$pasta/$lado.png"
done
convert "$pasta/16.png" "$pasta/32.png" "$pasta/48.png" "$pasta/256.png" icone.ico
