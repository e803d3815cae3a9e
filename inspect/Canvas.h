// SPDX-License-Identifier: Apache-2.0
#pragma once
// Drawing of diagrams.

#include <OpenImageIO/imagebuf.h>

#include <filesystem>
#include <string>
#include <vector>

namespace inspect {

// Red, green and blue as displayed, 0 to 1.
struct Colour {
    float red = 0.0F;
    float green = 0.0F;
    float blue = 0.0F;
};

Colour mix(const Colour& a, const Colour& b, float share);

namespace colours {
inline constexpr Colour kPaper{0.095F, 0.1F, 0.11F};
inline constexpr Colour kShade{0.135F, 0.14F, 0.152F};  // of empty areas
inline constexpr Colour kLine{0.34F, 0.35F, 0.37F};
inline constexpr Colour kText{0.88F, 0.88F, 0.87F};
inline constexpr Colour kFaint{0.58F, 0.59F, 0.61F};
inline constexpr Colour kFocus{0.98F, 0.68F, 0.3F};
}  // namespace colours

// For amounts from 0 to 1: dark violet over green to yellow, as bright as they are large.
Colour falseColour(double amount);

enum class Align { kLeft, kCentre, kRight };

struct TextStyle {
    Colour colour = colours::kText;
    int size = 15;  // pixels
    Align align = Align::kLeft;
};

// An image with 8 bits per channel to be. What lies outside isn't drawn.
class Canvas {
public:
    Canvas(int width, int height, const Colour& paper = colours::kPaper);

    int width() const { return image_.spec().width; }
    int height() const { return image_.spec().height; }

    Colour get(int x, int y) const;
    void set(int x, int y, const Colour& colour);
    void fill(int x, int y, int width, int height, const Colour& colour);
    void frame(int x, int y, int width, int height, const Colour& colour);
    // A slanted line, a pixel and a half thick.
    void line(double x0, double y0, double x1, double y1, const Colour& colour);
    void draw(const Canvas& picture, int x, int y);
    // `y` is the baseline. Draws nothing without a font.
    void text(int x, int y, const std::string& text, const TextStyle& style = {});
    // Whether there is a font for text().
    static bool hasFont();

    // Writes to `path` in the format of its suffix, completely or not at all. Throws what
    // pictures::writeChannels throws.
    void write(const std::filesystem::path& path) const;

private:
    OIIO::ImageBuf image_;
};

}  // namespace inspect
