#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# build.sh [PRESET]
#
# Installs missing packages, then configures and builds a CMake preset (default: release).
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

preset="${1:-release}"
scripts/setup.sh build test
cmake --preset "$preset"
cmake --build --preset "$preset"
