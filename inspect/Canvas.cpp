// SPDX-License-Identifier: Apache-2.0
#include "inspect/Canvas.h"

#include <OpenImageIO/imagebufalgo.h>

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "pictures/files/PictureWriter.h"

namespace inspect {
namespace {

constexpr const char* kFont = "DejaVuSans";

OIIO::ImageBufAlgo::TextAlignX libraryAlign(Align align) {
    using OIIO::ImageBufAlgo::TextAlignX;
    if (align == Align::kLeft) return TextAlignX::Left;
    return align == Align::kCentre ? TextAlignX::Center : TextAlignX::Right;
}

}  // namespace

Colour mix(const Colour& a, const Colour& b, float share) {
    return {std::lerp(a.red, b.red, share), std::lerp(a.green, b.green, share),
            std::lerp(a.blue, b.blue, share)};
}

Colour falseColour(double amount) {
    static constexpr Colour kStops[] = {
        {0.27F, 0.19F, 0.42F}, {0.25F, 0.31F, 0.55F}, {0.18F, 0.40F, 0.55F}, {0.14F, 0.55F, 0.55F},
        {0.27F, 0.68F, 0.47F}, {0.60F, 0.78F, 0.36F}, {0.96F, 0.86F, 0.38F}};
    constexpr int kSteps = static_cast<int>(std::size(kStops)) - 1;
    const double place = std::clamp(amount, 0.0, 1.0) * kSteps;
    const int step = std::min(static_cast<int>(place), kSteps - 1);
    return mix(kStops[step], kStops[step + 1], static_cast<float>(place - step));
}

Canvas::Canvas(int width, int height, const Colour& paper)
    : image_(OIIO::ImageSpec(width, height, 3, OIIO::TypeDesc::FLOAT)) {
    fill(0, 0, width, height, paper);
}

Colour Canvas::get(int x, int y) const {
    float rgb[3];
    image_.getpixel(x, y, rgb, 3);
    return {rgb[0], rgb[1], rgb[2]};
}

void Canvas::set(int x, int y, const Colour& colour) {
    image_.setpixel(x, y, {colour.red, colour.green, colour.blue});
}

void Canvas::fill(int x, int y, int width, int height, const Colour& colour) {
    for (int row = y; row < y + height; ++row) {
        for (int column = x; column < x + width; ++column) set(column, row, colour);
    }
}

void Canvas::frame(int x, int y, int width, int height, const Colour& colour) {
    fill(x, y, width, 1, colour);
    fill(x, y + height - 1, width, 1, colour);
    fill(x, y, 1, height, colour);
    fill(x + width - 1, y, 1, height, colour);
}

void Canvas::line(double x0, double y0, double x1, double y1, const Colour& colour) {
    constexpr double kHalf = 0.75;
    const double length = std::max(std::hypot(x1 - x0, y1 - y0), 1e-6);
    const double ux = (x1 - x0) / length;
    const double uy = (y1 - y0) / length;
    for (int y = static_cast<int>(std::min(y0, y1)) - 2; y <= std::max(y0, y1) + 2; ++y) {
        for (int x = static_cast<int>(std::min(x0, x1)) - 2; x <= std::max(x0, x1) + 2; ++x) {
            const double along = std::clamp((x - x0) * ux + (y - y0) * uy, 0.0, length);
            const double away = std::hypot(x - x0 - along * ux, y - y0 - along * uy);
            const double share = std::clamp(kHalf + 0.5 - away, 0.0, 1.0);
            if (share > 0.0) set(x, y, mix(get(x, y), colour, static_cast<float>(share)));
        }
    }
}

void Canvas::draw(const Canvas& picture, int x, int y) {
    for (int row = 0; row < picture.height(); ++row) {
        for (int column = 0; column < picture.width(); ++column) {
            set(x + column, y + row, picture.get(column, row));
        }
    }
}

void Canvas::text(int x, int y, const std::string& text, const TextStyle& style) {
    if (!hasFont()) return;
    const float rgb[] = {style.colour.red, style.colour.green, style.colour.blue};
    OIIO::ImageBufAlgo::render_text(image_, x, y, text, style.size, kFont, rgb,
                                    libraryAlign(style.align));
}

bool Canvas::hasFont() {
    static const bool kFound = OIIO::ImageBufAlgo::text_size("0", 15, kFont).defined();
    return kFound;
}

void Canvas::write(const std::filesystem::path& path) const {
    OIIO::ImageSpec spec(width(), height(), 3, OIIO::TypeDesc::UINT8);
    // Otherwise encoders write the current time, and no two runs produce the same file.
    spec.attribute("DateTime", "2000:01:01 00:00:00");
    std::vector<float> values(spec.image_pixels() * 3);
    image_.get_pixels(OIIO::ROI::All(), OIIO::TypeDesc::FLOAT, values.data());
    pictures::writeChannels(path, spec, values);
}

}  // namespace inspect
