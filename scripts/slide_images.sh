#!/bin/sh
# Makes the pictures of docs/slides.md from the examples: scripts/slide_images.sh, after a build of
# zelmo-batch, zelmo_assets and zelmo_examples with the preset release.
set -eu

root=$(cd "$(dirname "$0")/.." && pwd)
build=$root/build/release
work=$(mktemp -d)
trap 'rm -r "$work"' EXIT

# draw NAME EXAMPLE STEP OPTIONS...: docs/images/slide_NAME.png
draw() {
    name=$1
    example=$2
    step=$3
    shift 3
    "$build/zelmo-batch" "$build/examples/$example.gds" "$build/examples/$example.txt" --quiet \
        --assets "$root/assets" --output "$work/$name" --steps "$step" "$@"
    mv "$work/$name"/*.png "$root/docs/images/slide_$name.png"
}

draw smooth cmos_inverter last --width 640 --smooth
draw view mems_release last --width 640 --smooth --view 205,30 --crop
draw parallel cmos_inverter 51 --width 640 --smooth --view 0,90,parallel --scale --crop
draw title cmos_inverter 51 --width 640 --smooth --title --scale
draw transparent array last --width 640 --smooth --transparent --crop
draw thin cmos_inverter 22 --width 640 --smooth --thin 40 --window 2.2,1.5,1.6,1 --angle 10
for step in 1 26 51; do
    draw "same_size_$step" cmos_inverter "$step" --width 320 --smooth --same-size --crop
done
"$build/zelmo-batch" "$build/examples/mems_release.gds" "$build/examples/mems_release.txt" --quiet \
    --assets "$root/assets" --output "$work/sheet" --steps etch,release --sheet-columns 4 \
    --smooth --crop --sheet "$work/sheet.png"
mv "$work/sheet.png" "$root/docs/images/slide_sheet.png"
