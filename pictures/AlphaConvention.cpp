// SPDX-License-Identifier: Apache-2.0
#include "pictures/AlphaConvention.h"

#include <algorithm>
#include <array>

namespace pictures {
namespace {

// Formats whose alpha is straight by definition or custom, although the library doesn't mark it.
constexpr std::array<const char*, 9> kStraightFormats{"bmp",  "dpx",      "psd", "png", "webp",
                                                      "heif", "jpeg2000", "gif", "ico"};

// Two of the compressed kinds of DDS hold colours multiplied by alpha.
bool isAssociatedDds(const OIIO::ImageSpec& imageSpec) {
    const std::string kind = imageSpec.get_string_attribute("compression");
    return kind == "DXT2" || kind == "DXT4";
}

}  // namespace

bool isAssociated(const OIIO::ImageSpec& imageSpec, const std::string& format, AlphaRule rule) {
    if (rule != AlphaRule::kByFile) return rule == AlphaRule::kAssociated;
    if (imageSpec.get_int_attribute("oiio:UnassociatedAlpha") != 0) return false;
    if (format == "dds") return isAssociatedDds(imageSpec);
    return std::find(kStraightFormats.begin(), kStraightFormats.end(), format) ==
           kStraightFormats.end();
}

bool pixelsDecide(const Picture& picture) {
    return picture.associated && !picture.alphaGiven && worldBits(picture.type) != 32;
}

bool contradictsAssociation(std::span<const float> rgba, SampleType type) {
    const float step = type == SampleType::kUInt8 ? 1.0F / 255.0F : 1.0F / 65535.0F;
    for (std::size_t i = 0; i + 3 < rgba.size(); i += kChannels) {
        const float most = std::max({rgba[i], rgba[i + 1], rgba[i + 2]});
        if (most > rgba[i + 3] + 1.5F * step) return true;
    }
    return false;
}

}  // namespace pictures
