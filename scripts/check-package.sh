#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# check-package.sh ARCHIVE...
#
# Compares the files in each package with the exact list for its platform. Prints the files of each
# package, and exits with 1 if one differs.
set -euo pipefail

# below FOLDER NAME...: the names as paths, one per line.
below() {
    local folder="$1" name
    shift
    for name in "$@"; do echo "$folder/$name"; done
}

# expected ARCHIVE FOLDER: the files that the archive has to contain, all below FOLDER.
expected() {
    local notes=(INSTALL.txt LICENSE.txt NOTICE.txt THIRD-PARTY.txt)
    case "$1" in
        *-windows-x86_64.zip) below "$2" Orbel.aex "${notes[@]}" ;;
        *-macos.zip)
            below "$2/Orbel.plugin/Contents" Info.plist MacOS/Orbel PkgInfo Resources/Orbel.rsrc \
                _CodeSignature/CodeResources
            below "$2" "${notes[@]}"
            ;;
        *-linux-x86_64.tar.gz)
            below "$2" bin/orbel lib/orbel/Orbel.so
            below "$2/share/man/man1" orbel{,-render,-params,-aperture,-scene,-compare,-check,-inspect,-about,-doctor}.1
            below "$2/share" bash-completion/completions/orbel zsh/site-functions/_orbel \
                fish/vendor_completions.d/orbel.fish
            below "$2/share/doc/Orbel" "${notes[@]}"
            ;;
        *-linux-aarch64.tar.gz)
            below "$2" lib/orbel/Orbel.so
            below "$2/share/doc/Orbel" "${notes[@]}"
            ;;
        *) return 1 ;;
    esac
}

# All names in an archive, those of folders with a trailing slash; CMake reads both formats. On Windows
# it ends lines with two characters.
names() {
    cmake -E tar tf "$1" | tr -d '\r'
}

failed=0
for archive in "$@"; do
    folder=$(basename "$archive")
    folder=${folder%.zip}
    folder=${folder%.tar.gz}
    if ! wanted=$(expected "$archive" "$folder"); then
        echo "$archive: unknown kind of package"
        failed=1
        continue
    fi
    wanted=$(LC_ALL=C sort <<<"$wanted")
    found=$(names "$archive" | grep -v '/$' | LC_ALL=C sort)
    printf '%s\n' "$archive:" "$found"
    if [[ $found != "$wanted" ]]; then
        printf '%s\n' "but expected:" "$wanted"
        failed=1
    fi
done
exit "$failed"
