#!/bin/sh
# Draws logo.tga from logo.svg; needs rsvg-convert (librsvg2-bin) and convert (imagemagick). The result is committed, so
# that a build needs neither.
set -eu
cd "$(dirname "$0")"
pasta=$(mktemp -d)
trap 'rm -rf "$pasta"' EXIT
rsvg-convert -w 440 -h 310 logo.svg -o "$pasta/logo.png"
# The header by hand: convert says that its rows go upwards when they go downwards. Type 2, 440 x 310, 32 bits a pixel,
# 8 of them alpha, top row first.
{
    printf '\000\000\002\000\000\000\000\000\000\000\000\000\270\001\066\001\040\050'
    convert "$pasta/logo.png" -depth 8 bgra:-
} >logo.tga
