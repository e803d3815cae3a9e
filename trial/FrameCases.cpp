// SPDX-License-Identifier: Apache-2.0
#include "trial/FrameCases.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "trial/Cases.h"
#include "trial/Pictures.h"

namespace trial {

namespace {

// Blocks have 64 x 64 pixels with this radius, so a frame has several tiles.
constexpr double kRadius = 5.5;

struct Size {
    int width;
    int height;
};

Size pictureSize(const Settings& settings) {
    return settings.small ? Size{64, 30} : Size{150, 90};
}

std::string twoDigits(int number) {
    char text[16];
    std::snprintf(text, sizeof text, "%02d", number);
    return text;
}

std::vector<FrameCase> formatsLayersAndModes(Trial& trial) {
    std::vector<FrameCase> cases;
    for (const int bits : {8, 16, 32}) {
        for (const int layers : trial.settings().layers) {
            for (const char* mode : {"Normal", "Split"}) {
                const std::string name = twoDigits(bits) + "bits-" + twoDigits(layers) + "layers-";
                FrameCase made = nightFrame(trial, name + mode, bits, layers);
                made.parameters.setChoice(made.parameters.find("Composite Mode"), mode);
                cases.push_back(std::move(made));
            }
        }
    }
    return cases;
}

struct Setting {
    const char* label;
    double value;
};

FrameCase nightFrameWith(Trial& trial, const std::string& name, int bits, int layers,
                         std::initializer_list<Setting> settings) {
    FrameCase made = nightFrame(trial, name, bits, layers);
    for (const Setting& setting : settings) made.parameters.set(setting.label, setting.value);
    return made;
}

std::vector<FrameCase> apertures(Trial& trial) {
    std::vector<FrameCase> cases{
        nightFrameWith(trial, "star", 32, 1,
                       {{"Vertices", 5}, {"Roundness", -0.6}, {"Rotation", 20}}),
        nightFrameWith(trial, "ring", 32, 1, {{"Roundness", 1}, {"Concentration", -0.9}}),
        nightFrameWith(trial, "squeezed", 16, 1, {{"Vertices", 3}, {"Deform", 0.5}}),
        nightFrameWith(trial, "dark-exposure", 16, 1, {{"Exposure", -10}, {"Threshold", 0.3}})};
    for (const int bits : {8, 32}) {
        for (const char* channel : {"Alpha", "(R+G+B)/3"}) {
            FrameCase made = nightFrame(
                trial, "custom-shape-" + twoDigits(bits) + (*channel == 'A' ? "-alpha" : "-colour"),
                32, bits == 8 ? 1 : usualLayers(trial.settings()));
            headless::ParameterSet& parameters = made.parameters;
            parameters.setLayer(parameters.find("Custom Blur Shape"), shapePicture(20, bits));
            parameters.setChoice(parameters.find("Custom Layer Channel"), channel);
            cases.push_back(std::move(made));
        }
    }
    return cases;
}

std::vector<FrameCase> depths(Trial& trial) {
    const int layers = usualLayers(trial.settings());
    if (layers == 1) return {};
    std::vector<FrameCase> cases{
        nightFrameWith(trial, "edge-leak-normal", 8, layers,
                       {{"Remove Edge Leak", 1}, {"Detect Edge Threshold", 0.02}}),
        nightFrameWith(
            trial, "edge-leak-split", 32, layers,
            {{"Remove Edge Leak", 0.7}, {"Detect Edge Threshold", 0.1}, {"Composite Mode", 2}}),
        nightFrameWith(trial, "profile", 32, layers,
                       {{"Profile", -0.5}, {"Invert Depth Map", 1}, {"Focal Distance", 0.4}})};

    FrameCase points =
        nightFrameWith(trial, "focus-points", 32, layers,
                       {{"Use Focus Point", 1}, {"Focus Point 0-1 Interpolation", 0.35}});
    points.parameters.setPointPercent(points.parameters.find("Focus Point 0"), 20, 30);
    points.parameters.setPointPercent(points.parameters.find("Focus Point 1"), 70, 80);
    cases.push_back(std::move(points));

    FrameCase stretched = nightFrame(trial, "stretched-map", 16, layers);
    stretched.parameters.setLayer(stretched.parameters.find("Depth Map/Layer"),
                                  depthPicture(40, 40, 8));
    stretched.parameters.setChoice(stretched.parameters.find("Placement"), "Stretch Map");
    cases.push_back(std::move(stretched));
    return cases;
}

std::vector<FrameCase> geometries(Trial& trial) {
    const auto [width, height] = pictureSize(trial.settings());
    const int layers = usualLayers(trial.settings());

    FrameCase half = nightFrame(trial, "downsampled", 32, layers);
    half.request.downsampleX = half.request.downsampleY = {1, 2};
    FrameCase grown = nightFrameWith(trial, "overscan", 32, 1, {{"Edge Behavior", 0}});
    grown.request.rect = PF_LRect{-10, -10, width + 10, height + 10};
    FrameCase region = nightFrame(trial, "region", 8, layers);
    region.request.rect = PF_LRect{width / 2, 5, width - 5, height / 2};
    FrameCase wide = nightFrame(trial, "pixel-aspect", 16, 1);
    wide.request.pixelAspect = {2, 1};
    FrameCase copy = nightFrameWith(trial, "copy", 16, 1, {{"Blur Radius", 0}});
    copy.blurs = false;
    return {half, grown, region, wide, copy};
}

// Large blurs, whose blocks need longer transforms.
std::vector<FrameCase> wideBlurs(Trial& trial) {
    if (trial.settings().small) return {};
    const int layers = usualLayers(trial.settings());
    return {nightFrameWith(trial, "radius-25", 32, layers, {{"Blur Radius", 25}}),
            nightFrameWith(trial, "radius-100", 16, 1, {{"Blur Radius", 100}})};
}

// Whether the values can come from a blur: means are between the smallest and the largest value of
// the input. The pattern of a pixel that wasn't written is NaN.
bool isMean(const Frame& frame) {
    constexpr double kBrightest = 8 * (1 + 1e-6);
    for (std::size_t i = 0; i < frame.values(); ++i) {
        const double value = frame.value(i);
        const bool isAlpha = i % kChannels == 0;
        const bool faint = frame.value(i - i % kChannels) < 1e-6;
        const double top = isAlpha ? 1 + 1e-6 : kBrightest;
        if (std::isnan(value)) return false;
        if ((isAlpha || !faint) && !(value >= -1e-6 && value <= top)) return false;
    }
    return true;
}

void tryFrame(Trial& trial, const FrameCase& made) {
    const headless::FrameResult result = made.render(trial.effect());
    trial.check(result.status == PF_Err_NONE, "code " + std::to_string(result.status));
    trial.check(result.rendered && !result.outputUntouched, "nothing was rendered");
    if (!result.output) return;
    const Frame frame = frameOf(*result.output);
    trial.keep(made.name, frame);
    if (frame.bits == 32) trial.check(isMean(frame), "a value is outside the input's range");
    const bool same = frame.pixels == frameOf(*made.request.input).pixels;
    trial.check(same != made.blurs,
                same ? "nothing was blurred" : "the copy differs from the input");
}

}  // namespace

int usualLayers(const Settings& settings) {
    constexpr int kUsual = 6;
    const std::vector<int>& all = settings.layers;
    const bool has = std::find(all.begin(), all.end(), kUsual) != all.end();
    return has ? kUsual : *std::max_element(all.begin(), all.end());
}

FrameCase nightFrame(Trial& trial, const std::string& name, int bits, int layers) {
    const auto [width, height] = pictureSize(trial.settings());
    FrameCase made{name, trial.effect().parameters(), {}};
    made.request.input = nightPicture(width, height, bits);
    made.request.bits = bits;
    made.parameters.set("Blur Radius", kRadius);
    // The curve is exponential: next to lights of 8, double precision would lose everything else.
    made.parameters.set("Exposure", bits == 32 ? 0.5 : 10);
    if (layers > 1) {
        made.parameters.setLayer(made.parameters.find("Depth Map/Layer"),
                                 depthPicture(width, height, 32));
        made.parameters.setChoice(made.parameters.find("Depth Map/Channel"), "Red");
        made.parameters.set("Resolution", layers);
    }
    return made;
}

void tryFrames(Trial& trial) {
    for (const auto& group : {formatsLayersAndModes, apertures, depths, geometries, wideBlurs}) {
        for (const FrameCase& made : group(trial)) {
            trial.run(made.name, [&] { tryFrame(trial, made); });
        }
    }
}

}  // namespace trial
