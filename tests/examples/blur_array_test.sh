#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# blur_array_test.sh installed|subproject CMAKE GENERATOR SOURCE BUILD
#
# Builds and runs the example blur-array: a copy of it with what `cmake --install` makes of BUILD, at
# a place to which it was moved, or the one in SOURCE together with all sources.
set -euo pipefail

way=$1 cmake=$2 generator=$3 source=$4 build=$5
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

fail() {
    echo "$1"
    exit 1
}

# configure SOURCE OPTION...: the flags are what another project's release may have.
configure() {
    "$cmake" -S "$1" -B "$work/build" -G "$generator" -DCMAKE_BUILD_TYPE=Release \
        "-DCMAKE_CXX_FLAGS_RELEASE=-O0 -DNDEBUG" -DCMAKE_EXPORT_COMPILE_COMMANDS=ON "${@:2}"
}

case $way in
    installed)
        "$cmake" --install "$build" --prefix "$work/first" >/dev/null
        mv "$work/first" "$work/prefix"
        cp -r "$source/examples/blur-array" "$work/source" # away from the sources it could build
        configure "$work/source" -DCMAKE_PREFIX_PATH="$work/prefix"
        ;;
    subproject)
        configure "$source/examples/blur-array" -DFETCHCONTENT_TRY_FIND_PACKAGE_MODE=NEVER \
            -DORBEL_LAYER_COUNTS=1
        # What belongs to the project around is not touched, and assertions stay active all the same.
        ! grep -qE '^(BUILD_TESTING|CPACK_[A-Z_]+):' "$work/build/CMakeCache.txt" ||
            fail 'the cache has settings of the whole project'
        commands=$(grep -c '"command":.*-DNDEBUG' "$work/build/compile_commands.json")
        active=$(grep -c '"command":.*-DNDEBUG.*-UNDEBUG' "$work/build/compile_commands.json")
        [[ $commands -eq $((active + 1)) ]] ||
            fail "$commands commands, $active of them with assertions, not all but the example's"
        ;;
    *) fail "there is no way $way" ;;
esac
"$cmake" --build "$work/build" --target blur-array

output=$("$work/build/blur-array")
echo "$output"
grep -q '^The light of one point, after the blur: 1\.000$' <<<"$output" || fail 'light was lost'
# The hexagon: a blurred point covers more than a row and no more than the reach of the blur.
rows=$(grep -c '##' <<<"$output")
[[ $rows -gt 12 && $rows -le 25 ]] || fail "the aperture has $rows rows"
