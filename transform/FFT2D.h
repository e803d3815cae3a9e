#pragma once
// Transform of one square block, in place, on all lanes of its elements, over the host's threads.
//
// A block is 2 x size x size elements: sample (row y, column x) has its real part at element
// 2 (y size + x) and its imaginary part at the next one. The steps are: transform all rows,
// transpose, transform all rows. Nothing transposes back, so a spectrum has its horizontal
// frequency on the row index, and the inverse brings the samples back into their own rows.
//
// Nothing is scaled: forward and inverse together multiply by size x size.

#include <bit>
#include <cstddef>

#include "host/Iterator.h"
#include "host/Vector.h"
#include "transform/ComplexFFT.h"
#include "transform/VectorElements.h"

// The tables of ComplexFFT.h, a copy for each thread of an iteration. They depend on the block size
// alone: one object serves all blocks and element types of a frame.
//
// The constructor builds tables for nw = n / 4, half of what a row needs: each thread makes its
// own copy large enough at its first row, and the costly part of that runs on all threads at once.
struct FFTWeights {
    AEO::Vector<int> ip;    // ipStride integers a thread
    AEO::Vector<double> w;  // wStride doubles a thread
    std::size_t ipStride;
    std::size_t wStride;

    // `threads` as AEO::Iterator::GetNumThreads gives it; `n` is the block size, a power of two
    // from 64 to 8192. When the host has no memory for them, the data of `ip` or `w` is null and
    // the tables must not be used.
    FFTWeights(AEO::InData& context, std::size_t threads, std::size_t n);

    // The tables of one thread, for that thread to change.
    int* ipOf(int thread) { return ip.data() + ipStride * static_cast<std::size_t>(thread); }
    double* wOf(int thread) { return w.data() + wStride * static_cast<std::size_t>(thread); }
};

// One row pass: item i transforms row i.
template <class T>
struct FFT2Dn1 {
    FFTWeights* weights;
    T* data;
    std::size_t size;
    bool back;

    int iterate(int thread, int i, int) const {
        T* const row = data + static_cast<std::size_t>(i) * size * 2;
        int* const ip = weights->ipOf(thread);
        double* const w = weights->wOf(thread);
        const int n = static_cast<int>(2 * size);
        int nw = ip[0];
        if (4 * nw < n) {
            nw = static_cast<int>(size >> 1);
            makewt(nw, ip, w);
        }
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
    T* data;
    std::size_t size;

    int iterate(int, int i, int) const {
        const auto element = static_cast<std::size_t>(i);
        const int log2Size = std::countr_zero(size);
        const std::size_t y = (element >> 1) >> log2Size;
        const std::size_t x = (element >> 1) & (size - 1);
        if (x >= y) return 0;
        const std::size_t mirror = 2 * ((x << log2Size) + y) + (element & 1);
        swap(data[element], data[mirror]);
        return 0;
    }
};

// Building one is free. It owns nothing.
template <class T>
struct FFT2D {
    T* data;
    std::size_t size;
    FFTWeights* weights;
    bool back = false;  // the direction of the last doFFT2D

    // `blockSize` is the size that `tables` were made for.
    FFT2D(FFTWeights& tables, T* block, std::size_t blockSize)
        : data(block), size(blockSize), weights(&tables) {}

    // Transforms the block: forward, with the exponent's sign +, or inverse, with the sign -. Gives
    // 0 or the result of the host's iteration, a cancel as a rule, which leaves the block half
    // done.
    int doFFT2D(AEO::InData& context, bool inverse);
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

#include "transform/FFT2DInstances.h"
