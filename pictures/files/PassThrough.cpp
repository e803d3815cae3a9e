// SPDX-License-Identifier: Apache-2.0
#include "pictures/files/PassThrough.h"

#include <algorithm>

#include "pictures/Errors.h"
#include "pictures/Text.h"
#include "pictures/files/LibraryOutput.h"

namespace pictures {
namespace {

Window dataWindowOf(const OIIO::ImageSpec& imageSpec) {
    return {imageSpec.x, imageSpec.y, imageSpec.x + imageSpec.width,
            imageSpec.y + imageSpec.height};
}

bool fitsFloat(const OIIO::TypeDesc& type) {
    return type == OIIO::TypeDesc::HALF || type == OIIO::TypeDesc::FLOAT;
}

}  // namespace

PassThrough::PassThrough(const std::filesystem::path& file,
                         const std::vector<ChannelPlace>& channels, const Window& dataWindow)
    : file_(file), window_(dataWindow) {
    const LibraryOutputGuard quiet;
    input_ = OIIO::ImageInput::open(file.string());
    if (!input_) throw Failure("cannot read " + file.string() + " again");
    for (const ChannelPlace& channel : channels) {
        const OIIO::ImageSpec imageSpec = input_->spec(channel.part);
        const OIIO::TypeDesc type = imageSpec.channelformat(channel.index);
        if (dataWindowOf(imageSpec) == dataWindow && fitsFloat(type)) {
            channels_.push_back({channel, type, imageSpec.tile_height});
        } else {
            leftOut_.push_back(channel.name);
        }
    }
}

PassThrough::~PassThrough() = default;

void PassThrough::addTo(OIIO::ImageSpec& imageSpec) const {
    imageSpec.channelformats.assign(static_cast<std::size_t>(imageSpec.nchannels),
                                    imageSpec.format);
    for (const Channel& channel : channels_) {
        imageSpec.channelnames.push_back(channel.place.name);
        imageSpec.channelformats.push_back(channel.type);
    }
    imageSpec.nchannels += static_cast<int>(channels_.size());
}

const std::vector<float>& PassThrough::read(int top, int bottom) {
    const std::size_t plane =
        static_cast<std::size_t>(window_.width()) * static_cast<std::size_t>(bottom - top);
    planes_.resize(plane * channels_.size());
    const LibraryOutputGuard quiet;
    for (std::size_t i = 0; i < channels_.size(); ++i) {
        readPlane(channels_[i], top, bottom, planes_.data() + i * plane);
    }
    return planes_;
}

void PassThrough::readPlane(Channel& channel, int top, int bottom, float* plane) {
    const ChannelPlace& place = channel.place;
    const bool read =
        channel.tileHeight > 0
            ? readTiles(channel, top, bottom, plane)
            : input_->read_scanlines(place.part, 0, window_.top + top, window_.top + bottom, 0,
                                     place.index, place.index + 1, OIIO::TypeDesc::FLOAT, plane);
    if (read) return;
    throw Failure("cannot read channel " + place.name + " of " + file_.string() + " (" +
                  firstSentence(input_->geterror()) + ")");
}

// The library reads whole tiles only.
bool PassThrough::readTiles(Channel& channel, int top, int bottom, float* plane) {
    const auto width = static_cast<std::ptrdiff_t>(window_.width());
    if (top < channel.top || bottom > channel.bottom) {
        const int height = channel.tileHeight;
        channel.top = top / height * height;
        channel.bottom = std::min((bottom + height - 1) / height * height, window_.height());
        channel.rows.resize(static_cast<std::size_t>(width * (channel.bottom - channel.top)));
        if (!input_->read_tiles(channel.place.part, 0, window_.left, window_.right,
                                window_.top + channel.top, window_.top + channel.bottom, 0, 1,
                                channel.place.index, channel.place.index + 1, OIIO::TypeDesc::FLOAT,
                                channel.rows.data())) {
            return false;
        }
    }
    std::copy_n(channel.rows.data() + (top - channel.top) * width, (bottom - top) * width, plane);
    return true;
}

}  // namespace pictures
