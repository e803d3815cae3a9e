// SPDX-License-Identifier: Apache-2.0
#include "inspect/Panels.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdio>

namespace inspect {
namespace {

using namespace colours;

constexpr int kTitleHeight = 34;
constexpr int kTitleSize = 17;
constexpr int kTextSize = 14;
constexpr int kBarHeight = 10;
constexpr int kScaleHeight = 46;
constexpr int kHistogramHeight = 240;
constexpr int kCaptionHeight = 48;
// Below this radius, in pixels, a picture looks sharp.
constexpr double kSharpRadius = 1.0;

std::string pixelText(double radius) {
    char text[32];
    std::snprintf(text, sizeof text, radius < 9.95 ? "%.1f" : "%.0f", radius);
    return text;
}

Canvas panel(const std::string& title, int width, int height) {
    Canvas canvas(width, kTitleHeight + height);
    canvas.text(0, kTitleHeight - 13, title, {.size = kTitleSize});
    return canvas;
}

float luma(const Colour& colour) {
    return 0.2126F * colour.red + 0.7152F * colour.green + 0.0722F * colour.blue;
}

std::size_t indexOf(int width, int x, int y) {
    return static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
           static_cast<std::size_t>(x);
}

struct Place {
    double x;
    double y;
};

// The point `i` of taps x taps evenly spaced ones in pixel (x, y).
Place tapOf(int x, int y, int i, int taps) {
    const int row = i / taps;
    const int column = i % taps;
    return {x + (column + 0.5) / taps, y + (row + 0.5) / taps};
}

// The pixels of a spot within a square of `shown` pixels, enlarged or reduced to `size`.
void drawSpot(Canvas& canvas, const Spot& spot, int shown, int left, int top, int size) {
    const float most = std::max(*std::ranges::max_element(spot.light), 1e-20F);
    const double scale = static_cast<double>(shown) / size;
    // Enough points of a pixel of the drawing to see each pixel of the spot.
    const int taps = std::max(1, static_cast<int>(std::ceil(scale * 2.0)));
    const double first = (spot.size - shown) / 2.0;
    const auto lightAt = [&](double x, double y) {
        const int column = static_cast<int>(std::floor(first + x * scale));
        const int row = static_cast<int>(std::floor(first + y * scale));
        if (column < 0 || row < 0 || column >= spot.size || row >= spot.size) return 0.0F;
        return spot.light[indexOf(spot.size, column, row)] / most;
    };
    for (int y = 0; y < size; ++y) {
        for (int x = 0; x < size; ++x) {
            float sum = 0.0F;
            for (int i = 0; i < taps * taps; ++i) {
                const Place tap = tapOf(x, y, i, taps);
                sum += lightAt(tap.x, tap.y);
            }
            const float light = std::max(sum / static_cast<float>(taps * taps), 0.0F);
            // As a display shows light.
            const float shade = std::pow(light, 1.0F / 2.2F);
            canvas.set(left + x, top + y, {shade, shade, shade});
        }
    }
}

// The side of a centred square, odd, that holds all the light of a spot but traces.
int extentOf(const Spot& spot) {
    const float most = *std::ranges::max_element(spot.light);
    const int middle = spot.size / 2;
    int extent = 0;
    for (int i = 0; i < spot.size * spot.size; ++i) {
        if (spot.light[static_cast<std::size_t>(i)] < 0.004F * most) continue;
        extent =
            std::max({extent, std::abs(i % spot.size - middle), std::abs(i / spot.size - middle)});
    }
    return 2 * extent + 1;
}

// A view reduced or enlarged to the width of a panel.
struct Sampled {
    int width;
    int height;
    std::vector<Colour> colours;
    std::vector<float> nearness;
    std::vector<float> edges;
};

// Colours are averaged; depths are not, since there is nothing between two things.
Sampled sample(const View& view, int width) {
    const double scale = static_cast<double>(view.width) / width;
    const double rows = scale / view.pixelAspect;
    Sampled to{width, std::max(1, static_cast<int>(std::lround(view.height / rows))), {}, {}, {}};
    const auto index = [&](double x, double y) {
        const int column = std::clamp(static_cast<int>(x * scale), 0, view.width - 1);
        const int row = std::clamp(static_cast<int>(y * rows), 0, view.height - 1);
        return indexOf(view.width, column, row);
    };
    const int taps = std::clamp(static_cast<int>(std::ceil(scale)), 1, 8);
    for (int y = 0; y < to.height; ++y) {
        for (int x = 0; x < width; ++x) {
            Colour sum;
            float edge = 0.0F;
            for (int i = 0; i < taps * taps; ++i) {
                const Place tap = tapOf(x, y, i, taps);
                const std::size_t at = index(tap.x, tap.y);
                const Colour& colour = view.colours[at];
                sum = {sum.red + colour.red, sum.green + colour.green, sum.blue + colour.blue};
                if (!view.edges.empty()) edge = std::max(edge, view.edges[at]);
            }
            const float share = 1.0F / static_cast<float>(taps * taps);
            to.colours.push_back({sum.red * share, sum.green * share, sum.blue * share});
            to.nearness.push_back(view.nearness[index(x + 0.5, y + 0.5)]);
            if (!view.edges.empty()) to.edges.push_back(edge);
        }
    }
    return to;
}

// A bar of colours with five labels below.
void drawScale(Canvas& canvas, int top, const std::function<Colour(double)>& colour,
               const std::function<std::string(double)>& label) {
    const int last = canvas.width() - 1;
    for (int x = 0; x <= last; ++x) {
        canvas.fill(x, top, 1, kBarHeight, colour(static_cast<double>(x) / last));
    }
    constexpr int kLabels = 4;
    for (int i = 0; i <= kLabels; ++i) {
        const int x = i * last / kLabels;
        const Align align = i == 0 ? Align::kLeft : (i == kLabels ? Align::kRight : Align::kCentre);
        canvas.fill(x, top + kBarHeight, 1, 4, kLine);
        canvas.text(x, top + kBarHeight + 20, label(static_cast<double>(i) / kLabels),
                    {.colour = kFaint, .size = kTextSize, .align = align});
    }
}

// Whether a pixel of the zone of focus has a neighbour outside.
bool onRim(const std::vector<bool>& zone, int width, int height, int x, int y) {
    const auto in = [&](int column, int row) {
        column = std::clamp(column, 0, width - 1);
        row = std::clamp(row, 0, height - 1);
        return zone[indexOf(width, column, row)];
    };
    return in(x, y) && !(in(x - 1, y) && in(x + 1, y) && in(x, y - 1) && in(x, y + 1));
}

}  // namespace

Canvas aperturePanel(const Spot& aperture, int width) {
    Canvas canvas = panel("Aperture", width, width + kCaptionHeight);
    const int shown = extentOf(aperture) + 2;
    drawSpot(canvas, aperture, shown, 0, kTitleHeight, width);
    canvas.text(width / 2, kTitleHeight + width + 20,
                "radius " + pixelText(aperture.radius) + " px",
                {.size = kTextSize, .align = Align::kCentre});
    return canvas;
}

Canvas spotsPanel(std::span<const Spot> spots, const DepthName& name, int width) {
    constexpr int kSpace = 6;
    const int count = static_cast<int>(spots.size());
    const int cell = (width + kSpace) / count;
    const int size = cell - kSpace;
    Canvas canvas = panel("A point of light by depth", width, size + kCaptionHeight);
    int shown = 3;
    for (const Spot& spot : spots) shown = std::max(shown, extentOf(spot) + 2);
    for (int i = 0; i < count; ++i) {
        const Spot& spot = spots[static_cast<std::size_t>(i)];
        const int left = i * cell;
        drawSpot(canvas, spot, shown, left, kTitleHeight, size);
        const int below = kTitleHeight + size;
        const Colour& colour = spot.radius < kSharpRadius ? kFocus : kText;
        canvas.text(left + size / 2, below + 20, name(spot.nearness),
                    {.colour = colour, .size = kTextSize, .align = Align::kCentre});
        canvas.text(left + size / 2, below + 40, pixelText(spot.radius) + " px",
                    {.colour = kFaint, .size = kTextSize - 1, .align = Align::kCentre});
    }
    return canvas;
}

Canvas radiusPanel(const View& view, const DepthFacts& facts, int width) {
    const Sampled picture = sample(view, width);
    const double largest = std::max(facts.radii.largest(), 1e-6);
    Canvas canvas = panel("Radius of the blur in pixels; outlined: below 1 pixel", width,
                          picture.height + 8 + kScaleHeight);
    std::vector<bool> zone;
    zone.reserve(picture.nearness.size());
    for (const float nearness : picture.nearness) {
        zone.push_back(facts.radii.at(static_cast<double>(nearness)) < kSharpRadius);
    }
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < width; ++x) {
            const std::size_t i = indexOf(width, x, y);
            constexpr float kDarkened = 0.75F;
            const Colour dark = mix({}, picture.colours[i], kDarkened);
            const double radius = facts.radii.at(static_cast<double>(picture.nearness[i]));
            const Colour tint = mix({}, falseColour(radius / largest),
                                    0.55F + 0.45F * std::min(luma(picture.colours[i]), 1.0F));
            Colour colour = zone[i] ? dark : mix(dark, tint, 0.82F);
            if (onRim(zone, width, picture.height, x, y)) colour = kFocus;
            canvas.set(x, kTitleHeight + y, colour);
        }
    }
    drawScale(canvas, kTitleHeight + picture.height + 8, falseColour,
              [&](double share) { return pixelText(share * largest); });
    return canvas;
}

Canvas depthPanel(const View& view, const DepthFacts& facts, int width) {
    const Sampled picture = sample(view, width);
    Canvas canvas = panel(picture.edges.empty() ? "Depth as the effect reads it"
                                                : "Depth as the effect reads it, with its edges",
                          width, picture.height + 8 + kScaleHeight);
    const auto grey = [](double nearness) {
        const auto shade = static_cast<float>(nearness);
        return Colour{shade, shade, shade};
    };
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < width; ++x) {
            const std::size_t i = indexOf(width, x, y);
            Colour colour = grey(static_cast<double>(picture.nearness[i]));
            if (!picture.edges.empty()) colour = mix(colour, kFocus, picture.edges[i]);
            canvas.set(x, kTitleHeight + y, colour);
        }
    }
    drawScale(canvas, kTitleHeight + picture.height + 8, grey, facts.name);
    return canvas;
}

Canvas histogramPanel(const View& view, const DepthFacts& facts, int width) {
    constexpr int kBar = 4;  // pixels
    const double largest = std::max(facts.radii.largest(), 1e-6);
    const std::string title = "How much lies at which depth; line: radius of the blur, 0 to " +
                              pixelText(largest) + " pixels" +
                              (facts.layers.empty() ? "" : "; marks: layers of depth");
    Canvas canvas = panel(title, width, kHistogramHeight + kScaleHeight);
    const int bars = width / kBar;
    std::vector<double> counts(static_cast<std::size_t>(bars), 0.0);
    for (const float nearness : view.nearness) {
        const int bar =
            std::clamp(static_cast<int>(nearness * static_cast<float>(bars)), 0, bars - 1);
        counts[static_cast<std::size_t>(bar)] += 1.0;
    }
    const double most = std::max(*std::ranges::max_element(counts), 1.0);
    const int bottom = kTitleHeight + kHistogramHeight;
    canvas.fill(0, kTitleHeight, width, kHistogramHeight, kShade);
    const auto columnOf = [&](double nearness) {
        return static_cast<int>(std::lround(nearness * (bars * kBar - 1)));
    };
    // Roots show the rare depths beside a wall or a sky.
    for (int bar = 0; bar < bars; ++bar) {
        const int height = static_cast<int>(std::lround(
            std::sqrt(counts[static_cast<std::size_t>(bar)] / most) * (kHistogramHeight - 24)));
        const double radius = facts.radii.at((bar + 0.5) / bars);
        canvas.fill(bar * kBar, bottom - height, kBar - 1, height, falseColour(radius / largest));
    }
    const auto rowOf = [&](double nearness) {
        return bottom - 1 - facts.radii.at(nearness) / largest * (kHistogramHeight - 24);
    };
    for (int x = 0; x + 2 < bars * kBar; x += 2) {
        const double last = bars * kBar - 1.0;
        canvas.line(x, rowOf(x / last), x + 2, rowOf((x + 2) / last), kText);
    }
    constexpr int kMark = 4;
    for (const double layer : facts.layers) {
        const auto row = static_cast<int>(std::lround(rowOf(layer)));
        canvas.fill(columnOf(layer) - kMark, row - kMark, 2 * kMark + 1, 2 * kMark + 1, kPaper);
        canvas.frame(columnOf(layer) - kMark + 1, row - kMark + 1, 2 * kMark - 1, 2 * kMark - 1,
                     kText);
    }
    const double focus = facts.radii.sharpest();
    const int column = columnOf(focus);
    canvas.fill(column - 1, kTitleHeight, 2, kHistogramHeight, kFocus);
    const bool right = focus > 0.8;
    canvas.text(
        column + (right ? -8 : 8), kTitleHeight + 18, "focus " + facts.name(focus),
        {.colour = kFocus, .size = kTextSize, .align = right ? Align::kRight : Align::kLeft});
    drawScale(
        canvas, bottom, [](double) { return kShade; }, facts.name);
    return canvas;
}

Canvas sheet(std::span<const std::vector<Canvas>> rows) {
    int width = 0;
    int height = kPanelGap;
    for (const auto& row : rows) {
        int across = kPanelGap;
        int down = 0;
        for (const Canvas& each : row) {
            across += each.width() + kPanelGap;
            down = std::max(down, each.height());
        }
        width = std::max(width, across);
        height += down + kPanelGap / 2;
    }
    Canvas whole(width, height);
    int top = kPanelGap;
    for (const auto& row : rows) {
        int left = kPanelGap;
        int down = 0;
        for (const Canvas& each : row) {
            whole.draw(each, left, top);
            left += each.width() + kPanelGap;
            down = std::max(down, each.height());
        }
        top += down + kPanelGap / 2;
    }
    return whole;
}

}  // namespace inspect
