#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# old_processor_test.sh QEMU ORBEL
#
# Runs the tool on an emulated processor without AVX2, which the bundle needs: commands that don't load
# the bundle work, and a render ends with one line that says why, not with an illegal instruction.
set -euo pipefail

qemu="$1"
orbel="$2"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

fail() {
    echo "$1"
    cat "$work/stderr"
    exit 1
}

run() {
    "$qemu" -cpu Nehalem "$orbel" "$@" >"$work/stdout" 2>"$work/stderr"
}

run --version || fail "--version needs the processor of the bundle"
run scene "$work/night.exr" --size 32x18 || fail "scene needs the processor of the bundle"

code=0
run render "$work/night.exr" -o "$work/out.exr" || code=$?
[[ $code -eq 1 ]] || fail "exit code $code instead of 1"
[[ $(wc -l <"$work/stderr") -eq 1 ]] || fail "not one line:"
grep -qiE 'processor|AVX2|x86-64-v3|ISA level' "$work/stderr" || fail "the line doesn't state the cause:"
code=0
run doctor || code=$?
[[ $code -eq 1 ]] || fail "exit code $code of doctor instead of 1"
grep -q 'processor: x86-64 without AVX2' "$work/stdout" || fail "doctor doesn't tell the processor's kind"
grep -q '^bad .*processor' "$work/stdout" || fail "doctor doesn't tell why the bundle isn't loaded"

[[ ! -e $work/out.exr ]] || fail "an image was left behind"
