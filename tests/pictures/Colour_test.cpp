// SPDX-License-Identifier: Apache-2.0
// Colour spaces: what files say, and the conversion of their values.
#include <gmock/gmock.h>

#include <cmath>
#include <sstream>

#include "pictures/Errors.h"
#include "pictures/colour/ColourPlan.h"
#include "pictures/colour/TransferFunction.h"
#include "support/Noise.h"
#include "support/TestFiles.h"

namespace pictures {
namespace {

using OIIO::TypeDesc;
using testing::HasSubstr;

constexpr const char* kFunctions[] = {"linear",   "sRGB", "Rec709", "Gamma2.2",
                                      "KodakLog", "PQ",   "HLG"};

float converted(const ColourConverter& converter, float value) {
    std::vector<float> pixel{value, value, value, 0.5F};
    converter.apply(pixel);
    EXPECT_EQ(pixel[0], pixel[2]);
    EXPECT_EQ(pixel[3], 0.5F);
    return pixel[0];
}

TEST(TransferFunctions, HaveTheValuesOfTheirDefinitions) {
    const struct {
        const char* name;
        double value;
        double light;
    } points[] = {{"sRGB", 0.5, 0.21404114},
                  {"sRGB", 0.04, 0.04 / 12.92},
                  {"rec709", 0.5, 0.25971944},
                  {"GAMMA2.4", 0.5, 0.18946457},
                  {"KodakLog", 685.0 / 1023.0, 1.0},
                  {"KodakLog", 95.0 / 1023.0, 0.0},
                  {"PQ", 0.58068888, 1.0},
                  {"PQ", 1.0, 10000.0 / 203.0},
                  {"HLG", 0.75, 1.0},
                  {"HLG", 0.5, 0.31450984}};
    for (const auto& point : points) {
        const auto function = TransferFunction::named(point.name);
        ASSERT_TRUE(function) << point.name;
        EXPECT_NEAR(function->decode(point.value), point.light, 1e-5) << point.name;
        EXPECT_NEAR(function->encode(point.light), point.value, 1e-5) << point.name;
    }
    for (const char* name : {"", "Gamma", "Gamma0", "Gamma2.2x", "sRGB2", "ACEScg"}) {
        EXPECT_FALSE(TransferFunction::named(name)) << name;
    }
}

TEST(ColourConverter, KeepsTo8BitCodesAndToFloatsBothWays) {
    for (const char* from : kFunctions) {
        for (const char* to : kFunctions) {
            const ColourConverter there(from, to, {});
            const ColourConverter back(to, from, {});
            EXPECT_EQ(there.identity(), from == to);
            for (int code = 0; code < 256; ++code) {
                const auto value = static_cast<float>(code) / 255.0F;
                const float again = converted(back, converted(there, value));
                ASSERT_EQ(std::lround(again * 255.0F), code) << from << " to " << to;
            }
        }
    }
    Noise noise;
    for (const char* name : {"sRGB", "Rec709", "Gamma1.8", "HLG"}) {
        const ColourConverter encode("linear", name, {});
        const ColourConverter decode(name, "linear", {});
        for (int i = 0; i < 20000; ++i) {
            const auto light = static_cast<float>(std::exp2(noise.unit() * 24.0 - 18.0));
            const float again = converted(decode, converted(encode, light));
            ASSERT_NEAR(again, light, 1e-6F * std::max(light, 1e-3F)) << name;
            ASSERT_EQ(converted(encode, -light), -converted(encode, light)) << name;
        }
    }
}

// Against the definition, also for a corner of the curve, values beyond the table, and 0.
TEST(ColourConverter, FollowsTheCurveEverywhere) {
    for (const char* name : kFunctions) {
        const auto function = *TransferFunction::named(name);
        const ColourConverter encode("linear", name, {});
        for (double x = 1e-9; x < 1e6; x *= 1.003) {
            const auto value = static_cast<float>(x);
            const double exact = function.encode(static_cast<double>(value));
            ASSERT_NEAR(converted(encode, value), exact, 2e-7 * std::max(std::fabs(exact), 1e-3))
                << name << " of " << x;
            x *= x < 0.001 || x > 100.0 ? 1.5 : 1.0;
        }
        EXPECT_EQ(converted(encode, 0.0F), static_cast<float>(function.encode(0.0)));
    }
}

TEST(ColourConverter, ConvertsStraightColours) {
    const ColourConverter decode("sRGB", "linear", {});
    const float half = converted(decode, 0.5F);
    std::vector<float> associated{0.25F, 0.25F, 0.25F, 0.5F, 0.5F, 0.5F, 0.5F, 0.0F};
    decode.apply(associated, kRedFirst, true);
    EXPECT_FLOAT_EQ(associated[0], 0.5F * half);
    EXPECT_FLOAT_EQ(associated[4], half);
    std::vector<float> alphaFirst{0.5F, 0.5F, 0.5F, 0.5F};
    decode.apply(alphaFirst, kAlphaFirst);
    EXPECT_THAT(alphaFirst, testing::ElementsAre(0.5F, half, half, half));
}

// A PNG's beginning with these chunks.
PngColour png(const std::vector<std::pair<std::string, std::string>>& chunks) {
    std::string text("\x89PNG\r\n\x1A\n", 8);
    for (const auto& [type, data] : chunks) {
        text.append(3, '\0') += static_cast<char>(data.size());
        text.append(type).append(data).append("sum.");
    }
    std::istringstream file(text);
    return readPngColour(file);
}

void put(std::string& bytes, std::size_t offset, std::uint32_t number) {
    if (bytes.size() < offset + 4) bytes.resize(offset + 4);
    for (std::size_t i = 0; i < 4; ++i)
        bytes[offset + i] = static_cast<char>(number >> (24 - 8 * i));
}

// A profile for "RGB " or "GRAY" whose curves all have the type and data of `curve`.
std::string profile(const char* space, const std::string& curve) {
    const std::vector<const char*> names = space == std::string("GRAY")
                                               ? std::vector<const char*>{"kTRC"}
                                               : std::vector<const char*>{"rTRC", "gTRC", "bTRC"};
    std::string bytes(128, '\0');
    bytes.replace(16, 4, space).replace(20, 4, "XYZ ");
    put(bytes, 128, static_cast<std::uint32_t>(names.size()));
    const auto end = static_cast<std::uint32_t>(132 + 12 * names.size());
    for (const char* name : names) {
        const std::size_t entry = bytes.size();
        bytes += name;
        put(bytes, entry + 4, end);
        put(bytes, entry + 8, static_cast<std::uint32_t>(curve.size()));
    }
    return bytes + curve;
}

std::string gammaCurve(unsigned char whole) {
    return std::string("curv\0\0\0\0\0\0\0\1", 12) + static_cast<char>(whole) +
           std::string(3, '\0');
}

OIIO::ImageSpec specOf(TypeDesc type, const std::string& name = "", const std::string& value = "") {
    OIIO::ImageSpec made(1, 1, 3, type);
    if (name == "ICCProfile") {
        made.attribute(name, TypeDesc(TypeDesc::UINT8, static_cast<int>(value.size())),
                       value.data());
    } else if (!name.empty()) {
        made.attribute(name, value);
    }
    return made;
}

void expectSpace(const ColourSpace& space, const std::string& name, bool assumed,
                 const std::string& primaries = "") {
    EXPECT_EQ(space.name, name) << space.format;
    EXPECT_EQ(space.assumed, assumed) << space.format << " " << name;
    EXPECT_EQ(space.primaries, primaries) << space.format << " " << name;
}

TEST(ColourSpace, IsImpliedByTheFormat) {
    const TypeDesc integers = TypeDesc::UINT8;
    const TypeDesc floats = TypeDesc::FLOAT;
    for (const char* format : {"png", "jpeg", "bmp", "webp", "gif", "targa", "tiff"}) {
        expectSpace(colourSpaceOf(specOf(integers), format), "sRGB", true);
    }
    // The library calls all PNM Rec709.
    expectSpace(colourSpaceOf(specOf(integers, "oiio:ColorSpace", "Rec709"), "pnm"), "sRGB", true);
    expectSpace(colourSpaceOf(specOf(floats, "oiio:ColorSpace", "Rec709"), "pnm"), "linear", true);
    expectSpace(colourSpaceOf(specOf(floats), "tiff"), "linear", true);
    expectSpace(colourSpaceOf(specOf(TypeDesc::HALF), "openexr"), "linear", false);
    expectSpace(colourSpaceOf(specOf(TypeDesc::UINT), "openexr"), "linear", false);
    OIIO::ImageSpec film = specOf(TypeDesc::UINT16, "dpx:Transfer", "Undefined");
    expectSpace(colourSpaceOf(film, "dpx"), "sRGB", true);
    film.attribute("oiio:BitsPerSample", 10);
    expectSpace(colourSpaceOf(film, "dpx"), "KodakLog", true);
    expectSpace(colourSpaceOf(film, "cineon"), "KodakLog", true);
}

TEST(ColourSpace, IsWhatTheFileSays) {
    const TypeDesc integers = TypeDesc::UINT8;
    const auto chunks = [&](const PngColour& colour) {
        return colourSpaceOf(specOf(integers, "oiio:ColorSpace", "sRGB"), "png", colour);
    };
    const std::pair<std::string, std::string> gama{"gAMA", std::string("\0\0\xB1\x8F", 4)};
    expectSpace(chunks(png({})), "sRGB", true);
    expectSpace(chunks(png({gama, {"IDAT", ""}})), "Gamma2.2", false);
    expectSpace(chunks(png({{"IDAT", ""}, gama})), "sRGB", true);
    expectSpace(chunks(png({gama, {"sRGB", "x"}})), "sRGB", false);
    expectSpace(chunks(png({gama, {"cHRM", std::string(32, '\1')}})), "Gamma2.2", false, "cHRM");
    expectSpace(chunks(png({gama, {"cICP", std::string("\x9\x10\0\1", 4)}})), "PQ", false,
                "BT.2020");
    expectSpace(colourSpaceOf(specOf(integers, "oiio:ColorSpace", "ACEScg"), "png"), "ACEScg",
                false);
    expectSpace(
        colourSpaceOf(specOf(TypeDesc::HALF, "colorInteropID", "srgb_p3d65_scene"), "openexr"),
        "sRGB", false, "p3d65");
    OIIO::ImageSpec exr = specOf(TypeDesc::HALF);
    const float primaries[] = {0.713F, 0.293F, 0.165F, 0.83F, 0.128F, 0.044F, 0.32168F, 0.33767F};
    exr.attribute("chromaticities", TypeDesc(TypeDesc::FLOAT, 8), primaries);
    expectSpace(colourSpaceOf(exr, "openexr"), "linear", false, "chromaticities");
    for (const auto& [transfer, name] :
         {std::pair{"Printing density", "KodakLog"}, std::pair{"ITU-R 601-5 system M", "Rec709"}}) {
        expectSpace(colourSpaceOf(specOf(integers, "dpx:Transfer", transfer), "dpx"), name, false);
    }
}

TEST(ColourSpace, ReadsTheCurveOfAProfile) {
    const auto of = [](const std::string& bytes) {
        return colourSpaceOf(specOf(TypeDesc::UINT8, "ICCProfile", bytes), "jpeg");
    };
    expectSpace(of(profile("RGB ", gammaCurve(2))), "Gamma2", false, "profile \"unnamed\"");
    expectSpace(of(profile("GRAY", gammaCurve(1))), "linear", false);
    // IEC 61966-2-1 as parameters g, a, b, c, d with 16 bits after the point, and as a table.
    std::string parameters("para\0\0\0\0\0\3\0\0", 12);
    std::string table("curv\0\0\0\0\0\0\1\0", 12);
    for (const double n : {2.4, 1 / 1.055, 0.055 / 1.055, 1 / 12.92, 0.04045}) {
        put(parameters, parameters.size(), static_cast<std::uint32_t>(n * 65536.0));
    }
    for (int i = 0; i < 256; ++i) {
        const auto v = static_cast<int>(TransferFunction::named("sRGB")->decode(i / 255.0) * 65535);
        table += {static_cast<char>(v / 256), static_cast<char>(v % 256)};
    }
    expectSpace(of(profile("GRAY", parameters)), "sRGB", false);
    expectSpace(of(profile("GRAY", table)), "sRGB", false);
    const ColourSpace odd = of(profile("GRAY", table.replace(300, 100, 100, '\0')));
    expectSpace(odd, "sRGB", true);
    EXPECT_TRUE(odd.unknownCurve());
    const std::string whole = profile("RGB ", parameters);
    for (std::size_t cut = 0; cut < whole.size(); ++cut) {
        EXPECT_TRUE(of(whole.substr(0, cut)).unknownCurve()) << cut;
    }
}

class Plans : public test::FolderTest {
protected:
    // The plan for a file of `format` with this metadata, and what is said.
    ColourPlan plan(const OIIO::ImageSpec& in, const char* format, const ColourTarget& target,
                    const ColourWishes& wishes = {}) {
        Messages messages(stream, false);
        ColourPlan made =
            planColours(colourSpaceOf(in, format), "in", target, wishes, config, messages);
        tellColours(made, "in", "out", target, messages);
        metadata = in;
        describeColours(metadata, made, target);
        return made;
    }
    std::string said() {
        std::string text = stream.str();
        stream.str("");
        return text;
    }

    std::ostringstream stream;
    ColourConfig config;
    OIIO::ImageSpec metadata;
};

TEST_F(Plans, TheResultIsWhatItsFormatMeans) {
    const auto exr = specOf(TypeDesc::HALF);
    EXPECT_EQ(plan(exr, "openexr", {"png"}).result, "sRGB");
    EXPECT_EQ(said(), "orbel: out is encoded as sRGB: in is linear\n");
    EXPECT_EQ(metadata.get_string_attribute("oiio:ColorSpace"), "sRGB");
    EXPECT_EQ(plan(specOf(TypeDesc::UINT8), "png", {"openexr", true}).result, "linear");
    EXPECT_EQ(said(), "orbel: out is encoded as linear: in is taken as sRGB\n");
    EXPECT_EQ(plan(exr, "openexr", {"tiff", true}).result, "linear");
    const auto gamma = specOf(TypeDesc::UINT8, "oiio:ColorSpace", "Gamma1.8");
    EXPECT_EQ(plan(gamma, "png", {"png"}).result, "Gamma1.8");
    EXPECT_EQ(said(), "");
    EXPECT_EQ(plan(gamma, "png", {"jpeg"}).result, "sRGB");
    said();
    const ColourPlan raw = plan(exr, "openexr", {"png"}, {.raw = true});
    EXPECT_TRUE(raw.encode.identity() && raw.linearLight);
    EXPECT_EQ(metadata.get_string_attribute("oiio:ColorSpace"), "linear");
    const ColourPlan named = plan(exr, "openexr", {"png"}, {.in = "sRGB", .out = "Rec709"});
    EXPECT_FALSE(named.encode.identity() || named.linearLight);
    EXPECT_EQ(said(), "");
    EXPECT_EQ(plan(specOf(TypeDesc::UINT8, "oiio:ColorSpace", "X"), "png", {"png"}).result, "sRGB");
    EXPECT_THAT(said(), HasSubstr("\"X\", which is unknown; taken as sRGB"));
}

TEST_F(Plans, CarriesOverWhatIsStillTrue) {
    const auto photo = specOf(TypeDesc::UINT8, "ICCProfile", profile("RGB ", gammaCurve(2)));
    EXPECT_TRUE(plan(photo, "jpeg", {"png"}).encode.identity());
    EXPECT_NE(metadata.find_attribute("ICCProfile"), nullptr);
    EXPECT_EQ(metadata.find_attribute("oiio:ColorSpace"), nullptr);
    EXPECT_EQ(said(), "");
    EXPECT_EQ(plan(photo, "jpeg", {"openexr", true}).result, "linear");
    EXPECT_EQ(metadata.find_attribute("ICCProfile"), nullptr);
    EXPECT_THAT(said(), HasSubstr("primaries it has: those of in (profile \"unnamed\")"));
    EXPECT_EQ(plan(photo, "jpeg", {"png", false, true}).result, "sRGB");  // a grey file
    OIIO::ImageSpec exr = specOf(TypeDesc::HALF);
    const std::vector<float> primaries(8, 0.3F);
    exr.attribute("chromaticities", TypeDesc(TypeDesc::FLOAT, 8), primaries.data());
    said();
    plan(exr, "openexr", {"openexr", true});
    EXPECT_NE(metadata.find_attribute("chromaticities"), nullptr);
    EXPECT_EQ(said(), "");
    plan(exr, "openexr", {"tiff", true});
    EXPECT_EQ(metadata.find_attribute("chromaticities"), nullptr);
    EXPECT_THAT(said(), HasSubstr("(chromaticities), not converted"));
}

TEST_F(Plans, AnOpenColorIoConfigurationComesFirst) {
    test::writeText(path("c.ocio"), R"(ocio_profile_version: 1
strictparsing: false
roles: {default: plain, scene_linear: plain}
displays: {d: [!<View> {name: v, colorspace: squared}]}
colorspaces:
  - !<ColorSpace> {name: plain}
  - !<ColorSpace>
    name: squared
    to_reference: !<ExponentTransform> {value: [2, 2, 2, 1]}
  - !<ColorSpace>
    name: swapped
    to_reference: !<MatrixTransform> {matrix: [0, 1, 0, 0, 1, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1]}
)");
    config = ColourConfig(path("c.ocio"));
    EXPECT_NEAR(converted(ColourConverter("Squared", "plain", config), 0.5F), 0.25F, 1e-6F);
    EXPECT_NEAR(converted(ColourConverter("squared", "sRGB", config), 0.5F), 0.53709871F, 1e-6F);
    EXPECT_TRUE(config.isLinear("swapped") && config.isLinear("linear"));
    EXPECT_FALSE(config.isLinear("squared") || config.isLinear("sRGB"));
    EXPECT_THAT(config.knownNames(), HasSubstr("plain, squared, swapped"));
    OIIO::ImageSpec exr = specOf(TypeDesc::HALF);
    const std::vector<float> primaries(8, 0.3F);
    exr.attribute("chromaticities", TypeDesc(TypeDesc::FLOAT, 8), primaries.data());
    const ColourPlan made =
        plan(exr, "openexr", {"openexr", true}, {.out = "swapped", .linear = true});
    EXPECT_EQ(metadata.find_attribute("chromaticities"), nullptr);
    std::vector<float> pixel{0.1F, 0.2F, 0.3F, 1.0F};
    made.encode.apply(pixel);
    EXPECT_NEAR(pixel[0], 0.2F, 1e-6F);
    EXPECT_THROW(ColourConfig(path("none.ocio")), Failure);
}

}  // namespace
}  // namespace pictures
