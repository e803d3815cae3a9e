// SPDX-License-Identifier: Apache-2.0
#pragma once
// What a file says about the lens that took its picture.

#include <OpenImageIO/imageio.h>

#include <optional>

namespace pictures {

// Lengths in millimetres; what the file doesn't say is missing.
struct LensMetadata {
    std::optional<double> focalLength;
    std::optional<double> fStop;
    std::optional<double> focus;  // infinite for far
    std::optional<double> sensorWidth;
    // The focal length with the same angle across the diagonal of 36 x 24 mm.
    std::optional<double> filmFocalLength;
};

// Reads the attributes of Exif and OpenEXR and those that renderers write, by the list of names in
// the source; letter case doesn't matter, and numbers that aren't above 0 mean "unknown". `mapUnit`
// is the scene's unit in millimetres, in which a renderer's focusDistance counts.
LensMetadata readLensMetadata(const OIIO::ImageSpec& imageSpec, double mapUnit);

// The width of a sensor whose diagonal is as much smaller than that of 36 x 24 mm as the focal
// length is than `filmFocalLength`. `shape` is the upright picture's width over its height.
double sensorWidthFromFilm(double focalLength, double filmFocalLength, double shape);

}  // namespace pictures
