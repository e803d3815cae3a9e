#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# check-format.sh
#
# Fails if a source file in the repository is not formatted as by clang-format 14. Each version formats
# slightly differently, so no other can be used.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# Prints the name of a clang-format 14.
find_formatter() {
    local name
    for name in clang-format-14 clang-format; do
        if [[ $("$name" --version 2>/dev/null) =~ version\ 14\. ]]; then
            echo "$name"
            return
        fi
    done
    echo 'check-format.sh: clang-format 14 is not on the PATH' >&2
    return 1
}

formatter=$(find_formatter)
git ls-files -z '*.h' '*.cpp' | xargs -0 -r "$formatter" --dry-run -Werror
