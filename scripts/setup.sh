#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# setup.sh [GROUP...]
#
# Installs the missing packages of the named groups (default: build) of packages.txt. If none is
# missing, it changes nothing and contacts no package server. It installs as root, otherwise with
# sudo. If it can't install something, because apt-get, the permission or the package is missing, it
# names it in one line and succeeds: it may be installed in another way, and the build reports what it
# really lacks.
set -euo pipefail

list="$(dirname "${BASH_SOURCE[0]}")/packages.txt"
[[ $# -gt 0 ]] || set -- build

# The packages of one group, one per line.
packages_of() {
    sed 's/#.*//' "$list" | awk -v group="$1" '$1 == group { print $2 }'
}

installed() {
    dpkg-query -W -f '${db:Status-Status}\n' "$1" 2>/dev/null | grep -qx installed
}

# Runs a command as root.
privileged() {
    if [[ $(id -u) -eq 0 ]]; then "$@"; else sudo "$@"; fi
}

# Sudo is usable if it needs no password, or if somebody can type it.
may_install() {
    [[ $(id -u) -eq 0 ]] && return 0
    command -v sudo >/dev/null && { sudo -n true 2>/dev/null || [[ -t 0 ]]; }
}

# leave REASON PACKAGE...: lists the packages that are needed, and ends the script.
leave() {
    echo "setup.sh: $1; needed, with Debian's names: ${*:2}" >&2
    exit 0
}

wanted=()
for group in "$@"; do
    mapfile -t packages < <(packages_of "$group")
    [[ ${#packages[@]} -gt 0 ]] || { echo "setup.sh: packages.txt has no group $group" >&2; exit 2; }
    wanted+=("${packages[@]}")
done

if ! command -v apt-get >/dev/null || ! command -v dpkg-query >/dev/null; then
    leave 'apt-get is not available' "${wanted[@]}"
fi

missing=()
for package in "${wanted[@]}"; do
    installed "$package" || missing+=("$package")
done
[[ ${#missing[@]} -gt 0 ]] || exit 0
may_install || leave 'neither root nor sudo' "${missing[@]}"

echo "Installing ${missing[*]}"
privileged apt-get update -q || echo "setup.sh: continuing with the existing package lists" >&2
known=() unknown=()
for package in "${missing[@]}"; do
    if apt-cache show "$package" >/dev/null 2>&1; then known+=("$package"); else unknown+=("$package"); fi
done
[[ ${#known[@]} -eq 0 ]] || privileged env DEBIAN_FRONTEND=noninteractive \
    apt-get install -q -y --no-install-recommends "${known[@]}"
[[ ${#unknown[@]} -eq 0 ]] || leave 'this distribution has no such packages' "${unknown[@]}"
