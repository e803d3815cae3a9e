#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# man_pages_test.sh FOLDER TOOL
#
# Formats each page in FOLDER with all warnings, and compares its options with those of the help.
set -euo pipefail
pages=$1 tool=$2
failed=0

fail() {
    echo "$1"
    failed=1
}

command -v man >/dev/null || { echo "man isn't installed; scripts/setup.sh test installs it"; exit 1; }

# options: the long options at the beginning of a line.
options() {
    grep -oE '^ +(-[a-zA-Z], )?--[a-z0-9-]+' | grep -oE -- '--[a-z0-9-]+' | LC_ALL=C sort -u
}

count=0
for page in "$pages"/*.1; do
    name=$(basename "$page" .1)
    warnings=$(MANWIDTH=80 LC_ALL=C.UTF-8 man --warnings -E ascii -l "$page" 2>&1 >/dev/null)
    [[ -z $warnings ]] || fail "$name: $warnings"
    text=$(MANWIDTH=80 LC_ALL=C.UTF-8 man -E ascii -l "$page" | col -b)
    for section in NAME SYNOPSIS OPTIONS EXAMPLES 'EXIT STATUS' 'SEE ALSO'; do
        grep -qx "$section" <<<"$text" || fail "$name has no section $section"
    done
    command=${name#orbel}
    mapfile -t help < <("$tool" ${command:+"${command#-}"} --help | options)
    mapfile -t described < <(options <<<"$text")
    [[ ${#help[@]} -gt 0 && "${help[*]}" == "${described[*]}" ]] || {
        fail "$name describes the options ${described[*]}"
        fail "but the help has ${help[*]}"
    }
    count=$((count + 1))
done
[[ $count -ge 10 ]] || fail "only $count pages"
exit "$failed"
