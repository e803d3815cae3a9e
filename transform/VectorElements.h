// SPDX-License-Identifier: Apache-2.0
#pragma once
// Short vectors of scalars with lazy, elementwise arithmetic: the data that the transform runs on.
//
// An element holds a value for each colour channel and depth layer of a pixel. Lane k of all
// elements of an array forms a signal of its own; lanes never mix.
//
//   vecT<T, N>            N scalars in a row, all of them live
//   StrideVecT<T, N, S>   a cell of S scalars of which the first N are live: a view of an array of
//                         vecT<T, S> that computes on N lanes only
//   LaneRef<T>            a reference to one lane of an element
//
// Arithmetic builds small objects that refer to their operands (scalars included), so they must not
// outlive the full expression that creates them. The assignment evaluates lane after lane, in one
// pass without a temporary element; the target may be among the operands. The forms in use are
//
//   a + b   a - b   -a   -a + b   -a - b   s * a   s * (a - b)   s * (a + b)
//   s * a - t * b   s * a + t * b
//
// Arithmetic touches live lanes only; a plain copy of an element moves its whole cell. Elements
// need no more alignment than their scalars have.

#include <bit>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

// Placed before a loop over lanes: no lane reads another lane's result, so the compiler need not
// prove that target and operands are disjoint before it vectorises. g++ would unroll a short loop
// before its vectoriser sees it and leave it scalar; it is told not to.
//
// A loop that contains a call isn't vectorised at all, so whatever a lane loop calls is
// ORBEL_LANE_INLINE.
#if defined(__clang__)
#define ORBEL_INDEPENDENT_LANES _Pragma("clang loop vectorize(assume_safety)")
#elif defined(__GNUC__)
#define ORBEL_INDEPENDENT_LANES _Pragma("GCC ivdep") _Pragma("GCC unroll 1")
#elif defined(_MSC_VER)
#define ORBEL_INDEPENDENT_LANES __pragma(loop(ivdep))
#else
#define ORBEL_INDEPENDENT_LANES
#endif
// Before the work of the few items of an iteration that have some: inlined, it would burden the
// others, which return at once, with saving registers.
#if defined(__GNUC__)
#define ORBEL_OUT_OF_LINE __attribute__((noinline))
#elif defined(_MSC_VER)
#define ORBEL_OUT_OF_LINE __declspec(noinline)
#else
#define ORBEL_OUT_OF_LINE
#endif
#if defined(__GNUC__)
#define ORBEL_LANE_INLINE inline __attribute__((always_inline))
#elif defined(_MSC_VER)
#define ORBEL_LANE_INLINE __forceinline
#else
#define ORBEL_LANE_INLINE inline
#endif

namespace ET {

// An operand of an expression: an element, one lane of it, or another expression.
template <class V>
concept LaneOperand = requires(const V& v, std::size_t k) {
    typename V::Scalar;
    { V::kLanes } -> std::convertible_to<std::size_t>;
    { v[k] } -> std::convertible_to<typename V::Scalar>;
};

template <class L, class R>
concept SameLanes = LaneOperand<L> && LaneOperand<R> &&
                    std::same_as<typename L::Scalar, typename R::Scalar> && L::kLanes == R::kLanes;

template <class T>
struct ExpressionPlus {
    ORBEL_LANE_INLINE constexpr T operator()(T a, T b) const { return a + b; }
};

template <class T>
struct ExpressionMinus {
    ORBEL_LANE_INLINE constexpr T operator()(T a, T b) const { return a - b; }
};

template <class T>
struct ExpressionMultiply {
    ORBEL_LANE_INLINE constexpr T operator()(T a, T b) const { return a * b; }
};

// Op(l[k], r[k])
template <class L, class Op, class R>
struct Expression {
    using Scalar = typename L::Scalar;
    static constexpr std::size_t kLanes = L::kLanes;

    const L& l;
    const R& r;

    ORBEL_LANE_INLINE constexpr Scalar operator[](std::size_t k) const { return Op{}(l[k], r[k]); }
};

// Op(s, v[k])
template <class S, class Op, class V>
struct Expression2 {
    using Scalar = typename V::Scalar;
    static constexpr std::size_t kLanes = V::kLanes;

    const S& s;
    const V& v;

    ORBEL_LANE_INLINE constexpr Scalar operator[](std::size_t k) const { return Op{}(s, v[k]); }
};

// Stores `value` into the lanes from `target` on.
template <class T, LaneOperand V>
ORBEL_LANE_INLINE constexpr void assignLanes(T* target, const V& value) {
    ORBEL_INDEPENDENT_LANES
    for (std::size_t k = 0; k < V::kLanes; ++k) target[k] = value[k];
}

// Exchanges kCount scalars of two cells that don't overlap.
template <std::size_t kCount, class T>
ORBEL_LANE_INLINE constexpr void exchangeScalars(T* a, T* b) {
    ORBEL_INDEPENDENT_LANES
    for (std::size_t k = 0; k < kCount; ++k) {
        const T kept = a[k];
        a[k] = b[k];
        b[k] = kept;
    }
}

// The live lanes of elements, where a plain copy would move the whole cell.
template <class V>
ORBEL_LANE_INLINE void copyLanes(V& to, const V& from) {
    std::memcpy(&to[0], &from[0], V::kLanes * sizeof(typename V::Scalar));
}
template <class V>
ORBEL_LANE_INLINE constexpr void exchangeLanes(V& a, V& b) {
    exchangeScalars<V::kLanes>(&a[0], &b[0]);
}

// Exchanges kCount scalars of two cells that don't overlap, unless they hold the same bits:
// skipping the store avoids the write-back, which is the cost of moving wide cells.
template <std::size_t kCount, class T>
ORBEL_LANE_INLINE constexpr void exchangeUnlessEqual(T* a, T* b) {
    std::uint64_t difference = 0;
    for (std::size_t k = 0; k < kCount; ++k) {
        difference |= std::bit_cast<std::uint64_t>(a[k]) ^ std::bit_cast<std::uint64_t>(b[k]);
    }
    if (difference != 0) exchangeScalars<kCount>(a, b);
}

// An element of N lanes; exactly N scalars in memory, which default construction leaves
// uninitialised.
template <class T, std::size_t N>
class vecT {
public:
    using Scalar = T;
    static constexpr std::size_t kLanes = N;

    template <class U>
    struct ExpressionReverse {
        ORBEL_LANE_INLINE constexpr U operator()(U a) const { return -a; }
    };

    // Op(v[k])
    template <class Op, class V>
    struct Expression0 {
        using Scalar = T;
        static constexpr std::size_t kLanes = N;

        const V& v;

        ORBEL_LANE_INLINE constexpr T operator[](std::size_t k) const { return Op{}(v[k]); }
    };

    template <SameLanes<vecT> V>
    ORBEL_LANE_INLINE constexpr vecT& operator=(const V& value) {
        assignLanes(lanes_, value);
        return *this;
    }

    ORBEL_LANE_INLINE constexpr vecT& operator+=(const vecT& other) {
        ORBEL_INDEPENDENT_LANES
        for (std::size_t k = 0; k < N; ++k) lanes_[k] += other.lanes_[k];
        return *this;
    }

    // Whole cells, without a temporary element.
    friend ORBEL_LANE_INLINE constexpr void swap(vecT& a, vecT& b) {
        exchangeScalars<N>(a.lanes_, b.lanes_);
    }

    ORBEL_LANE_INLINE constexpr T& operator[](std::size_t k) { return lanes_[k]; }
    ORBEL_LANE_INLINE constexpr const T& operator[](std::size_t k) const { return lanes_[k]; }

private:
    T lanes_[N];
};

// A cell of S scalars with N live lanes; exactly S scalars in memory.
template <class T, std::size_t N, std::size_t S>
class StrideVecT {
    static_assert(N <= S);

public:
    using Scalar = T;
    static constexpr std::size_t kLanes = N;

    template <SameLanes<StrideVecT> V>
    ORBEL_LANE_INLINE constexpr StrideVecT& operator=(const V& value) {
        assignLanes(lanes_, value);
        return *this;
    }

    ORBEL_LANE_INLINE constexpr StrideVecT& operator+=(const StrideVecT& other) {
        ORBEL_INDEPENDENT_LANES
        for (std::size_t k = 0; k < N; ++k) lanes_[k] += other.lanes_[k];
        return *this;
    }

    // Whole cells, without a temporary element. The dead lanes are usually zero in all elements of
    // a block, and are then only compared.
    friend ORBEL_LANE_INLINE constexpr void swap(StrideVecT& a, StrideVecT& b) {
        exchangeScalars<N>(a.lanes_, b.lanes_);
        exchangeUnlessEqual<S - N>(a.lanes_ + N, b.lanes_ + N);
    }

    ORBEL_LANE_INLINE constexpr T& operator[](std::size_t k) { return lanes_[k]; }
    ORBEL_LANE_INLINE constexpr const T& operator[](std::size_t k) const { return lanes_[k]; }

private:
    T lanes_[S];
};

// Refers to one lane of an element, which is not owned: as an operand and as a target of
// expressions it is an element of width 1.
template <class T>
class LaneRef {
public:
    using Scalar = T;
    static constexpr std::size_t kLanes = 1;

    ORBEL_LANE_INLINE constexpr explicit LaneRef(T& target) : lane_(&target) {}
    LaneRef(const LaneRef&) = default;
    // It would be unclear whether assignment changes the lane or the reference.
    LaneRef& operator=(const LaneRef&) = delete;

    // Changes the lane, not the reference, so it is const.
    template <SameLanes<LaneRef> V>
    // NOLINTNEXTLINE(misc-unconventional-assign-operator)
    ORBEL_LANE_INLINE constexpr const LaneRef& operator=(const V& value) const {
        *lane_ = value[0];
        return *this;
    }

    ORBEL_LANE_INLINE constexpr const T& operator[](std::size_t) const { return *lane_; }

private:
    T* lane_;
};

// The array `cells`, viewed through the first N lanes of each element: same addresses, same count.
// A cell is S scalars in either type, so only the lanes that arithmetic touches differ. Both types
// access memory only as scalars, and between the uses of one view and of the other are the host's
// iterations, calls that are opaque to the compiler.
template <std::size_t N, class T, std::size_t S>
StrideVecT<T, N, S>* viewLanes(vecT<T, S>* cells) {
    static_assert(sizeof(StrideVecT<T, N, S>) == sizeof(vecT<T, S>));
    return reinterpret_cast<StrideVecT<T, N, S>*>(cells);
}

// The same from lane `first` on: live lane k is lane first + k of `cells`, and the dead lanes are
// not to be touched, since those of the last cell lie behind the array.
template <std::size_t N, class T, std::size_t S>
StrideVecT<T, N, S>* viewLanes(vecT<T, S>* cells, std::size_t first) {
    return reinterpret_cast<StrideVecT<T, N, S>*>(reinterpret_cast<T*>(cells) + first);
}

template <LaneOperand L, SameLanes<L> R>
ORBEL_LANE_INLINE constexpr auto operator+(const L& l, const R& r) {
    return Expression<L, ExpressionPlus<typename L::Scalar>, R>{l, r};
}

template <LaneOperand L, SameLanes<L> R>
ORBEL_LANE_INLINE constexpr auto operator-(const L& l, const R& r) {
    return Expression<L, ExpressionMinus<typename L::Scalar>, R>{l, r};
}

template <LaneOperand V>
ORBEL_LANE_INLINE constexpr auto operator-(const V& v) {
    using T = typename V::Scalar;
    using Owner = vecT<T, V::kLanes>;
    using Reverse = typename Owner::template ExpressionReverse<T>;
    return typename Owner::template Expression0<Reverse, V>{v};
}

template <LaneOperand V>
ORBEL_LANE_INLINE constexpr auto operator*(const typename V::Scalar& s, const V& v) {
    return Expression2<typename V::Scalar, ExpressionMultiply<typename V::Scalar>, V>{s, v};
}

static_assert(sizeof(vecT<double, 10>) == 10 * sizeof(double));
static_assert(sizeof(StrideVecT<double, 6, 10>) == 10 * sizeof(double));
static_assert(std::is_trivially_copyable_v<vecT<double, 10>>);
static_assert(std::is_trivially_copyable_v<StrideVecT<double, 6, 10>>);

}  // namespace ET
