# SPDX-License-Identifier: Apache-2.0
# For scripts that check the whole repository, to be sourced in its root: the steps that every
# submission has to pass, and the time that each takes.
# shellcheck shell=bash

CTEST_PARALLEL_LEVEL=${CTEST_PARALLEL_LEVEL:-$(nproc)}
export CTEST_PARALLEL_LEVEL
durations=()
test_log=$(mktemp)
trap 'rm -f "$test_log"' EXIT

# step NAME COMMAND...: runs the command under a heading and measures its time.
step() {
    local name="$1" start=$SECONDS
    shift
    printf '\n== %s\n' "$name"
    "$@"
    durations+=("$(printf '%5d s  %s' $((SECONDS - start)) "$name")")
}

compile() {
    cmake --preset "$1"
    cmake --build --preset "$1"
}

compile_and_test() {
    compile "$1"
    ctest --preset "$1"
}

platforms() {
    scripts/package.sh ci windows arm64
    scripts/trial.sh build/ci
}

# Checks that take seconds come first. Tests, packages and the trial share the build of `ci`.
check_submission() {
    local preset
    step 'system packages' scripts/setup.sh build test check
    step 'shell scripts' scripts/check-shell.sh
    step 'version' scripts/check-version.sh
    step 'licence' scripts/check-licence.sh
    step 'format' scripts/check-format.sh
    step 'layers' scripts/check-layers.sh
    step 'ci: build' compile ci
    step 'ci: tests' run_tests
    step 'tidy' scripts/check-tidy.sh --all
    step 'check-clang' compile check-clang
    step 'platforms: packages and trial' platforms
    for preset in asan-ubsan tsan; do
        step "$preset" compile_and_test "$preset"
    done
}

run_tests() {
    ctest --preset ci 2>&1 | tee "$test_log"
}

# Prints the duration of each step, and the summary of the release's tests.
summarize() {
    printf '\n== durations\n'
    printf '%s\n' "${durations[@]}" "$(printf '%5d s  in total' $SECONDS)"
    printf '\n== tests of the release\n'
    grep -E '^[0-9]+% tests passed|^Total Test time' "$test_log"
}
