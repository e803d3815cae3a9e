#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# check-layers.sh [ROOT]
#
# Fails if sources below ROOT (default: this repository) include against the direction of the layers,
# or if plug-in code uses more than the C++ standard library. The build's include directories already
# prevent most of this, but not system headers, paths with "..", and the names below. Prints one line
# for each finding.
set -euo pipefail
cd "${1:-$(dirname "${BASH_SOURCE[0]}")/..}"

# The folders whose headers a folder may include, besides its own.
declare -A below=(
    [platform]=''
    [host]='platform'
    [transform]='host platform'
    [kernels]='transform host platform'
    [depth]='transform host platform'
    [pipeline]='kernels depth transform host platform'
    [effect]='pipeline kernels depth transform host platform'
    [bundle]='effect platform'
    [bundle/descriptor]='bundle effect platform' # runs on the build machine
    [headless]='platform'
    [trial]='headless platform'
    [pictures]='headless platform'
    [occlusion]='pictures headless platform'
    [scene]=''
    [inspect]='pictures headless platform'
    [shot]='headless platform'
    [cli]='shot inspect occlusion scene pictures headless platform'
)
plugin='platform host transform kernels depth pipeline effect bundle'

# The vocabulary of a frame: headers of upper folders that the stages share with them.
shared='effect/ParameterIndices.h effect/RenderInfo.h pipeline/BlockLayout.h'
shares='kernels depth pipeline'

# The headers that plug-in code may include in angle brackets. No streams: their static initialisers
# and locales don't belong in another program's process.
standard='algorithm array atomic bit cassert cctype cfloat climits cmath complex concepts cstdarg
cstddef cstdint cstdio cstdlib cstring exception functional initializer_list iterator limits memory
new numbers numeric optional span string string_view tuple type_traits utility variant vector'

findings=0
report() {
    echo "$1: $2"
    findings=$((findings + 1))
}

# Whether $2 is one of the words of $1.
holds() {
    [[ " ${1//$'\n'/ } " == *" $2 "* ]]
}

# The folder of the table above that a file belongs to.
layer_of() {
    local folder="${1%/*}"
    until [[ -v below[$folder] ]]; do folder="${folder%/*}"; done
    echo "$folder"
}

# Lines `file:line:text` that match an extended expression, in the sources of all layers.
lines_with() {
    grep -rnE --include='*.h' --include='*.cpp' "$1" "${folders[@]}" || true
}

check_own_include() {
    local folder="$1" place="$2" header="$3" other="${3%%/*}"
    if [[ $header == *..* ]]; then
        report "$place" "\"$header\" leaves its folder"
    elif [[ $other != "$folder" ]] && ! holds "${below[$folder]}" "$other"; then
        holds "$shares" "$folder" && holds "$shared" "$header" && return 0
        report "$place" "$folder/ may not include \"$header\""
    fi
}

check_includes() {
    local file line text folder header
    while IFS=: read -r file line text; do
        folder=$(layer_of "$file")
        if [[ $text =~ \"([^\"]+)\" ]]; then
            check_own_include "$folder" "$file:$line" "${BASH_REMATCH[1]}"
        elif [[ $text =~ \<([^\>]+)\> ]]; then
            header="${BASH_REMATCH[1]}"
            if holds "$plugin" "$folder" && ! holds "$standard" "$header"; then
                report "$file:$line" "<$header> is not allowed in plug-in code"
            fi
        fi
    done < <(lines_with '^[[:space:]]*#[[:space:]]*include')
}

# forbid LAYERS EXPRESSION REASON: reports matching lines, ignoring comments and strings.
forbid() {
    local layers="$1" expression="$2" reason="$3" file line text
    while IFS=: read -r file line text; do
        text=$(sed -E 's/"([^"\\]|\\.)*"//g; s@//.*@@' <<<"$text")
        if holds "$layers" "$(layer_of "$file")" && grep -qE "$expression" <<<"$text"; then
            report "$file:$line" "$reason"
        fi
    done < <(lines_with "$expression")
}

folders=()
for folder in "${!below[@]}"; do
    if [[ $folder != */* && -d $folder ]]; then folders+=("$folder"); fi
done

check_includes
# A long has 32 bits on Windows and 64 elsewhere.
forbid "$plugin" '(^|[^A-Za-z0-9_])long([^A-Za-z0-9_]|$)' 'the width of long depends on the platform'
forbid "$plugin" 'thread_local|__thread' 'plug-in code keeps no state between commands'
forbid "${!below[*]}" 'NDEBUG' 'assertions stay active in every build'

[[ $findings -eq 0 ]] || exit 1
