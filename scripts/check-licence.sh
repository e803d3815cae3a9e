#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# check-licence.sh
#
# Fails if a source file, script or build file of the repository does not name its licence in its first
# two lines, and prints each such file.
set -euo pipefail
shopt -s inherit_errexit
cd "$(dirname "${BASH_SOURCE[0]}")/.."

readonly line='SPDX-License-Identifier: Apache-2.0'

listed=$(git ls-files '*.h' '*.cpp' '*.cpp.in' '*.rc.in' '*.sh' '*.py' '*.cmake' '*.cmake.in' '*.yml' \
    '*CMakeLists.txt' .ci/run 'scripts/hooks/*')
[[ -n $listed ]] || { echo 'check-licence.sh: the repository lists no files'; exit 1; }

findings=0
while IFS= read -r file; do
    if ! head -n 2 "$file" | grep -qF "$line"; then
        echo "$file: \"$line\" is missing"
        findings=$((findings + 1))
    fi
done <<<"$listed"
[[ $findings -eq 0 ]]
