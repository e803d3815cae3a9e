// SPDX-License-Identifier: Apache-2.0
#pragma once
// The channels of an EXR that aren't rendered, carried over into the result.

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "pictures/Picture.h"
#include "pictures/files/PictureLayers.h"

namespace pictures {

// Reads further channels of a file, row by row. All have the data window of the rendered ones.
class PassThrough {
public:
    // Takes those of `channels` whose values a float holds and whose part has this data window; the
    // others are leftOut(). Throws Failure if the file can't be opened.
    PassThrough(const std::filesystem::path& file, const std::vector<ChannelPlace>& channels,
                const Window& dataWindow);
    ~PassThrough();
    PassThrough(const PassThrough&) = delete;
    PassThrough& operator=(const PassThrough&) = delete;

    std::size_t count() const { return channels_.size(); }
    const std::vector<std::string>& leftOut() const { return leftOut_; }
    // Adds the channels with their names and types to a header.
    void addTo(OIIO::ImageSpec& imageSpec) const;
    // Reads rows top to bottom - 1, counted from the top of the data window: count() planes, one
    // after the other. Throws Failure for a damaged file.
    const std::vector<float>& read(int top, int bottom);

private:
    struct Channel {
        ChannelPlace place;
        OIIO::TypeDesc type;
        int tileHeight;  // 0 without tiles
        // Rows of whole tiles, kept since strips may be lower than a tile.
        std::vector<float> rows{};
        int top = 0;
        int bottom = 0;
    };

    void readPlane(Channel& channel, int top, int bottom, float* plane);
    bool readTiles(Channel& channel, int top, int bottom, float* plane);

    std::filesystem::path file_;
    std::unique_ptr<OIIO::ImageInput> input_;
    std::vector<Channel> channels_;
    std::vector<std::string> leftOut_;
    Window window_;
    std::vector<float> planes_;
};

}  // namespace pictures
