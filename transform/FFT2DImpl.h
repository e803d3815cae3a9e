// SPDX-License-Identifier: Apache-2.0
#pragma once
// The steps of FFT2D, each an iteration over the host's threads. Included where FFT2D is compiled
// for an element type; everything else needs only its declaration.

#include <cstddef>

#include "host/Iterator.h"
#include "transform/ComplexFFT.h"
#include "transform/FFT2D.h"
#include "transform/Tiles.h"

// One row pass: item i transforms row i.
template <class T>
struct FFT2Dn1 {
    FFTWeights* weights;
    T* data;
    std::size_t size;
    bool back;

    int iterate(int thread, int i, int) const {
        T* const row = data + static_cast<std::size_t>(i) * size * 2;
        const auto [ip, nw, w] = weights->rowTables(thread, size);
        const int n = static_cast<int>(2 * size);
        if (back) {
            cftbsub(n, row, ip, nw, w);
        } else {
            cftfsub(n, row, ip, nw, w);
        }
        return 0;
    }
};

// The transposition. An iteration of an item for each of the 2 x size x size elements; every kItems
// of them belong to a tile, and the first of those exchanges the tile's samples below the diagonal
// with their mirrors.
template <class T>
struct Flip {
    static constexpr std::size_t kItems = 2 * fft::kTile * fft::kTile;

    T* data;
    std::size_t size;

    int iterate(int, int i, int) const {
        const auto item = static_cast<std::size_t>(i);
        if (item % kItems == 0) flip(item / kItems);
        return 0;
    }

private:
    ORBEL_OUT_OF_LINE void flip(std::size_t tile) const {
        const std::size_t across = size / fft::kTile;
        const std::size_t top = fft::fromBothEnds(tile / across, across) * fft::kTile;
        const std::size_t left = tile % across * fft::kTile;
        for (std::size_t y = top; y < top + fft::kTile; ++y) {
            for (std::size_t x = left; x < left + fft::kTile && x < y; ++x) {
                T* const sample = data + 2 * (y * size + x);
                T* const mirror = data + 2 * (x * size + y);
                swap(sample[0], mirror[0]);
                swap(sample[1], mirror[1]);
            }
        }
    }
};

template <class T>
int FFT2D<T>::doFFT2D(AEO::InData& context, bool inverse) {
    back = inverse;
    const int rows = static_cast<int>(size);
    FFT2Dn1<T> rowPass{weights, data, size, back};
    if (const int result = AEO::Iterator::IterationT(context, rowPass, rows)) return result;
    Flip<T> flip{data, size};
    if (const int result = AEO::Iterator::IterationT(context, flip, rows * rows * 2)) return result;
    rowPass = {weights, data, size, back};
    return AEO::Iterator::IterationT(context, rowPass, rows);
}
