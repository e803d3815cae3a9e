#!/usr/bin/env bash
# check-format.sh
#
# Fails where a source file in the repository is not as clang-format 14 would write it.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# Each version formats in its own way, so it has to be 14, whatever it is called here.
clang_format=''
for program in clang-format-14 clang-format; do
    if "$program" --version 2>/dev/null | grep -q 'version 14\.'; then
        clang_format="$program"
        break
    fi
done
[[ -n $clang_format ]] || { echo 'check-format.sh: there is no clang-format 14' >&2; exit 1; }

git ls-files -z '*.h' '*.cpp' | xargs -0 -r "$clang_format" --dry-run -Werror
