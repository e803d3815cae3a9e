// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cmath>

#include "transform/FFT2D.h"
#include "transform/TwiddleTables.h"

FFTWeights::FFTWeights(AEO::InData& context, std::size_t threads, std::size_t n)
    : ip(context),
      w(context),
      ipStride(static_cast<std::size_t>(std::sqrt(static_cast<double>(n))) + 2),
      wStride(n / 2) {
    ip.resize(ipStride * threads);
    w.resize(wStride * threads);
    if (!ip.data() || !w.data()) return;

    makewt(static_cast<int>(n >> 2), ip.data(), w.data());
    for (std::size_t thread = 1; thread < threads; ++thread) {
        std::copy_n(ip.data(), ipStride, ip.data() + ipStride * thread);
        std::copy_n(w.data(), wStride, w.data() + wStride * thread);
    }
}

RowTables FFTWeights::rowTables(int thread, std::size_t size) {
    int* const seeds = ipOf(thread);
    double* const twiddles = wOf(thread);
    const int needed = static_cast<int>(size >> 1);
    if (seeds[0] < needed) makewt(needed, seeds, twiddles);
    return {seeds, seeds[0], twiddles};
}
