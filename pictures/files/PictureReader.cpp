// SPDX-License-Identifier: Apache-2.0
#include "pictures/files/PictureReader.h"

#include <algorithm>

#include "pictures/AlphaConvention.h"

namespace pictures {
namespace {

// Pixels that the file doesn't hold.
void fillUncovered(Picture& picture, float colour) {
    const auto width = static_cast<std::size_t>(picture.width());
    picture.pixels.assign(width * static_cast<std::size_t>(picture.height()) * kChannels, colour);
    for (std::size_t i = 0; i < picture.pixelCount(); ++i) {
        picture.pixel(i)[3] = picture.hasAlpha ? 0.0F : 1.0F;
    }
}

void placeStrip(Picture& picture, const Window& strip, std::span<const float> rgba) {
    const std::size_t row = static_cast<std::size_t>(strip.width()) * kChannels;
    for (int y = strip.top; y < strip.bottom; ++y) {
        const std::size_t at = static_cast<std::size_t>(y - picture.window.top) *
                                   static_cast<std::size_t>(picture.width()) +
                               static_cast<std::size_t>(strip.left - picture.window.left);
        std::copy_n(rgba.begin() +
                        static_cast<std::ptrdiff_t>(static_cast<std::size_t>(y - strip.top) * row),
                    row, picture.pixel(at));
    }
}

}  // namespace

Picture readPicture(const std::string& text, Extent extent, float uncovered, AlphaRule rule) {
    PictureFile file(text, rule);
    Picture picture = file.picture();
    picture.window = extent == Extent::kDisplay ? picture.display
                                                : enclosing(picture.display, file.dataWindow());
    fillUncovered(picture, uncovered);
    file.read(picture.window, [&](const Window& strip, std::span<float> rgba) {
        placeStrip(picture, strip, rgba);
    });
    if (pixelsDecide(picture)) {
        picture.associated = !contradictsAssociation(picture.pixels, picture.type);
    }
    return picture;
}

double pixelAspectOf(const Picture& picture) {
    const double aspect = picture.imageSpec.get_float_attribute("PixelAspectRatio", 1.0F);
    if (!(aspect > 0.0)) return 1.0;
    return picture.transposed ? 1.0 / aspect : aspect;
}

}  // namespace pictures
