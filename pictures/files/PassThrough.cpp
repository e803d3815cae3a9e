// SPDX-License-Identifier: Apache-2.0
#include "pictures/files/PassThrough.h"

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
            channels_.push_back(channel);
            types_.push_back(type);
        } else {
            leftOut_.push_back(channel.name);
        }
    }
}

PassThrough::~PassThrough() = default;

void PassThrough::addTo(OIIO::ImageSpec& imageSpec) const {
    imageSpec.channelformats.assign(static_cast<std::size_t>(imageSpec.nchannels),
                                    imageSpec.format);
    for (std::size_t i = 0; i < channels_.size(); ++i) {
        imageSpec.channelnames.push_back(channels_[i].name);
        imageSpec.channelformats.push_back(types_[i]);
    }
    imageSpec.nchannels += static_cast<int>(channels_.size());
}

const std::vector<float>& PassThrough::read(int top, int bottom) {
    const std::size_t plane =
        static_cast<std::size_t>(window_.width()) * static_cast<std::size_t>(bottom - top);
    planes_.resize(plane * channels_.size());
    const LibraryOutputGuard quiet;
    for (std::size_t i = 0; i < channels_.size(); ++i) {
        const int channel = channels_[i].index;
        if (!input_->read_scanlines(channels_[i].part, 0, window_.top + top, window_.top + bottom,
                                    0, channel, channel + 1, OIIO::TypeDesc::FLOAT,
                                    planes_.data() + i * plane)) {
            throw Failure("cannot read channel " + channels_[i].name + " of " + file_.string() +
                          " (" + firstSentence(input_->geterror()) + ")");
        }
    }
    return planes_;
}

}  // namespace pictures
