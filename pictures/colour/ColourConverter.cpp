// SPDX-License-Identifier: Apache-2.0
#include "pictures/colour/ColourConverter.h"

#include <algorithm>

#include "pictures/Errors.h"
#include "pictures/colour/TransferFunction.h"

namespace pictures {
namespace {

constexpr std::size_t kPixel = 4;  // values

using Curve = std::shared_ptr<const CurveTable>;

TransferFunction functionNamed(const std::string& name) {
    if (auto function = TransferFunction::named(name)) return *function;
    throw Failure("there is no colour space " + name);
}

// From the values of one transfer function to those of another; null if they are the same.
Curve curveBetween(const std::string& from, const std::string& to) {
    const TransferFunction source = functionNamed(from);
    const TransferFunction target = functionNamed(to);
    if (source.name() == target.name()) return nullptr;
    return std::make_shared<const CurveTable>(
        [source, target](double x) { return target.encode(source.decode(x)); },
        source.odd() && target.odd());
}

std::string requireSceneLinear(const ColourConfig& config, const std::string& other) {
    if (auto space = config.find("linear")) return *space;
    throw Failure("the OpenColorIO configuration has no role scene_linear, by which " + other +
                  " could be reached");
}

void applyCurve(const CurveTable& curve, std::span<float> pixels, PixelOrder order) {
    for (std::size_t i = 0; i + kPixel <= pixels.size(); i += kPixel) {
        float* colour = pixels.data() + i + order.red;
        for (std::size_t c = 0; c < 3; ++c) colour[c] = curve(colour[c]);
    }
}

// Calls scale(colour, alpha) for each pixel whose alpha isn't 0 or 1.
template <class Scale>
void scaleColours(std::span<float> pixels, PixelOrder order, Scale scale) {
    for (std::size_t i = 0; i + kPixel <= pixels.size(); i += kPixel) {
        const float alpha = pixels[i + order.alpha];
        if (alpha == 0.0F || alpha == 1.0F) continue;
        float* colour = pixels.data() + i + order.red;
        for (std::size_t c = 0; c < 3; ++c) colour[c] = scale(colour[c], alpha);
    }
}

}  // namespace

ColourConverter::ColourConverter(const std::string& from, const std::string& to,
                                 const ColourConfig& config) {
    if (sameName(from, to)) return;
    const auto source = config.find(from);
    const auto target = config.find(to);
    if (!source && !target) {
        before_ = curveBetween(from, to);
        return;
    }
    if (!source) before_ = curveBetween(from, "linear");
    if (!target) after_ = curveBetween("linear", to);
    const std::string first = source ? *source : requireSceneLinear(config, from);
    const std::string last = target ? *target : requireSceneLinear(config, to);
    const auto processor = config.processor(first, last);
    if (!processor->isNoOp()) processor_ = processor;
}

void ColourConverter::apply(std::span<float> pixels, PixelOrder order, bool associated) const {
    if (identity()) return;
    constexpr std::size_t kCached = 1024 * kPixel;  // passes over this much stay in the cache
    for (std::size_t i = 0; i < pixels.size(); i += kCached) {
        const auto some = pixels.subspan(i, std::min(kCached, pixels.size() - i));
        if (associated) scaleColours(some, order, [](float c, float alpha) { return c / alpha; });
        applyStraight(some, order);
        if (associated) scaleColours(some, order, [](float c, float alpha) { return c * alpha; });
    }
}

void ColourConverter::applyStraight(std::span<float> pixels, PixelOrder order) const {
    if (before_) applyCurve(*before_, pixels, order);
    if (processor_) {
        constexpr OIIO::stride_t kValue = sizeof(float);
        const auto row = static_cast<OIIO::stride_t>(pixels.size_bytes());
        processor_->apply(pixels.data() + order.red, static_cast<int>(pixels.size() / kPixel), 1, 3,
                          kValue, kPixel * kValue, row);
    }
    if (after_) applyCurve(*after_, pixels, order);
}

}  // namespace pictures
