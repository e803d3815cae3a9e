// SPDX-License-Identifier: Apache-2.0
#include "pictures/colour/IccProfile.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <optional>
#include <string_view>

#include "pictures/colour/TransferFunction.h"

namespace pictures {
namespace {

constexpr std::size_t kHeaderBytes = 128;
constexpr std::size_t kEntryBytes = 12;

std::string_view signature(Bytes bytes, std::size_t offset) {
    return {reinterpret_cast<const char*>(bytes.data()) + offset, 4};
}

// The data of a tag; empty if there is none or it isn't inside the profile.
Bytes tagOf(Bytes profile, std::string_view name) {
    if (profile.size() < kHeaderBytes + 4) return {};
    const std::size_t room = (profile.size() - kHeaderBytes - 4) / kEntryBytes;
    const std::size_t count = std::min<std::size_t>(bigEndian32(profile, kHeaderBytes), room);
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t entry = kHeaderBytes + 4 + i * kEntryBytes;
        if (signature(profile, entry) != name) continue;
        const std::size_t offset = bigEndian32(profile, entry + 4);
        const std::size_t size = bigEndian32(profile, entry + 8);
        if (offset > profile.size() || size > profile.size() - offset || size < 12) return {};
        return profile.subspan(offset, size);
    }
    return {};
}

// A signed number with 16 bits after the point.
double fixedNumber(Bytes bytes, std::size_t offset) {
    return static_cast<std::int32_t>(bigEndian32(bytes, offset)) / 65536.0;
}

using Curve = std::function<double(double)>;

// From the type "curv": nothing for linear, an exponent, or a table.
Curve tableCurve(Bytes tag) {
    const std::size_t count = bigEndian32(tag, 8);
    if (count > (tag.size() - 12) / 2) return {};
    if (count == 0) return [](double x) { return x; };
    if (count == 1) return [g = bigEndian16(tag, 12) / 256.0](double x) { return std::pow(x, g); };
    return [tag, count](double x) {
        const double place = x * static_cast<double>(count - 1);
        const auto i = std::min(static_cast<std::size_t>(place), count - 2);
        const double low = bigEndian16(tag, 12 + 2 * i);
        const double high = bigEndian16(tag, 14 + 2 * i);
        return (low + (high - low) * (place - static_cast<double>(i))) / 65535.0;
    };
}

// From the type "para": a power with up to six further numbers, and a straight line below x = d.
Curve parametricCurve(Bytes tag) {
    constexpr std::array<std::size_t, 5> kCounts{1, 3, 4, 5, 7};
    const std::size_t kind = bigEndian16(tag, 8);
    if (kind >= kCounts.size() || tag.size() < 12 + 4 * kCounts[kind]) return {};
    std::array<double, 7> n{};
    for (std::size_t i = 0; i < kCounts[kind]; ++i) n[i] = fixedNumber(tag, 12 + 4 * i);
    const auto [g, a, b, c, d, e, f] = n;
    switch (kind) {
        case 0:
            return [g = g](double x) { return std::pow(x, g); };
        case 1:
        case 2: {
            const double start = a != 0.0 ? -b / a : 0.0;
            return [g = g, a = a, b = b, c = c, start](double x) {
                return (x >= start ? std::pow(a * x + b, g) : 0.0) + c;
            };
        }
        default:  // e and f are 0 in kind 3
            return [g = g, a = a, b = b, c = c, d = d, e = e, f = f](double x) {
                return x >= d ? std::pow(a * x + b, g) + e : c * x + f;
            };
    }
}

Curve curveOf(Bytes tag) {
    if (tag.empty()) return {};
    const std::string_view type = signature(tag, 0);
    if (type == "curv") return tableCurve(tag);
    return type == "para" ? parametricCurve(tag) : Curve{};
}

// The exponent of the curve at the middle of its range: of a gamma curve the exponent everywhere.
double exponentOf(const Curve& curve) {
    const double light = curve(0.5);
    return light > 0.0 ? std::log(light) / std::log(0.5) : 0.0;
}

bool follows(const Curve& curve, const TransferFunction& function) {
    constexpr double kTolerance = 1e-3;  // a quarter of an 8-bit step
    constexpr int kSteps = 64;
    for (int i = 0; i <= kSteps; ++i) {
        const double x = static_cast<double>(i) / kSteps;
        if (!(std::fabs(curve(x) - function.decode(x)) <= kTolerance)) return false;
    }
    return true;
}

// The name of the function that the curve follows; empty if there is none.
std::string functionName(const Curve& curve) {
    if (!curve) return {};
    for (const std::string& name :
         {std::string("sRGB"), std::string("Rec709"), gammaName(exponentOf(curve))}) {
        const auto function = TransferFunction::named(name);
        if (function && follows(curve, *function)) return function->name();
    }
    return {};
}

// Whether a tag holds these coordinates X, Y, Z, as profiles of sRGB do within their rounding.
bool isNear(Bytes tag, const std::array<double, 3>& colour) {
    if (tag.size() < 20) return false;
    for (std::size_t i = 0; i < 3; ++i) {
        if (std::fabs(fixedNumber(tag, 8 + 4 * i) - colour[i]) > 2e-3) return false;
    }
    return true;
}

// The primaries of IEC 61966-2-1, adapted to the D50 white of profiles.
bool hasPrimariesOfSrgb(Bytes profile) {
    return isNear(tagOf(profile, "rXYZ"), {0.43607, 0.22249, 0.01392}) &&
           isNear(tagOf(profile, "gXYZ"), {0.38515, 0.71687, 0.09708}) &&
           isNear(tagOf(profile, "bXYZ"), {0.14307, 0.06061, 0.71410});
}

}  // namespace

IccProfile readIccProfile(Bytes profile) {
    IccProfile found;
    if (profile.size() < kHeaderBytes + 4) return found;
    const std::string_view space = signature(profile, 16);
    found.colour = space == "RGB ";
    found.grey = found.primariesOfSrgb = space == "GRAY";
    if (signature(profile, 20) != "XYZ ") return found;  // the curves of others don't lead to light
    if (found.grey) {
        found.transfer = functionName(curveOf(tagOf(profile, "kTRC")));
    } else if (found.colour) {
        found.primariesOfSrgb = hasPrimariesOfSrgb(profile);
        const std::string red = functionName(curveOf(tagOf(profile, "rTRC")));
        const bool same = functionName(curveOf(tagOf(profile, "gTRC"))) == red &&
                          functionName(curveOf(tagOf(profile, "bTRC"))) == red;
        if (same && tagOf(profile, "A2B0").empty()) found.transfer = red;
    }
    return found;
}

}  // namespace pictures
