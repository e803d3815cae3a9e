// SPDX-License-Identifier: Apache-2.0
#pragma once
// Vectors, hashes and noise for the procedural scene.

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace scene {

struct Vec3 {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
};

inline Vec3 operator+(const Vec3& a, const Vec3& b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
inline Vec3 operator-(const Vec3& a, const Vec3& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
inline Vec3 operator*(const Vec3& a, const Vec3& b) {
    return {a.x * b.x, a.y * b.y, a.z * b.z};
}
inline Vec3 operator*(const Vec3& a, double s) {
    return {a.x * s, a.y * s, a.z * s};
}
inline double dot(const Vec3& a, const Vec3& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

inline Vec3 mix(const Vec3& a, const Vec3& b, double t) {
    return a * (1.0 - t) + b * t;
}

inline double smoothStep(double from, double to, double x) {
    const double t = std::clamp((x - from) / (to - from), 0.0, 1.0);
    return t * t * (3.0 - 2.0 * t);
}

// A number in 0..1 that depends only on three integers.
inline double hash(int x, int y, int seed) {
    auto h = static_cast<std::uint32_t>(x) * 0x8DA6B343U ^
             static_cast<std::uint32_t>(y) * 0xD8163841U ^
             static_cast<std::uint32_t>(seed) * 0xCB1AB31FU;
    h ^= h >> 15;
    h *= 0x2C1B3C6DU;
    h ^= h >> 12;
    h *= 0x297A2D39U;
    h ^= h >> 15;
    return h / 4294967295.0;
}

inline int cell(double x) {
    return static_cast<int>(std::floor(x));
}
inline double fraction(double x) {
    return x - std::floor(x);
}

// Smooth noise in 0..1 with features of size 1.
inline double noise(double x, double y, int seed) {
    const int i = cell(x);
    const int j = cell(y);
    const double u = smoothStep(0.0, 1.0, x - i);
    const double v = smoothStep(0.0, 1.0, y - j);
    const double top = hash(i, j, seed) * (1.0 - u) + hash(i + 1, j, seed) * u;
    const double bottom = hash(i, j + 1, seed) * (1.0 - u) + hash(i + 1, j + 1, seed) * u;
    return top * (1.0 - v) + bottom * v;
}

// Four octaves of noise, in 0..1.
inline double cloud(double x, double y, int seed) {
    double sum = 0.0;
    double weight = 0.5;
    for (int octave = 0; octave < 4; ++octave) {
        sum += weight * noise(x, y, seed + octave);
        weight *= 0.5;
        x *= 2.03;
        y *= 2.03;
    }
    return sum / 0.9375;
}

}  // namespace scene
