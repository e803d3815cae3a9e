// SPDX-License-Identifier: Apache-2.0
#include "pictures/PictureReader.h"

#include <algorithm>
#include <memory>
#include <system_error>

#include "pictures/Errors.h"
#include "pictures/Interrupt.h"
#include "pictures/Messages.h"
#include "pictures/Text.h"

namespace fs = std::filesystem;

namespace pictures {
namespace {

// The effect uses 16.16 numbers for positions in a layer.
constexpr int kLargestSide = 32767;

bool isFile(const fs::path& path) {
    std::error_code ignored;
    return fs::exists(path, ignored) && !fs::is_directory(path, ignored);
}

std::unique_ptr<OIIO::ImageInput> openPicture(const fs::path& file) {
    std::error_code ignored;
    if (fs::is_directory(file, ignored)) {
        throw Failure(file.string() + " is a folder; name an image file in it");
    }
    if (!isFile(file)) {
        throw Failure("cannot find " + file.string() + "; check the name");
    }
    OIIO::ImageSpec wishes;
    wishes.attribute("oiio:UnassociatedAlpha", 1);  // don't multiply straight colours by alpha
    auto input = OIIO::ImageInput::open(file.string(), &wishes);
    if (input) return input;
    throw Failure("cannot read " + file.string() + " as an image (" + oneLine(OIIO::geterror()) +
                  "); use an EXR, PNG, TIFF or JPEG file");
}

bool isExr(const OIIO::ImageInput& input) {
    return std::string(input.format_name()) == "openexr";
}

std::vector<OIIO::ImageSpec> specsOfParts(OIIO::ImageInput& input) {
    std::vector<OIIO::ImageSpec> specs;
    for (int part = 0; input.seek_subimage(part, 0); ++part) specs.push_back(input.spec());
    input.geterror();  // clear the message from seeking one part too many
    return specs;
}

// The prefix for the channel names of a part that don't name a layer themselves.
std::string partPrefix(const OIIO::ImageSpec& imageSpec, std::size_t part, bool exr) {
    if (!exr) return part == 0 ? "" : "picture " + std::to_string(part + 1) + ".";
    const std::string name = imageSpec.get_string_attribute("oiio:subimagename");
    return name.empty() ? "" : name + ".";
}

// All channels of all parts.
std::vector<ChannelPlace> listChannels(const std::vector<OIIO::ImageSpec>& specs, bool exr) {
    std::vector<ChannelPlace> channels;
    for (std::size_t part = 0; part < specs.size(); ++part) {
        const std::string prefix = specs.size() > 1 ? partPrefix(specs[part], part, exr) : "";
        for (int c = 0; c < specs[part].nchannels; ++c) {
            std::string name = specs[part].channelnames[static_cast<std::size_t>(c)];
            if (name.find('.') == std::string::npos) name.insert(0, prefix);
            channels.push_back({name, static_cast<int>(part), c});
        }
    }
    return channels;
}

SampleType sampleTypeOf(const OIIO::TypeDesc& type) {
    switch (type.basetype) {
        case OIIO::TypeDesc::UINT8:
        case OIIO::TypeDesc::INT8:
            return SampleType::kUInt8;
        case OIIO::TypeDesc::UINT16:
        case OIIO::TypeDesc::INT16:
            return SampleType::kUInt16;
        case OIIO::TypeDesc::HALF:
            return SampleType::kHalf;
        default:
            return SampleType::kFloat;
    }
}

// The widest type of the chosen channels; in an EXR they may differ.
SampleType widestType(const OIIO::ImageSpec& imageSpec, const ChannelChoice& choice) {
    SampleType widest = SampleType::kUInt8;
    for (const int c : choice.colours) {
        widest = std::max(widest, sampleTypeOf(imageSpec.channelformat(c)));
    }
    return widest;
}

void describe(Picture& picture, const OIIO::ImageSpec& imageSpec, const ChannelChoice& choice,
              bool hasWindows) {
    picture.imageSpec = imageSpec;
    picture.grey = choice.colours.size() == 1;
    picture.hasAlpha = choice.alpha >= 0 && choice.alpha < imageSpec.nchannels;
    picture.associated =
        picture.hasAlpha && imageSpec.get_int_attribute("oiio:UnassociatedAlpha") == 0;
    picture.type = widestType(imageSpec, choice);
    picture.greyName = choice.colourName;
    picture.leftOut = choice.leftOut;
    picture.display = {0, 0, imageSpec.width, imageSpec.height};
    if (hasWindows) {
        picture.display = {imageSpec.full_x, imageSpec.full_y,
                           imageSpec.full_x + imageSpec.full_width,
                           imageSpec.full_y + imageSpec.full_height};
    }
}

void requireUsable(const Picture& picture, const Window& data) {
    if (picture.imageSpec.deep) {
        throw Failure(picture.name + " is a deep image; flatten it first");
    }
    if (data.empty() || picture.window.empty() || intersection(data, picture.window).empty()) {
        throw Failure(picture.name + " has no pixels; use another image");
    }
    if (picture.width() > kLargestSide || picture.height() > kLargestSide) {
        throw Failure(picture.name + " is larger than " + std::to_string(kLargestSide) +
                      " pixels a side; scale it down first");
    }
}

// Tells the reader to stop after Control-C.
bool stopReading(void*, float) {
    return interruptFlag().load();
}

// All channels of a part, row by row. Reading a few unused channels costs less than several passes
// over a compressed file.
std::vector<float> readChannels(OIIO::ImageInput& input, const Picture& picture, int part) {
    const OIIO::ImageSpec& imageSpec = picture.imageSpec;
    std::vector<float> values(static_cast<std::size_t>(imageSpec.width) *
                              static_cast<std::size_t>(imageSpec.height) *
                              static_cast<std::size_t>(imageSpec.nchannels));
    const bool read =
        input.read_image(part, 0, 0, imageSpec.nchannels, OIIO::TypeDesc::FLOAT, values.data(),
                         OIIO::AutoStride, OIIO::AutoStride, OIIO::AutoStride, stopReading);
    throwIfInterrupted();
    if (!read) {
        throw Failure("cannot read the pixels of " + picture.name + " (" +
                      oneLine(input.geterror()) + "); the file may be damaged");
    }
    return values;
}

// Copies the chosen channels of the data window into the picture's window; colours outside the data
// window become `uncovered`.
void placePixels(Picture& picture, const std::vector<float>& values, const Window& data,
                 const ChannelChoice& choice, float uncovered) {
    const auto channels = static_cast<std::size_t>(picture.imageSpec.nchannels);
    const auto width = static_cast<std::size_t>(picture.width());
    picture.pixels.assign(width * static_cast<std::size_t>(picture.height()) * kChannels,
                          uncovered);
    for (std::size_t i = 0; i < picture.pixelCount(); ++i) {
        picture.pixel(i)[3] = picture.hasAlpha ? 0.0F : 1.0F;
    }
    const Window common = intersection(data, picture.window);
    for (int y = common.top; y < common.bottom; ++y) {
        for (int x = common.left; x < common.right; ++x) {
            const float* from = values.data() + (static_cast<std::size_t>(y - data.top) *
                                                     static_cast<std::size_t>(data.width()) +
                                                 static_cast<std::size_t>(x - data.left)) *
                                                    channels;
            float* to = picture.pixel(static_cast<std::size_t>(y - picture.window.top) * width +
                                      static_cast<std::size_t>(x - picture.window.left));
            for (std::size_t c = 0; c < 3; ++c) {
                to[c] = from[choice.colours[picture.grey ? 0 : c]];
            }
            if (picture.hasAlpha) to[3] = from[choice.alpha];
        }
    }
}

}  // namespace

SourceName parseSourceName(const std::string& text) {
    if (isFile(text)) return {text, {}};
    for (std::size_t colon = text.rfind(':'); colon != std::string::npos && colon > 0;
         colon = text.rfind(':', colon - 1)) {
        if (isFile(text.substr(0, colon))) return {text.substr(0, colon), text.substr(colon + 1)};
    }
    return {text, {}};
}

std::vector<ChannelPlace> channelsOf(const fs::path& file) {
    const auto input = openPicture(file);
    return listChannels(specsOfParts(*input), isExr(*input));
}

Picture readPicture(const std::string& text, Extent extent, float uncovered) {
    const SourceName source = parseSourceName(text);
    const auto input = openPicture(source.file);
    const bool exr = isExr(*input);
    const std::vector<OIIO::ImageSpec> specs = specsOfParts(*input);
    const ChannelChoice choice =
        chooseChannels(listChannels(specs, exr), source.layer, source.file.string());

    Picture picture;
    picture.name = text;
    const OIIO::ImageSpec& imageSpec = specs[static_cast<std::size_t>(choice.part)];
    describe(picture, imageSpec, choice, exr);
    const Window data = exr ? Window{imageSpec.x, imageSpec.y, imageSpec.x + imageSpec.width,
                                     imageSpec.y + imageSpec.height}
                            : picture.display;
    picture.window =
        extent == Extent::kDisplay ? picture.display : enclosing(picture.display, data);
    picture.cropped = enclosing(picture.window, data) != picture.window;
    requireUsable(picture, data);
    placePixels(picture, readChannels(*input, picture, choice.part), data, choice, uncovered);
    return picture;
}

double pixelAspectOf(const Picture& picture) {
    const double aspect = picture.imageSpec.get_float_attribute("PixelAspectRatio", 1.0F);
    return aspect > 0.0 ? aspect : 1.0;
}

}  // namespace pictures
