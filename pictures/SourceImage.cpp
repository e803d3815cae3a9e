// SPDX-License-Identifier: Apache-2.0
#include "pictures/SourceImage.h"

#include <algorithm>

#include "pictures/WorldPixels.h"

namespace pictures {
namespace {

// What the host adds to the rows of the layers it hands out; with the same padding it needs no
// copy.
constexpr int kRowPadding = 32;

}  // namespace

SourceImage::SourceImage(const std::string& text, AlphaRule rule, const std::string& name)
    : file_(text, rule, name), picture_(file_.picture()) {
    picture_.window = enclosing(picture_.display, file_.dataWindow());
    world_ = std::make_shared<headless::World>(picture_.width(), picture_.height(),
                                               headless::formatOfBits(32),
                                               headless::WorldOptions{.rowPadding = kRowPadding});
}

// Makes pixels as the file holds them straight and finite.
void SourceImage::prepare(std::span<float> rgba, const Convert& convert) {
    findings_.repairs += repairPixels(rgba, picture_.associated);
    if (picture_.associated && !keepsAssociated_) makeStraight(rgba);
    if (convert) convert(rgba);
    for (std::size_t i = 0; i < rgba.size(); i += kChannels) {
        const float most = std::max({rgba[i], rgba[i + 1], rgba[i + 2]});
        findings_.largestColour = std::max(findings_.largestColour, static_cast<double>(most));
        if (most > 1.0F) ++findings_.tooBright;
    }
}

// Pixels that the file doesn't hold are black, and opaque in a picture without alpha.
void SourceImage::coverWithBlack(const Window& part) {
    if (picture_.hasAlpha || intersection(part, file_.dataWindow()) == part) return;
    std::vector<float> row(static_cast<std::size_t>(part.width()) * kChannels);
    for (std::size_t i = 3; i < row.size(); i += kChannels) row[i] = 1.0F;
    for (int y = part.top; y < part.bottom; ++y) store({part.left, y, part.right, y + 1}, row);
}

void SourceImage::store(const Window& strip, std::span<const float> rgba) {
    const auto row = static_cast<std::size_t>(strip.width()) * kChannels;
    for (int y = strip.top; y < strip.bottom; ++y) {
        const auto at = static_cast<std::size_t>(y - strip.top) * row;
        storeRow(*world_, strip.left - picture_.window.left, y - picture_.window.top,
                 rgba.subspan(at, row));
    }
}

// Prepares pixels that are in the world already.
void SourceImage::prepareAgain(const Window& part, const Convert& convert) {
    std::vector<float> row(static_cast<std::size_t>(part.width()) * kChannels);
    for (int y = part.top; y < part.bottom; ++y) {
        loadRow(*world_, part.left - picture_.window.left, y - picture_.window.top, row);
        prepare(row, convert);
        store({part.left, y, part.right, y + 1}, row);
    }
}

// Whether any pixel of the file shows that it isn't associated.
bool SourceImage::contradictsItself() {
    bool found = false;
    file_.read(picture_.window, [&](const Window&, std::span<float> rgba) {
        found = found || contradictsAssociation(rgba, picture_.type);
    });
    return found;
}

SourceFindings SourceImage::load(const Window& window, const Convert& convert,
                                 const std::function<void(double)>& progress) {
    findings_ = {};
    const Window part = intersection(window, picture_.window);
    coverWithBlack(part);
    // A part can't tell for the whole, which is then read twice.
    const bool whole = part == picture_.window;
    if (!whole && pixelsDecide(picture_) && contradictsItself()) {
        findings_.takenAsStraight = true;
        picture_.associated = false;
    }
    const bool check = whole && pixelsDecide(picture_);
    const auto take = [&](const Window& strip, std::span<float> rgba) {
        if (!check) {
            prepare(rgba, convert);
        } else if (contradictsAssociation(rgba, picture_.type)) {
            findings_.takenAsStraight = true;
        }
        store(strip, rgba);
    };
    file_.read(part, take, progress);
    if (findings_.takenAsStraight) picture_.associated = false;
    if (check) prepareAgain(part, convert);
    return findings_;
}

}  // namespace pictures
