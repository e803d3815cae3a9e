// SPDX-License-Identifier: Apache-2.0
#include "pictures/files/PictureWriter.h"

#include <OpenImageIO/filesystem.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <future>
#include <limits>
#include <memory>

#include "pictures/Errors.h"
#include "pictures/Interrupt.h"
#include "pictures/Text.h"
#include "pictures/WorldPixels.h"
#include "pictures/files/AtomicFile.h"
#include "pictures/files/PictureFormats.h"
#include "pictures/files/PictureSettings.h"
#include "pictures/files/Strips.h"

namespace pictures {
namespace {

// The channels and the type of the file to write.
struct Plan {
    SampleType type = SampleType::kUInt8;
    bool grey = false;
    bool alpha = false;
    bool associated = false;
    bool multiplied = false;  // also if alpha isn't written: the image is composited over black

    std::size_t channels() const { return (grey ? 1U : 3U) + (alpha ? 1U : 0U); }
};

bool writesAssociated(const PictureFormat& format, const Picture& source) {
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
    plan.type = nearestType(format, request.type.value_or(request.source.type));
    plan.alpha = wantsAlpha && format.alpha != AlphaKind::kNone;
    plan.associated = writesAssociated(format, request.source);
    plan.multiplied = wantsAlpha && plan.associated;
    plan.grey = request.source.grey && (plan.alpha ? format.greyWithAlpha : format.grey);
    return plan;
}

ColourTarget targetOf(const PictureFormat& format, const Plan& plan) {
    return {format.name, worldBits(plan.type) == 32, plan.grey};
}

// Prints one line for each property of the source that the file can't keep.
void tellDifferences(const std::filesystem::path& path, const PictureFormat& format,
                     const WriteRequest& request, const Plan& plan, bool wantsAlpha,
                     Messages& messages) {
    const std::string file = path.string();
    const Picture& source = request.source;
    if (plan.type != request.type.value_or(source.type)) {
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

// Other formats hold only the data window.
void setWindows(OIIO::ImageSpec& imageSpec, const WriteRequest& request, bool windows) {
    const Window data{0, 0, request.result.width(), request.result.height()};
    const Window& place = windows ? request.data : data;
    const Window& display = windows ? request.display : data;
    imageSpec.x = place.left;
    imageSpec.y = place.top;
    imageSpec.width = place.width();
    imageSpec.height = place.height();
    imageSpec.full_x = display.left;
    imageSpec.full_y = display.top;
    imageSpec.full_width = display.width();
    imageSpec.full_height = display.height();
    imageSpec.z = imageSpec.full_z = 0;
    imageSpec.depth = imageSpec.full_depth = 1;
    imageSpec.tile_width = imageSpec.tile_height = imageSpec.tile_depth = 0;
}

// The pixels are upright, whatever the source's were.
void setUpright(OIIO::ImageSpec& imageSpec, const Picture& source) {
    if (!source.turned) return;
    imageSpec.attribute("Orientation", 1);
    if (!source.transposed) return;
    const float x = imageSpec.get_float_attribute("XResolution");
    const float y = imageSpec.get_float_attribute("YResolution");
    if (x > 0.0F && y > 0.0F) {
        imageSpec.attribute("XResolution", y);
        imageSpec.attribute("YResolution", x);
    }
    const float aspect = imageSpec.get_float_attribute("PixelAspectRatio");
    if (aspect > 0.0F) imageSpec.attribute("PixelAspectRatio", 1.0F / aspect);
}

// A picture that has no date gets none: two encoders would write the present time, and the same
// frame would differ from run to run. One takes an empty date, the other leaves out a number.
void leaveOutTimeOfWriting(OIIO::ImageSpec& imageSpec, const PictureFormat& format) {
    constexpr const char* kDate = "DateTime";
    if (!imageSpec.get_string_attribute(kDate).empty()) return;
    if (format.name == "openexr") imageSpec.attribute(kDate, "");
    if (format.name == "tiff") imageSpec.attribute(kDate, 0);
}

OIIO::ImageSpec makeSpec(const std::filesystem::path& path, const PictureFormat& format,
                         const WriteRequest& request, const Plan& plan) {
    OIIO::ImageSpec imageSpec = request.source.imageSpec;
    eraseEncoding(imageSpec);
    imageSpec.deep = false;
    imageSpec.set_format(libraryType(plan.type));
    setChannels(imageSpec, plan, format.windows ? request.source.greyName : "Y");
    setWindows(imageSpec, request, format.windows);
    setUpright(imageSpec, request.source);
    if (request.pixelAspect) {
        imageSpec.attribute("PixelAspectRatio", static_cast<float>(*request.pixelAspect));
    }
    if (request.colours != nullptr) {
        describeColours(imageSpec, *request.colours, targetOf(format, plan));
    }
    if (request.others != nullptr) request.others->addTo(imageSpec);
    leaveOutTimeOfWriting(imageSpec, format);
    // One encoder writes two codecs, and names of files in work don't tell it which.
    if (path.extension() == ".avif") imageSpec.attribute("Compression", "avif");
    return imageSpec;
}

// Appends the channels of the file to `values`.
void selectChannels(std::span<const float> rgba, const Plan& plan, std::vector<float>& values) {
    for (std::size_t i = 0; i < rgba.size(); i += kChannels) {
        for (std::size_t c = 0; c < (plan.grey ? 1U : 3U); ++c) values.push_back(rgba[i + c]);
        if (plan.alpha) values.push_back(rgba[i + 3]);
    }
}

// Half has no larger finite value; anything larger would round to infinity.
void clampToHalf(std::vector<float>& values) {
    for (float& value : values) value = std::clamp(value, -65504.0F, 65504.0F);
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

// Fills `values` with rows top to bottom - 1 of a file, all channels. Called on any thread, one
// call after the other.
using MakeRows = std::function<void(int top, int bottom, std::vector<float>& values)>;

// Values from 0 to 1 as whole numbers; NaN becomes 0. The image library's own conversion takes
// several times as long.
template <class Integer>
void quantise(std::span<const float> values, std::vector<Integer>& integers) {
    constexpr float kTop = std::numeric_limits<Integer>::max();
    integers.resize(values.size());
    for (std::size_t i = 0; i < values.size(); ++i) {
        const float scaled = std::min(std::max(0.0F, values[i]), 1.0F) * kTop;
        const float rounded = scaled + 0.5F;  // up, once the fraction is dropped
        integers[i] = static_cast<Integer>(rounded);
    }
}

// A strip in the type that the encoder gets: the file's own where that is an integer.
class EncodedRows {
public:
    void fill(const MakeRows& makeRows, int top, int bottom, const OIIO::TypeDesc& fileType) {
        top_ = top;
        bottom_ = bottom;
        type_ = fileType;
        makeRows(top, bottom, values_);
        if (fileType == OIIO::TypeDesc::UINT8) {
            quantise(values_, bytes_);
        } else if (fileType == OIIO::TypeDesc::UINT16) {
            quantise(values_, words_);
        } else {
            type_ = OIIO::TypeDesc::FLOAT;
        }
    }

    bool write(OIIO::ImageOutput& encoder, int firstRow) const {
        return encoder.write_scanlines(firstRow + top_, firstRow + bottom_, 0, type_, data());
    }

private:
    const void* data() const {
        if (type_ == OIIO::TypeDesc::UINT8) return bytes_.data();
        if (type_ == OIIO::TypeDesc::UINT16) return words_.data();
        return values_.data();
    }

    int top_ = 0;
    int bottom_ = 0;
    OIIO::TypeDesc type_;
    std::vector<float> values_;
    std::vector<std::uint8_t> bytes_;
    std::vector<std::uint16_t> words_;
};

// Encodes the rows into the file `name`, strip by strip, while the next strip is made; messages
// name `path`.
void encode(OIIO::ImageOutput& encoder, const std::filesystem::path& name,
            const OIIO::ImageSpec& imageSpec, const MakeRows& makeRows,
            const std::filesystem::path& path) {
    const int rows = stripRows(imageSpec.width);
    if (!encoder.open(name.string(), imageSpec)) fail(path, encoder.geterror());
    EncodedRows strip, next;
    const auto make = [&](int top) {
        const int bottom = std::min(top + rows, imageSpec.height);
        return std::async(std::launch::async,
                          [&, top, bottom] { next.fill(makeRows, top, bottom, imageSpec.format); });
    };
    std::future<void> making = make(0);
    for (int top = 0; top < imageSpec.height; top += rows) {
        throwIfInterrupted();
        making.get();
        std::swap(strip, next);
        if (top + rows < imageSpec.height) making = make(top + rows);
        if (!strip.write(encoder, imageSpec.y)) fail(path, encoder.geterror());
    }
    if (!encoder.close()) fail(path, encoder.geterror());
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

// For encoders that open their file themselves.
void writeByName(const std::filesystem::path& path, const OIIO::ImageSpec& imageSpec,
                 const MakeRows& makeRows) {
    AtomicFile file(path);
    const std::filesystem::path beside = file.handOver();
    encode(*encoderFor(path), beside, imageSpec, makeRows, path);
    requireWhole(beside, path);
    throwIfInterrupted();
    file.commit();
}

// For encoders that write to a stream, whose errors count even if the encoder ignores them.
void writeToStream(const std::filesystem::path& path, const OIIO::ImageSpec& imageSpec,
                   const MakeRows& makeRows) {
    AtomicFile file(path);
    {
        OIIO::Filesystem::IOFile stream(file.stream(), OIIO::Filesystem::IOProxy::Write);
        const auto encoder = encoderFor(path);
        if (!encoder->set_ioproxy(&stream)) fail(path, encoder->geterror());
        encode(*encoder, path, imageSpec, makeRows, path);
    }
    file.flush();
    throwIfInterrupted();
    file.commit();
}

void write(const std::filesystem::path& path, const OIIO::ImageSpec& imageSpec,
           const MakeRows& makeRows) {
    if (formatOf(path).needsFile) {
        writeByName(path, imageSpec, makeRows);
    } else {
        writeToStream(path, imageSpec, makeRows);
    }
}

// The rows of a result as its file holds them.
class ResultRows {
public:
    ResultRows(const WriteRequest& request, const Plan& plan) : request_(request), plan_(plan) {}

    void operator()(int top, int bottom, std::vector<float>& values) {
        const auto width = static_cast<std::size_t>(request_.result.width());
        rgba_.resize(width * kChannels);
        values.clear();
        values.reserve(width * static_cast<std::size_t>(bottom - top) * plan_.channels());
        for (int y = top; y < bottom; ++y) {
            loadRow(request_.result, 0, y, rgba_);
            if (request_.colours != nullptr) request_.colours->encode.apply(rgba_);
            if (plan_.multiplied && !request_.associated) associate(rgba_, hiddenColour());
            selectChannels(rgba_, plan_, values);
        }
        if (plan_.type == SampleType::kHalf) clampToHalf(values);
        if (request_.others != nullptr) addOthers(top, bottom, values);
        if (request_.progress) {
            request_.progress(static_cast<double>(bottom) / request_.result.height());
        }
    }

private:
    HiddenColour hiddenColour() const {
        return request_.source.associated ? HiddenColour::kKept : HiddenColour::kDropped;
    }

    // Puts the planes of the other channels next to the values of each pixel.
    void addOthers(int top, int bottom, std::vector<float>& values) {
        const std::vector<float>& planes = request_.others->read(top, bottom);
        const std::size_t own = plan_.channels();
        const std::size_t all = own + request_.others->count();
        const std::size_t pixels = values.size() / own;
        joined_.resize(pixels * all);
        for (std::size_t i = 0; i < pixels; ++i) {
            float* to = joined_.data() + i * all;
            std::copy_n(values.data() + i * own, own, to);
            for (std::size_t c = own; c < all; ++c) to[c] = planes[(c - own) * pixels + i];
        }
        values.swap(joined_);
    }

    const WriteRequest& request_;
    Plan plan_;
    std::vector<float> rgba_;
    std::vector<float> joined_;
};

}  // namespace

ColourTarget colourTarget(const std::filesystem::path& path, const Picture& source,
                          std::optional<SampleType> type) {
    const PictureFormat& format = formatOf(path);
    const SampleType written = nearestType(format, type.value_or(source.type));
    return {format.name, worldBits(written) == 32, source.grey && format.grey};
}

bool writesAssociated(const std::filesystem::path& path, const Picture& source) {
    return writesAssociated(formatOf(path), source);
}

void writeResult(const std::filesystem::path& path, const WriteRequest& request,
                 Messages& messages) {
    const PictureFormat& format = formatOf(path);
    requireRoomForColours(path, request.source);
    const bool wantsAlpha = request.source.hasAlpha || request.grown;
    const Plan plan = makePlan(format, request, wantsAlpha);
    tellDifferences(path, format, request, plan, wantsAlpha, messages);
    if (request.colours != nullptr) {
        tellColours(*request.colours, request.source.name, path, targetOf(format, plan), messages);
    }
    OIIO::ImageSpec imageSpec = makeSpec(path, format, request, plan);
    if (!setSettings(imageSpec, format, request.settings)) {
        messages.note(path.string() + " is written without its settings, which are too long for " +
                      format.title + "; --save-preset keeps them");
    }
    write(path, imageSpec, ResultRows(request, plan));
}

void writeChannels(const std::filesystem::path& path, const OIIO::ImageSpec& imageSpec,
                   const std::vector<float>& values) {
    const std::size_t row =
        static_cast<std::size_t>(imageSpec.width) * static_cast<std::size_t>(imageSpec.nchannels);
    write(path, imageSpec, [&](int top, int bottom, std::vector<float>& strip) {
        const auto rows = std::span(values).subspan(static_cast<std::size_t>(top) * row,
                                                    static_cast<std::size_t>(bottom - top) * row);
        strip.assign(rows.begin(), rows.end());
    });
}

}  // namespace pictures
