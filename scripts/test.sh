#!/usr/bin/env bash
# test.sh [PART...]
#
# Installs what is missing, then builds and tests all parts, or those that are named:
#
#   release     the release, with every unit test
#   platforms   the bundles for Windows and arm64: what is in them, and how they run, emulated,
#               beside the native one
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

release() {
    scripts/build.sh release
    ctest --preset release
}

platforms() {
    local preset
    scripts/setup.sh build check
    for preset in release windows arm64; do
        cmake --preset "$preset"
        cmake --build --preset "$preset"
        scripts/check-bundle.sh "build/$preset"
    done
    scripts/trial.sh
}

[[ $# -gt 0 ]] || set -- release platforms
for part in "$@"; do
    case "$part" in
        release | platforms) "$part" ;;
        *) echo "test.sh: there is no part $part" >&2; exit 2 ;;
    esac
done
