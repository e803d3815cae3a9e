// SPDX-License-Identifier: Apache-2.0
#include "occlusion/Outlines.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <optional>

#include "occlusion/Rows.h"

namespace occlusion {
namespace {

constexpr int kReach = 3;           // of the window in which a surface's colour is looked for
constexpr float kDoubtful = 0.01F;  // the weight of a colour that may be mixed itself
// A pixel has the depth of a surface that covers some of it.
constexpr float kLeastShare = 0.25F;
// Of a colour, squared, beside the contrast: what isn't a mix of the two is texture.
constexpr float kMostUnexplained = 0.1F;
constexpr float kLeastContrast = 1e-3F;  // between surfaces, squared, beside their brightness

float dot(const Colour& a, const Colour& b) {
    float sum = 0.0F;
    for (std::size_t c = 0; c < a.size(); ++c) sum += a[c] * b[c];
    return sum;
}

Colour sum(const Colour& a, float factor, const Colour& b) {
    Colour result;
    for (std::size_t c = 0; c < a.size(); ++c) result[c] = a[c] + factor * b[c];
    return result;
}

// The mean colour of a surface around a pixel.
class Mean {
public:
    void add(const Colour& colour, float weight) {
        total_ = sum(total_, weight, colour);
        weight_ += weight;
    }
    bool any() const { return weight_ > 0.0F; }
    Colour value() const { return sum({}, 1.0F / weight_, total_); }

private:
    Colour total_{};
    float weight_ = 0.0F;
};

class Finder {
public:
    Finder(const headless::World& picture, const Depths& depths, const BlurScale& scale)
        : picture_(picture), depths_(depths), scale_(scale), doubtful_(depths.nearness.size(), 0) {}

    // Whether a neighbour is on another surface.
    void markRow(int y) {
        for (int x = 0; x < depths_.width; ++x) {
            doubtful_[depths_.at(x, y)] = otherSurface(x, y, 1).has_value() ? 1 : 0;
        }
    }

    void findRow(int y, std::vector<MixedPixel>& row) const {
        for (int x = 0; x < depths_.width; ++x) {
            const bool atOutline = doubtful_[depths_.at(x, y)] != 0;
            const bool bright = brightest(colourAt(picture_, x, y)) > 1.0F;
            if (!atOutline && !bright) continue;
            const std::optional<float> other = otherSurface(x, y, atOutline ? 1 : kReach);
            if (!other) continue;
            const MixedPixel pixel = split(x, y, *other, atOutline);
            if (pixel.share < 1.0F) row.push_back(pixel);
        }
    }

private:
    template <class Work>
    void around(int x, int y, int reach, Work&& work) const {
        const int right = std::min(x + reach, depths_.width - 1);
        const int bottom = std::min(y + reach, depths_.height - 1);
        for (int v = std::max(y - reach, 0); v <= bottom; ++v) {
            for (int u = std::max(x - reach, 0); u <= right; ++u) work(u, v);
        }
    }

    // The depth, among the neighbours' across an outline, that differs most.
    std::optional<float> otherSurface(int x, int y, int reach) const {
        const float here = depths_.nearness[depths_.at(x, y)];
        std::optional<float> other;
        around(x, y, reach, [&](int u, int v) {
            const float there = depths_.nearness[depths_.at(u, v)];
            const bool farther = !other || std::fabs(there - here) > std::fabs(*other - here);
            if (farther && isOutline(scale_, here, there)) other = there;
        });
        return other;
    }

    struct Surfaces {
        Colour own;
        Colour other;
        bool otherIsFarther;
    };

    MixedPixel split(int x, int y, float otherNearness, bool atOutline) const {
        const float here = depths_.nearness[depths_.at(x, y)];
        Mean own;
        Mean other;
        around(x, y, kReach, [&](int u, int v) {
            const std::size_t at = depths_.at(u, v);
            const float there = depths_.nearness[at];
            const bool isOwn = std::fabs(there - here) < std::fabs(there - otherNearness);
            const auto distance = static_cast<float>((u - x) * (u - x) + (v - y) * (v - y));
            const float trust = doubtful_[at] != 0 ? kDoubtful : 1.0F;
            if (distance == 0.0F) return;
            (isOwn ? own : other).add(colourAt(picture_, u, v), trust / (1.0F + distance));
        });
        MixedPixel pixel{.x = x, .otherNearness = otherNearness};
        if (!own.any() || !other.any()) return pixel;
        const Surfaces surfaces{own.value(), other.value(), otherNearness < here};
        // Lamps shine through loose hair also where it hides all depths behind it.
        if (!atOutline && !isLampBehind(surfaces)) return pixel;
        if (isRimLight(x, y, otherNearness, surfaces)) return pixel;
        part(pixel, colourAt(picture_, x, y), surfaces);
        return pixel;
    }

    // Whether a light goes on along the own surface, as one on its rim does and a lamp behind it
    // doesn't.
    bool isRimLight(int x, int y, float otherNearness, const Surfaces& surfaces) const {
        if (!isGlint(colourAt(picture_, x, y), surfaces)) return false;
        const float here = depths_.nearness[depths_.at(x, y)];
        int alike = 0;  // the pixel itself is one
        around(x, y, 1, [&](int u, int v) {
            const float there = depths_.nearness[depths_.at(u, v)];
            const bool isOwn = std::fabs(there - here) < std::fabs(there - otherNearness);
            if (isOwn && isGlint(colourAt(picture_, u, v), surfaces)) ++alike;
        });
        return alike >= 3;
    }

    // How much of a pixel is the own surface, and how much of what the two colours don't explain
    // is added to each, so that the pixel keeps its colour.
    struct Shares {
        float own = 1.0F;
        float restToOwn = 1.0F;
        float restToOther = 0.0F;
    };

    static void part(MixedPixel& pixel, const Colour& colour, const Surfaces& surfaces) {
        const Shares shares =
            isGlint(colour, surfaces) ? sharesOfGlint(surfaces) : likeliestShares(colour, surfaces);
        const Colour mixed =
            sum(sum({}, shares.own, surfaces.own), 1.0F - shares.own, surfaces.other);
        const Colour rest = sum(colour, -1.0F, mixed);
        pixel.share = shares.own;
        pixel.own = inRange(sum(surfaces.own, shares.restToOwn, rest), colour, surfaces);
        pixel.other = inRange(sum(surfaces.other, shares.restToOther, rest), colour, surfaces);
    }

    // A light that neither surface shows around: it is more often seen past an outline than on it.
    static bool isGlint(const Colour& colour, const Surfaces& surfaces) {
        const float around = std::max(brightest(surfaces.own), brightest(surfaces.other));
        return brightest(colour) > std::max(1.0F, 2.0F * around);
    }

    // Whether a light is behind the own surface, such as a lamp behind hair: what the pixel has
    // more than both is the lamp's.
    static bool isLampBehind(const Surfaces& surfaces) {
        const float light = brightest(surfaces.other);
        return surfaces.otherIsFarther && light > std::max(1.0F, 2.0F * brightest(surfaces.own));
    }

    static Shares sharesOfGlint(const Surfaces& surfaces) {
        const float toOther = surfaces.otherIsFarther ? 2.0F : 0.0F;
        return {.own = 0.5F, .restToOwn = 2.0F - toOther, .restToOther = toOther};
    }

    // The share by which the two colours come closest to the pixel's, and the smallest changes of
    // them that explain the rest.
    static Shares likeliestShares(const Colour& colour, const Surfaces& surfaces) {
        const Colour contrast = sum(surfaces.own, -1.0F, surfaces.other);
        const float square = dot(contrast, contrast);
        const float light = dot(surfaces.own, surfaces.own) + dot(surfaces.other, surfaces.other);
        if (square <= kLeastContrast * light) return {};
        const float best = dot(sum(colour, -1.0F, surfaces.other), contrast) / square;
        const float own = std::clamp(best, kLeastShare, 1.0F);
        const Colour mixed = sum(sum({}, own, surfaces.own), 1.0F - own, surfaces.other);
        const Colour rest = sum(colour, -1.0F, mixed);
        const float other = 1.0F - own;
        if (isLampBehind(surfaces) && other > 0.0F) {
            return {.own = own, .restToOwn = 0.0F, .restToOther = 1.0F / other};
        }
        if (dot(rest, rest) > kMostUnexplained * square) return {};
        const float both = own * own + other * other;
        return {.own = own, .restToOwn = own / both, .restToOther = other / both};
    }

    // No brighter than what is seen, unless a glint is: it covers less than the pixel.
    static Colour inRange(Colour part, const Colour& colour, const Surfaces& surfaces) {
        const float most = isGlint(colour, surfaces) ? 2.0F : 1.0F;
        for (std::size_t c = 0; c < part.size(); ++c) {
            const float seen =
                std::max({surfaces.own[c], surfaces.other[c], most * colour[c], 0.0F});
            part[c] = std::clamp(part[c], 0.0F, seen);
        }
        return part;
    }

    const headless::World& picture_;
    const Depths& depths_;
    const BlurScale& scale_;
    std::vector<std::uint8_t> doubtful_;
};

}  // namespace

Colour colourAt(const headless::World& picture, int x, int y) {
    const PF_PixelFloat& pixel = picture.row<PF_PixelFloat>(y)[x];
    const float alpha = pixel.alpha;
    return {pixel.red * alpha, pixel.green * alpha, pixel.blue * alpha, alpha};
}

Outlines::Outlines(const headless::World& picture, const Depths& depths, const BlurScale& scale,
                   int threads)
    : rows_(static_cast<std::size_t>(depths.height)) {
    Finder finder(picture, depths, scale);
    forRows(depths.height, threads, [&](int first, int last) {
        for (int y = first; y < last; ++y) finder.markRow(y);
    });
    forRows(depths.height, threads, [&](int first, int last) {
        for (int y = first; y < last; ++y) finder.findRow(y, rows_[static_cast<std::size_t>(y)]);
    });
}

}  // namespace occlusion
