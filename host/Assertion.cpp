// SPDX-License-Identifier: Apache-2.0
#include "host/Assertion.h"

#include <cstdio>
#include <cstdlib>

namespace AEO {

void assertionFailed(const AssertionPlace& place, const char* text) {
    std::fprintf(stderr, "%s:%d: %s: Assertion `%s' failed.\n", place.file, place.line,
                 place.function, text);
    std::fflush(stderr);
    std::abort();
}

}  // namespace AEO
