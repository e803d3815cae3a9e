#!/usr/bin/env bash
# test.sh
#
# Installs what is missing, builds the release and runs every test.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

scripts/build.sh release
ctest --preset release
