#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# check-all.sh
#
# Runs all checks: continuous integration, then those that take too long for it. Stops at the first
# failure, and finally prints the duration of each step and the summary of the release's tests.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
source scripts/steps.sh

check_submission
step 'tidy, every check' scripts/check-tidy.sh --full
step 'demo' scripts/demo.sh
summarize
