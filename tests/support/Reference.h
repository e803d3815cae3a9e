// SPDX-License-Identifier: Apache-2.0
#pragma once
// The transform by its definition, and access to the lanes of an array of elements.

#include <complex>
#include <cstddef>
#include <numbers>
#include <vector>

using Complex = std::complex<double>;
using Signal = std::vector<Complex>;

// exp(2 pi i k / m), with k reduced first: the angle stays exact for large products.
inline Complex root(std::size_t k, std::size_t m) {
    return std::polar(1.0,
                      2.0 * std::numbers::pi * static_cast<double>(k % m) / static_cast<double>(m));
}

// Bin k of the direct sum with the exponent's sign + or, if `back`, -.
inline Complex directSum(const Signal& x, std::size_t k, bool back) {
    static thread_local Signal roots;
    const std::size_t m = x.size();
    if (roots.size() != m) {
        roots.resize(m);
        for (std::size_t j = 0; j < m; ++j) roots[j] = root(j, m);
    }
    Complex sum = 0;
    for (std::size_t j = 0; j < m; ++j) {
        const Complex& r = roots[j * k % m];
        sum += x[j] * (back ? std::conj(r) : r);
    }
    return sum;
}

template <class T>
Signal laneOf(const T* a, std::size_t samples, std::size_t lane) {
    Signal x(samples);
    for (std::size_t j = 0; j < samples; ++j) x[j] = {a[2 * j][lane], a[2 * j + 1][lane]};
    return x;
}

// `index` below 2^bits with its bits reversed.
inline std::size_t reversedBits(std::size_t index, int bits) {
    std::size_t result = 0;
    for (int bit = 0; bit < bits; ++bit) result |= (index >> bit & 1) << (bits - 1 - bit);
    return result;
}
