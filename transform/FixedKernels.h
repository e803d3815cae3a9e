// SPDX-License-Identifier: Apache-2.0
#pragma once
// The sections of fixed size at the bottom of the transform's tree (see Butterflies.h). `w` is the
// sub-table of size 4 of TwiddleTables.h, and of size 16 for cftf162.

#include "transform/Butterflies.h"

namespace fft {

// A whole transform of four samples in natural order.
template <class A>
ORBEL_LANE_INLINE void transformFour(A a, bool conjugate) {
    using V = typename A::Lanes;
    const auto [p, q, r, s] = firstKindSums<false>(a, 0, 2);
    const auto x1 = sumTurned<V>(q, s);
    const auto x3 = differenceTurned<V>(q, s);
    a.store(0, sum<V>(p, r));
    a.store(2, conjugate ? x3 : x1);
    a.store(4, difference<V>(p, r));
    a.store(6, conjugate ? x1 : x3);
}

}  // namespace fft

// 16 samples of the first kind. They don't fit into the registers, so the quarters have a loop of
// their own.
template <class T>
void cftf161(T* a, const double* w) {
    using namespace fft;
    const double half = w[1];
    const Twiddle t{w[2], w[3], w[3], -w[2]};
    ORBEL_INDEPENDENT_LANES
    for (auto x : LanesOf(a)) {
        splitFirst(x, 0, 8);
        splitFirst(x, 2, 8, t);
        splitFirstMiddle(x, 4, 8, half);
        splitFirst(x, 6, 8, t.mirrored());
    }
    ORBEL_INDEPENDENT_LANES
    for (auto x : LanesOf(a)) {
        splitFirst(x, 0, 2);
        splitSecond(x, 8, 2, half);
        splitFirst(x, 16, 2);
        splitFirst(x, 24, 2);
    }
}

// 16 samples of the second kind.
template <class T>
void cftf162(T* a, const double* w) {
    using namespace fft;
    const double half = w[1];
    const Twiddle t = twiddleAt(w + 4);              // pi/16
    const Twiddle u{t.re3, -t.im3, -t.im1, -t.re1};  // 3 pi/16
    const double cosine = w[8];
    const double sine = w[9];
    ORBEL_INDEPENDENT_LANES
    for (auto x : LanesOf(a)) {
        splitSecond(x, 0, 8, half);
        splitSecond(x, 2, 8, t, u.mirrored());
        splitSecondMiddle(x, 4, 8, cosine, sine);
        splitSecond(x, 6, 8, u, t.mirrored());
    }
    ORBEL_INDEPENDENT_LANES
    for (auto x : LanesOf(a)) {
        splitFirst(x, 0, 2);
        splitSecond(x, 8, 2, half);
        splitFirst(x, 16, 2);
        splitSecond(x, 24, 2, half);
    }
}

// 8 samples of the first kind.
template <class T>
void cftf081(T* a, const double* w) {
    using namespace fft;
    const double half = w[1];
    ORBEL_INDEPENDENT_LANES
    for (auto x : LanesOf(a)) {
        splitFirst(x, 0, 4);
        splitFirstMiddle(x, 2, 4, half);
        sumAndDifference(x, 0);
        sumAndDifferenceTurned(x, 4);
        sumAndDifference(x, 8);
        sumAndDifference(x, 12);
    }
}

// 8 samples of the second kind.
template <class T>
void cftf082(T* a, const double* w) {
    using namespace fft;
    const double half = w[1];
    const double cosine = w[2];
    const double sine = w[3];
    ORBEL_INDEPENDENT_LANES
    for (auto x : LanesOf(a)) {
        splitSecond(x, 0, 4, half);
        splitSecondMiddle(x, 2, 4, cosine, sine);
        sumAndDifference(x, 0);
        sumAndDifferenceTurned(x, 4);
        sumAndDifference(x, 8);
        sumAndDifferenceTurned(x, 12);
    }
}

// Whole transforms of 4 samples, with the exponent's sign + and -, and of 2 samples.
template <class T>
void cftf040(T* a) {
    ORBEL_INDEPENDENT_LANES
    for (auto x : fft::LanesOf(a)) fft::transformFour(x, false);
}

template <class T>
void cftb040(T* a) {
    ORBEL_INDEPENDENT_LANES
    for (auto x : fft::LanesOf(a)) fft::transformFour(x, true);
}

template <class T>
void cftx020(T* a) {
    ORBEL_INDEPENDENT_LANES
    for (auto x : fft::LanesOf(a)) fft::sumAndDifference(x, 0);
}
