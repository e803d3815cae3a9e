// SPDX-License-Identifier: Apache-2.0
// What files say about a lens, written and read by the image library.
#include "pictures/depth/LensMetadata.h"

#include <cmath>
#include <limits>

#include "support/TestFiles.h"

namespace pictures {
namespace {

class LensMetadataOf : public test::FolderTest {
protected:
    template <class... Attributes>
    LensMetadata file(const std::string& name, Attributes... attributes) const {
        OIIO::ImageSpec written = test::imageSpec(4, 4, {"R", "G", "B"}, OIIO::TypeDesc::FLOAT);
        (written.attribute(attributes.first, attributes.second), ...);
        test::writeValues(path(name), written, std::vector<float>(48, 0.5F));
        OIIO::ImageSpec found;
        test::readValues<float>(path(name), &found);
        return readLensMetadata(found, 304.8);
    }
};

std::pair<const char*, float> is(const char* name, double value) {
    return {name, static_cast<float>(value)};
}

TEST_F(LensMetadataOf, PhotosIsThatOfExif) {
    const LensMetadata photo =
        file("photo.jpg", is("Exif:FocalLength", 50), is("FNumber", 1.8),
             is("Exif:SubjectDistance", 2.5), std::pair{"Exif:FocalLengthIn35mmFilm", 75});
    EXPECT_EQ(photo.focalLength, 50.0);
    EXPECT_NEAR(photo.fStop.value_or(0), 1.8, 1e-6);
    EXPECT_EQ(photo.focus, 2500.0);
    EXPECT_EQ(photo.filmFocalLength, 75.0);
    EXPECT_FALSE(photo.sensorWidth);
    EXPECT_NEAR(sensorWidthFromFilm(50, 75, 1.5), 24.0, 1e-9);
    EXPECT_NEAR(sensorWidthFromFilm(50, 75, 1 / 1.5), 16.0, 1e-9);

    const LensMetadata stops = file("apex.jpg", is("Exif:ApertureValue", 4));
    EXPECT_NEAR(stops.fStop.value_or(0), 4.0, 1e-5);
    const LensMetadata none = file("none.jpg", is("Exif:SubjectDistance", 0), is("FNumber", 0));
    EXPECT_FALSE(none.focalLength || none.fStop || none.focus || none.filmFocalLength);
}

TEST_F(LensMetadataOf, RenderersIsThatOfOpenExrInMillimetresAndMetres) {
    const LensMetadata frame = file("frame.exr", is("focalLength", 35), is("aperture", 2.8),
                                    is("focus", 3.5), is("sensorWidth", 24.89));
    EXPECT_EQ(frame.focalLength, 35.0);
    EXPECT_NEAR(frame.fStop.value_or(0), 2.8, 1e-6);
    EXPECT_EQ(frame.focus, 3500.0);
    EXPECT_NEAR(frame.sensorWidth.value_or(0), 24.89, 1e-5);

    const LensMetadata other =
        file("other.exr", std::pair{"nominalFocalLength", 40}, is("FocusDistance", 10));
    EXPECT_EQ(other.focalLength, 40.0);
    EXPECT_NEAR(other.focus.value_or(0), 3048.0, 1e-9);
    const float sensor[] = {36.7F, 25.5F};
    OIIO::ImageSpec sized;
    sized.attribute("sensorOverallDimensions",
                    OIIO::TypeDesc(OIIO::TypeDesc::FLOAT, OIIO::TypeDesc::VEC2), sensor);
    EXPECT_NEAR(readLensMetadata(sized, 1.0).sensorWidth.value_or(0), 36.7, 1e-5);
    EXPECT_EQ(file("far.exr", is("focus", 4294967295.0)).focus,
              std::numeric_limits<double>::infinity());
}

}  // namespace
}  // namespace pictures
