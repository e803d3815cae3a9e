// SPDX-License-Identifier: Apache-2.0
#pragma once
// Reproducible test data.

#include <cstddef>
#include <cstdint>
#include <vector>

// A sequence of random numbers, the same with every standard library.
class Noise {
public:
    explicit Noise(std::uint64_t seed = 1) : state_(seed * 0x9e3779b97f4a7c15u) {}

    // From 0 to below 1.
    double unit() {
        state_ = state_ * 6364136223846793005u + 1442695040888963407u;
        return static_cast<double>(state_ >> 11) / 9007199254740992.0;
    }
    // A whole number from 0 to `most`.
    unsigned upTo(unsigned most) { return static_cast<unsigned>(unit() * (most + 1.0)); }

private:
    std::uint64_t state_;
};

// Fills `count` numbers with values from -1 to 1, all different.
inline void fillWithNoise(double* data, std::size_t count, std::uint64_t seed = 1) {
    Noise noise(seed);
    for (std::size_t i = 0; i < count; ++i) data[i] = 2.0 * noise.unit() - 1.0;
}

// The same in the scalars of `count` elements, dead lanes included.
template <class T>
std::vector<T> noisyElements(std::size_t count, std::uint64_t seed = 1) {
    constexpr std::size_t kCell = sizeof(T) / sizeof(double);
    std::vector<T> elements(count);
    fillWithNoise(&elements[0][0], count * kCell, seed);
    return elements;
}
