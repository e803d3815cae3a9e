// SPDX-License-Identifier: Apache-2.0
#pragma once
// The steps of FFT2D, each an iteration over the host's threads. Included where FFT2D is compiled
// for an element type; everything else needs only its declaration.

#include <bit>
#include <cstddef>

#include "host/Iterator.h"
#include "transform/ComplexFFT.h"
#include "transform/FFT2D.h"
#include "transform/Prefetch.h"

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

// The transposition: item i, below 2 x size x size, exchanges element i with its mirror if it lies
// strictly below the diagonal. There are many items and little to do in each, so the division by
// the size, a power of two, is a shift.
template <class T>
struct Flip {
    static constexpr std::size_t kRowsAhead = 2;

    T* data;
    std::size_t size;

    int iterate(int, int i, int) const {
        const auto element = static_cast<std::size_t>(i);
        const int log2Size = std::countr_zero(size);
        const std::size_t y = (element >> 1) >> log2Size;
        const std::size_t x = (element >> 1) & (size - 1);
        if (x >= y) return 0;
        const std::size_t mirror = 2 * ((x << log2Size) + y) + (element & 1);
        // The mirrors run down a column, a row apart.
        fft::prefetch<sizeof(T)>(data + mirror, kRowsAhead * 2 * size);
        swap(data[element], data[mirror]);
        return 0;
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
