#!/bin/bash
# SPDX-License-Identifier: Apache-2.0
# install_test.sh CMAKE BUILD
#
# What `cmake --install` puts into a folder works there, wherever the folder is.
set -euo pipefail

cmake=$1 build=$2
prefix=$(mktemp -d)
trap 'rm -rf "$prefix"' EXIT

"$cmake" --install "$build" --prefix "$prefix/first" --strip >/dev/null
mv "$prefix/first" "$prefix/moved"
cd /
about=$("$prefix/moved/bin/orbel" about)
grep -qF "Loaded from $prefix/moved/" <<<"$about" || { echo "$about"; exit 1; }
