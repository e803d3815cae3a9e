// SPDX-License-Identifier: Apache-2.0
#pragma once
// Picture files, opened and read in strips.

#include <array>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "pictures/AlphaConvention.h"
#include "pictures/Picture.h"
#include "pictures/files/Orientation.h"
#include "pictures/files/PictureLayers.h"

namespace pictures {

// A file and, where the text names one, a layer or channel in it.
struct SourceName {
    std::filesystem::path file;
    std::string layer;
};

// Splits FILE:LAYER. If the whole text names an existing file, it is that file.
SourceName parseSourceName(const std::string& text);

// The channels of all parts of a file, with their layers. Throws Failure if the file is missing or
// no image.
std::vector<ChannelPlace> channelsOf(const std::filesystem::path& file);

// An open picture file: everything about it is known except for its pixels. Where the file says
// that the picture is to be turned, all windows and pixels are those of the upright picture.
class PictureFile {
public:
    // Opens FILE or FILE:LAYER; `name` is for messages, the text if empty. Throws Failure if the
    // file is missing, unreadable, no image, deep, empty or too large.
    explicit PictureFile(const std::string& text, AlphaRule rule = AlphaRule::kByFile,
                         const std::string& name = {});

    // The picture without pixels; its window is empty.
    const Picture& picture() const { return picture_; }
    // The pixels that the file holds.
    const Window& dataWindow() const { return data_; }
    const std::filesystem::path& file() const { return file_; }
    // The channels that aren't part of the picture.
    const std::vector<ChannelPlace>& otherChannels() const { return choice_.others; }

    // Takes the pixels of a strip, row by row: red, green, blue, alpha as the file holds them. They
    // may be changed in place. It is called on a thread of its own, one call after the other, while
    // the next strip is read.
    using Take = std::function<void(const Window& strip, std::span<float> rgba)>;
    // Reads the part of `window` that the file holds, in strips of about a million pixels.
    // `progress` may be empty; it is called with the share done, 0 to 1. Throws Failure for a
    // damaged file, and Interrupted after Control-C.
    void read(const Window& window, const Take& take,
              const std::function<void(double)>& progress = {});

private:
    void describe(const OIIO::ImageSpec& imageSpec, bool hasWindows, AlphaRule rule);
    void requireUsable() const;
    bool readRows(int top, int bottom, std::vector<float>& values);
    void deliver(const Window& stored, const Window& strip, std::span<const float> values,
                 const Take& take);
    std::ptrdiff_t uprightOffset(const Window& target, int x, int y) const;
    void copyPixel(const float* from, float* rgba) const;
    void requireSound(bool read);
    void placeChannels();

    std::filesystem::path file_;
    std::unique_ptr<OIIO::ImageInput> input_;
    ChannelChoice choice_;
    Picture picture_;
    Window data_;
    Orientation orientation_{1, {}};
    int firstChannel_ = 0;  // of the range that is read
    int endOfChannels_ = 0;
    std::array<int, 3> colours_{};  // in that range
    int alpha_ = 0;
    std::vector<float> turned_;  // a strip in upright order
};

}  // namespace pictures
