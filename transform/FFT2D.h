// SPDX-License-Identifier: Apache-2.0
#pragma once
// Transform of one square block, in place, on all lanes of its elements, over the host's threads.
//
// A block is 2 x size x size elements: sample (row y, column x) has its real part at element 2 (y
// size + x) and its imaginary part at the next one. The steps are: transform all rows, transpose,
// transform all rows. Nothing transposes back, so the row index of a spectrum is its horizontal
// frequency, and the inverse returns the samples to their own rows.
//
// Nothing is scaled: forward and inverse together multiply by size x size.

#include <cstddef>

#include "host/Vector.h"

// What ComplexFFT.h takes beside a row.
struct RowTables {
    int* ip;
    int nw;
    double* w;
};

// The tables of ComplexFFT.h, a copy for each thread of an iteration. They depend only on the block
// size: one object serves all blocks and element types of a frame.
//
// The constructor builds tables for nw = n / 4, half of what a row needs: each thread enlarges its
// own copy at its first row, so that the costly part runs on all threads at once.
struct FFTWeights {
    AEO::Vector<int> ip;    // ipStride integers per thread
    AEO::Vector<double> w;  // wStride doubles per thread
    std::size_t ipStride;
    std::size_t wStride;

    // `threads` as AEO::Iterator::GetNumThreads returns it; `n` is the block size, a power of two
    // from 64 to 8192. When the host has no memory for them, the data of `ip` or `w` is null and
    // the tables must not be used.
    FFTWeights(AEO::InData& context, std::size_t threads, std::size_t n);

    // The tables of one thread, which only that thread may change.
    int* ipOf(int thread) { return ip.data() + ipStride * static_cast<std::size_t>(thread); }
    double* wOf(int thread) { return w.data() + wStride * static_cast<std::size_t>(thread); }

    // The same, ready for rows of `size` samples.
    RowTables rowTables(int thread, std::size_t size);
};

// Cheap to construct; owns nothing. Its 45 element types (blocks, their narrower views and kernel
// banks) are compiled in this layer and found by the linker; there are no others.
template <class T>
struct FFT2D {
    T* data;
    std::size_t size;
    FFTWeights* weights;
    bool back = false;  // the direction of the last doFFT2D

    // `blockSize` is the size that `tables` were made for.
    FFT2D(FFTWeights& tables, T* block, std::size_t blockSize)
        : data(block), size(blockSize), weights(&tables) {}

    // Transforms the block: forward, with the exponent's sign +, or inverse, with the sign -.
    // Returns 0 or the result of the host's iteration, usually a cancel, which leaves the block
    // half transformed.
    int doFFT2D(AEO::InData& context, bool inverse);
};
