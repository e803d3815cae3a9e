// SPDX-License-Identifier: Apache-2.0
#include "pictures/colour/ColourConfig.h"

#include <array>
#include <cmath>

#include "pictures/Errors.h"
#include "pictures/Text.h"
#include "pictures/colour/TransferFunction.h"

namespace pictures {
namespace {

// The names under which configurations hold the functions that the tool knows itself.
std::vector<std::string> namesFor(const std::string& name) {
    if (sameName(name, "linear")) return {name, "scene_linear"};
    if (sameName(name, "sRGB")) return {name, "srgb_tx", "srgb_texture"};
    return {name};
}

// Whether a multiple of a colour is converted to the same multiple of the result. Configurations
// don't reliably say which of their spaces are linear.
bool isProportional(const OIIO::ColorProcessor& processor) {
    const auto convert = [&](float factor) {
        std::array<float, 3> colour{0.1F * factor, 0.2F * factor, 0.05F * factor};
        processor.apply(colour.data(), 1, 1, 3, sizeof(float), sizeof colour, sizeof colour);
        return colour;
    };
    const auto unit = convert(1.0F);
    for (const float factor : {0.0F, 0.25F, 4.0F}) {
        const auto multiple = convert(factor);
        for (std::size_t c = 0; c < 3; ++c) {
            if (std::fabs(multiple[c] - factor * unit[c]) > 1e-4F) return false;
        }
    }
    return true;
}

}  // namespace

ColourConfig::ColourConfig(const std::string& file)
    : file_(file), config_(std::make_shared<OIIO::ColorConfig>(file)) {
    // The library falls back on colour spaces of its own.
    const std::string error = config_->geterror();
    if (error.empty() && config_->configname() != "built-in") return;
    throw Failure("cannot read " + file + " as an OpenColorIO configuration" +
                  (error.empty() ? "" : " (" + oneLine(error) + ")") +
                  "; name another with --ocio, or unset the variable OCIO");
}

std::optional<std::string> ColourConfig::find(const std::string& name) const {
    if (!config_) return std::nullopt;
    const std::vector<std::string> spaces = config_->getColorSpaceNames();
    for (const std::string& wanted : namesFor(name)) {
        for (const std::string& space : spaces) {
            if (sameName(space, wanted)) return space;
            for (const std::string& alias : config_->getAliases(space)) {
                if (sameName(alias, wanted)) return space;
            }
        }
        for (const std::string& role : config_->getRoles()) {
            if (sameName(role, wanted)) return config_->getColorSpaceNameByRole(role);
        }
    }
    return std::nullopt;
}

bool ColourConfig::knows(const std::string& name) const {
    return TransferFunction::named(name) || find(name);
}

bool ColourConfig::isLinear(const std::string& name) const {
    const auto space = find(name);
    if (space) {
        const auto light = find("linear");
        return light && (space == light || isProportional(*processor(*space, *light)));
    }
    const auto function = TransferFunction::named(name);
    return function && function->linear();
}

std::string ColourConfig::knownNames() const {
    std::string names = TransferFunction::knownNames();
    if (!config_) return names;
    names += "; of " + file_ + ": ";
    bool first = true;
    for (const std::string& space : config_->getColorSpaceNames()) {
        names += (first ? "" : ", ") + space;
        first = false;
    }
    return names;
}

OIIO::ColorProcessorHandle ColourConfig::processor(const std::string& from,
                                                   const std::string& to) const {
    auto processor = config_->createColorProcessor(from, to);
    if (processor) return processor;
    throw Failure(file_ + " has no conversion from " + from + " to " + to + " (" +
                  oneLine(config_->geterror()) + ")");
}

}  // namespace pictures
