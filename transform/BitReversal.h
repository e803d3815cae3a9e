// SPDX-License-Identifier: Apache-2.0
#pragma once
// Permutations that bring the samples of a transform from bit-reversed into natural order. Sample j
// is the pair of elements a[2j], a[2j + 1].

#include <cstddef>
#include <initializer_list>

#include "transform/Prefetch.h"
#include "transform/VectorElements.h"

namespace fft {

// What of a sample moves: its elements with their dead lanes, or the live lanes alone.
struct WholeElements {
    template <class T>
    static constexpr std::size_t kBytes = sizeof(T);  // of an element

    template <class T>
    static void exchange(T* x, T* y) {
        swap(x[0], y[0]);
        swap(x[1], y[1]);
    }
};

struct LiveLanes {
    template <class T>
    static constexpr std::size_t kBytes = T::kLanes * sizeof(double);

    template <class T>
    ORBEL_LANE_INLINE static void exchange(T* x, T* y) {
        ET::exchangeLanes(x[0], y[0]);
        ET::exchangeLanes(x[1], y[1]);
    }
};

// Exchanges samples as they are.
template <class Extent>
struct PlainMove : Extent {
    template <class T>
    static void keep(T*) {}
};

// Exchanges samples and conjugates them; the negation, the only arithmetic, is confined to live
// lanes.
template <class Extent>
struct ConjugateMove : Extent {
    template <class T>
    static void exchange(T* x, T* y) {
        Extent::exchange(x, y);
        keep(x);
        keep(y);
    }
    template <class T>
    static void keep(T* x) {
        x[1] = -x[1];
    }
};

// Moves every sample of `a`, n elements with n > 32, to the bit-reversed index.
//
// Seen as bits, the index of a sample is   top | reversed k | middle | j | bottom   with one bit at
// each end, log2(m) bits each for j and k, and one or two bits in the middle. Its reversal is
// bottom | reversed j | reversed middle | k | top, and the seed ip[m + k] is `reversed k` in place.
// So each pair j < k exchanges one group of samples with another, all at fixed distances.
template <class Move, class T>
class BitReversal {
public:
    // The array is usually a row of a block; the next one is prefetched `ahead` elements later
    // while this one, which is in the cache by now, is permuted.
    BitReversal(int n, const int* ip, T* a, std::size_t ahead)
        : ip_(ip), a_(a), top_(n >> 1), ahead_(ahead) {
        int l = n >> 2;
        for (; l > 8; l >>= 2) m_ *= 2;
        twoMiddleBits_ = l == 8;
        middle_ = 4 * m_;
    }

    void run() const {
        for (int k = 0; k < m_; ++k) {
            for (int j = 0; j < k; ++j) exchangeGroups(groupAt(j, k), groupAt(k, j));
            exchangeWithin(groupAt(k, k));
        }
    }

private:
    T* groupAt(int j, int k) const { return a_ + 4 * j + (twoMiddleBits_ ? 2 : 1) * ip_[m_ + k]; }

    void exchangeGroups(T* x, T* y) const {
        if (twoMiddleBits_) {
            exchangeEnds(x, y);
            exchangeEnds(x + middle_, y + 2 * middle_);
            exchangeEnds(x + 2 * middle_, y + middle_);
            exchangeEnds(x + 3 * middle_, y + 3 * middle_);
        } else {
            exchangeEnds(x, y);
            exchangeEnds(x + middle_, y + middle_);
        }
    }

    // A group that is its own image: only samples whose end or middle bits differ move.
    void exchangeWithin(T* x) const {
        exchangeOwnEnds(x);
        if (twoMiddleBits_) {
            exchangeEnds(x + middle_, x + 2 * middle_);
            exchangeOwnEnds(x + 3 * middle_);
        } else {
            exchangeOwnEnds(x + middle_);
        }
    }

    // The four samples on each side that differ in the top and the bottom bit.
    void exchangeEnds(T* x, T* y) const {
        exchange(x, y);
        exchange(x + kBottom, y + top_);
        exchange(x + top_, y + kBottom);
        exchange(x + top_ + kBottom, y + top_ + kBottom);
    }

    void exchangeOwnEnds(T* x) const {
        Move::keep(x);
        exchange(x + kBottom, x + top_);
        Move::keep(x + top_ + kBottom);
    }

    void exchange(T* x, T* y) const {
        for (const T* element : {x, x + 1, y, y + 1}) {
            fft::prefetch<Move::template kBytes<T>>(element, ahead_);
        }
        Move::exchange(x, y);
    }

    static constexpr int kBottom = 2;  // elements to the sample with the bottom bit set

    const int* ip_;
    T* a_;
    int top_;     // elements to the sample with the top bit set
    int m_ = 1;   // values of j and of k
    int middle_;  // elements to the sample with the lowest middle bit set
    bool twoMiddleBits_;
    std::size_t ahead_;
};

// Bit reversal of 2^kBits samples without a table, for the smallest sizes.
template <int kBits, class T>
void reverseFew(T* a) {
    for (int j = 0; j < 1 << kBits; ++j) {
        int reversed = 0;
        for (int bit = 0; bit < kBits; ++bit) reversed |= (j >> bit & 1) << (kBits - 1 - bit);
        if (j < reversed) WholeElements::exchange(a + 2 * j, a + 2 * reversed);
    }
}

// The same, then moves sample k to place M - k, which flips the sign of the transform's exponent.
template <int kBits, class T>
void reverseFewNegated(T* a) {
    constexpr int kSamples = 1 << kBits;
    reverseFew<kBits>(a);
    for (int j = 1; j < kSamples / 2; ++j)
        WholeElements::exchange(a + 2 * j, a + 2 * (kSamples - j));
}

}  // namespace fft

// Bit reversal of the n / 2 samples of `a`; n > 32, with the seeds of makewt for nw >= n / 4.
template <class T>
void bitrv2(int n, const int* ip, T* a) {
    fft::BitReversal<fft::PlainMove<fft::WholeElements>, T>(n, ip, a, static_cast<std::size_t>(n))
        .run();
}

// The same permutation, with every imaginary part negated.
template <class T>
void bitrv2conj(int n, const int* ip, T* a) {
    fft::BitReversal<fft::ConjugateMove<fft::WholeElements>, T>(n, ip, a,
                                                                static_cast<std::size_t>(n))
        .run();
}
