#!/bin/bash
# SPDX-License-Identifier: Apache-2.0
# inspect.sh exports FILE NAME     NAME is the one symbol that others can link to
# inspect.sh globals FILE NAME     NAME is the one object in writable memory
# inspect.sh libraries FILE        the file needs nothing but the language's run-time libraries
# inspect.sh level FILE LEVEL      the file is marked as needing the processor LEVEL
# Reads a loadable ELF file, unstripped, with $READELF; prints what is wrong and exits with 1.
set -euo pipefail

readelf=${READELF:-readelf}

fail() {
    printf '%s\n' "$@" >&2
    exit 1
}

# Compares the lines of $2 with the one line $3.
expect_only() {
    [ "$2" = "$3" ] || fail "$1, expected: $3" "found:" "$2"
}

# Rows of symbol table $1 (--syms or --dyn-syms) of file $2: number, value, size, type, binding,
# visibility, section, name.
symbols() {
    "$readelf" --wide "$1" "$2" | awk '$1 ~ /^[0-9]+:$/ && NF >= 8'
}

exported() {
    symbols --dyn-syms "$1" | awk '$5 != "LOCAL" && $7 != "UND" { sub(/@.*/, "", $8); print $8 }'
}

# Indices of the sections that stay writable while the code runs: the loader makes relocated
# constants, tables of functions and its own tables read-only, or writes them before.
writable_sections() {
    "$readelf" --wide --sections "$1" | sed -n 's/^ *\[ *\([0-9]*\)\] /\1 /p' |
        awk '$2 ~ /^\.(data|bss|tdata|tbss)($|\.)/ && $2 !~ /^\.data\.rel\.ro/ { print $1 }'
}

# Objects and untyped labels there, without those of the toolchain ($d and $x mark code and data on
# arm64).
writable_objects() {
    local sections
    sections=$(writable_sections "$1" | tr '\n' ' ')
    symbols --syms "$1" |
        awk -v list=" $sections " '$4 != "SECTION" && index(list, " " $7 " ") { print $8 }' |
        grep -Ev '^(\$[dx].*|__dso_handle|completed\.[0-9]+|DW\.ref\..*|__TMC_END__|_edata|_end|__bss_start|__data_start|data_start|__aarch64_have_lse_atomics)$' || true
}

libraries() {
    "$readelf" --wide --dynamic "$1" | sed -n 's/.*(NEEDED).*\[\(.*\)\].*/\1/p' |
        grep -Ev '^(libstdc\+\+|libc\+\+|libc\+\+abi|libm|libgcc_s|libc|ld-linux.*)\.so' || true
}

case $1 in
    exports) expect_only "exported symbols" "$(exported "$2")" "$3" ;;
    globals) expect_only "writable objects" "$(writable_objects "$2")" "$3" ;;
    libraries) expect_only "foreign libraries" "$(libraries "$2")" "" ;;
    level)
        "$readelf" --notes "$2" | grep -q "x86 ISA needed:.*$3" ||
            fail "the file does not say that it needs $3" ;;
    *) fail "unknown check: $1" ;;
esac
