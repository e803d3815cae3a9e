// SPDX-License-Identifier: Apache-2.0
#pragma once
// The image to blur, read straight into the host's memory.

#include <functional>
#include <memory>
#include <span>

#include "headless/World.h"
#include "pictures/files/PictureFile.h"

namespace pictures {

// What was found while the pixels were read.
struct SourceFindings {
    Repairs repairs;
    bool takenAsStraight = false;  // marked as associated, but colours exceed alpha
    std::size_t tooBright = 0;     // pixels with a straight colour above 1
    double largestColour = 0.0;    // of the straight colours
};

// An image whose layer, the union of its display and its data window, is a float world with
// straight colours. Only what load() reads takes memory.
class SourceImage {
public:
    // Opens FILE or FILE:LAYER; `name` is for messages. Throws what PictureFile's constructor
    // throws.
    SourceImage(const std::string& text, AlphaRule rule, const std::string& name);

    const PictureFile& file() const { return file_; }
    // The description; its window is the layer, and it has no pixels.
    const Picture& picture() const { return picture_; }
    // Has one pixel for each of the layer's, empty until they are loaded.
    const std::shared_ptr<headless::World>& world() const { return world_; }

    // A conversion of straight pixels in place, red, green, blue, alpha each.
    using Convert = std::function<void(std::span<float> rgba)>;
    // Lets load() leave associated colours as they are, for a frame that is only copied.
    void keepAssociated() { keepsAssociated_ = true; }
    bool keepsAssociated() const { return keepsAssociated_; }

    // Reads the part of the layer inside `window`, repairs values that aren't finite, divides
    // associated colours by alpha and applies `convert`, if any. Throws what PictureFile::read
    // throws.
    SourceFindings load(const Window& window, const Convert& convert,
                        const std::function<void(double)>& progress);
    // Gives up the world, so that its memory is free once the frame is rendered.
    void release() { world_.reset(); }

private:
    void prepare(std::span<float> rgba, const Convert& convert);
    void prepareAgain(const Window& part, const Convert& convert);
    bool contradictsItself();
    void coverWithBlack(const Window& part);
    void store(const Window& strip, std::span<const float> rgba);

    PictureFile file_;
    Picture picture_;
    std::shared_ptr<headless::World> world_;
    SourceFindings findings_;
    bool keepsAssociated_ = false;
};

}  // namespace pictures
