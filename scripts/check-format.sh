#!/usr/bin/env bash
# check-format.sh
#
# Fails where a source file in the repository is not as clang-format 14 would write it. Each version
# writes a little differently, so that no other will do.
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
    echo 'check-format.sh: no clang-format of version 14 is on the PATH' >&2
    return 1
}

formatter=$(find_formatter)
git ls-files -z '*.h' '*.cpp' | xargs -0 -r "$formatter" --dry-run -Werror
