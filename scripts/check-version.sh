#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# check-version.sh [TAG]
#
# Fails if the version differs from that in CMakeLists.txt: in effect/Identity.h, as the newest release
# of CHANGELOG.md, in the names of packages in README.md and docs/, and in the tag, such as v1.2.3, if
# there is one: TAG, or the tag that a workflow runs for. Prints one line for each difference.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

readonly number='[0-9]+\.[0-9]+\.[0-9]+'

findings=0
report() {
    echo "$1"
    findings=$((findings + 1))
}

# agrees PLACE VERSION
agrees() {
    [[ $2 == "$version" ]] || report "$1: version ${2:-missing} instead of $version"
}

# The value of a constant in Identity.h.
constant() {
    sed -nE "s/.*[ ]$1 = ([0-9]+);.*/\1/p" effect/Identity.h
}

version=$(sed -nE "s/^project\(Orbel VERSION ($number).*/\1/p" CMakeLists.txt)
[[ -n $version ]] || { echo 'CMakeLists.txt: no project version'; exit 1; }

agrees effect/Identity.h "$(constant kVersion).$(constant kSubversion).$(constant kBugFix)"

releases=$(sed -nE "s/^## \[($number)\] - [0-9]{4}-[0-9]{2}-[0-9]{2}$/\1/p" CHANGELOG.md)
agrees 'CHANGELOG.md, newest release' "${releases%%$'\n'*}"

while IFS=: read -r file line name; do
    agrees "$file:$line" "${name#Orbel-}"
done < <(grep -rnoE --include='*.md' "Orbel-$number" README.md docs || true)

tag="${1:-}"
if [[ -z $tag && ${GITHUB_REF_TYPE:-} == tag ]]; then tag="$GITHUB_REF_NAME"; fi
if [[ -n $tag && $tag != "v$version" ]]; then report "the tag is $tag instead of v$version"; fi

[[ $findings -eq 0 ]] || exit 1
