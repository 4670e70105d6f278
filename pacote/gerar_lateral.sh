#!/bin/sh
# Draws lateral.bmp, beside the text of the installer's last page, from the icon; needs rsvg-convert (librsvg2-bin) and
# convert (imagemagick). The result is committed, so that a package needs neither.
set -eu
cd "$(dirname "$0")"
rsvg-convert -w 96 -h 96 ../ui/recursos/icone.svg |
    convert -size 164x314 gradient:'#2a0b12-#0a0305' png:- -gravity center -geometry +0-40 -composite \
        -dither None -colors 64 -compress none BMP3:lateral.bmp
