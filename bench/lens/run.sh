#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# run.sh [FOLDER]
#
# Compares the blur by a depth map with a path tracer's lens, and writes docs/lens.md. From nothing it
# takes hours, nearly all of it for the truth; what FOLDER, by default build/lens, has of the scenes and
# of Defocus is kept, so a later run takes minutes. Seconds want a machine with nothing else to do.
set -euo pipefail
shopt -s inherit_errexit
cd "$(dirname "${BASH_SOURCE[0]}")/../.."

results=$(realpath -m "${1:-build/lens}")
samples=${SAMPLES:-512}
orbel=build/release/orbel

scripts/setup.sh build lens
[[ -f build/release/build.ninja ]] ||
    cmake --preset release -DBUILD_TESTING=OFF -DORBEL_BUILD_BENCHMARKS=OFF
cmake --build --preset release --target Orbel orbel
mkdir -p "$results"
nproc >"$results/processors"
blender --version | head -n 1 >"$results/blender"

# script NAME OPTION...: runs a script of this folder in the path tracer's program.
script() {
    blender --background --factory-startup --python-exit-code 1 --python "bench/lens/$1" -- "$results" "${@:2}"
}

# render WAY OPTION...: blurs every scene with the tool; the seconds are the smallest of three.
render() {
    local way="$1" description name focus
    echo "== orbel, $way"
    for description in "$results"/*.json; do
        name=$(basename "$description" .json)
        [[ $name != *-* ]] || continue
        focus=$(sed -n 's/.*"focus_m": \([0-9.]*\).*/\1/p' "$description")
        for _ in 1 2 3; do
            "$orbel" render "$results/$name-pinhole.exr" -o "$results/$name-$way.exr" --stats --roundness 1 \
                --depth-map-layer "$results/$name-depth.exr" --depth-kind distance --scene-unit m --resolution 16 \
                --camera "focal-length=85,f-stop=1.2,sensor-width=36,focus=$focus" "${@:2}" 2>&1 |
                sed -n 's/.*render \([0-9.]*\) s,.*/\1/p'
        done | sort -n | head -n 1 >"$results/$name-$way.seconds"
    done
}

script scenes.py --samples "$samples" --second-seed
options=$("$orbel" render --help)  # of a version that may be older than --occlusion
for mode in normal split; do
    render "orbel-$mode" --composite-mode "$mode"
    [[ $options != *--occlusion* ]] ||
        render "orbel-$mode-occlusion" --composite-mode "$mode" --occlusion auto
done
script defocus.py
/usr/bin/python3 bench/lens/gegl.py "$results"
/usr/bin/python3 bench/lens/page.py "$results" docs  # of the system, as its numpy is
