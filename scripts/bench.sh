#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# bench.sh [FOLDER]
#
# Runs all benchmarks and writes docs/benchmarks.md with its tables and plots. Takes about half an
# hour, and wants a machine with nothing else to do. The results, in JSON, go to FOLDER, by default
# build/benchmarks.
#
# The version that this one is compared with is built from the repository's history: the commit
# $BASELINE, by default the last one before the transforms of real samples.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

results=$(realpath -m "${1:-build/benchmarks}")
baseline=${BASELINE:-049e776}
work=$(mktemp -d)
trap 'git worktree remove --force "$work/baseline" 2>/dev/null || true; rm -rf "$work"' EXIT

scripts/setup.sh build test bench
cmake --preset release
cmake --build --preset release
mkdir -p "$results"

if git worktree add --detach "$work/baseline" "$baseline"; then
    (cd "$work/baseline" && cmake --preset release && cmake --build build/release --target Orbel)
    export ORBEL_OTHER_BUNDLE="$work/baseline/build/release/Orbel.so"
else
    echo "bench.sh: without the commit $baseline there is no earlier version to compare with" >&2
fi

# measure PROGRAM FILTER SECONDS: each case for at least so many seconds.
measure() {
    echo "== $1"
    "build/release/bench/$1" --benchmark_filter="$2" --benchmark_min_time="$3" \
        --benchmark_out="$results/$1.json" --benchmark_out_format=json
}

measure peer . 0
measure transform 'ratio|real' 0
[[ -z ${ORBEL_OTHER_BUNDLE:-} ]] || measure version . 0
measure scaling . 0
measure frame parts 1

strip -o "$work/Orbel.so" build/release/Orbel.so
stat -c %s "$work/Orbel.so" >"$results/bundle-bytes"
echo "$baseline" >"$results/baseline"
scripts/bench-page.py "$results" docs
