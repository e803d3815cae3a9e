#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# package.sh [PRESET...]
#
# Makes the packages of the presets (default: release, windows and arm64; ci instead of release treats
# warnings as errors) in build/packages: installs missing packages, builds, checks the bundles,
# packages them, and checks the packages.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

packages=build/packages
[[ $# -gt 0 ]] || set -- release windows arm64

scripts/setup.sh build test check
rm -rf "$packages"
for preset in "$@"; do
    cmake --preset "$preset"
    cmake --build --preset "$preset"
    scripts/check-bundle.sh "build/$preset"
    cpack --preset "$preset"
done
rm -rf "$packages/_CPack_Packages"
scripts/check-package.sh "$packages"/*
