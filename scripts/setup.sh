#!/usr/bin/env bash
# setup.sh [GROUP...]
#
# Installs the packages of the named groups (default: build) of packages.txt that are missing.
# With everything in place it changes nothing and asks no package server. As root it installs by
# itself, else through sudo. What it can't install, for want of apt-get, of the right or of such a
# package, it names in one line and succeeds: the same may be there in another way, and the build
# reports what it really lacks.
set -euo pipefail

list="$(dirname "${BASH_SOURCE[0]}")/packages.txt"
[[ $# -gt 0 ]] || set -- build

# The packages of one group, one a line.
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

# Sudo is of use where it asks for no password or somebody is there to type it.
may_install() {
    [[ $(id -u) -eq 0 ]] && return 0
    command -v sudo >/dev/null && { sudo -n true 2>/dev/null || [[ -t 0 ]]; }
}

# leave REASON PACKAGE...: names what is needed, and ends the script.
leave() {
    echo "setup.sh: $1; needed, by Debian's names: ${*:2}" >&2
    exit 0
}

wanted=()
for group in "$@"; do
    mapfile -t packages < <(packages_of "$group")
    [[ ${#packages[@]} -gt 0 ]] || { echo "setup.sh: packages.txt has no group $group" >&2; exit 2; }
    wanted+=("${packages[@]}")
done

if ! command -v apt-get >/dev/null || ! command -v dpkg-query >/dev/null; then
    leave 'no apt-get here' "${wanted[@]}"
fi

missing=()
for package in "${wanted[@]}"; do
    installed "$package" || missing+=("$package")
done
[[ ${#missing[@]} -gt 0 ]] || exit 0
may_install || leave 'neither root nor sudo' "${missing[@]}"

echo "Installing ${missing[*]}"
privileged apt-get update -q || echo "setup.sh: going on with the package lists at hand" >&2
known=() unknown=()
for package in "${missing[@]}"; do
    if apt-cache show "$package" >/dev/null 2>&1; then known+=("$package"); else unknown+=("$package"); fi
done
[[ ${#known[@]} -eq 0 ]] || privileged env DEBIAN_FRONTEND=noninteractive \
    apt-get install -q -y --no-install-recommends "${known[@]}"
[[ ${#unknown[@]} -eq 0 ]] || leave 'this distribution has no such packages' "${unknown[@]}"
