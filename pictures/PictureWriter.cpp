// SPDX-License-Identifier: Apache-2.0
#include "pictures/PictureWriter.h"

#include <OpenImageIO/filesystem.h>

#include <algorithm>
#include <cmath>
#include <memory>

#include "pictures/AtomicFile.h"
#include "pictures/Errors.h"
#include "pictures/Interrupt.h"
#include "pictures/PictureFormats.h"
#include "pictures/Text.h"
#include "pictures/WorldPixels.h"

namespace pictures {
namespace {

// The channels and the type of the file to write.
struct Plan {
    SampleType type = SampleType::kUInt8;
    bool grey = false;
    bool alpha = false;
    bool associated = false;

    std::size_t channels() const { return (grey ? 1U : 3U) + (alpha ? 1U : 0U); }
};

bool growsBeyondLayer(const WriteRequest& request) {
    const PF_LRect rect = request.result.rect();
    return rect.left < 0 || rect.top < 0 || rect.right > request.layerWidth ||
           rect.bottom > request.layerHeight;
}

bool isAssociated(const PictureFormat& format, const Picture& source) {
    switch (format.alpha) {
        case AlphaKind::kStraight:
            return false;
        case AlphaKind::kEither:
            return source.associated;
        case AlphaKind::kNone:  // composited over black
        case AlphaKind::kAssociated:
            break;
    }
    return true;
}

Plan makePlan(const PictureFormat& format, const WriteRequest& request, bool wantsAlpha) {
    Plan plan;
    plan.type = nearestType(format, request.source.type);
    plan.alpha = wantsAlpha && format.alpha != AlphaKind::kNone;
    plan.associated = isAssociated(format, request.source);
    plan.grey = request.source.grey && (plan.alpha ? format.greyWithAlpha : format.grey);
    return plan;
}

ColourTarget targetOf(const PictureFormat& format, const Plan& plan) {
    return {format.name, worldBits(plan.type) == 32, plan.grey};
}

// Prints one line for each property of the source that the file can't keep.
void tellDifferences(const std::filesystem::path& path, const PictureFormat& format,
                     const Picture& source, const Plan& plan, bool wantsAlpha, Messages& messages) {
    const std::string file = path.string();
    if (plan.type != source.type) {
        messages.note(file + " is written with " + sampleTypeName(plan.type) + " per channel: " +
                      format.title + " can't hold the input's " + sampleTypeName(source.type));
    }
    if (wantsAlpha && !plan.alpha) {
        messages.note(file + " is written over black: " + format.title + " can't hold alpha");
    }
    if (source.grey && !plan.grey) {
        messages.note(file + " is written in colour: " + format.title +
                      " can't hold this grey image");
    }
}

OIIO::TypeDesc libraryType(SampleType type) {
    switch (type) {
        case SampleType::kUInt8:
            return OIIO::TypeDesc::UINT8;
        case SampleType::kUInt16:
            return OIIO::TypeDesc::UINT16;
        case SampleType::kHalf:
            return OIIO::TypeDesc::HALF;
        case SampleType::kFloat:
            break;
    }
    return OIIO::TypeDesc::FLOAT;
}

// Removes metadata that describes the source's encoding, which isn't true of the new file.
void eraseEncoding(OIIO::ImageSpec& imageSpec) {
    for (const char* name : {"oiio:BitsPerSample",
                             "oiio:UnassociatedAlpha",
                             "oiio:subimages",
                             "oiio:subimagename",
                             "oiio:ConstantColor",
                             "oiio:AverageColor",
                             "oiio:SHA-1",
                             "tiff:PhotometricInterpretation",
                             "tiff:RowsPerStrip",
                             "tiff:PlanarConfiguration",
                             "planarconfig",
                             "tiff:bitspersample",
                             "tiff:subfiletype",
                             "textureformat",
                             "openexr:chunkCount",
                             "chunkCount",
                             "openexr:lineOrder",
                             "openexr:levelmode",
                             "openexr:roundingmode",
                             "openexr:version",
                             "name",
                             "type",
                             "version",
                             "thumbnail_width",
                             "thumbnail_height",
                             "thumbnail_nchannels",
                             "thumbnail_image",
                             "targa:alpha_type"}) {
        imageSpec.erase_attribute(name);
    }
}

void setChannels(OIIO::ImageSpec& imageSpec, const Plan& plan, const std::string& greyName) {
    imageSpec.nchannels = static_cast<int>(plan.channels());
    imageSpec.channelformats.clear();
    imageSpec.channelnames =
        plan.grey ? std::vector<std::string>{greyName} : std::vector<std::string>{"R", "G", "B"};
    imageSpec.alpha_channel = -1;
    imageSpec.z_channel = -1;
    if (!plan.alpha) return;
    imageSpec.alpha_channel = imageSpec.nchannels - 1;
    imageSpec.channelnames.emplace_back("A");
    if (!plan.associated) imageSpec.attribute("oiio:UnassociatedAlpha", 1);
}

// The data window is the result's rectangle, the display window that of the source.
void setWindows(OIIO::ImageSpec& imageSpec, const WriteRequest& request, bool windows) {
    const headless::World& result = request.result;
    imageSpec.width = result.width();
    imageSpec.height = result.height();
    imageSpec.depth = 1;
    imageSpec.tile_width = imageSpec.tile_height = imageSpec.tile_depth = 0;
    imageSpec.x = imageSpec.y = imageSpec.z = imageSpec.full_x = imageSpec.full_y =
        imageSpec.full_z = 0;
    imageSpec.full_width = imageSpec.width;
    imageSpec.full_height = imageSpec.height;
    imageSpec.full_depth = 1;
    if (!windows) return;
    const auto reduced = [&](int edge) {
        return static_cast<int>(std::floor(static_cast<double>(edge) * request.scale));
    };
    imageSpec.full_x = reduced(request.source.display.left);
    imageSpec.full_y = reduced(request.source.display.top);
    imageSpec.full_width = request.layerWidth;
    imageSpec.full_height = request.layerHeight;
    imageSpec.x = imageSpec.full_x + result.rect().left;
    imageSpec.y = imageSpec.full_y + result.rect().top;
}

OIIO::ImageSpec makeSpec(const PictureFormat& format, const WriteRequest& request,
                         const Plan& plan) {
    OIIO::ImageSpec imageSpec = request.source.imageSpec;
    eraseEncoding(imageSpec);
    imageSpec.deep = false;
    imageSpec.set_format(libraryType(plan.type));
    setChannels(imageSpec, plan, format.windows ? request.source.greyName : "Y");
    setWindows(imageSpec, request, format.windows);
    if (request.colours != nullptr) {
        describeColours(imageSpec, *request.colours, targetOf(format, plan));
    }
    return imageSpec;
}

std::vector<float> selectChannels(const std::vector<float>& rgba, const Plan& plan) {
    std::vector<float> values;
    values.reserve(rgba.size() / kChannels * plan.channels());
    for (std::size_t i = 0; i < rgba.size(); i += kChannels) {
        for (std::size_t c = 0; c < (plan.grey ? 1U : 3U); ++c) values.push_back(rgba[i + c]);
        if (plan.alpha) values.push_back(rgba[i + 3]);
    }
    return values;
}

// Half has no larger finite value; anything larger would round to infinity.
void clampToHalf(std::vector<float>& values) {
    for (float& value : values) value = std::clamp(value, -65504.0F, 65504.0F);
}

bool stopWriting(void*, float) {
    return interruptFlag().load();
}

[[noreturn]] void fail(const std::filesystem::path& path, const std::string& reason) {
    throw Failure("cannot write " + path.string() + ": " + oneLine(reason) +
                  "; check the disk space, or try another format");
}

std::unique_ptr<OIIO::ImageOutput> encoderFor(const std::filesystem::path& path) {
    auto encoder = OIIO::ImageOutput::create(formatOf(path).name);
    if (!encoder) fail(path, "no encoder");
    return encoder;
}

// Encodes all values into the file `name`; messages name `path`.
void encode(OIIO::ImageOutput& encoder, const std::filesystem::path& name,
            const OIIO::ImageSpec& imageSpec, const std::vector<float>& values,
            const std::filesystem::path& path) {
    if (!encoder.open(name.string(), imageSpec)) fail(path, encoder.geterror());
    const bool written = encoder.write_image(OIIO::TypeDesc::FLOAT, values.data(), OIIO::AutoStride,
                                             OIIO::AutoStride, OIIO::AutoStride, stopWriting);
    const bool closed = encoder.close();
    throwIfInterrupted();
    if (!written || !closed) fail(path, encoder.geterror());
}

// The encoded file in memory, since encoders don't report every failed write to disk.
std::vector<unsigned char> encodeInMemory(const std::filesystem::path& path,
                                          const OIIO::ImageSpec& imageSpec,
                                          const std::vector<float>& values) {
    std::vector<unsigned char> bytes;
    OIIO::Filesystem::IOVecOutput memory(bytes);
    const auto encoder = encoderFor(path);
    if (!encoder->set_ioproxy(&memory)) fail(path, encoder->geterror());
    encode(*encoder, path, imageSpec, values, path);
    return bytes;
}

// Reads the file back to its last pixel, since its encoder doesn't report every failed write.
void requireWhole(const std::filesystem::path& name, const std::filesystem::path& path) {
    const auto input = OIIO::ImageInput::open(name.string());
    if (!input) fail(path, OIIO::geterror());
    const OIIO::ImageSpec& imageSpec = input->spec();
    std::vector<unsigned char> row(imageSpec.scanline_bytes(true));
    for (int y = imageSpec.y; y < imageSpec.y + imageSpec.height; ++y) {
        if (!input->read_scanline(y, 0, OIIO::TypeDesc::UNKNOWN, row.data())) {
            fail(path, input->geterror());
        }
    }
}

}  // namespace

ColourTarget colourTarget(const std::filesystem::path& path, const Picture& source) {
    const PictureFormat& format = formatOf(path);
    return {format.name, worldBits(nearestType(format, source.type)) == 32,
            source.grey && format.grey};
}

void writeResult(const std::filesystem::path& path, const WriteRequest& request,
                 Messages& messages) {
    const PictureFormat& format = formatOf(path);
    const bool wantsAlpha = request.source.hasAlpha || growsBeyondLayer(request);
    const Plan plan = makePlan(format, request, wantsAlpha);
    tellDifferences(path, format, request.source, plan, wantsAlpha, messages);

    std::vector<float> rgba = straightPixels(request.result);
    if (request.colours != nullptr) {
        tellColours(*request.colours, request.source.name, path, targetOf(format, plan), messages);
        request.colours->encode.apply(rgba);
    }
    if (wantsAlpha && plan.associated) associate(rgba);
    std::vector<float> values = selectChannels(rgba, plan);
    if (plan.type == SampleType::kHalf) clampToHalf(values);
    writeChannels(path, makeSpec(format, request, plan), values);
}

void writeChannels(const std::filesystem::path& path, const OIIO::ImageSpec& imageSpec,
                   const std::vector<float>& values) {
    if (formatOf(path).needsFile) {
        AtomicFile file(path);
        const std::filesystem::path beside = file.handOver();
        encode(*encoderFor(path), beside, imageSpec, values, path);
        requireWhole(beside, path);
        throwIfInterrupted();
        file.commit();
        return;
    }
    const std::vector<unsigned char> bytes = encodeInMemory(path, imageSpec, values);
    AtomicFile file(path);
    file.write(bytes);
    throwIfInterrupted();
    file.commit();
}

}  // namespace pictures
