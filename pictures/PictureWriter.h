#pragma once
// Writes picture files.

#include <filesystem>

#include "headless/World.h"
#include "pictures/Messages.h"
#include "pictures/Picture.h"

namespace pictures {

// What a rendered picture takes over from the picture it was made of.
struct WriteRequest {
    const Picture& source;          // type, alpha, grey, metadata
    const headless::World& result;  // straight; its origin counts from the layer's corner
    int layerWidth = 0;             // the whole layer at the downsample
    int layerHeight = 0;
    double scale = 1.0;  // of the downsample: reduces the display window's origin
};

// Writes the result to `path`, in the format that its suffix means, whole or not at all. What the
// format can't keep is said in one line each. The source's windows are kept in EXR; other formats
// hold just the result's pixels. Throws UsageError for an unknown suffix, Failure if the file can't
// be written, Interrupted on Control-C.
void writeResult(const std::filesystem::path& path, const WriteRequest& request,
                 Messages& messages);

// Writes channels as they stand: `values` holds imageSpec.nchannels numbers for each pixel.
void writeChannels(const std::filesystem::path& path, const OIIO::ImageSpec& imageSpec,
                   const std::vector<float>& values);

}  // namespace pictures
