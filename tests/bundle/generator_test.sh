#!/bin/bash
# SPDX-License-Identifier: Apache-2.0
# generator_test.sh GENERATOR
#
# A description that can't be written ends the generator with a message and leaves no file, so that
# the build stops there.
set -euo pipefail

generator=$1
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

cat >"$scratch/good" <<'END'
name = Orbel
category = TARNWICK
match_name = TARNWICK Orbel
entry_point = EntryPointFunc
interface_version = 13.28
effect_version = 0xA0001
out_flags = 0x6000001
out_flags2 = 0x8001480
END

# refused MESSAGE: the description in the file `bad` isn't written in any form.
refused() {
    local form status
    for form in windows macos macos-resource-file; do
        status=0
        "$generator" "$form" "$scratch/out" "$scratch/bad" 2>"$scratch/message" || status=$?
        [[ $status -eq 1 ]] || { echo "$form: exit code $status for: $1"; exit 1; }
        grep -qF "$scratch/bad: $1" "$scratch/message" || { cat "$scratch/message"; exit 1; }
        [[ ! -e $scratch/out ]] || { echo "$form: a file in spite of: $1"; exit 1; }
    done
}

sed '/^entry_point/d' "$scratch/good" >"$scratch/bad"
refused "field 'entry_point' is missing"
rm "$scratch/bad"
refused "can't be read"

# Without a file it writes the code's own description, which this one repeats.
for form in windows macos macos-resource-file; do
    "$generator" "$form" "$scratch/read" "$scratch/good"
    "$generator" "$form" "$scratch/own"
    cmp "$scratch/read" "$scratch/own"
done
