#pragma once
// Reproducible test data.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

// `count` numbers from -1 to 1, all different.
inline std::vector<double> noise(std::size_t count, std::uint64_t seed = 1) {
    std::vector<double> values(count);
    std::uint64_t state = seed * 0x9e3779b97f4a7c15u;
    for (double& value : values) {
        state = state * 6364136223846793005u + 1442695040888963407u;
        value = static_cast<double>(state >> 11) / 4503599627370496.0 - 1.0;
    }
    return values;
}

// The same in the scalars of `count` elements, dead lanes included.
template <class T>
std::vector<T> noisyElements(std::size_t count, std::uint64_t seed = 1) {
    constexpr std::size_t kCell = sizeof(T) / sizeof(double);
    const std::vector<double> values = noise(count * kCell, seed);
    std::vector<T> elements(count);
    std::copy(values.begin(), values.end(), &elements[0][0]);
    return elements;
}
