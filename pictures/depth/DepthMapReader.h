// SPDX-License-Identifier: Apache-2.0
#pragma once
// Reads depth maps: pictures with values 0..1, as the effect expects, or distances or disparities,
// as renderers, cameras and stereo programs write them.

#include <cstddef>
#include <string>

#include "pictures/Messages.h"
#include "pictures/Picture.h"
#include "pictures/depth/DepthMapping.h"
#include "pictures/files/PictureReader.h"

namespace pictures {

// The control "Channel" of the effect's depth map, in the order of its choices.
enum class MapChannel { kRed = 1, kGreen = 2, kBlue = 3, kAlpha = 4, kAverage = 5 };

// The effect's controls on which the meaning of a map depends.
struct MapControls {
    MapChannel channel = MapChannel::kAverage;
    bool channelGiven = false;  // the user chose it; otherwise a colour picture warns
    bool inverted = false;      // "Invert Depth Map"
};

// A map as its file holds it. Colours are straight and in the file's unit, or whole numbers as
// stored if the user says that an integer file holds distances or disparities. They are kNothing
// where nothing is: values as in isNothing(), pixels outside the data window, transparent pixels.
struct DepthSource {
    Picture picture;
    DepthKind kind = DepthKind::kNormalised;
    DepthRange range;  // of the channel that the effect reads
    MapControls controls;

    // The value of a pixel that the effect reads.
    double value(std::size_t pixel) const;
};

// Reads FILE, FILE:LAYER or FILE:CHANNEL, its display window or everything. Of several channels the
// one that holds depth is taken, see findDepthChannel(), unless the effect reads alpha. A single
// channel becomes grey. The kind is that of the mapping or of the channel's name; otherwise it is
// distance if the mapping asks for it or if a float file has values beyond 1. Warns about a colour
// picture. Throws what readPicture throws, UsageError if the mapping doesn't suit the kind, and
// Failure if the range is needed but there is no distance or disparity at all.
DepthSource readDepth(const std::string& text, Extent extent, const DepthMapping& mapping,
                      const MapControls& controls, Messages& messages);

// Notes the kind of the map, its range and the number of pixels where nothing is, and warns about
// values that the mapping can't tell apart.
void tellDepth(const DepthSource& source, const DepthMapping& mapping, Messages& messages);
// The same for what several maps, called `name`, hold together.
void tellRange(const std::string& name, DepthKind kind, const DepthRange& range,
               const DepthMapping& mapping, Messages& messages);

// The map with the effect's values, in the file's bits if it is normalised, otherwise float.
Picture applyCurve(DepthSource source, const DepthCurve& curve);

}  // namespace pictures
