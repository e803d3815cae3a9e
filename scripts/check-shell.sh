#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# check-shell.sh
#
# Fails if shellcheck finds a problem in a shell script of the repository, including untracked ones.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

command -v shellcheck >/dev/null || { echo 'check-shell.sh: shellcheck is missing' >&2; exit 1; }

git ls-files -z --cached --others --exclude-standard '*.sh' .ci scripts/hooks |
    xargs -0 -r shellcheck --external-sources
