// SPDX-License-Identifier: Apache-2.0
#pragma once
// Writes image files.

#include <filesystem>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "headless/World.h"
#include "pictures/Messages.h"
#include "pictures/Picture.h"
#include "pictures/colour/ColourPlan.h"
#include "pictures/files/PassThrough.h"

namespace pictures {

// A rendered image, and what its file takes over from the source.
struct WriteRequest {
    const Picture& source;          // for type, alpha, grey and metadata
    const headless::World& result;  // straight, unless `associated`
    // In the coordinates of the file, at the downsample. Only for formats with windows; others hold
    // just the result.
    Window data;  // the result's place
    Window display;
    bool grown = false;                   // the result has pixels beyond the source's layer
    bool associated = false;              // the result's colours are multiplied by alpha
    std::optional<SampleType> type{};     // of a channel; default: that of the source
    std::optional<double> pixelAspect{};  // of the source as it is, if its file doesn't say so
    const ColourPlan* colours = nullptr;  // null: numbers and metadata of colours stay as they are
    std::string settings{};               // how it was made; see PictureSettings.h
    // Further channels for a file with windows, at the same data window; may be null.
    PassThrough* others = nullptr;
    // Called with the share written, 0 to 1; may be empty.
    std::function<void(double)> progress{};
};

// The file that writeResult() would write, for planColours(). Throws UsageError for an unknown
// suffix.
ColourTarget colourTarget(const std::filesystem::path& path, const Picture& source,
                          std::optional<SampleType> type);

// Whether writeResult() multiplies the colours of a picture by alpha.
bool writesAssociated(const std::filesystem::path& path, const Picture& source);

// Writes the result to `path` in the format of its suffix, completely or not at all, in strips.
// Prints one line for each thing that the format can't keep. Throws UsageError for an unknown
// suffix or colours in a PGM, Failure if the file can't be written, Interrupted after Control-C.
void writeResult(const std::filesystem::path& path, const WriteRequest& request,
                 Messages& messages);

// Writes channels unchanged: `values` holds imageSpec.nchannels numbers per pixel.
void writeChannels(const std::filesystem::path& path, const OIIO::ImageSpec& imageSpec,
                   const std::vector<float>& values);

}  // namespace pictures
