// SPDX-License-Identifier: Apache-2.0
#pragma once
// Which numbers of depth layers the bundle of this build can blur with. A build for the sanitizers
// has a few of them and leaves pictures with others as they are.

// For tests of what chooses any number, at the start of one.
#define SKIP_UNLESS_ALL_LAYER_COUNTS_ARE_BUILT()                      \
    if (ORBEL_BUILT_LAYER_COUNTS < 16) {                              \
        GTEST_SKIP() << "this build has " << ORBEL_BUILT_LAYER_COUNTS \
                     << " of 16 numbers of layers";                   \
    }                                                                 \
    static_assert(true)
