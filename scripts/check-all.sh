#!/usr/bin/env bash
# check-all.sh
#
# Every check there is, whatever the time: the continuous integration, then what it has no time for.
# Stops at the first failure. Ends with the duration of each step and the summary of the release's
# tests.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
source scripts/steps.sh

check_submission
step 'tidy, every check' scripts/check-tidy.sh --full
step 'demo' scripts/demo.sh
summarize
