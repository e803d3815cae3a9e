// SPDX-License-Identifier: Apache-2.0
#include "cli/help/ControlMeanings.h"

#include <algorithm>
#include <iterator>

#include "cli/options/ParameterOptions.h"

namespace cli {
namespace {

using headless::ParameterInfo;

struct Meaning {
    const char* label;  // "Group/Label" for those that mean nothing by themselves
    const char* phrase;
    const char* unit = "";
};

// In the order of the panel.
constexpr Meaning kMeanings[] = {
    {"Blur Radius",
     "radius of the blur: without a depth map of the whole image, with one of what is farthest "
     "from focus, while the radius of the rest grows from 0 as Profile says",
     "pixels"},
    {"Vertices", "corners of the aperture"},
    {"Roundness",
     "sides of the aperture: 0 straight, 1 a circle, below 0 bent inwards, which makes a star"},
    {"Concentration",
     "where the aperture lets light through: 0 everywhere alike, above 0 ever more at the centre, "
     "below 0 ever more at the rim"},
    {"Deform",
     "squeezes the aperture by this share: above 0 along the axis through its first corner, below "
     "0 across it"},
    {"Rotation", "turns the aperture clockwise; its first corner points left at 0, up at 90"},
    {"Custom Blur Shape",
     "image that is the aperture, bright where light passes; replaces Vertices, Roundness, "
     "Concentration, Deform and Rotation"},
    {"Custom Layer Channel", "channel of Custom Blur Shape that is the aperture"},
    {"Exposure",
     "expands highlights before the blur and compresses them again after it, so that they open "
     "into the aperture's shape; 0 blurs values as they are, below 0 weakens highlights"},
    {"Threshold",
     "value, 0 black and 1 white, above which Exposure expands; darker values stay as they are"},
    {"Edge Behavior",
     "continues the image beyond its edges by repeating their pixels; off: "
     "nothing is there, and the edges become transparent"},
    {"Depth Map/Layer", "image whose values are the depth of each pixel, near bright and far dark"},
    {"Depth Map/Channel", "channel of the depth map that holds the depth"},
    {"Placement",
     "where a depth map of another size lies: center at its own size in the middle of the image, "
     "stretch scaled to the image"},
    {"Resolution",
     "number of depth layers, each blurred by a radius of its own; more make smoother "
     "transitions, and take more time and memory",
     "layers"},
    {"Focal Distance",
     "depth that is in focus, 0 far, black in the map, to 1 near, white; beyond them nothing is "
     "quite sharp"},
    {"Use Focus Point",
     "focuses by Focus Point 0, Focus Point 1 and the interpolation between them instead of Focal "
     "Distance"},
    {"Focus Point 0", "point of the image whose depth is in focus where the interpolation is 0"},
    {"Focus Point 1", "point of the image whose depth is in focus where the interpolation is 1"},
    {"Focus Point 0-1 Interpolation",
     "focus between the depths of the two points: 0 at point 0, 0.5 in the middle, 1 at point 1; "
     "below 0 and above 1 it goes on beyond them"},
    {"Profile",
     "how the radius grows with the distance from focus: 0 evenly, up to Blur Radius at the "
     "farther end of the map; above 0 at once and then slowly, so that less is sharp; below 0 "
     "slowly and then at once, so that more is. As a share of Blur Radius it is 1 - (1 - x)^g at "
     "the share x of the way to that end, with g = tan(45 degrees x (1 + Profile))"},
    {"Invert Depth Map", "reads the depth map with near dark and far bright"},
    {"Composite Mode",
     "how depth layers are put together: normal mixes images blurred as a whole by the depth "
     "around each pixel, which leaves a rim of a sharp subject's colour around it; in split each "
     "layer spreads its own light, which lets a bright background over a subject's outline"},
    {"Remove Edge Leak",
     "how abruptly Exposure ends at edges of the depth map, so that highlights there don't bloom "
     "across them; 0 nowhere"},
    {"Detect Edge Threshold",
     "strength of an edge of the depth map from which on Remove Edge Leak counts it"},
};

const Meaning* meaningOf(const ParameterInfo& info) {
    const std::string placed = info.group + "/" + info.label;
    const auto* found =
        std::find_if(std::begin(kMeanings), std::end(kMeanings), [&](const Meaning& meaning) {
            return info.label == meaning.label || placed == meaning.label;
        });
    return found == std::end(kMeanings) ? nullptr : found;
}

}  // namespace

std::string controlHelp(const ParameterInfo& info) {
    const Meaning* meaning = meaningOf(info);
    std::string text = meaning == nullptr ? "" : std::string(meaning->phrase) + "; ";
    text += acceptedValues(info);
    if (meaning != nullptr && *meaning->unit != '\0') text += std::string(" ") + meaning->unit;
    return text + "; default " + defaultText(info);
}

bool isExplained(const ParameterInfo& info) {
    return meaningOf(info) != nullptr;
}

}  // namespace cli
