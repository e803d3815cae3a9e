#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# check-bundle.sh BUILD
#
# Checks the bundle in the build folder BUILD: its exports, its imports and its size when stripped;
# for Windows also its descriptor, its version and its moves of vectors. Prints one line for each
# problem, and then exits with 1.
set -euo pipefail

readonly entry_point=EntryPointFunc
readonly largest=30000000 # bytes
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
build="${1:?usage: check-bundle.sh BUILD}"
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

findings=0
report() {
    echo "$bundle: $1"
    findings=$((findings + 1))
}

# The target's program that the build found under a name such as STRIP.
tool() {
    sed -n "s/^CMAKE_$1:FILEPATH=//p" "$build/CMakeCache.txt"
}

check_size() {
    local size
    "$(tool STRIP)" -o "$scratch/stripped" "$bundle"
    size=$(stat -c %s "$scratch/stripped")
    echo "$bundle: $size bytes stripped"
    [[ $size -lt $largest ]] || report "more than $largest bytes"
}

check_elf() {
    export READELF LC_ALL=C
    READELF=$(tool READELF)
    "$root/tests/bundle/inspect.sh" exports "$bundle" "$entry_point" 2>&1 || report 'wrong exports'
    "$root/tests/bundle/inspect.sh" libraries "$bundle" 2>&1 || report 'wrong libraries'
}

# The names in the export table and the DLLs in the import table.
check_windows_tables() {
    local tables exports foreign
    tables=$("$(tool OBJDUMP)" -p "$bundle")
    exports=$(sed -n '/^\[Ordinal\/Name Pointer\] Table/,/^$/ s/^\s\+\[ *[0-9]*\] *//p' <<<"$tables")
    [[ $exports == "$entry_point" ]] || report "exports other than only $entry_point: ${exports//$'\n'/ }"
    foreign=$(sed -n 's/.*DLL Name: //p' <<<"$tables" |
        grep -viE '^(kernel32|msvcrt|ucrtbase|api-ms-win-[a-z0-9-]+)\.dll$' || true)
    [[ -z $foreign ]] || report "imports DLLs that are not part of Windows: ${foreign//$'\n'/ }"
}

# A resource reader has to find exactly the bytes that the generator wrote.
check_descriptor() {
    wrestool --extract --raw --type=PIPL --name=16000 "$bundle" >"$scratch/descriptor"
    cmp "$scratch/descriptor" "$build/bundle/windows/Orbel.pipl" || report 'missing or wrong descriptor'
}

# The project's version has to be present as numbers, which installers compare, and as text. The
# numbers are 16-bit words in the 8 bytes from byte 48, the minor one before the major one.
check_version() {
    local version numbers major minor patch
    version=$(sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' "$build/CMakeCache.txt")
    IFS=. read -r major minor patch <<<"$version"
    wrestool --extract --raw --type=version "$bundle" >"$scratch/version"
    numbers=$(od -An -tu2 -j48 -N8 "$scratch/version" | xargs)
    [[ $numbers == "$minor $major 0 $patch" ]] || report "version words $numbers instead of those of $version"
    tr -d '\0' <"$scratch/version" | grep -qaF "FileVersion$version" || report "no version text $version"
}

# Aligned moves of 32-byte vectors fault, since the stack under Windows is aligned to 16 bytes.
check_vector_moves() {
    local code aligned
    code="$scratch/code"
    "$(tool OBJDUMP)" -d --no-show-raw-insn "$bundle" >"$code"
    aligned=$(grep -cE 'vmov(aps|apd|dqa(32|64)?|ntps|ntpd|ntdqa?) .*(\(.*ymm|ymm.*\()' "$code" || true)
    [[ $aligned -eq 0 ]] || report "$aligned aligned moves of 32-byte vectors"
    grep -qE 'vmovup[sd] .*\(.*ymm' "$code" || report 'no moves of 32-byte vectors at all'
}

if [[ -f $build/Orbel.aex ]]; then
    bundle="$build/Orbel.aex"
    check_windows_tables
    check_descriptor
    check_version
    check_vector_moves
else
    bundle="$build/Orbel.so"
    check_elf
fi
check_size
[[ $findings -eq 0 ]] || exit 1
