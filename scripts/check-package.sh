#!/usr/bin/env bash
# check-package.sh ARCHIVE...
#
# Compares the files in each package with what a package of its kind has to hold, no less and no
# more. Prints the list of each, and exits with 1 after one that differs.
set -euo pipefail

# The files that belong into a package, sorted, below its folder.
expected() {
    case "$1" in
        *-windows-x86_64.zip) printf '%s\n' INSTALL.txt Orbel.aex ;;
        *-macos.zip)
            printf 'Orbel.plugin/Contents/%s\n' Info.plist MacOS/Orbel PkgInfo Resources/Orbel.rsrc \
                _CodeSignature/CodeResources
            printf 'INSTALL.txt\n'
            ;;
        *-linux-x86_64.tar.gz)
            printf '%s\n' bin/orbel lib/orbel/Orbel.so share/doc/Orbel/INSTALL.txt
            ;;
        *-linux-aarch64.tar.gz) printf '%s\n' lib/orbel/Orbel.so share/doc/Orbel/INSTALL.txt ;;
        *) return 1 ;;
    esac
}

# All names in an archive, folders with a slash at their end; CMake reads both kinds. On Windows it
# ends lines in two characters.
names() {
    cmake -E tar tf "$1" | tr -d '\r'
}

failed=0
for archive in "$@"; do
    folder=$(basename "$archive")
    folder=${folder%.zip}
    folder=${folder%.tar.gz}
    if ! wanted=$(expected "$archive"); then
        echo "$archive: no such package is known"
        failed=1
        continue
    fi
    wanted=$(sed "s|^|$folder/|" <<<"$wanted" | LC_ALL=C sort)
    found=$(names "$archive" | grep -v '/$' | LC_ALL=C sort)
    printf '%s\n' "$archive:" "$found"
    if [[ $found != "$wanted" ]]; then
        printf '%s\n' "but it has to hold:" "$wanted"
        failed=1
    fi
done
exit "$failed"
