#!/usr/bin/env bash
# build.sh [PRESET]
#
# Installs the packages that are missing, then configures and builds a CMake preset (release).
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

preset="${1:-release}"
scripts/setup.sh build test
cmake --preset "$preset"
cmake --build --preset "$preset"
