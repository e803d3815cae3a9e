#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# check_version_test.sh CHECK
#
# Plants one wrong version at a time in a small tree and expects check-version.sh to report the place;
# expects the tree without faults to pass, also with its own tag.
set -euo pipefail

root=$(mktemp -d)
trap 'rm -rf "$root"' EXIT
mkdir -p "$root"/{scripts,effect,docs}
cp "$1" "$root/scripts/check-version.sh"
unset GITHUB_REF_TYPE GITHUB_REF_NAME
failures=0

# A tree of version 2.3.4 with an older release.
plant() {
    echo 'project(Orbel VERSION 2.3.4 LANGUAGES CXX)' >"$root/CMakeLists.txt"
    printf 'inline constexpr A_u_long %s;\n' 'kVersion = 2' 'kSubversion = 3' 'kBugFix = 4' \
        'kBuild = 1' >"$root/effect/Identity.h"
    printf '## [%s\n' 'Unreleased]' '2.3.4] - 2026-05-01' '2.3.3] - 2026-04-01' >"$root/CHANGELOG.md"
    printf '%s\n' 'A library, 1.0.0.' 'Orbel-2.3.4-macos.zip' >"$root/README.md"
    echo 'Orbel-*-linux-x86_64.tar.gz' >"$root/docs/install.md"
}

fail() {
    echo "$1"
    failures=$((failures + 1))
}

# expect MESSAGE [ARGUMENT]: the check fails, and its only line starts with MESSAGE.
expect() {
    local output
    if output=$("$root/scripts/check-version.sh" "${@:2}") ||
        [[ $output != "$1"* || $output == *$'\n'* ]]; then
        fail "expected '$1', not '$output'"
    fi
    plant
}

passes() {
    "$root/scripts/check-version.sh" "$@" || fail "a tree without faults does not pass: $*"
}

# swap FILE OLD NEW
swap() {
    sed -i "s/$2/$3/" "$root/$1"
}

plant
passes
passes v2.3.4
GITHUB_REF_TYPE=branch GITHUB_REF_NAME=v9.9.9 passes

swap CMakeLists.txt 2.3.4 2.3
expect 'CMakeLists.txt: no project version'
swap effect/Identity.h 'kBugFix = 4' 'kBugFix = 5'
expect 'effect/Identity.h: version 2.3.5'
swap effect/Identity.h 'kSubversion' 'kMinor'
expect 'effect/Identity.h: version 2..4'
swap CHANGELOG.md '## \[2.3.4.*' ''
expect 'CHANGELOG.md, newest release: version 2.3.3'
swap CHANGELOG.md ' - 2026.*' ''
expect 'CHANGELOG.md, newest release: version missing'
swap README.md 2.3.4 2.3.10
expect 'README.md:2: version 2.3.10'
swap docs/install.md '\*' 1.0.0
expect 'docs/install.md:1: version 1.0.0'
expect 'the tag is v2.3.5' v2.3.5
expect 'the tag is 2.3.4' 2.3.4
GITHUB_REF_TYPE=tag GITHUB_REF_NAME=v2.4.0 expect 'the tag is v2.4.0'

[[ $failures -eq 0 ]]
