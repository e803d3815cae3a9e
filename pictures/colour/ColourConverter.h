// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <OpenImageIO/color.h>

#include <memory>
#include <span>
#include <string>

#include "pictures/colour/ColourConfig.h"
#include "pictures/colour/CurveTable.h"

namespace pictures {

// Where the values of a pixel of four floats are: red, green and blue follow each other.
struct PixelOrder {
    std::size_t red = 0;
    std::size_t alpha = 3;
};
inline constexpr PixelOrder kRedFirst{0, 3};
inline constexpr PixelOrder kAlphaFirst{1, 0};

// Converts colours from one space to another. Copies are cheap and may be used on several threads.
class ColourConverter {
public:
    // Changes nothing.
    ColourConverter() = default;
    // Between two names that `config` knows. A name that an OpenColorIO configuration has is that
    // configuration's space, any other the transfer function of that name; where they meet,
    // "linear" is the configuration's role scene_linear. Throws Failure if there is no such
    // conversion.
    ColourConverter(const std::string& from, const std::string& to, const ColourConfig& config);

    bool identity() const { return !before_ && !processor_ && !after_; }
    // Whether only the transfer function changes, not the meaning of red, green and blue.
    bool keepsPrimaries() const { return !processor_; }

    // Converts the colours of whole pixels and keeps alpha. Associated colours are divided by alpha
    // before, and multiplied after; where alpha is 0 they are converted as they are.
    void apply(std::span<float> pixels, PixelOrder order = kRedFirst,
               bool associated = false) const;

private:
    void applyStraight(std::span<float> pixels, PixelOrder order) const;

    std::shared_ptr<const CurveTable> before_;
    OIIO::ColorProcessorHandle processor_;
    std::shared_ptr<const CurveTable> after_;
};

}  // namespace pictures
