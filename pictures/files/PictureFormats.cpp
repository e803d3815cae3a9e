// SPDX-License-Identifier: Apache-2.0
#include "pictures/files/PictureFormats.h"

#include <algorithm>
#include <cctype>

#include "pictures/Errors.h"

namespace pictures {
namespace {

const std::vector<PictureFormat>& formats() {
    using enum SampleType;
    constexpr bool kYes = true;
    constexpr bool kNo = false;
    // name, title, suffixes, alpha, grey, grey with alpha, windows, needs a file, types
    static const std::vector<PictureFormat> kTable = {
        {"openexr",
         "EXR",
         {".exr"},
         AlphaKind::kAssociated,
         kYes,
         kYes,
         kYes,
         kNo,
         {kHalf, kFloat}},
        {"png", "PNG", {".png"}, AlphaKind::kStraight, kYes, kYes, kNo, kNo, {kUInt8, kUInt16}},
        {"tiff",
         "TIFF",
         {".tif", ".tiff"},
         AlphaKind::kEither,
         kYes,
         kYes,
         kNo,
         kYes,
         {kUInt8, kUInt16, kFloat}},
        {"jpeg", "JPEG", {".jpg", ".jpeg"}, AlphaKind::kNone, kYes, kNo, kNo, kNo, {kUInt8}},
        {"targa", "TGA", {".tga"}, AlphaKind::kStraight, kYes, kNo, kNo, kNo, {kUInt8}},
        {"bmp", "BMP", {".bmp"}, AlphaKind::kNone, kYes, kNo, kNo, kNo, {kUInt8}},
        {"hdr", "HDR", {".hdr"}, AlphaKind::kNone, kNo, kNo, kNo, kNo, {kFloat}},
        {"pnm", "PPM", {".ppm"}, AlphaKind::kNone, kNo, kNo, kNo, kNo, {kUInt8}},
        {"pnm", "PGM", {".pgm"}, AlphaKind::kNone, kYes, kNo, kNo, kNo, {kUInt8}},
        {"webp", "WebP", {".webp"}, AlphaKind::kStraight, kNo, kNo, kNo, kYes, {kUInt8}},
        {"heif",
         "HEIF",
         {".heic", ".heif", ".avif"},
         AlphaKind::kStraight,
         kNo,
         kNo,
         kNo,
         kYes,
         {kUInt8}},
        {"jpeg2000",
         "JPEG 2000",
         {".jp2"},
         AlphaKind::kStraight,
         kYes,
         kNo,
         kNo,
         kYes,
         {kUInt8, kUInt16}},
        {"jpegxl",
         "JPEG XL",
         {".jxl"},
         AlphaKind::kStraight,
         kYes,
         kYes,
         kNo,
         kYes,
         {kUInt8, kUInt16, kFloat}},
    };
    return kTable;
}

std::string lowerSuffix(const std::filesystem::path& path) {
    std::string suffix = path.extension().string();
    std::transform(suffix.begin(), suffix.end(), suffix.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return suffix;
}

// Whether the image library of this system writes the format.
bool available(const PictureFormat& format) {
    const std::string list(OIIO::get_string_attribute("output_format_list"));
    return ("," + list + ",").find("," + format.name + ",") != std::string::npos;
}

std::string knownSuffixes() {
    std::string list;
    for (const PictureFormat& format : formats()) {
        if (!available(format)) continue;
        for (const std::string& suffix : format.suffixes) list += " " + suffix;
    }
    return list;
}

// Whether every value of type `from` is a value of type `to`. Half has 11 significant bits: enough
// to tell 8-bit values apart, not those of 16 bits.
bool holds(SampleType to, SampleType from) {
    if (to == SampleType::kFloat || to == from) return true;
    return from == SampleType::kUInt8 && to != SampleType::kUInt8;
}

}  // namespace

std::string titleBySuffix(const std::filesystem::path& path) {
    const std::string suffix = lowerSuffix(path);
    for (const PictureFormat& format : formats()) {
        const auto& known = format.suffixes;
        if (std::find(known.begin(), known.end(), suffix) != known.end()) return format.title;
    }
    return "";
}

const PictureFormat& formatOf(const std::filesystem::path& path) {
    const std::string suffix = lowerSuffix(path);
    for (const PictureFormat& format : formats()) {
        const auto& known = format.suffixes;
        if (std::find(known.begin(), known.end(), suffix) == known.end()) continue;
        if (available(format)) return format;
        throw UsageError("cannot write " + path.string() +
                         ": the image library on this system has no " + format.title +
                         "; choose another format");
    }
    throw UsageError("cannot write " + path.string() + ": its name must end in one of" +
                     knownSuffixes());
}

void requireType(const PictureFormat& format, SampleType type) {
    const auto& types = format.types;
    if (std::find(types.begin(), types.end(), type) != types.end()) return;
    std::string known;
    for (const SampleType t : types)
        known += std::string(known.empty() ? "" : ", ") + sampleTypeName(t);
    throw UsageError(format.title + " can't hold " + sampleTypeName(type) + " per channel, only " +
                     known + "; choose another --output-type or format");
}

void requireRoomForColours(const std::filesystem::path& path, const Picture& picture) {
    if (picture.grey || lowerSuffix(path) != ".pgm") return;
    throw UsageError("cannot write " + path.string() + ": PGM holds only grey, and " +
                     picture.name + " has colours; use .ppm");
}

SampleType nearestType(const PictureFormat& format, SampleType wanted) {
    for (const SampleType type : format.types) {
        if (holds(type, wanted)) return type;
    }
    return format.types.back();
}

}  // namespace pictures
