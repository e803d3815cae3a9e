// SPDX-License-Identifier: Apache-2.0
#include "pictures/apertures/Apertures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <numbers>

namespace apertures {
namespace {

constexpr double kPi = std::numbers::pi;
const std::atomic<bool> kGoOn{false};

std::vector<float> drawn(const std::string& name, const Values& given, int size) {
    for (const Kind& kind : kinds()) {
        if (kind.name != name) continue;
        Values values = given;
        values.merge(defaultsOf(kind));
        EXPECT_EQ(values.size(), kind.options.size()) << name;
        return draw(kind, values, size, kGoOn);
    }
    ADD_FAILURE() << name;
    return {};
}

// The light that passes, the square of the radius being 1.
double lightOf(const std::vector<float>& picture) {
    double sum = 0.0;
    for (const float value : picture) sum += static_cast<double>(value);
    return 4.0 * sum / static_cast<double>(picture.size());
}

double largestDifference(const std::vector<float>& a, const std::vector<float>& b) {
    double largest = 0.0;
    for (std::size_t i = 0; i < a.size(); ++i) {
        largest = std::max(largest, static_cast<double>(std::fabs(a[i] - b[i])));
    }
    return largest;
}

TEST(Apertures, PassTheLightOfTheirArea) {
    struct Case {
        const char* kind;
        Values values;
        double area;
    };
    const double hexagon = 3.0 * std::sin(kPi / 3.0);
    const Case cases[] = {
        {"ring", {{"obstruction", 0.0}}, kPi},
        {"ring", {{"obstruction", 0.4}}, kPi * (1.0 - 0.16)},
        {"soft", {{"falloff", 1.0}}, 0.3 * kPi},  // the integral of 2 pi r (1 - r^2 (3 - 2 r))
        {"bubble", {{"centre", 1.0}}, kPi},
        {"bubble", {{"centre", 0.0}, {"rim", 1.0}}, 0.7 * kPi},
        {"blades", {{"curvature", 0.0}}, hexagon},
        {"blades", {{"curvature", 0.0}, {"rotation", 17.0}}, hexagon},
        {"blades", {{"curvature", 1.0}, {"count", 3.0}}, kPi},
        {"anamorphic", {{"squeeze", 2.5}, {"rotation", 30.0}}, kPi / 2.5},
        {"star", {{"inner", 0.4}, {"rotation", -9.0}}, 5.0 * 0.4 * std::sin(kPi / 5.0)},
        {"onion", {{"strength", 0.0}}, kPi},
        {"dust", {{"count", 0.0}}, kPi},
    };
    for (const int size : {16, 37, 256}) {
        for (const Case& each : cases) {
            const double light = lightOf(drawn(each.kind, each.values, size));
            EXPECT_NEAR(light, each.area, 2e-4 * each.area) << each.kind << ' ' << size;
        }
    }
}

// A row of a disc whose edges are known: each pixel's share by a sum over many lines.
TEST(Apertures, ShadeEachPixelByTheAreaCovered) {
    constexpr int kSize = 21;
    constexpr int kLines = 4000;
    const std::vector<float> picture = drawn("ring", {{"obstruction", 0.0}}, kSize);
    for (int y = 0; y < kSize; ++y) {
        for (int x = 0; x < kSize; ++x) {
            double covered = 0.0;
            for (int line = 0; line < kLines; ++line) {
                const double v = y + (line + 0.5) / kLines - 0.5 * kSize;
                const double half = std::sqrt(0.25 * kSize * kSize - v * v);
                const double left = std::max(static_cast<double>(x), 0.5 * kSize - half);
                const double right = std::min(x + 1.0, 0.5 * kSize + half);
                covered += std::max(0.0, right - left) / kLines;
            }
            EXPECT_NEAR(picture[static_cast<std::size_t>(y * kSize + x)], covered, 5e-4)
                << x << ' ' << y;
        }
    }
}

TEST(Apertures, HaveTheirCentreOfGravityInTheMiddle) {
    constexpr std::size_t kSize = 101;
    constexpr double kMiddle = 50.0;
    for (const Kind& kind : kinds()) {
        if (kind.name == "dust") continue;  // specks lie anywhere
        const std::vector<float> picture =
            draw(kind, defaultsOf(kind), static_cast<int>(kSize), kGoOn);
        double x = 0.0;
        double y = 0.0;
        for (std::size_t i = 0; i < picture.size(); ++i) {
            const std::size_t row = i / kSize;
            const std::size_t column = i % kSize;
            x += static_cast<double>(picture[i]) * (static_cast<double>(column) - kMiddle);
            y += static_cast<double>(picture[i]) * (static_cast<double>(row) - kMiddle);
        }
        const double light = lightOf(picture) * kSize * kSize / 4.0;
        EXPECT_NEAR(x / light, 0.0, 1e-3) << kind.name;
        EXPECT_NEAR(y / light, 0.0, 1e-3) << kind.name;
        EXPECT_EQ(picture.front(), 0.0F) << kind.name;
        EXPECT_GT(*std::max_element(picture.begin(), picture.end()), 0.9F) << kind.name;
    }
}

TEST(Apertures, FollowTheirOptions) {
    constexpr std::size_t kSize = 200;
    constexpr std::size_t kMiddle = kSize * kSize / 2 + kSize / 2;
    for (const char* kind : {"blades", "star"}) {
        const auto turned = [&](double turns) {
            return drawn(kind, {{"count", 7.0}, {"rotation", 360.0 * turns}}, kSize);
        };
        EXPECT_LT(largestDifference(turned(0.0), turned(3.0 / 7.0)), 1e-6) << kind;
        EXPECT_GT(largestDifference(turned(0.0), turned(0.5 / 7.0)), 0.9) << kind;
    }
    const auto ring = drawn("ring", {{"obstruction", 0.5}}, kSize);
    EXPECT_EQ(ring[kMiddle + 48], 0.0F);  // half the radius is 50 pixels
    EXPECT_EQ(ring[kMiddle + 51], 1.0F);
    const auto bubble = drawn("bubble", {{"centre", 0.25}, {"rim", 0.3}}, kSize);
    EXPECT_FLOAT_EQ(bubble[kMiddle + 65], 0.25F);
    EXPECT_GT(bubble[kMiddle + 98], 0.95F);
    // A heart stands on its point.
    const auto heart = drawn("heart", {}, kSize);
    EXPECT_EQ(heart[kMiddle + 90 * kSize], 1.0F);
    EXPECT_EQ(heart[kMiddle - 90 * kSize], 0.0F);
}

TEST(Apertures, DifferByTheirSeedOnly) {
    for (const char* kind : {"onion", "dust"}) {
        const auto seeded = [&](double seed) { return drawn(kind, {{"seed", seed}}, 128); };
        EXPECT_EQ(seeded(5.0), seeded(5.0)) << kind;
        EXPECT_GT(largestDifference(seeded(5.0), seeded(6.0)), 0.2) << kind;
    }
    const double clean = lightOf(drawn("dust", {{"count", 0.0}}, 256));
    const double dusty = lightOf(drawn("dust", {{"count", 500.0}, {"strength", 1.0}}, 256));
    EXPECT_LT(dusty, 0.97 * clean);
    EXPECT_GT(dusty, 0.5 * clean);
}

// The sums were recorded on x86-64; every other platform has to have the same bits.
TEST(Apertures, HaveTheSameBitsOnEveryPlatform) {
    const std::map<std::string, std::uint64_t> recorded = {
        {"ring", 0xEF10C0718CD50C6F},       {"soft", 0x9B58CCBBF57C9CE2},
        {"bubble", 0x8E58E203086B78BD},     {"blades", 0xF938EFD71D86A64F},
        {"anamorphic", 0x897B0C0E2161B117}, {"star", 0x8ED05EEBF5CC244B},
        {"heart", 0x3A8CE647418C90D7},      {"onion", 0xA2AF871668B5A4F2},
        {"dust", 0xC372FD662393827B}};
    for (const Kind& kind : kinds()) {
        std::uint64_t sum = 0xCBF29CE484222325U;  // FNV-1a, over whole values
        for (const float value : draw(kind, defaultsOf(kind), 61, kGoOn)) {
            sum = (sum ^ std::bit_cast<std::uint32_t>(value)) * 0x100000001B3U;
        }
        EXPECT_EQ(sum, recorded.at(kind.name)) << kind.name << std::hex << " 0x" << sum;
    }
}

TEST(Apertures, AreAllOnTheSheet) {
    const Sheet sheet = drawSheet(32, kGoOn);
    EXPECT_EQ(sheet.width, 3 * 36 + 4);
    EXPECT_EQ(sheet.height, 3 * 36 + 4);
    ASSERT_EQ(sheet.pixels.size(), static_cast<std::size_t>(sheet.width * sheet.height));
    // The ring is the first tile, and the second row starts with the blades.
    const auto at = [&](int x, int y) {
        return sheet.pixels[static_cast<std::size_t>(y * sheet.width + x)];
    };
    EXPECT_EQ(at(4 + 16, 4 + 16), 0.0F);
    EXPECT_EQ(at(4 + 16, 4 + 4), 1.0F);
    EXPECT_EQ(at(4 + 16, 40 + 16), 1.0F);
    EXPECT_EQ(at(38, 4 + 16), 0.0F);
}

}  // namespace
}  // namespace apertures
