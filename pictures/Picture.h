// SPDX-License-Identifier: Apache-2.0
#pragma once
// A picture in memory, as its file holds it.

#include <OpenImageIO/imageio.h>

#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include "pictures/colour/ColourSpace.h"
#include "platform/Rectangles.h"

namespace pictures {

// The type of a channel value in a file.
enum class SampleType { kUInt8, kUInt16, kHalf, kFloat };

// "8 bits", "16 bits", "half" or "float"; for messages.
const char* sampleTypeName(SampleType type);
// The bits of a world that holds such values: 8, 16, or 32 for half and float.
int worldBits(SampleType type);

// The pixels from left to right - 1 and from top to bottom - 1.
struct Window {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;

    int width() const { return right - left; }
    int height() const { return bottom - top; }
    bool empty() const { return isEmpty(*this); }
    bool operator==(const Window&) const = default;
};

// The smallest window that contains both; an empty one is ignored.
Window enclosing(const Window& a, const Window& b);

inline constexpr std::size_t kChannels = 4;  // red, green, blue, alpha

struct Picture {
    std::string name;    // as the user gave it, for messages
    std::string format;  // the image library's name of the file's format
    Window window;       // what `pixels` covers, in the file's coordinates
    Window display;      // the file's display window
    bool grey = false;
    bool hasAlpha = false;
    bool associated = false;  // colour is multiplied by alpha
    bool alphaGiven = false;  // the user said whether it is
    bool turned = false;      // the file's pixels are stored in another orientation
    bool transposed = false;  // its rows are this picture's columns
    SampleType type = SampleType::kUInt8;
    std::string greyName;              // name of the only colour channel of a grey picture
    std::vector<std::string> leftOut;  // layers and channels of the file that were not read
    OIIO::ImageSpec imageSpec;         // of the part read: metadata
    ColourSpace colour;                // as the file says or its format implies
    // Red, green, blue, alpha of each pixel, row by row. Integers are scaled to 0..1; grey is in
    // all three colours; alpha is 1 if the file has none.
    std::vector<float> pixels;

    int width() const { return window.width(); }
    int height() const { return window.height(); }
    std::size_t pixelCount() const { return pixels.size() / kChannels; }
    float* pixel(std::size_t i) { return pixels.data() + i * kChannels; }
    const float* pixel(std::size_t i) const { return pixels.data() + i * kChannels; }
};

// What repairPixels() found.
struct Repairs {
    std::size_t notFinite = 0;          // values that were NaN or infinite, replaced
    std::size_t lightWithoutAlpha = 0;  // pixels with associated colour but alpha 0, kept

    Repairs& operator+=(const Repairs& other);
};

// Replaces NaN by 0 and infinity by the largest half value of its sign in pixels of red, green,
// blue and alpha, and counts what it found.
Repairs repairPixels(std::span<float> rgba, bool associated);
// The same for all pixels of a picture.
Repairs repair(Picture& picture);

}  // namespace pictures
