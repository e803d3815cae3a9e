#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# test.sh [STEP...]
#
# Installs missing packages, then builds and tests in two steps, or only in those named:
#
#   release     the release, with all unit tests
#   platforms   the bundles and packages for Windows and arm64 as well: their contents, and their
#               frames, rendered under emulation, compared with those of the native bundle
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

release() {
    scripts/build.sh release
    CTEST_PARALLEL_LEVEL=${CTEST_PARALLEL_LEVEL:-$(nproc)} ctest --preset release
}

platforms() {
    scripts/package.sh
    scripts/trial.sh
}

[[ $# -gt 0 ]] || set -- release platforms
for step in "$@"; do
    case "$step" in
        release | platforms) "$step" ;;
        *) echo "test.sh: there is no step $step" >&2; exit 2 ;;
    esac
done
