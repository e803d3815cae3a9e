// SPDX-License-Identifier: Apache-2.0
#pragma once
// The butterflies of the split-radix transform, each written once for all lane counts.
//
// The transform is a tree. A section is a run of samples of the first or the second kind; a split
// pass divides it into four quarters, of the first, the second, the first, and the section's own
// kind. The functions here do one position of such a pass: the four samples at the same offset of
// the four quarters. Sections of two samples are the bottom of the tree: sumAndDifference for a
// section of the first kind, sumAndDifferenceTurned for the second.
//
// A butterfly has a dozen intermediate values and lanes never mix, so the loop over lanes is around
// the butterfly: the values then stay in registers at any width, while whole elements would go
// through memory.

#include <cstddef>

#include "transform/VectorElements.h"

namespace fft {

// A complex sample; V is an element, or one lane of it.
template <class V>
struct Complex {
    V re;
    V im;
};

// One lane of all samples of an array of T.
template <class T>
class LaneOfSamples {
public:
    using Scalar = typename T::Scalar;
    using Lanes = ET::vecT<Scalar, 1>;

    ORBEL_LANE_INLINE explicit LaneOfSamples(Scalar* lane) : first_(lane) {}

    // The sample whose real part is array element `j`.
    ORBEL_LANE_INLINE Complex<ET::LaneRef<Scalar>> operator[](int j) const {
        Scalar* const re = first_ + kStride * j;
        return {ET::LaneRef<Scalar>(re[0]), ET::LaneRef<Scalar>(re[kStride])};
    }

    ORBEL_LANE_INLINE void store(int j, const Complex<Lanes>& x) const {
        const auto target = (*this)[j];
        target.re = x.re;
        target.im = x.im;
    }

private:
    static constexpr std::ptrdiff_t kStride = sizeof(T) / sizeof(Scalar);

    Scalar* first_;
};

// One lane of a row of a block that takes in the next one: samples are read from both, real parts
// from this row and imaginary parts from the real elements n later, and stored in this row.
template <class T>
class LaneOfRowPair {
public:
    using Lanes = typename LaneOfSamples<T>::Lanes;

    ORBEL_LANE_INLINE LaneOfRowPair(const LaneOfSamples<T>& row, int n) : row_(row), n_(n) {}

    ORBEL_LANE_INLINE auto operator[](int j) const {
        return Complex<ET::LaneRef<typename T::Scalar>>{row_[j].re, row_[n_ + j].re};
    }
    ORBEL_LANE_INLINE void store(int j, const Complex<Lanes>& x) const { row_.store(j, x); }

private:
    LaneOfSamples<T> row_;
    int n_;
};

// The live lanes of an array of T, each a LaneOfSamples, for a range-based loop.
template <class T>
class LanesOf {
public:
    using Scalar = typename T::Scalar;

    class Iterator {
    public:
        ORBEL_LANE_INLINE explicit Iterator(Scalar* target) : lane_(target) {}
        ORBEL_LANE_INLINE LaneOfSamples<T> operator*() const { return LaneOfSamples<T>(lane_); }
        ORBEL_LANE_INLINE Iterator& operator++() {
            ++lane_;
            return *this;
        }
        bool operator==(const Iterator&) const = default;

    private:
        Scalar* lane_;
    };

    ORBEL_LANE_INLINE explicit LanesOf(T* a) : first_(reinterpret_cast<Scalar*>(a)) {}
    ORBEL_LANE_INLINE Iterator begin() const { return Iterator(first_); }
    ORBEL_LANE_INLINE Iterator end() const { return Iterator(first_ + T::kLanes); }

private:
    Scalar* first_;
};

// ---- Complex arithmetic. X and Y are samples of the same lanes, in an array or local.

template <class V, class X, class Y>
ORBEL_LANE_INLINE Complex<V> sum(const X& x, const Y& y) {
    Complex<V> z;
    z.re = x.re + y.re;
    z.im = x.im + y.im;
    return z;
}

template <class V, class X, class Y>
ORBEL_LANE_INLINE Complex<V> difference(const X& x, const Y& y) {
    Complex<V> z;
    z.re = x.re - y.re;
    z.im = x.im - y.im;
    return z;
}

// conj(x) + conj(y)
template <class V, class X, class Y>
ORBEL_LANE_INLINE Complex<V> conjugateSum(const X& x, const Y& y) {
    Complex<V> z;
    z.re = x.re + y.re;
    z.im = -x.im - y.im;
    return z;
}

// conj(x) - conj(y)
template <class V, class X, class Y>
ORBEL_LANE_INLINE Complex<V> conjugateDifference(const X& x, const Y& y) {
    Complex<V> z;
    z.re = x.re - y.re;
    z.im = -x.im + y.im;
    return z;
}

// x + i y
template <class V, class X, class Y>
ORBEL_LANE_INLINE Complex<V> sumTurned(const X& x, const Y& y) {
    Complex<V> z;
    z.re = x.re - y.im;
    z.im = x.im + y.re;
    return z;
}

// x - i y
template <class V, class X, class Y>
ORBEL_LANE_INLINE Complex<V> differenceTurned(const X& x, const Y& y) {
    Complex<V> z;
    z.re = x.re + y.im;
    z.im = x.im - y.re;
    return z;
}

// x exp(+i t) from the cosine and sine of t.
template <class V>
ORBEL_LANE_INLINE Complex<V> rotate(double cosine, double sine, const Complex<V>& x) {
    Complex<V> z;
    z.re = cosine * x.re - sine * x.im;
    z.im = cosine * x.im + sine * x.re;
    return z;
}

// x exp(-i t)
template <class V>
ORBEL_LANE_INLINE Complex<V> rotateBack(double cosine, double sine, const Complex<V>& x) {
    Complex<V> z;
    z.re = cosine * x.re + sine * x.im;
    z.im = cosine * x.im - sine * x.re;
    return z;
}

// x exp(+i pi/4); `half` is cos(pi/4), or its negative for half a turn more.
template <class V>
ORBEL_LANE_INLINE Complex<V> rotateEighth(double half, const Complex<V>& x) {
    Complex<V> z;
    z.re = half * (x.re - x.im);
    z.im = half * (x.re + x.im);
    return z;
}

// x exp(-i pi/4); `half` as above.
template <class V>
ORBEL_LANE_INLINE Complex<V> rotateEighthBack(double half, const Complex<V>& x) {
    Complex<V> z;
    z.re = half * (x.re + x.im);
    z.im = half * (x.im - x.re);
    return z;
}

// ---- Twiddles of one position: a row of the table.

struct Twiddle {
    double re1, im1;  // exp(+i t)
    double re3, im3;  // exp(-3 i t)

    // The row of the mirrored position: sines and cosines are exchanged.
    ORBEL_LANE_INLINE Twiddle mirrored() const { return {im1, re1, im3, re3}; }
};

ORBEL_LANE_INLINE Twiddle twiddleAt(const double* row) {
    return {row[0], row[1], row[2], row[3]};
}

// ---- Split pass of the first kind on the samples at j, j + m, j + 2m, j + 3m.

// The sums that all positions of the pass share. For the backward transform the first pass reads
// the conjugate of its input.
template <class V>
struct FirstKindSums {
    Complex<V> p, q, r, s;
};

template <bool kConjugate, class A>
ORBEL_LANE_INLINE auto firstKindSums(A a, int j, int m) {
    using V = typename A::Lanes;
    const auto x0 = a[j], x1 = a[j + m], x2 = a[j + 2 * m], x3 = a[j + 3 * m];
    if constexpr (kConjugate) {
        return FirstKindSums<V>{conjugateSum<V>(x0, x2), conjugateDifference<V>(x0, x2),
                                conjugateSum<V>(x1, x3), conjugateDifference<V>(x1, x3)};
    } else {
        return FirstKindSums<V>{sum<V>(x0, x2), difference<V>(x0, x2), sum<V>(x1, x3),
                                difference<V>(x1, x3)};
    }
}

// t = 0. Also the whole of a four-sample section of the first kind, with m = 2.
template <bool kConjugate = false, class A>
ORBEL_LANE_INLINE void splitFirst(A a, int j, int m) {
    using V = typename A::Lanes;
    const auto [p, q, r, s] = firstKindSums<kConjugate>(a, j, m);
    a.store(j, sum<V>(p, r));
    a.store(j + m, difference<V>(p, r));
    a.store(j + 2 * m, sumTurned<V>(q, s));
    a.store(j + 3 * m, differenceTurned<V>(q, s));
}

// Any t.
template <bool kConjugate = false, class A>
ORBEL_LANE_INLINE void splitFirst(A a, int j, int m, const Twiddle& w) {
    using V = typename A::Lanes;
    const auto [p, q, r, s] = firstKindSums<kConjugate>(a, j, m);
    a.store(j, sum<V>(p, r));
    a.store(j + m, difference<V>(p, r));
    a.store(j + 2 * m, rotate(w.re1, w.im1, sumTurned<V>(q, s)));
    a.store(j + 3 * m, rotateBack(w.re3, w.im3, differenceTurned<V>(q, s)));
}

// t = pi/4, in the middle of the quarter; 3t is half a turn minus pi/4.
template <bool kConjugate = false, class A>
ORBEL_LANE_INLINE void splitFirstMiddle(A a, int j, int m, double half) {
    using V = typename A::Lanes;
    const auto [p, q, r, s] = firstKindSums<kConjugate>(a, j, m);
    a.store(j, sum<V>(p, r));
    a.store(j + m, difference<V>(p, r));
    a.store(j + 2 * m, rotateEighth(half, sumTurned<V>(q, s)));
    a.store(j + 3 * m, rotateEighthBack(-half, differenceTurned<V>(q, s)));
}

// ---- Split pass of the second kind.

// t = 0. Also the whole of a four-sample section of the second kind, with m = 2.
template <class A>
ORBEL_LANE_INLINE void splitSecond(A a, int j, int m, double half) {
    using V = typename A::Lanes;
    const auto x0 = a[j], x1 = a[j + m], x2 = a[j + 2 * m], x3 = a[j + 3 * m];
    const auto y0 = sumTurned<V>(x0, x2);
    const auto y1 = rotateEighth(half, sumTurned<V>(x1, x3));
    const auto y2 = differenceTurned<V>(x0, x2);
    const auto y3 = rotateEighthBack(-half, differenceTurned<V>(x1, x3));
    a.store(j, sum<V>(y0, y1));
    a.store(j + m, difference<V>(y0, y1));
    a.store(j + 2 * m, sum<V>(y2, y3));
    a.store(j + 3 * m, difference<V>(y2, y3));
}

// Any t: `w` holds t and `late` holds t + pi/4.
template <class A>
ORBEL_LANE_INLINE void splitSecond(A a, int j, int m, const Twiddle& w, const Twiddle& late) {
    using V = typename A::Lanes;
    const auto x0 = a[j], x1 = a[j + m], x2 = a[j + 2 * m], x3 = a[j + 3 * m];
    const auto y0 = rotate(w.re1, w.im1, sumTurned<V>(x0, x2));
    const auto y1 = rotate(late.re1, late.im1, sumTurned<V>(x1, x3));
    const auto y2 = rotateBack(w.re3, w.im3, differenceTurned<V>(x0, x2));
    const auto y3 = rotateBack(late.re3, late.im3, differenceTurned<V>(x1, x3));
    a.store(j, sum<V>(y0, y1));
    a.store(j + m, difference<V>(y0, y1));
    a.store(j + 2 * m, sum<V>(y2, y3));
    a.store(j + 3 * m, difference<V>(y2, y3));
}

// The middle of the quarter, t = pi/8, given by its cosine and sine.
template <class A>
ORBEL_LANE_INLINE void splitSecondMiddle(A a, int j, int m, double cosine, double sine) {
    const Twiddle w{cosine, sine, sine, -cosine};
    splitSecond(a, j, m, w, w.mirrored());
}

// ---- Sections of two samples.

template <class A>
ORBEL_LANE_INLINE void sumAndDifference(A a, int j) {
    using V = typename A::Lanes;
    const auto x = sum<V>(a[j], a[j + 2]);
    const auto y = difference<V>(a[j], a[j + 2]);
    a.store(j, x);
    a.store(j + 2, y);
}

template <class A>
ORBEL_LANE_INLINE void sumAndDifferenceTurned(A a, int j) {
    using V = typename A::Lanes;
    const auto x = sumTurned<V>(a[j], a[j + 2]);
    const auto y = differenceTurned<V>(a[j], a[j + 2]);
    a.store(j, x);
    a.store(j + 2, y);
}

}  // namespace fft
