// SPDX-License-Identifier: Apache-2.0
#pragma once
// Writes image files.

#include <filesystem>

#include "headless/World.h"
#include "pictures/Messages.h"
#include "pictures/Picture.h"
#include "pictures/colour/ColourPlan.h"

namespace pictures {

// A rendered image, and what its file takes over from the source.
struct WriteRequest {
    const Picture& source;          // for type, alpha, grey, windows and metadata
    const headless::World& result;  // straight; its origin is relative to the layer's corner
    int layerWidth = 0;             // of the whole layer at the downsample
    int layerHeight = 0;
    double scale = 1.0;  // of the downsample; applied to the display window's origin
    const ColourPlan* colours = nullptr;  // null: numbers and metadata of colours stay as they are
};

// The file that writeResult() would write, for planColours(). Throws UsageError for an unknown
// suffix.
ColourTarget colourTarget(const std::filesystem::path& path, const Picture& source);

// Writes the result to `path` in the format of its suffix, completely or not at all. Prints one
// line for each thing that the format can't keep. EXR keeps the source's windows; other formats
// hold only the result's pixels. Throws UsageError for an unknown suffix, Failure if the file can't
// be written, Interrupted after Control-C.
void writeResult(const std::filesystem::path& path, const WriteRequest& request,
                 Messages& messages);

// Writes channels unchanged: `values` holds imageSpec.nchannels numbers per pixel.
void writeChannels(const std::filesystem::path& path, const OIIO::ImageSpec& imageSpec,
                   const std::vector<float>& values);

}  // namespace pictures
