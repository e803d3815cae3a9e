// SPDX-License-Identifier: Apache-2.0
#pragma once
// The steps of RealFFT2D, each an iteration over the host's threads. Included where it is compiled
// for an element type; everything else needs only its declaration.

#include <cstddef>
#include <type_traits>

#include "host/Iterator.h"
#include "transform/ComplexFFT.h"
#include "transform/EvenShare.h"
#include "transform/RealFFT2D.h"
#include "transform/Tiles.h"

namespace fft {

template <class T>
ORBEL_LANE_INLINE void copySample(T* to, const T* from) {
    ET::copyLanes(to[0], from[0]);
    ET::copyLanes(to[1], from[1]);
}

// ---- Two real rows a and b in one complex row a + i b. `pair` points to the row of the block that
// holds a; the row of b begins n elements later. The spectrum A + i B of the joined row holds both:
// since they are spectra of real rows, it is conj(A) + i conj(B) at the opposite frequency.

// The joined row, which the first pass over it makes by reading both.
template <class T>
struct RowPairView {
    int n;

    ORBEL_LANE_INLINE LaneOfRowPair<T> operator()(const LaneOfSamples<T>& lane) const {
        return {lane, n};
    }
};

// cftfsub and cftbsub for n > 32, on live lanes alone. The next row is `ahead` elements later.
template <class T, class View>
void transformRow(int n, T* row, const RowTables& tables, std::size_t ahead, View&& view) {
    const auto [ip, nw, w] = tables;
    splitWhole<false>(n, row, &w[nw - (n >> 2)], view);
    finishPasses(n, row, nw, w);
    BitReversal<PlainMove<LiveLanes>, T>(n, ip, row, ahead).run();
}

template <class T>
void transformRowBack(int n, T* row, const RowTables& tables, std::size_t ahead) {
    const auto [ip, nw, w] = tables;
    cftb1st(n, row, &w[nw - (n >> 2)]);
    finishPasses(n, row, nw, w);
    BitReversal<ConjugateMove<LiveLanes>, T>(n, ip, row, ahead).run();
}

template <class T>
void partRows(int n, T* pair) {
    for (int j = 0; j < n; j += 2) ET::copyLanes(pair[n + j], pair[j + 1]);
}

// Leaves A and B at frequencies 0 to n / 4 of the two rows.
template <class T>
void partSpectra(int n, T* pair) {
    for (const int j : {0, n / 2}) {
        T* const a = pair + j;
        T* const b = a + n;
        ORBEL_INDEPENDENT_LANES
        for (std::size_t k = 0; k < T::kLanes; ++k) {
            b[0][k] = a[1][k];
            a[1][k] = 0.0;
            b[1][k] = 0.0;
        }
    }
    for (int j = 2; j < n / 2; j += 2) {
        T* const a = pair + j;
        T* const b = a + n;
        const T* const opposite = pair + n - j;
        ORBEL_INDEPENDENT_LANES
        for (std::size_t k = 0; k < T::kLanes; ++k) {
            const double re = a[0][k];
            const double im = a[1][k];
            const double oppositeRe = opposite[0][k];
            const double oppositeIm = opposite[1][k];
            a[0][k] = 0.5 * (re + oppositeRe);
            a[1][k] = 0.5 * (im - oppositeIm);
            b[0][k] = 0.5 * (im + oppositeIm);
            b[1][k] = 0.5 * (oppositeRe - re);
        }
    }
}

// The reverse, at all frequencies of the joined row.
template <class T>
void joinSpectra(int n, T* pair) {
    for (const int j : {0, n / 2}) ET::copyLanes(pair[j + 1], pair[n + j]);
    for (int j = 2; j < n / 2; j += 2) {
        T* const a = pair + j;
        const T* const b = a + n;
        T* const opposite = pair + n - j;
        ORBEL_INDEPENDENT_LANES
        for (std::size_t k = 0; k < T::kLanes; ++k) {
            const double aRe = a[0][k];
            const double aIm = a[1][k];
            const double bRe = b[0][k];
            const double bIm = b[1][k];
            a[0][k] = aRe - bIm;
            a[1][k] = aIm + bRe;
            opposite[0][k] = aRe + bIm;
            opposite[1][k] = bRe - aIm;
        }
    }
}

// ---- The transposition between columns 0 to size / 2 and rows 0 to size / 2 of a block: the upper
// left quarter is transposed in place, and the other samples move between the lower left and the
// upper right quarter.

template <class T>
class HalfFlip {
public:
    HalfFlip(T* data, std::size_t size) : data_(data), size_(size) {}

    // Columns to rows. The tile is one of the left half.
    void forward(std::size_t tileRow, std::size_t tileColumn) const {
        flip(tileRow * kTile, tileColumn * kTile,
             [&](std::size_t y, std::size_t x) { copySample(at(x, y), at(y, x)); });
    }

    // Rows to columns; samples of no wanted row may stay.
    void back(std::size_t tileRow, std::size_t tileColumn, const RowRange& wanted) const {
        const std::size_t top = tileRow * kTile;
        const bool below = top > size_ / 2 && top >= wanted.last;
        if (below || top + kTile <= wanted.first) return;
        flip(top, tileColumn * kTile,
             [&](std::size_t y, std::size_t x) { copySample(at(y, x), at(x, y)); });
    }

private:
    // Samples (y, x) of a tile whose mirror is in use too are exchanged; the others are moved.
    template <class Move>
    void flip(std::size_t top, std::size_t left, Move&& move) const {
        const std::size_t middle = size_ / 2;
        for (std::size_t y = top; y < top + kTile; ++y) {
            for (std::size_t x = left; x < left + kTile && x < y; ++x) {
                if (y <= middle) {
                    LiveLanes::exchange(at(y, x), at(x, y));
                } else {
                    move(y, x);
                }
            }
            // The middle column goes with the first.
            if (left == 0 && y > middle) move(y, middle);
        }
    }

    T* at(std::size_t y, std::size_t x) const { return data_ + 2 * (y * size_ + x); }

    T* data_;
    std::size_t size_;
};

}  // namespace fft

// The block of a transform, its tables, and the walk over the lane groups in use.
template <std::size_t kCell, std::size_t kLanes>
struct RealBlock {
    FFTWeights& weights;
    ET::vecT<double, kCell>* elements;
    std::size_t size;
    LaneGroups groups;

    // Calls `work` with the block as an array of cells whose live lanes are those of a group.
    template <class Work>
    void forGroups(Work&& work) const {
        using Transform = RealFFT2D<kCell, kLanes>;
        constexpr std::size_t kLast = Transform::kGroups - 1;
        // One walk over all lanes is faster than several.
        if (groups == Transform::kAllGroups) {
            work(ET::viewLanes<kLanes>(elements));
            return;
        }
        if constexpr (kLast > 0) {
            for (std::size_t g = 0; g < kLast; ++g) {
                if (contains(groups, g)) {
                    work(ET::viewLanes<kGroupLanes>(elements, g * kGroupLanes));
                }
            }
            if (contains(groups, kLast)) {
                constexpr std::size_t kFirst = kLast * kGroupLanes;
                work(ET::viewLanes<kLanes - kFirst>(elements, kFirst));
            }
        }
    }
};

// The pass over real rows, two at a time; on the way back only over pairs that hold one of `rows`.
template <std::size_t kCell, std::size_t kLanes>
struct RealRowPass {
    RealBlock<kCell, kLanes> block;
    bool back;
    RowRange rows;
    EvenShare pairs{(rows.last + 1) / 2 - rows.first / 2, block.size};

    int iterate(int thread, int item, int) const {
        pairs.run(item, [&](std::size_t pair) { transformPair(thread, rows.first / 2 + pair); });
        return 0;
    }

    void transformPair(int thread, std::size_t index) const {
        const int n = static_cast<int>(2 * block.size);
        const RowTables tables = block.weights.rowTables(thread, block.size);
        block.forGroups([&](auto* elements) {
            auto* const pair = elements + 4 * block.size * index;
            if (back) {
                fft::joinSpectra(n, pair);
                fft::transformRowBack(n, pair, tables, 4 * block.size);
                fft::partRows(n, pair);
            } else {
                using T = std::remove_pointer_t<decltype(pair)>;
                fft::transformRow(n, pair, tables, 4 * block.size, fft::RowPairView<T>{n});
                fft::partSpectra(n, pair);
            }
        });
    }
};

// The pass over the columns, which lie in rows 0 to size / 2.
template <std::size_t kCell, std::size_t kLanes>
struct RealColumnPass {
    RealBlock<kCell, kLanes> block;
    bool back;
    EvenShare columns{block.size / 2 + 1, block.size};

    int iterate(int thread, int item, int) const {
        columns.run(item, [&](std::size_t u) {
            const int n = static_cast<int>(2 * block.size);
            const RowTables tables = block.weights.rowTables(thread, block.size);
            block.forGroups([&](auto* elements) {
                auto* const row = elements + 2 * block.size * u;
                if (back) {
                    fft::transformRowBack(n, row, tables, 2 * block.size);
                } else {
                    fft::transformRow(n, row, tables, 2 * block.size, fft::PlainView{});
                }
            });
        });
        return 0;
    }
};

// The transposition, by tiles of the left half.
template <std::size_t kCell, std::size_t kLanes>
class RealFlip {
public:
    // On the way back only the `wanted` rows matter.
    RealFlip(const RealBlock<kCell, kLanes>& elements, bool inverse, const RowRange& wanted)
        : block_(elements), back_(inverse), rows_(wanted), down_(block_.size / fft::kTile) {}

    int iterate(int, int item, int) const {
        const auto i = static_cast<std::size_t>(item);
        if (i % kItems == 0) flip(i / kItems);
        return 0;
    }

private:
    // For each tile of the left half: 2 B^2 items, B^2 / (2 kTile^2) tiles.
    static constexpr std::size_t kItems = 4 * fft::kTile * fft::kTile;

    // Tiles above the diagonal have nothing to do.
    ORBEL_OUT_OF_LINE void flip(std::size_t unit) const {
        const std::size_t row = unit % down_;
        const std::size_t column = fft::fromBothEnds(unit / down_, down_ / 2);
        if (row < column) return;
        block_.forGroups([&](auto* elements) {
            const fft::HalfFlip halves(elements, block_.size);
            if (back_) {
                halves.back(row, column, rows_);
            } else {
                halves.forward(row, column);
            }
        });
    }

    RealBlock<kCell, kLanes> block_;
    bool back_;
    RowRange rows_;
    std::size_t down_;  // tiles of a column
};

template <std::size_t kCell, std::size_t kLanes>
int RealFFT2D<kCell, kLanes>::forward(AEO::InData& context) {
    const RealBlock<kCell, kLanes> block{weights_, block_, size_, groups_};
    const RowRange all{0, size_};
    const int rows = static_cast<int>(size_);
    RealRowPass<kCell, kLanes> rowPass{block, false, all};
    if (const int result = AEO::Iterator::IterationT(context, rowPass, rows)) return result;
    RealFlip<kCell, kLanes> flip(block, false, all);
    if (const int result = AEO::Iterator::IterationT(context, flip, rows * rows * 2)) return result;
    RealColumnPass<kCell, kLanes> columnPass{block, false};
    return AEO::Iterator::IterationT(context, columnPass, rows);
}

template <std::size_t kCell, std::size_t kLanes>
int RealFFT2D<kCell, kLanes>::inverse(AEO::InData& context, const RowRange& wanted) {
    const RealBlock<kCell, kLanes> block{weights_, block_, size_, groups_};
    const int rows = static_cast<int>(size_);
    RealColumnPass<kCell, kLanes> columnPass{block, true};
    if (const int result = AEO::Iterator::IterationT(context, columnPass, rows)) return result;
    RealFlip<kCell, kLanes> flip(block, true, wanted);
    if (const int result = AEO::Iterator::IterationT(context, flip, rows * rows * 2)) return result;
    RealRowPass<kCell, kLanes> rowPass{block, true, wanted};
    return AEO::Iterator::IterationT(context, rowPass, rows);
}
