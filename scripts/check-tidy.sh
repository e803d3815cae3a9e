#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# check-tidy.sh [--all | --full | FILE...]
#
# Fails if clang-tidy finds a problem, and prints each finding once.
#
#   without arguments   the sources that differ from the branch main, including uncommitted ones
#   FILE...             these sources and headers
#   --all               every source of the build, with the checks of .clang-tidy
#   --full              the same with more checks, including the static analyser: takes much longer
#
# Reads the compile commands of build/ci or build/release, and configures the latter if neither
# exists. Nothing has to be built.
set -euo pipefail
shopt -s inherit_errexit
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# The checks that --full adds, except those that contradict the code as a whole:
#   cert-dcl37-c, cert-dcl51-cpp   bugprone-reserved-identifier without its permitted names
#   cert-dcl50-cpp                 the host's interface has functions with variable arguments
#   cert-exp42-c, cert-flp37-c     bugprone-suspicious-memory-comparison, which tests may do
#   cert-err33-c                   wants the result of every printf used
#   cert-err58-cpp                 each test case of GoogleTest is a static object that may throw
#   cert-msc32-c, cert-msc51-cpp   tests seed random numbers with constants, to be reproducible
#   misc-confusable-identifiers    l next to I in different scopes
#   misc-const-correctness         wants const on every local variable
#   misc-misplaced-const           a constant handle is meant to be a constant pointer
#   misc-non-private-member-...    plain structures with an operator or a constructor
#   misc-no-recursion              recursion as deep as a radix or a type allows
#   ...NewDeleteLeaks              each benchmark that registers itself
#   ...UninitializedObject         records of a frame are filled after they are made
readonly more_checks='performance-unnecessary-value-param,clang-analyzer-*,cert-*,misc-*,portability-*,-cert-dcl37-c,
-cert-dcl50-cpp,-cert-dcl51-cpp,-cert-err33-c,-cert-exp42-c,-cert-flp37-c,-cert-err58-cpp,
-cert-msc32-c,-cert-msc51-cpp,-misc-confusable-identifiers,-misc-const-correctness,
-misc-misplaced-const,-misc-non-private-member-variables-in-classes,-misc-no-recursion,
-clang-analyzer-cplusplus.NewDeleteLeaks,-clang-analyzer-optin.cplusplus.UninitializedObject'

fail() {
    echo "check-tidy.sh: $1" >&2
    exit 1
}

# Prints the name of the tool: version 16 if available, since each version finds more.
find_tidy() {
    local name
    for name in clang-tidy-16 clang-tidy; do
        if command -v "$name" >/dev/null; then
            echo "$name"
            return
        fi
    done
    fail 'clang-tidy is missing'
}

# Whether the compile commands $1 are older than a file that CMake reads.
stale() {
    local file
    while IFS= read -r -d '' file; do
        if [[ $file -nt $1 ]]; then return 0; fi
    done < <(git ls-files -z '*CMakeLists.txt' '*.cmake' CMakePresets.json)
    return 1
}

# Prints a build folder with compile commands; configures it if they are missing or out of date.
find_build() {
    local preset
    for preset in ci release; do
        [[ ! -f build/$preset/compile_commands.json ]] || break
    done
    if [[ ! -f build/$preset/compile_commands.json ]]; then
        cmake --preset "$preset" >/dev/null || fail "preset $preset does not configure"
    elif stale "build/$preset/compile_commands.json"; then
        cmake "build/$preset" >/dev/null || fail "build/$preset does not configure"
    fi
    echo "build/$preset"
}

# Prints all sources that the build compiles. Generated ones differ only in the number of depth
# layers, so only those for two layers are printed.
all_sources() {
    sed -nE -e 's/^ *"file": "(.*)",?$/\1/; T' -e "\#^$PWD/build/.*([^2]|[0-9]2)\.cpp\$#!p" \
        "$build/compile_commands.json"
}

# Prints the sources and headers that differ from where this branch left main, or that are new.
changed_files() {
    local base
    base=$(git merge-base HEAD main 2>/dev/null) || base=HEAD
    git diff --name-only --diff-filter=d "$base" -- '*.h' '*.cpp'
    git ls-files --others --exclude-standard '*.h' '*.cpp'
}

# Whether the build compiles the file; for a header clang-tidy uses the command of a similar source.
compiled() {
    [[ $1 == *.h ]] || grep -qF "\"file\": \"$(realpath "$1")\"" "$build/compile_commands.json"
}

# check FILE: writes the findings to a separate file in $reports. The compiler's own warnings are not
# this script's concern.
check() {
    local report="$reports/${1//\//_}" code=0
    "$tidy" --quiet -p "$build" --checks="$extra" --extra-arg=-Wno-error "$1" \
        >"$report" 2>"$report.stderr" || code=$?
    if [[ $code -ne 0 && ! -s $report ]]; then
        { echo "$1: error: $tidy ends with code $code"; cat "$report.stderr"; } >"$report"
    fi
    rm "$report.stderr"
}

# Checks all files, as many at the same time as there are processors.
check_all() {
    local file
    for file in "$@"; do
        while [[ $(jobs -rp | wc -l) -ge $(nproc) ]]; do wait -n; done
        check "$file" &
    done
    wait
}

# Prints each finding once, with its lines of code and notes: one in a header is repeated for every
# source that includes it.
print_findings() {
    find "$reports" -type f -exec sed "s|^$PWD/||" {} + | awk '/: (warning|error): / { fresh = !seen[$0]++ } fresh'
}

# Prints the files that the arguments select.
asked_for() {
    case "${1:-}" in
        '') changed_files ;;
        --all | --full) all_sources ;;
        *) printf '%s\n' "$@" ;;
    esac
}

extra=''
case "${1:-}" in
    --full) extra="${more_checks//$'\n'/}" ;;
    --all) ;;
    -*) fail "there is no option $1" ;;
esac

tidy=$(find_tidy)
build=$(find_build)
reports=$(mktemp -d)
trap 'rm -rf "$reports"' EXIT

asked=$(asked_for "$@")
files=()
while IFS= read -r file; do
    [[ -n $file ]] || continue
    [[ -f $file ]] || fail "there is no file $file"
    if compiled "$file"; then
        files+=("$(realpath "$file")")
    else
        echo "check-tidy.sh: not checked, since $build does not compile it: $file" >&2
    fi
done <<<"$asked"
[[ ${#files[@]} -gt 0 || ${1:-} != --* ]] || fail "$build compiles no sources"

check_all "${files[@]}"
findings=$(print_findings)
echo "$tidy: ${#files[@]} files in $SECONDS s"
if [[ -n $findings ]]; then
    echo "$findings"
    exit 1
fi
