#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Plants one fault at a time in a small tree and expects check-layers.sh to report it; expects the
# tree without faults to pass.
set -euo pipefail

check="$1"
root=$(mktemp -d)
trap 'rm -rf "$root"' EXIT
failures=0

plant() {
    rm -rf "${root:?}"/*
    mkdir -p "$root"/{platform,host,kernels,pipeline,bundle/descriptor,headless,cli}
    # What has to pass: includes downwards, the shared headers, any header outside the plug-in.
    printf '#include <cstdint>\n// a long comment, "NDEBUG"\n' >"$root/platform/Scalars.h"
    printf '#include "platform/Scalars.h"\n#include "effect/RenderInfo.h"\n' >"$root/kernels/Filter.h"
    printf '#include <dlfcn.h>\n#include <iostream>\n#include "platform/Scalars.h"\nlong n;\n' \
        >"$root/headless/Bundle.cpp"
    printf '#include <fstream>\n#include "effect/Identity.h"\n' >"$root/bundle/descriptor/main.cpp"
    [[ $# -eq 0 ]] || printf '%s\n' "$2" >"$root/$1"
}

# expect FILE LINE: with LINE in FILE the check fails and reports the place.
expect() {
    local output
    plant "$1" "$2"
    if output=$("$check" "$root") || [[ $output != "$1:1: "* ]]; then
        echo "not reported: '$2' in $1 ($output)"
        failures=$((failures + 1))
    fi
}

plant
"$check" "$root" || { echo "a tree without faults does not pass"; failures=1; }

expect host/Vector.h '#include "kernels/Filter.h"'
expect host/Iterator.h '#include "effect/RenderInfo.h"'
expect kernels/GenFilter.cpp '#include "pipeline/StoreBuffer.h"'
expect pipeline/Multiply.h '#include "../host/Vector.h"'
expect headless/Host.cpp '#include "host/Vector.h"'
expect headless/World.cpp '#include "pictures/Picture.h"'
expect cli/Render.cpp '#include "effect/Identity.h"'
expect host/Worlds.cpp '#include <unistd.h>'
expect kernels/Weights.cpp '#  include <immintrin.h>'
expect pipeline/Report.cpp '#include <iostream>'
expect bundle/Module.cpp '#include <fstream>'
expect platform/Callbacks.h 'unsigned long count;'
expect pipeline/Cache.cpp 'thread_local int calls = 0;'
expect cli/main.cpp '#define NDEBUG'

[[ $failures -eq 0 ]]
