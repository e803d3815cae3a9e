// SPDX-License-Identifier: Apache-2.0
#include "occlusion/SlabScene.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <mutex>

#include "occlusion/Pyramid.h"
#include "occlusion/Rows.h"

namespace occlusion {
namespace {

constexpr float kDarkest = 1e-3F;    // of a light that counts in a mean
constexpr double kMostLight = 1e30;  // sums of it over a picture are finite
constexpr float kLeastCoverage = 1.0F / 4096;

// A pixel as one slab has it.
struct Part {
    float own = 0.0F;         // how much of the pixel shows the slab
    float nearer = 0.0F;      // how much of it shows nearer slabs
    float hiding = 0.0F;      // how much of it hides this one
    Colour light{};           // times own
    float radius = 0.0F;      // of the blur; of two surfaces, the brighter one decides
    float brightness = 0.0F;  // what counts in the radius so far
    float brightestLight = 0.0F;
};

// Reads the pixels of a row as one slab has them.
class PartReader {
public:
    PartReader(const Scene& scene, std::size_t slab) : scene_(scene), slab_(slab) {}

    Part read(int x, int y) const {
        const float nearness = scene_.depths.nearness[scene_.depths.at(x, y)];
        const MixedPixel* const mixed = mixedAt(x, y);
        Part part;
        if (mixed == nullptr) {
            add(part, nearness, 1.0F, colourAt(scene_.picture, x, y));
        } else {
            add(part, nearness, mixed->share, mixed->own);
            add(part, mixed->otherNearness, 1.0F - mixed->share, mixed->other);
        }
        return part;
    }

private:
    const MixedPixel* mixedAt(int x, int y) const {
        const auto row = scene_.outlines.row(y);
        const auto found = std::ranges::lower_bound(row, x, {}, &MixedPixel::x);
        return found != row.end() && found->x == x ? &*found : nullptr;
    }

    void add(Part& part, float nearness, float amount, const Colour& colour) const {
        const float nearer = amount * scene_.slabs.nearer(slab_, nearness);
        part.nearer += nearer;
        part.hiding += nearer * hides(colour[3]);
        const float own = amount * scene_.slabs.share(slab_, nearness);
        if (own <= 0.0F) return;
        const Colour light = lightOf(colour);
        part.own += own;
        for (std::size_t c = 0; c < light.size(); ++c) part.light[c] += own * light[c];
        part.brightestLight = std::max(part.brightestLight, brightest(light));
        const float brightness = own * (std::max(brightest(light), 0.0F) + kDarkest);
        const float radius = std::fabs(scene_.scale.signedRadius(nearness));
        part.brightness += brightness;
        part.radius = std::lerp(part.radius, radius, brightness / part.brightness);
    }

    // How far a surface with this alpha hides what is behind it. What can be seen through one that
    // isn't opaque isn't in the picture, so nothing is continued there.
    static float hides(float alpha) {
        const float square = alpha * alpha;
        return square * square * square * square;
    }

    // The curve applies to straight colours.
    Colour lightOf(const Colour& colour) const {
        const float alpha = colour[3];
        if (alpha <= 0.0F) return {};
        Colour light = colour;
        for (std::size_t c = 0; c < 3; ++c) {
            const double expanded = scene_.curve.expand(static_cast<double>(colour[c] / alpha));
            light[c] = static_cast<float>(finite(expanded)) * alpha;
        }
        return light;
    }

    // The curve goes beyond any number for colours that are too bright for it.
    static double finite(double light) {
        return std::isnan(light) ? 0.0 : std::clamp(light, -kMostLight, kMostLight);
    }

    const Scene& scene_;
    std::size_t slab_;
};

Known knownOf(const Part& part) {
    Known known;
    // What is hidden right beside a lamp may well be a part of it, so that a lamp still counts
    // here. Squared, since many pixels that hardly show the slab would otherwise outweigh those
    // around that do.
    const float weight = part.own / std::sqrt(std::max(part.brightestLight, 1.0F));
    for (std::size_t c = 0; c < known.colour.size(); ++c) known.colour[c] = weight * part.light[c];
    known.colourWeight = weight * part.own;
    known.radius = part.own * part.radius;
    known.radiusWeight = part.own;
    // Where nearer slabs hide everything, nobody knows whether the slab is there.
    known.presence = part.own;
    known.presenceWeight = 1.0F - part.nearer;
    return known;
}

// Which pixels a slab covers, and with which blurs.
class Findings {
public:
    void add(int x, int y, float radius) {
        extent_.left = std::min(extent_.left, x);
        extent_.right = std::max(extent_.right, x + 1);
        extent_.top = std::min(extent_.top, y);
        extent_.bottom = std::max(extent_.bottom, y + 1);
        least_ = std::min(least_, radius);
        largest_ = std::max(largest_, radius);
    }
    void add(const Findings& other) {
        if (other.none()) return;
        add(other.extent_.left, other.extent_.top, other.least_);
        add(other.extent_.right - 1, other.extent_.bottom - 1, other.largest_);
    }
    void tell(SlabScene& slab) const {
        if (none()) return;
        slab.extent = extent_;
        slab.span = {static_cast<double>(least_), static_cast<double>(largest_)};
    }

private:
    bool none() const { return extent_.left >= extent_.right; }

    static constexpr int kMost = std::numeric_limits<int>::max();
    PF_LRect extent_{kMost, kMost, 0, 0};
    float least_ = std::numeric_limits<float>::max();
    float largest_ = 0.0F;
};

// Fills a slab's layers, row by row.
class SlabWriter {
public:
    SlabWriter(const PartReader& reader, const Pyramid& pyramid, SlabScene& slab)
        : reader_(reader), pyramid_(pyramid), slab_(slab) {}

    void writeRow(int y) {
        const int width = slab_.light->width();
        auto* const light = slab_.light->row<PF_PixelFloat>(y);
        float* const radii = slab_.radii.data() + static_cast<std::ptrdiff_t>(y) * width;
        for (int x = 0; x < width; ++x) {
            const Part part = reader_.read(x, y);
            const Continued behind = pyramid_.at(x, y);
            const float hidden = part.hiding * behind.presence;
            radii[x] = radiusOf(part, hidden, behind);
            if (part.own + hidden <= kLeastCoverage) continue;
            light[x] = straight(part.light, hidden, behind.colour);
            findings_.add(x, y, radii[x]);
        }
    }
    const Findings& findings() const { return findings_; }

private:
    // Where the slab hardly is, its surroundings' radius: the blur of coverage is measured by that
    // of the pixels without any, too.
    static float radiusOf(const Part& part, float hidden, const Continued& behind) {
        const float coverage = part.own + hidden;
        if (coverage <= kLeastCoverage) return behind.radius;
        const float here = (part.own * part.radius + hidden * behind.radius) / coverage;
        return std::lerp(behind.radius, here, std::min(4.0F * coverage, 1.0F));
    }

    static PF_PixelFloat straight(const Colour& seen, float hidden, const Colour& behind) {
        const float alpha = seen[3] + hidden * behind[3];
        if (alpha <= 0.0F) return {};
        const auto channel = [&](std::size_t c) { return (seen[c] + hidden * behind[c]) / alpha; };
        return {.alpha = alpha, .red = channel(0), .green = channel(1), .blue = channel(2)};
    }

    const PartReader& reader_;
    const Pyramid& pyramid_;
    SlabScene& slab_;
    Findings findings_;
};

}  // namespace

SlabScene makeSlab(const Scene& scene, std::size_t slab) {
    const int width = scene.depths.width;
    const int height = scene.depths.height;
    const PartReader reader(scene, slab);
    const Pyramid pyramid(width, height, scene.threads,
                          [&](int x, int y) { return knownOf(reader.read(x, y)); });
    SlabScene result;
    result.light = std::make_shared<headless::World>(width, height, PF_PixelFormat_ARGB128);
    result.radii.resize(scene.depths.nearness.size());
    Findings findings;
    std::mutex mutex;
    forRows(height, scene.threads, [&](int first, int last) {
        SlabWriter writer(reader, pyramid, result);
        for (int y = first; y < last; ++y) writer.writeRow(y);
        const std::scoped_lock lock(mutex);
        findings.add(writer.findings());
    });
    findings.tell(result);
    return result;
}

}  // namespace occlusion
