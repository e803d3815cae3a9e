#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# trial.sh [RELEASE WINDOWS ARM64]
#
# Tests the bundles of three platforms, each in a host of its own platform: the native one, the
# Windows one under Wine and the arm64 one under qemu. Then compares their frames, and has each host
# refuse files that are not a bundle for it. The arguments are the build folders, by default those of
# the presets, which have to be built.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

release="${1:-build/release}"
windows="${2:-build/windows}"
arm64="${3:-build/arm64}"

work=$(mktemp -d)
export WINEPREFIX="$work/wine" WINEDEBUG=-all
trap 'rm -rf "$work"' EXIT

fail() {
    echo "trial.sh: $1" >&2
    exit 1
}

# find_program NAME...: the first of these programs that is on the PATH or in Wine's folder, which
# Debian doesn't put on the PATH.
find_program() {
    local name
    for name in "$@"; do
        PATH="$PATH:/usr/lib/wine" type -P "$name" && return
    done
    fail "none of these programs is installed: $*"
}

wine=$(find_program wine64 wine)
wineserver=$(find_program wineserver64 wineserver)
qemu=$(find_program qemu-aarch64 qemu-aarch64-static)
# The arm64 libraries are next to those of their compiler.
arm64_libraries=$(dirname "$(realpath "$(aarch64-linux-gnu-g++ -print-file-name=libm.so.6)")")

# The server of this prefix outlives its programs.
trap '"$wineserver" -k || true; rm -rf "$work"' EXIT

native_host=("$release/orbel-trial")
windows_host=("$wine" "$windows/orbel-trial.exe")
arm64_host=("$qemu" -L "$(dirname "$arm64_libraries")" "$arm64/orbel-trial")

windows_bundle="$windows/Orbel.aex"

# try NAME HOST... BUNDLE: sends the whole command stream; saves the frames in $work/NAME.
try() {
    local name="$1" log="$work/$1.log" start=$SECONDS
    shift
    echo "== $name"
    if ! "$@" --frames "$work/$name" >"$log" 2>&1; then
        grep -vE '^ok ' "$log" || true
        fail "the trial of the bundle for $name failed"
    fi
    tr -d '\r' <"$log" | sed -nE 's/^ok +(load and set-up)/\1/p; $p'
    echo "$((SECONDS - start)) s"
}

# compare NAME NAME: every frame has to have the same bytes; if not, says by how much they differ.
compare() {
    echo "== $1 and $2 compared"
    diff -rq "$work/$1" "$work/$2" && return
    "${native_host[@]}" --compare "$work/$1" "$work/$2" || true
    fail "the frames of $1 and $2 differ"
}

# refuses REASON FILE PROGRAM...: the program reports that it can't load the file, and why.
refuses() {
    local reason="$1" file="$2" text code=0
    shift 2
    text=$("$@" "$file" 2>&1) || code=$?
    [[ $code -eq 1 && $text == *"${file##*[/\\]} $reason"* ]] ||
        fail "expected \"${file##*/} $reason\" and code 1, not code $code and: $text"
    echo "$text" | tr -d '\r'
}

# Copies of the Windows bundle: with another processor in the header, and without the second half.
header=$(od -An -tu4 -j60 -N4 "$windows_bundle")
cp "$windows_bundle" "$work/foreign.aex"
printf '\x64\xAA' | dd of="$work/foreign.aex" bs=1 seek=$((header + 4)) conv=notrunc status=none
head -c $(($(stat -c %s "$windows_bundle") / 2)) "$windows_bundle" >"$work/half.aex"
echo 'This is text, not a bundle.' >"$work/text.aex"

try linux-x86_64 "${native_host[@]}" "$release/Orbel.so"
try windows-x86_64 "${windows_host[@]}" "$windows_bundle"
try linux-arm64 "${arm64_host[@]}" "$arm64/Orbel.so"
compare linux-x86_64 windows-x86_64
compare linux-x86_64 linux-arm64

echo '== files that are not a bundle'
refuses 'was built for Linux on arm64' "$arm64/Orbel.so" "${native_host[@]}"
refuses 'was built for Windows on x86-64' "$windows_bundle" "${native_host[@]}"
refuses 'was built for Linux on x86-64' "$release/Orbel.so" "${arm64_host[@]}"
refuses 'has no function EntryPointFunc' "$arm64_libraries/libm.so.6" "${arm64_host[@]}"
refuses 'was built for Linux on x86-64' "$release/Orbel.so" "${windows_host[@]}"
refuses 'was built for Windows on arm64' "$work/foreign.aex" "${windows_host[@]}"
refuses "can't be loaded: it is damaged" "$work/half.aex" "${windows_host[@]}"
refuses 'is not a loadable file' "$work/text.aex" "${windows_host[@]}"
refuses 'does not exist' "$work/missing.aex" "${windows_host[@]}"
refuses 'has no function EntryPointFunc' 'C:\windows\system32\version.dll' "${windows_host[@]}"
if [[ -x $release/orbel ]]; then
    refuses 'was built for Linux on arm64' "$arm64/Orbel.so" "$release/orbel" params --bundle
fi
