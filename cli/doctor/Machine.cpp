// SPDX-License-Identifier: Apache-2.0
#include "cli/doctor/Machine.h"

namespace cli {

std::string processorText() {
#if defined(__x86_64__) && defined(__GNUC__)
    const bool avx2 = __builtin_cpu_supports("avx2") != 0;
    const bool fma = __builtin_cpu_supports("fma") != 0;
    return std::string("x86-64 ") + (avx2 ? "with" : "without") + " AVX2, " +
           (fma ? "with" : "without") + " FMA";
#elif defined(__aarch64__)
    return "arm64";
#else
    return "of a kind that no bundle is tested on";
#endif
}

}  // namespace cli
