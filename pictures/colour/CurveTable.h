// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <bit>
#include <cstdint>
#include <functional>
#include <vector>

namespace pictures {

// A curve, evaluated by cubics over short ranges of its argument. Before it is rounded to float,
// the result is within 5e-8 of the curve's value, relative to that or to 1e-3 if that is larger.
class CurveTable {
public:
    // `odd` says that curve(-x) = -curve(x). Takes about two milliseconds.
    CurveTable(std::function<double(double)> curve, bool odd);

    float operator()(float x) const {
        const auto bits = std::bit_cast<std::uint32_t>(x);
        const std::uint32_t magnitude = bits & 0x7FFFFFFFU;
        const std::uint32_t index = (magnitude >> kFractionBits) - kFirstRange;
        const bool mirrored = bits != magnitude;
        if (index >= kRanges || (mirrored && !odd_)) return outside(x);
        const Cubic& c = cubics_[index];
        if (!c.usable) return outside(x);
        const auto t = static_cast<float>(static_cast<std::int32_t>(magnitude & kFractionMask));
        const double value = c.c0 + t * (c.c1 + t * (c.c2 + t * static_cast<double>(c.c3)));
        return static_cast<float>(mirrored ? -value : value);
    }

private:
    // Ranges are told apart by the exponent and the first six bits of the mantissa, from 2^-24, the
    // smallest half, to 2^16.
    static constexpr int kFractionBits = 17;
    static constexpr std::uint32_t kFractionMask = (1U << kFractionBits) - 1U;
    static constexpr std::uint32_t kFirstRange = (127U - 24U) << 6U;
    static constexpr std::uint32_t kRanges = 40U << 6U;

    // c0 + c1 t + c2 t^2 + c3 t^3 for the fraction t from 0 to 2^17. Not usable where the curve has
    // a corner.
    struct Cubic {
        double c0 = 0.0;
        double c1 = 0.0;
        double c2 = 0.0;
        float c3 = 0.0F;
        bool usable = false;
    };
    Cubic fit(std::uint32_t range) const;
    float outside(float x) const;

    std::function<double(double)> curve_;
    bool odd_;
    float atZero_;
    std::vector<Cubic> cubics_;
};

}  // namespace pictures
