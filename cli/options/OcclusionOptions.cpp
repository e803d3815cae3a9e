// SPDX-License-Identifier: Apache-2.0
#include "cli/options/OcclusionOptions.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <sstream>

#include "cli/Errors.h"
#include "cli/Numbers.h"
#include "pictures/Text.h"

namespace cli {
namespace {

constexpr const char* kOption = "--occlusion";
constexpr const char* kAutomatic = "auto";
constexpr int kLeastSlabs = 2;

std::string rounded(double value, double step) {
    return pictures::numberText(std::round(value / step) * step);
}

// A value of the map in four digits.
std::string valueText(double value) {
    if (value == 0.0) return "0";
    return rounded(value, std::pow(10.0, std::floor(std::log10(std::fabs(value))) - 3.0));
}

std::string listed(const std::vector<double>& bounds) {
    std::string list;
    for (const double bound : bounds) {
        if (!list.empty()) list += ',';
        list += valueText(bound);
    }
    // A whole number alone would be one of slabs.
    const bool whole = list.find_first_of(",.e") == std::string::npos;
    if (bounds.size() == 1 && whole) list += ".0";
    return list;
}

std::string radiiText(const occlusion::SlabReport& slab) {
    if (slab.layers == 0) return "no pixel";
    const std::string least = rounded(slab.radii.least, 0.1);
    const std::string largest = rounded(slab.radii.largest, 0.1);
    return least == largest ? least : least + " to " + largest;
}

// Whether there is depth on both sides of ascending bounds. Pixels without depth are farther than
// any.
bool partMap(const std::vector<double>& bounds, const MapScale& map) {
    const pictures::DepthRange& range = map.range;
    if (!range.any()) return false;
    const bool farIsLeast = map.nearness(range.least) < map.nearness(range.most);
    const bool beyond = range.nothing > 0;
    const bool low = bounds.front() > range.least || (farIsLeast && beyond);
    const bool high = bounds.back() < range.most || (!farIsLeast && beyond);
    return low && high;
}

// Throws for bounds, written as `text`, in ascending order, that aren't inside the effect's scale.
[[noreturn]] void refuse(const std::string& text, const std::vector<double>& bounds,
                         const pictures::DepthRange& range) {
    const std::string given = "the bounds of --occlusion, \"" + text + "\", must lie ";
    if (!range.any()) throw UsageError("--occlusion has no depth to cut: the map holds none");
    if (bounds.front() <= range.least || bounds.back() >= range.most) {
        throw UsageError(given + "inside the map's values, " + valueText(range.least) + " to " +
                         valueText(range.most));
    }
    throw UsageError(given +
                     "between the values that count as near and far, and not too close to each "
                     "other");
}

// Whether the argument after the option is its value rather than a file or another option.
bool isValue(const std::string& argument) {
    constexpr const char* kDigits = "0123456789";
    if (argument.starts_with('-') && argument.find_first_of(kDigits) != 1) return false;
    const bool numbers = argument.find_first_not_of("0123456789.,+-eE") == std::string::npos;
    return numbers || argument.find_first_of("./:") == std::string::npos;
}

}  // namespace

void OcclusionOptions::addTo(CLI::App& app) {
    option_ =
        app.add_option(kOption, text_,
                       "let near things hide far ones: the depth is cut into slabs, which "
                       "are blurred one by one. SLABS is auto, or left out; a number, 2 to 8; "
                       "off, whatever a preset says; or D1,D2,...: the values of the map to cut "
                       "at, a single one with a "
                       "decimal point")
            ->type_name("[SLABS]")
            ->group("Depth map values");
}

void OcclusionOptions::check(const headless::ParameterSet& parameters, int bits,
                             bool hasMap) const {
    if (!given()) return;
    if (!hasMap) throw UsageError("--occlusion needs a depth map; add --depth-map-layer FILE");
    if (bits != 32) {
        throw UsageError(
            "--occlusion renders in float; leave out --bits (--output-type chooses "
            "the type of the file)");
    }
    if (parameters.value(parameters.find("Use Focus Point")) != 0.0) {
        throw UsageError(
            "--occlusion needs the focus as --focus or --focal-distance, not as "
            "--use-focus-point");
    }
    if (namesBounds()) {
        bounds();
    } else if (!automatic()) {
        slabs();
    }
}

bool OcclusionOptions::automatic() const {
    return text_ == kAutomatic;
}

// A single bound has a decimal point, since a whole number is one of slabs.
bool OcclusionOptions::namesBounds() const {
    return !automatic() && text_.find_first_of(",.") != std::string::npos;
}

int OcclusionOptions::slabs() const {
    try {
        return parseWhole(kOption, text_, kLeastSlabs, occlusion::kMostSlabs);
    } catch (const UsageError&) {
        throw UsageError(
            "--occlusion takes auto, a number of slabs from 2 to 8, or values of the map such as "
            "2.5,10, a single one with a decimal point, not \"" +
            text_ + "\"");
    }
}

std::vector<double> OcclusionOptions::bounds() const {
    std::vector<double> values;
    std::istringstream parts(text_ + ",");  // getline leaves out an empty last part
    for (std::string part; std::getline(parts, part, ',');) {
        values.push_back(parseNumber(kOption, part));
    }
    if (values.size() < occlusion::kMostSlabs) return values;
    throw UsageError("--occlusion takes at most 7 bounds, not " + std::to_string(values.size()));
}

std::vector<float> OcclusionOptions::boundsIn(const MapScale& map) const {
    std::vector<double> values = bounds();
    if (values.front() > values.back()) std::ranges::reverse(values);
    if (std::ranges::adjacent_find(values, std::greater_equal()) != values.end()) {
        throw UsageError("the bounds of --occlusion must be in order, each once, not \"" + text_ +
                         "\"");
    }
    if (!partMap(values, map)) refuse(text_, values, map.range);
    std::vector<float> bounds;
    bounds.reserve(values.size());
    for (const double value : values) bounds.push_back(static_cast<float>(map.nearness(value)));
    std::ranges::sort(bounds);
    const bool apart = std::ranges::adjacent_find(bounds) == bounds.end();
    if (!apart || bounds.front() <= 0.0F || bounds.back() >= 1.0F) refuse(text_, values, map.range);
    return bounds;
}

occlusion::Options OcclusionOptions::options(const MapScale& map) const {
    if (automatic()) return {};
    if (namesBounds()) return {.slabs = 0, .bounds = boundsIn(map)};
    return {.slabs = slabs()};
}

void tellSlabs(const std::vector<occlusion::SlabReport>& slabs, const MapScale& map,
               pictures::Messages& messages) {
    if (slabs.size() < 2) {
        messages.note(
            "occlusion: one slab, since nothing hides anything that is blurred otherwise");
        return;
    }
    std::vector<double> bounds;
    std::string radii;
    for (const occlusion::SlabReport& slab : slabs) {
        radii += (radii.empty() ? "" : ", ") + radiiText(slab);
        if (&slab != &slabs.back()) bounds.push_back(map.value(static_cast<double>(slab.near)));
    }
    messages.note("occlusion: " + pictures::counted(slabs.size(), "slab") + ", cut at " +
                  listed(bounds) + "; blur radii in pixels, from far to near: " + radii);
}

void tellBounds(const std::vector<float>& bounds, const MapScale& map,
                pictures::Messages& messages) {
    if (bounds.empty()) {
        messages.note("occlusion: one slab in all frames, since nothing hides anything");
        return;
    }
    std::vector<double> values;
    values.reserve(bounds.size());
    for (const float bound : bounds) values.push_back(map.value(static_cast<double>(bound)));
    messages.note("occlusion: " + pictures::counted(bounds.size() + 1, "slab") +
                  " in all frames, cut at " + listed(values));
}

std::vector<std::string> withSlabs(std::vector<std::string> arguments) {
    if (arguments.empty()) return arguments;
    if (arguments.front() != "render" && arguments.front() != "inspect") return arguments;
    const auto end = std::ranges::find(arguments, "--");
    for (auto argument = arguments.begin(); argument != end; ++argument) {
        if (*argument != kOption) continue;
        const auto next = argument + 1;
        if (next == end || !isValue(*next)) *argument += std::string("=") + kAutomatic;
    }
    return arguments;
}

}  // namespace cli
