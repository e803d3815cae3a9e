// SPDX-License-Identifier: Apache-2.0
#pragma once
// One-dimensional, in-place complex transform of power-of-two length, of the split-radix family, on
// elements of vector lanes: one run transforms as many signals as T has live lanes.
//
// `a` holds n elements of T, n being twice the number M of samples: sample j is a[2j] (real part),
// a[2j + 1] (imaginary part). `ip`, `w` and nw are the tables of TwiddleTables.h, nw >= n / 4.
//
//   cftfsub   X[k] = sum over j of x[j] exp(+2 pi i j k / M)
//   cftbsub   X[k] = sum over j of x[j] exp(-2 pi i j k / M)
//
// Both leave the result in natural order, unscaled: one after the other multiplies by M. n must be
// a power of two, which is not checked; for n below 4 they do nothing.
//
// What follows is one recursion, unrolled (see Butterflies.h for sections and kinds):
//
//   cftf1st, cftb1st    split pass of the whole array, forward and on the conjugate of the input
//   cftmdl1, cftmdl2    split pass of a section of the first and of the second kind
//   cftrec4, cfttree    all passes below the first of a long array, leaf by leaf from its end
//   cftleaf, cftfx41    all passes below the first of 256 or 512 elements, of 64 or 128 elements
//   cftf161, cftf162    a whole section of 16 samples, of either kind
//   cftf081, cftf082    a whole section of 8 samples, of either kind
//   cftf040, cftb040    a whole transform of 4 samples, forward and backward
//   cftx020             a whole transform of 2 samples
//
// No routine allocates, checks its arguments, keeps state or writes to the tables.

#include <cstddef>

#include "transform/BitReversal.h"
#include "transform/Butterflies.h"
#include "transform/FixedKernels.h"
#include "transform/TwiddleTables.h"

namespace fft {

// The pass over the whole array. Its sub-table has a row for every second position only: the
// twiddle between two rows is their sum, scaled by the table's entries 2 and 3.
// `view` makes of a LaneOfSamples what the butterflies read and write.
template <bool kConjugate, class T, class View>
void splitWhole(int n, T* a, const double* w, View&& view) {
    const int m = n >> 2;
    const int mh = n >> 3;
    const double half = w[1];
    const auto split = [&](int j, const Twiddle& t) {
        ORBEL_INDEPENDENT_LANES
        for (auto x : LanesOf(a)) splitFirst<kConjugate>(view(x), j, m, t);
        const Twiddle mirrored = t.mirrored();
        ORBEL_INDEPENDENT_LANES
        for (auto x : LanesOf(a)) splitFirst<kConjugate>(view(x), m - j, m, mirrored);
    };
    const auto between = [=](const Twiddle& t, const Twiddle& u) {
        return Twiddle{w[2] * (t.re1 + u.re1), w[2] * (t.im1 + u.im1), w[3] * (t.re3 + u.re3),
                       w[3] * (t.im3 + u.im3)};
    };

    ORBEL_INDEPENDENT_LANES
    for (auto x : LanesOf(a)) splitFirst<kConjugate>(view(x), 0, m);
    Twiddle row{1.0, 0.0, 1.0, 0.0};
    for (int j = 2; j < mh - 2; j += 4) {
        const Twiddle next = twiddleAt(w + j + 2);
        split(j, between(row, next));
        split(j + 2, next);
        row = next;
    }
    split(mh - 2, between(row, Twiddle{half, half, -half, -half}));
    ORBEL_INDEPENDENT_LANES
    for (auto x : LanesOf(a)) splitFirstMiddle<kConjugate>(view(x), mh, m, half);
}

// Samples as they are.
struct PlainView {
    template <class Lane>
    ORBEL_LANE_INLINE const Lane& operator()(const Lane& lane) const {
        return lane;
    }
};

}  // namespace fft

template <class T>
void cftf1st(int n, T* a, const double* w) {
    fft::splitWhole<false>(n, a, w, fft::PlainView{});
}

template <class T>
void cftb1st(int n, T* a, const double* w) {
    fft::splitWhole<true>(n, a, w, fft::PlainView{});
}

// Position j and its mirror m - j share a row of the table, here a sub-table of n / 4 entries.
template <class T>
void cftmdl1(int n, T* a, const double* w) {
    using namespace fft;
    const int m = n >> 2;
    const int mh = n >> 3;
    const double half = w[1];
    ORBEL_INDEPENDENT_LANES
    for (auto x : LanesOf(a)) splitFirst(x, 0, m);
    for (int j = 2; j < mh; j += 2) {
        const Twiddle t = twiddleAt(w + std::ptrdiff_t{2} * j);
        const Twiddle mirrored = t.mirrored();
        ORBEL_INDEPENDENT_LANES
        for (auto x : LanesOf(a)) splitFirst(x, j, m, t);
        ORBEL_INDEPENDENT_LANES
        for (auto x : LanesOf(a)) splitFirst(x, m - j, m, mirrored);
    }
    ORBEL_INDEPENDENT_LANES
    for (auto x : LanesOf(a)) splitFirstMiddle(x, mh, m, half);
}

// The sub-table has n / 2 entries and is read from both ends: a row for t, and one whose mirror is
// t + pi/4.
template <class T>
void cftmdl2(int n, T* a, const double* w) {
    using namespace fft;
    const int m = n >> 2;
    const int mh = n >> 3;
    const double half = w[1];
    ORBEL_INDEPENDENT_LANES
    for (auto x : LanesOf(a)) splitSecond(x, 0, m, half);
    for (int j = 2; j < mh; j += 2) {
        const Twiddle t = twiddleAt(w + std::ptrdiff_t{2} * j);
        const Twiddle u = twiddleAt(w + std::ptrdiff_t{2} * (m - j));
        ORBEL_INDEPENDENT_LANES
        for (auto x : LanesOf(a)) splitSecond(x, j, m, t, u.mirrored());
        ORBEL_INDEPENDENT_LANES
        for (auto x : LanesOf(a)) splitSecond(x, m - j, m, u, t.mirrored());
    }
    const double cosine = w[m];
    const double sine = w[m + 1];
    ORBEL_INDEPENDENT_LANES
    for (auto x : LanesOf(a)) splitSecondMiddle(x, mh, m, cosine, sine);
}

// A section of 64 or 128 elements, of the first kind, whose split pass is done.
template <class T>
void cftfx41(int n, T* a, int nw, const double* w) {
    const double* const w8 = &w[nw - 8];
    if (n == 128) {
        cftf161(a, w8);
        cftf162(&a[32], &w[nw - 32]);
        cftf161(&a[64], w8);
        cftf161(&a[96], w8);
    } else {
        cftf081(a, w8);
        cftf082(&a[16], w8);
        cftf081(&a[32], w8);
        cftf081(&a[48], w8);
    }
}

// A leaf: a section of 512 or 256 elements whose split pass is done. `isplt` is 1 for a section of
// the first kind, 0 for the second.
template <class T>
void cftleaf(int n, int isplt, T* a, int nw, const double* w) {
    const double* const w8 = &w[nw - 8];
    const double* const w32 = &w[nw - 32];
    if (n == 512) {
        cftmdl1(128, a, &w[nw - 64]);
        cftf161(a, w8);
        cftf162(&a[32], w32);
        cftf161(&a[64], w8);
        cftf161(&a[96], w8);
        cftmdl2(128, &a[128], &w[nw - 128]);
        cftf161(&a[128], w8);
        cftf162(&a[160], w32);
        cftf161(&a[192], w8);
        cftf162(&a[224], w32);
        cftmdl1(128, &a[256], &w[nw - 64]);
        cftf161(&a[256], w8);
        cftf162(&a[288], w32);
        cftf161(&a[320], w8);
        cftf161(&a[352], w8);
        if (isplt != 0) {
            cftmdl1(128, &a[384], &w[nw - 64]);
            cftf161(&a[480], w8);
        } else {
            cftmdl2(128, &a[384], &w[nw - 128]);
            cftf162(&a[480], w32);
        }
        cftf161(&a[384], w8);
        cftf162(&a[416], w32);
        cftf161(&a[448], w8);
    } else {
        cftmdl1(64, a, &w[nw - 32]);
        cftf081(a, w8);
        cftf082(&a[16], w8);
        cftf081(&a[32], w8);
        cftf081(&a[48], w8);
        cftmdl2(64, &a[64], &w[nw - 64]);
        cftf081(&a[64], w8);
        cftf082(&a[80], w8);
        cftf081(&a[96], w8);
        cftf082(&a[112], w8);
        cftmdl1(64, &a[128], &w[nw - 32]);
        cftf081(&a[128], w8);
        cftf082(&a[144], w8);
        cftf081(&a[160], w8);
        cftf081(&a[176], w8);
        if (isplt != 0) {
            cftmdl1(64, &a[192], &w[nw - 32]);
            cftf081(&a[240], w8);
        } else {
            cftmdl2(64, &a[192], &w[nw - 64]);
            cftf082(&a[240], w8);
        }
        cftf081(&a[192], w8);
        cftf082(&a[208], w8);
        cftf081(&a[224], w8);
    }
}

// Runs the passes that are due before the leaf of n elements that ends at a[j], and returns the
// kind of that leaf. k counts the leaves from the array's end; its last leaf is number 0.
template <class T>
int cfttree(int n, int j, int k, T* a, int nw, const double* w) {
    if ((k & 3) != 0) {
        const int isplt = k & 1;
        if (isplt != 0) {
            cftmdl1(n, &a[j - n], &w[nw - (n >> 1)]);
        } else {
            cftmdl2(n, &a[j - n], &w[nw - n]);
        }
        return isplt;
    }

    // The leaf is the last one of several nested sections, which are passed from the outermost
    // inwards.
    int m = n;
    int i = k;
    for (; (i & 3) == 0; i >>= 2) m <<= 2;
    const int isplt = i & 1;
    for (; m > 128; m >>= 2) {
        if (isplt != 0) {
            cftmdl1(m, &a[j - m], &w[nw - (m >> 1)]);
        } else {
            cftmdl2(m, &a[j - m], &w[nw - m]);
        }
    }
    return isplt;
}

// All passes below the first for n > 512, from the end of the array to its start, so that each leaf
// is finished while it is in the cache.
template <class T>
void cftrec4(int n, T* a, int nw, const double* w) {
    int m = n;
    while (m > 512) {
        m >>= 2;
        cftmdl1(m, &a[n - m], &w[nw - (m >> 1)]);
    }
    cftleaf(m, 1, &a[n - m], nw, w);
    int k = 0;
    for (int j = n - m; j > 0; j -= m) {
        ++k;
        const int isplt = cfttree(m, j, k, a, nw, w);
        cftleaf(m, isplt, &a[j - m], nw, w);
    }
}

namespace fft {

// All passes below the first for n > 32.
template <class T>
void finishPasses(int n, T* a, int nw, const double* w) {
    if (n > 512) {
        cftrec4(n, a, nw, w);
    } else if (n > 128) {
        cftleaf(n, 1, a, nw, w);
    } else {
        cftfx41(n, a, nw, w);
    }
}

}  // namespace fft

template <class T>
void cftfsub(int n, T* a, const int* ip, int nw, const double* w) {
    if (n > 32) {
        cftf1st(n, a, &w[nw - (n >> 2)]);
        fft::finishPasses(n, a, nw, w);
        bitrv2(n, ip, a);
    } else if (n == 32) {
        cftf161(a, &w[nw - 8]);
        fft::reverseFew<4>(a);
    } else if (n > 8) {
        cftf081(a, w);
        fft::reverseFew<3>(a);
    } else if (n == 8) {
        cftf040(a);
    } else if (n == 4) {
        cftx020(a);
    }
}

template <class T>
void cftbsub(int n, T* a, const int* ip, int nw, const double* w) {
    if (n > 32) {
        cftb1st(n, a, &w[nw - (n >> 2)]);
        fft::finishPasses(n, a, nw, w);
        bitrv2conj(n, ip, a);
    } else if (n == 32) {
        cftf161(a, &w[nw - 8]);
        fft::reverseFewNegated<4>(a);
    } else if (n > 8) {
        cftf081(a, w);
        fft::reverseFewNegated<3>(a);
    } else if (n == 8) {
        cftb040(a);
    } else if (n == 4) {
        cftx020(a);
    }
}
