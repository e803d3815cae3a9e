#!/usr/bin/env bash
# test.sh [STEP...]
#
# Installs what is missing, then builds and tests in two steps, or in the one that is named:
#
#   release     the release, with every unit test
#   platforms   the bundles and packages for Windows and arm64 too: what is in them, and how the
#               bundles run, emulated, beside the native one
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
