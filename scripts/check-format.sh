#!/usr/bin/env bash
# check-format.sh
#
# Fails where a source file in the repository is not as clang-format 14 would write it.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

git ls-files -z '*.h' '*.cpp' | xargs -0 -r clang-format-14 --dry-run -Werror
