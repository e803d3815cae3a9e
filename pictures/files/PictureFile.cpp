// SPDX-License-Identifier: Apache-2.0
#include "pictures/files/PictureFile.h"

#include <algorithm>
#include <fstream>
#include <future>
#include <system_error>

#include "pictures/Errors.h"
#include "pictures/Interrupt.h"
#include "pictures/Text.h"
#include "pictures/files/FileEnds.h"
#include "pictures/files/LibraryOutput.h"
#include "pictures/files/PictureFormats.h"
#include "pictures/files/Strips.h"

namespace fs = std::filesystem;

namespace pictures {
namespace {

// The effect uses 16.16 numbers for positions in a layer.
constexpr int kLargestSide = 32767;

bool isFile(const fs::path& path) {
    std::error_code ignored;
    return fs::exists(path, ignored) && !fs::is_directory(path, ignored);
}

// The library's reason for not opening a file, if it has a better one than that it knows no reader.
std::string whyNot(const fs::path& file) {
    const std::string reason = firstSentence(OIIO::geterror());
    if (reason.empty()) return "";
    if (reason.find("format reader") == std::string::npos) return " (" + reason + ")";
    const std::string title = titleBySuffix(file);
    if (title.empty()) return "";
    return " (the image library on this system doesn't read " + title + ")";
}

// Messages call the file `name`.
std::unique_ptr<OIIO::ImageInput> openPicture(const fs::path& file, const std::string& name) {
    std::error_code ignored;
    if (fs::is_directory(file, ignored)) {
        throw Failure(file.string() + " is a folder; name an image file in it");
    }
    if (!isFile(file)) {
        throw MissingFile("cannot find " + file.string() + "; check the name", file);
    }
    OIIO::attribute("debug", 0);  // the library prints details of damaged files otherwise
    OIIO::ImageSpec wishes;
    wishes.attribute("oiio:UnassociatedAlpha", 1);  // don't multiply straight colours by alpha
    const LibraryOutputGuard quiet;
    auto input = OIIO::ImageInput::open(file.string(), &wishes);
    if (input) {
        requireReadFormat(file, input->format_name());
        return input;
    }
    throw Failure("cannot read " + name + " as an image" + whyNot(file) +
                  "; use an EXR, PNG, TIFF or JPEG file");
}

bool isExr(const OIIO::ImageInput& input) {
    return std::string(input.format_name()) == "openexr";
}

// The frames of an animation aren't parts of a picture, and some readers can't go back.
bool isAnimation(const OIIO::ImageInput& input) {
    const std::string format = input.format_name();
    return format == "gif" || format == "webp";
}

// Some readers, such as that of FITS, name fewer channels than there are.
OIIO::ImageSpec withChannelNames(OIIO::ImageSpec imageSpec) {
    const auto channels = static_cast<std::size_t>(imageSpec.nchannels);
    if (imageSpec.channelnames.size() != channels) imageSpec.default_channel_names();
    return imageSpec;
}

std::vector<OIIO::ImageSpec> specsOfParts(OIIO::ImageInput& input) {
    if (isAnimation(input)) return {withChannelNames(input.spec())};
    const LibraryOutputGuard quiet;
    std::vector<OIIO::ImageSpec> specs;
    for (int part = 0; input.seek_subimage(part, 0); ++part) {
        specs.push_back(withChannelNames(input.spec()));
    }
    input.geterror();  // clear the message from seeking one part too many
    return specs;
}

ColourSpace colourSpaceOfFile(const fs::path& file, const OIIO::ImageSpec& imageSpec,
                              const std::string& format) {
    if (format != "png") return colourSpaceOf(imageSpec, format);
    std::ifstream chunks(file, std::ios::binary);
    return colourSpaceOf(imageSpec, format, readPngColour(chunks));
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

// The rows of a strip, in whole tiles if there are any.
int stripRowsOf(const OIIO::ImageSpec& imageSpec) {
    const int rows = stripRows(imageSpec.width);
    if (imageSpec.tile_height == 0) return rows;
    return (rows + imageSpec.tile_height - 1) / imageSpec.tile_height * imageSpec.tile_height;
}

// The index of a pixel in a window's pixels, row by row.
std::ptrdiff_t offsetIn(const Window& window, int x, int y) {
    return static_cast<std::ptrdiff_t>(y - window.top) * window.width() + x - window.left;
}

std::size_t areaOf(const Window& window) {
    return static_cast<std::size_t>(window.width()) * static_cast<std::size_t>(window.height());
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
    const auto input = openPicture(file, file.string());
    return listChannels(specsOfParts(*input), isExr(*input));
}

PictureFile::PictureFile(const std::string& text, AlphaRule rule, const std::string& name) {
    const SourceName source = parseSourceName(text);
    file_ = source.file;
    input_ = openPicture(file_, name.empty() ? file_.string() : name);
    const bool exr = isExr(*input_);
    const std::vector<OIIO::ImageSpec> specs = specsOfParts(*input_);
    picture_.name = name.empty() ? text : name;
    choice_ = chooseChannels(listChannels(specs, exr), source.layer, file_.string());
    describe(specs[static_cast<std::size_t>(choice_.part)], exr, rule);
    placeChannels();
    requireUsable();
    requireWholeFile(file_, input_->format_name());
}

void PictureFile::describe(const OIIO::ImageSpec& imageSpec, bool hasWindows, AlphaRule rule) {
    picture_.imageSpec = imageSpec;
    picture_.format = input_->format_name();
    picture_.colour = colourSpaceOfFile(file_, imageSpec, picture_.format);
    picture_.grey = choice_.colours.size() == 1;
    picture_.hasAlpha =
        choice_.alpha >= 0 && choice_.alpha < imageSpec.nchannels && rule != AlphaRule::kIgnore;
    picture_.associated = picture_.hasAlpha && isAssociated(imageSpec, picture_.format, rule);
    picture_.alphaGiven = rule != AlphaRule::kByFile;
    picture_.type = widestType(imageSpec, choice_);
    picture_.greyName = choice_.colourName;
    picture_.leftOut = choice_.leftOut;
    if (imageSpec.get_int_attribute("oiio:Movie") != 0) {
        picture_.leftOut.emplace_back("all frames but the first");
    }

    const Window data{imageSpec.x, imageSpec.y, imageSpec.x + imageSpec.width,
                      imageSpec.y + imageSpec.height};
    const Window display{imageSpec.full_x, imageSpec.full_y,
                         imageSpec.full_x + imageSpec.full_width,
                         imageSpec.full_y + imageSpec.full_height};
    const Window whole{0, 0, imageSpec.width, imageSpec.height};
    orientation_ =
        Orientation(imageSpec.get_int_attribute("Orientation", 1), hasWindows ? display : whole);
    data_ = orientation_.toUpright(hasWindows ? data : whole);
    picture_.display = orientation_.toUpright(hasWindows ? display : whole);
    picture_.turned = !orientation_.upright();
    picture_.transposed = orientation_.transposed();
}

void PictureFile::requireUsable() const {
    if (picture_.imageSpec.deep) {
        throw Failure(picture_.name + " is a deep image; flatten it first");
    }
    if (data_.empty() || picture_.display.empty()) {
        throw Failure(picture_.name + " has no pixels; use another image");
    }
    const Window all = enclosing(data_, picture_.display);
    if (all.width() > kLargestSide || all.height() > kLargestSide) {
        throw Failure(picture_.name + " is larger than " + std::to_string(kLargestSide) +
                      " pixels a side; scale it down first");
    }
}

// Reads the range of channels from the first to the last that is needed.
void PictureFile::placeChannels() {
    const auto& colours = choice_.colours;
    firstChannel_ = *std::min_element(colours.begin(), colours.end());
    endOfChannels_ = *std::max_element(colours.begin(), colours.end()) + 1;
    if (picture_.hasAlpha) {
        firstChannel_ = std::min(firstChannel_, choice_.alpha);
        endOfChannels_ = std::max(endOfChannels_, choice_.alpha + 1);
    }
    for (std::size_t c = 0; c < 3; ++c) {
        colours_[c] = colours[picture_.grey ? 0 : c] - firstChannel_;
    }
    alpha_ = choice_.alpha - firstChannel_;
}

// Reads whole rows of the stored picture, counted from the top of its data.
bool PictureFile::readRows(int top, int bottom, std::vector<float>& values) {
    const OIIO::ImageSpec& imageSpec = picture_.imageSpec;
    const LibraryOutputGuard quiet;
    if (imageSpec.tile_width == 0) {
        return input_->read_scanlines(choice_.part, 0, imageSpec.y + top, imageSpec.y + bottom,
                                      imageSpec.z, firstChannel_, endOfChannels_,
                                      OIIO::TypeDesc::FLOAT, values.data());
    }
    return input_->read_tiles(choice_.part, 0, imageSpec.x, imageSpec.x + imageSpec.width,
                              imageSpec.y + top, imageSpec.y + bottom, imageSpec.z, imageSpec.z + 1,
                              firstChannel_, endOfChannels_, OIIO::TypeDesc::FLOAT, values.data());
}

// Some readers fill what is missing and only leave a message.
void PictureFile::requireSound(bool read) {
    const std::string reason = firstSentence(input_->geterror());
    if (read && (reason.empty() || isHarmless(picture_.format, reason))) return;
    throw Failure(picture_.name + " is damaged or ends early" +
                  (reason.empty() ? "" : " (" + reason + ")") + "; get a whole copy of the file");
}

// Passes on the pixels of `stored`, a part of the `strip` whose channels are in `values`.
void PictureFile::deliver(const Window& stored, const Window& strip, std::span<const float> values,
                          const Take& take) {
    const Window target = orientation_.toUpright(stored);
    turned_.resize(areaOf(target) * kChannels);
    const auto channels = static_cast<std::ptrdiff_t>(endOfChannels_ - firstChannel_);
    for (int y = stored.top; y < stored.bottom; ++y) {
        std::ptrdiff_t from = offsetIn(strip, stored.left, y) * channels;
        std::ptrdiff_t to = uprightOffset(target, stored.left, y);
        const std::ptrdiff_t step = uprightOffset(target, stored.left + 1, y) - to;
        for (int x = stored.left; x < stored.right; ++x, from += channels, to += step) {
            copyPixel(values.data() + from, turned_.data() + to);
        }
    }
    take(target, turned_);
}

// Where the stored pixel (x, y) belongs in the values of the upright window `target`.
std::ptrdiff_t PictureFile::uprightOffset(const Window& target, int x, int y) const {
    const Window pixel = orientation_.toUpright({x, y, x + 1, y + 1});
    return offsetIn(target, pixel.left, pixel.top) * static_cast<std::ptrdiff_t>(kChannels);
}

void PictureFile::copyPixel(const float* from, float* rgba) const {
    for (std::size_t c = 0; c < 3; ++c) rgba[c] = from[colours_[c]];
    rgba[3] = picture_.hasAlpha ? from[alpha_] : 1.0F;
}

void PictureFile::read(const Window& window, const Take& take,
                       const std::function<void(double)>& progress) {
    const OIIO::ImageSpec& imageSpec = picture_.imageSpec;
    const Window all = orientation_.toStored(data_);
    const Window wanted = intersection(all, orientation_.toStored(window));
    if (wanted.empty()) return;

    const int rows = stripRowsOf(imageSpec);
    const auto channels = static_cast<std::size_t>(endOfChannels_ - firstChannel_);
    std::vector<float> values;
    std::vector<float> delivered;
    std::future<void> delivery;  // ends before what it uses
    for (int top = (wanted.top - all.top) / rows * rows; top < wanted.bottom - all.top;
         top += rows) {
        throwIfInterrupted();
        const int bottom = std::min(top + rows, imageSpec.height);
        const Window strip{all.left, all.top + top, all.right, all.top + bottom};
        values.resize(areaOf(strip) * channels);
        requireSound(readRows(top, bottom, values));
        if (delivery.valid()) delivery.get();
        values.swap(delivered);
        delivery = std::async(std::launch::async, [this, strip, &wanted, &delivered, &take] {
            deliver(intersection(strip, wanted), strip, delivered, take);
        });
        if (progress) progress(static_cast<double>(bottom) / (wanted.bottom - all.top));
    }
    delivery.get();
}

}  // namespace pictures
