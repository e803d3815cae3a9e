#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# demo.sh
#
# Installs missing packages, builds the bundle and the tool (preset release), makes a night scene with
# its depth map, blurs it in many ways and puts the images on one contact sheet.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

scripts/setup.sh build demo
# A new build folder is configured without tests and benchmarks; an existing one is used unchanged.
[[ -f build/release/build.ninja ]] ||
    cmake --preset release -DBUILD_TESTING=OFF -DORBEL_BUILD_BENCHMARKS=OFF
cmake --build --preset release --target Orbel orbel

orbel=build/release/orbel
out=build/release/demo
tiles="$out/tiles"
font=$(fc-match --format '%{file}' 'DejaVu Sans' 2>/dev/null || true)
rm -rf "$out"
mkdir -p "$tiles"

# show FILE CAPTION OPERATION...: adds the image to the contact sheet as a tile, after the operations
# that prepare it for a screen, with its caption if there is a font.
sheet=()
show() {
    local tile text=()
    [[ -z $font ]] || text=(--text:x=10:y=26:size=17:shadow=2:font="$font" "$2")
    tile="$tiles/$(printf '%02d' ${#sheet[@]}).png"
    oiiotool "$1" "${@:3}" --ch R,G,B --resize 384x0 "${text[@]}" -d uint8 -o "$tile"
    sheet+=("$tile")
}

# Scene-linear light for a screen: clipped at white, and encoded.
encode=(--ch 'R,G,B' --clamp:min=0:max=1 --colorconvert linear sRGB)

# blur IMAGE NAME CAPTION OPTION...: blurs the image with these options and shows the result. The
# scene in EXR is scene-linear light, which needs no exposure curve.
blur() {
    local picture="$1" name="$2" caption="$3"
    shift 3
    if [[ $picture == *.exr ]]; then
        "$orbel" render "$picture" -o "$out/$name.exr" --exposure 0 "$@"
        show "$out/$name.exr" "$caption" "${encode[@]}"
    else
        "$orbel" render "$picture" -o "$out/$name.png" "$@"
        show "$out/$name.png" "$caption"
    fi
    echo "  $caption"
}

night="$out/night.exr"
night8="$out/night8.png"
depth="$out/depth.exr"
echo 'The scene'
"$orbel" scene "$night" --size 1280x720 --depth "$depth"
oiiotool "$night" "${encode[@]}" -d uint8 -o "$night8"
show "$night" 'The scene' "${encode[@]}"
show "$depth" 'Its depth, near is bright' --ch R=Z,G=Z,B=Z --powc -1 --mulc 3 --clamp:min=0:max=1

echo 'Three apertures'
blur "$night" hexagon 'Six blades' --blur-radius 30
blur "$night" star 'Five blades, bent to a star' --blur-radius 40 --vertices 5 --roundness -0.6
blur "$night" ring 'Round, light at the rim' --blur-radius 40 --roundness 1 --concentration -0.9

echo 'The exposure curve on an 8-bit image, where highlights are clipped'
show "$night8" 'The scene in 8 bits'
for exposure in 0 5 10; do
    blur "$night8" "exposure-$exposure" "Exposure $exposure" --blur-radius 20 --exposure "$exposure"
done

echo 'Depth'
map=(--blur-radius 30 --depth-map-layer "$depth" --depth-near 1.7 --depth-far 1000 --depth-inverse
    --resolution 8)
blur "$night" focus-near 'Focus near' "${map[@]}" --focal-distance 0.8
blur "$night" focus-far 'Focus far' "${map[@]}" --focal-distance 0
for mode in Normal Split; do
    blur "$night" "${mode,}" "Composite Mode $mode" "${map[@]}" --focal-distance 0.3 \
        --composite-mode "$mode"
done
for leak in 0 1; do
    blur "$night8" "edge-leak-$leak" "8 bits, Remove Edge Leak $leak" "${map[@]}" --focal-distance 0.8 \
        --exposure 8 --remove-edge-leak "$leak" --detect-edge-threshold 0.02
done

echo 'A rack focus between two points, from the sign to the end of the street'
for step in 0 0.25 0.5 0.75 1; do
    blur "$night" "rack-$step" "Interpolation $step" "${map[@]}" --use-focus-point on \
        --focus-point-0 67%,65% --focus-point-1 50%,50% --focus-point-0-1-interpolation "$step"
done

oiiotool "${sheet[@]}" --mosaic:pad=6 5x4 -o "$out/contact-sheet.png"
rm -r "$tiles"

echo
echo "The images are in $out; all on one sheet: $out/contact-sheet.png"
