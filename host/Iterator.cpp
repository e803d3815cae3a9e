// SPDX-License-Identifier: Apache-2.0
#include "host/Iterator.h"

namespace AEO::Iterator {

// The suite's pointer is used without a check: no host of this effect lacks the suite.
// NOLINTBEGIN(clang-analyzer-core.NullDereference)

int GetNumThreads(SPBasicSuite& basic, int& err) {
    SuiteHolder<AEGP_IterateSuite1> holder(&basic);
    holder.acquire();
    std::int32_t count = 0;
    err |= holder.suite->AEGP_GetNumThreads(&count);
    return count;
}

int IterateGeneric(SPBasicSuite& basic, int iterations, void* refcon,
                   int (*fn)(void* refcon, int thread, int i, int iterations)) {
    SuiteHolder<AEGP_IterateSuite1> holder(&basic);
    holder.acquire();
    return holder.suite->AEGP_IterateGeneric(iterations, refcon, fn);
}

// NOLINTEND(clang-analyzer-core.NullDereference)

}  // namespace AEO::Iterator
