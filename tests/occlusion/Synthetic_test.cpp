// SPDX-License-Identifier: Apache-2.0
// Pictures with a known answer, rendered by the effect in slabs.
#include <numbers>
#include <random>

#include "occlusion/Stage.h"
#include "support/LayerCounts.h"
#include "support/Noise.h"

namespace test {
namespace {

constexpr int kWidth = 120;
constexpr int kMiddle = kWidth / 2;
constexpr int kHeight = 90;
constexpr double kRadius = 9.0;

const auto kEverywhere = [](int, int) { return true; };

Rgba farLight(int x, int y) {
    return {0.2 + 0.003 * x, 0.5 - 0.002 * y, 0.3, 1.0};
}
Rgba nearLight(int x, int y) {
    return {0.8, 0.3 + 0.004 * y, 0.1 + 0.003 * x, 1.0};
}
bool onCard(int x, int y) {
    return x >= 40 && x < 75 && y >= 25 && y < 70;
}

// Light of two layers, the near one with coverage in alpha, one over the other.
std::shared_ptr<headless::World> over(const headless::World& near, const headless::World& far) {
    return paint(far.width(), far.height(), [&](int x, int y) {
        const Rgba above = rgbaAt(near, x, y);
        Rgba sum = rgbaAt(far, x, y);
        for (std::size_t c = 0; c < 3; ++c) sum[c] += above[3] * (above[c] - sum[c]);
        return sum;
    });
}

class Occlusion : public Stage {
protected:
    Occlusion() { set("Blur Radius", kRadius); }

    std::shared_ptr<headless::World> twoCards(double share = 1.0) {
        return paint(kWidth, kHeight, [&](int x, int y) {
            Rgba light = farLight(x, y);
            const bool rim = onCard(x, y) && !(onCard(x - 1, y) && onCard(x + 1, y));
            const double part = onCard(x, y) ? (rim ? share : 1.0) : 0.0;
            for (std::size_t c = 0; c < 3; ++c) light[c] += part * (nearLight(x, y)[c] - light[c]);
            return light;
        });
    }
    std::shared_ptr<headless::World> twoDepths(double near, double far) {
        return paintMap(kWidth, kHeight, [&](int x, int y) { return onCard(x, y) ? near : far; });
    }
    std::shared_ptr<headless::World> card(double share = 1.0) {
        return paint(kWidth, kHeight, [&](int x, int y) {
            Rgba light = nearLight(x, y);
            const bool rim = !(onCard(x - 1, y) && onCard(x + 1, y));
            light[3] = onCard(x, y) ? (rim ? share : 1.0) : 0.0;
            return light;
        });
    }
};

// The near depth is at the end of the scale, where the blur has the full radius.
TEST_F(Occlusion, BlursEachOfTwoCardsAlone) {
    set("Focal Distance", 0.0);
    const auto wall = paint(kWidth, kHeight, farLight);
    const auto expected = over(*flat(card()), *wall);
    const auto result = occluded(twoCards(), twoDepths(1.0, 0.0));
    ASSERT_EQ(result.slabs.size(), 2U);
    EXPECT_EQ(result.slabs[0].layers, 1) << "one radius needs no layers";
    // Behind the card the wall is guessed from its surroundings.
    EXPECT_LT(largestDifference(*result.frame.output, *expected, kEverywhere), 0.01);
    EXPECT_LT(difference(*result.frame.output, *expected), 0.002);
    // Without an order, the wall's light lies on the card's rim or is cut by it.
    setMap(twoDepths(1.0, 0.0));
    EXPECT_GT(difference(*plain(twoCards()), *expected), 0.02);
}

TEST_F(Occlusion, PartsThePixelsOfAnAntialiasedOutline) {
    set("Focal Distance", 1.0);
    const auto wall = paint(kWidth, kHeight, farLight);
    const auto expected = over(*card(0.5), *flat(wall));
    const auto result = occluded(twoCards(0.5), twoDepths(1.0, 0.0));
    // The rim of a sharp card keeps its pixels' colours; a fringe of it would be 0.1 and more.
    EXPECT_LT(largestDifference(*result.frame.output, *expected, kEverywhere), 0.03);
}

TEST_F(Occlusion, EqualsTheEffectWhereThereIsOneSlab) {
    set("Exposure", 10.0);
    const auto picture = paint(kWidth, kHeight, [](int x, int y) {
        Rgba rgba = farLight(x, y);
        rgba[0] = x % 40 == 20 && y % 30 == 15 ? 1.0 : rgba[0];
        rgba[3] = x < 30 ? 0.5 : 1.0;
        return rgba;
    });
    const auto depth = twoDepths(0.9, 0.9);
    const auto own = occluded(picture, depth);
    EXPECT_EQ(own.slabs.size(), 1U);
    const auto split = occluded(picture, depth, {.bounds = {0.5F}});
    ASSERT_EQ(split.slabs.size(), 2U);
    EXPECT_EQ(split.slabs[0].layers, 0) << "no pixel";
    setMap(depth);
    const auto expected = plain(picture);
    EXPECT_EQ(largestDifference(*own.frame.output, *expected, kEverywhere), 0.0);
    // One radius by a kernel of its own, and not by two layers of the same second moment.
    EXPECT_LT(difference(*split.frame.output, *expected), 0.005);
}

// A surface that lets light through shows what isn't in the picture, and not the slab behind it.
TEST_F(Occlusion, FillsNoAlphaBehindWhatIsSeenThrough) {
    set("Focal Distance", 1.0);
    const auto glass = paint(kWidth, kHeight, [](int x, int y) {
        Rgba light = onCard(x, y) ? nearLight(x, y) : farLight(x, y);
        light[3] = onCard(x, y) ? 0.4 : 1.0;
        return light;
    });
    const auto result = occluded(glass, twoDepths(1.0, 0.0));
    // The blurred wall is seen through the glass as far as its blur reaches.
    const auto inside = [](int x, int y) {
        return onCard(x - 12, y - 12) && onCard(x + 12, y + 12);
    };
    EXPECT_LT(largestDifference(*result.frame.output, *glass, inside), 0.01);
}

// What lies outside the picture is as transparent as without slabs.
TEST_F(Occlusion, FallsOffOnceAtEdgesThatAreNotRepeated) {
    set("Edge Behavior", 0.0);
    const auto alphaOf = [](const headless::World& world) {
        return paint(kWidth, kHeight, [&](int x, int y) {
            return Rgba{0.0, 0.0, 0.0, rgbaAt(world, x, y)[3]};
        });
    };
    const auto depths = paintMap(kWidth, kHeight, [](int x, int) { return x < 60 ? 1.0 : 0.0; });
    const auto result = occluded(paint(kWidth, kHeight, farLight), depths);
    ASSERT_EQ(result.slabs.size(), 2U);
    setMap(depths);
    const auto expected = alphaOf(*plain(paint(kWidth, kHeight, farLight)));
    EXPECT_LT(rgbaAt(*expected, 0, 40)[3], 0.7);
    EXPECT_LT(largestDifference(*alphaOf(*result.frame.output), *expected, kEverywhere), 0.02);
}

// A bright rim of the sharp card stays on the card; it is no lamp of the wall behind it.
TEST_F(Occlusion, KeepsTheLightOnARim) {
    set("Focal Distance", 1.0);
    const auto lit = paint(kWidth, kHeight, [](int x, int y) {
        if (!onCard(x, y)) return farLight(x, y);
        return onCard(x - 1, y) ? nearLight(x, y) : Rgba{4.0, 4.0, 4.0, 1.0};
    });
    const auto result = occluded(lit, twoDepths(1.0, 0.0));
    EXPECT_NEAR(rgbaAt(*result.frame.output, 40, 45)[0], 4.0, 0.02);
    EXPECT_LT(rgbaAt(*result.frame.output, 36, 45)[0], farLight(36, 45)[0] + 0.02);
}

// A small lamp beside the sharp card, and a pixel with the card's depth through which it shines.
TEST_F(Occlusion, GivesALampWhatShinesThroughAnOutline) {
    set("Focal Distance", 1.0);
    const auto lit = paint(kWidth, kHeight, [](int x, int y) {
        const bool lamp = x >= 37 && x < 40 && y >= 44 && y < 47;
        if (lamp || (x == 40 && y == 45)) return Rgba{20.0, 20.0, 20.0, 1.0};
        return onCard(x, y) ? nearLight(x, y) : farLight(x, y);
    });
    const auto result = occluded(lit, twoDepths(1.0, 0.0));
    EXPECT_LT(rgbaAt(*result.frame.output, 40, 45)[0], 3.0);
}

// Colours just below zero, and such as the curve of exposure turns into more than a float holds.
TEST_F(Occlusion, EndsWithAnyColour) {
    for (const auto& [colour, exposure] : {std::pair{-1e-3, 0.0}, {10.0, 10.0}, {0.9, -30.0}}) {
        set("Exposure", exposure);
        const auto picture = paint(kWidth, kHeight, [&](int x, int y) {
            return x == 20 && y == 20 ? Rgba{colour, colour, colour, 1.0} : farLight(x, y);
        });
        const auto result = occluded(picture, twoDepths(1.0, 0.0));
        for (int x = 0; x < kWidth; ++x) {
            EXPECT_TRUE(std::isfinite(rgbaAt(*result.frame.output, x, 20)[0])) << colour;
        }
    }
}

TEST_F(Occlusion, CopiesWithoutABlur) {
    set("Blur Radius", 0.0);
    const auto picture = twoCards(0.5);
    const auto result = occluded(picture, twoDepths(0.52, 0.48), {.bounds = {0.5F}});
    EXPECT_EQ(largestDifference(*result.frame.output, *picture, kEverywhere), 0.0);
}

// The blur of each pixel by a disc of its own radius, in double precision.
std::shared_ptr<headless::World> scattered(const headless::World& picture, double steepness) {
    const auto place = [](int x, int y, int c) {
        return static_cast<std::size_t>((y * kWidth + x) * 4 + c);
    };
    std::vector<double> sums(place(0, kHeight, 0));
    constexpr int kFine = 4;
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth; ++x) {
            const double radius = std::fabs(steepness * (x - kMiddle));
            const int reach = static_cast<int>(std::ceil(radius));
            const int side = 2 * reach + 1;
            std::vector<double> disc;
            double total = 0.0;
            for (int i = 0; i < side * side; ++i) {
                double covered = radius < 0.5 ? (i == side * reach + reach ? 1.0 : 0.0) : 0.0;
                for (int f = 0; radius >= 0.5 && f < kFine * kFine; ++f) {
                    const int column = i % side - reach;
                    const int row = i / side - reach;
                    const double u = column + (f % kFine + 0.5) / kFine - 0.5;
                    const int fineRow = f / kFine;
                    const double v = row + (fineRow + 0.5) / kFine - 0.5;
                    covered += std::hypot(u, v) <= radius ? 1.0 : 0.0;
                }
                disc.push_back(covered);
                total += covered;
            }
            for (std::size_t i = 0; i < disc.size(); ++i) {
                const int u = x + static_cast<int>(i) % side - reach;
                const int v = y + static_cast<int>(i) / side - reach;
                if (u < 0 || v < 0 || u >= kWidth || v >= kHeight) continue;
                for (int c = 0; c < 4; ++c) {
                    sums[place(u, v, c)] +=
                        disc[i] / total * rgbaAt(picture, x, y)[static_cast<std::size_t>(c)];
                }
            }
        }
    }
    return paint(kWidth, kHeight, [&](int x, int y) {
        Rgba mean;
        const double weight = sums[place(x, y, 3)];
        for (int c = 0; c < 4; ++c)
            mean[static_cast<std::size_t>(c)] = sums[place(x, y, c)] / weight;
        return mean;
    });
}

TEST_F(Occlusion, LeavesASlantedPlaneAsItIs) {
    SKIP_UNLESS_ALL_LAYER_COUNTS_ARE_BUILT();
    const auto picture = paint(kWidth, kHeight, [](int x, int y) {
        const double light = 0.5 + 0.4 * std::sin(x * 0.7) * std::sin(y * 0.5);
        return Rgba{light, light * 0.5, 1.0 - light, 1.0};
    });
    const auto plane = paintMap(kWidth, kHeight, [](int x, int) {
        return 0.5 + (x - kMiddle) / static_cast<double>(kWidth);
    });
    const auto truth = scattered(*picture, 2.0 * kRadius / kWidth);
    setMap(plane);
    const auto inside = [](int x, int y) {
        return x >= 12 && y >= 12 && x < kWidth - 12 && y < kHeight - 12;
    };
    const double plainError = difference(*plain(picture), *truth, inside);
    EXPECT_EQ(occluded(picture, plane).slabs.size(), 1U) << "nothing hides anything";
    for (const int slabs : {2, 4}) {
        const auto result = occluded(picture, plane, {.slabs = slabs});
        const double error = difference(*result.frame.output, *truth, inside);
        EXPECT_LT(20.0 * std::log10(error / plainError), 0.3) << slabs << " slabs";
    }
}

TEST_F(Occlusion, SurvivesAnyMap) {
    const auto picture = twoCards();
    std::mt19937 random(1);
    std::uniform_real_distribution<double> any(-0.5, 1.5);
    const auto noise = paintMap(kWidth, kHeight, [&](int, int) { return any(random); });
    const auto gaps = paintMap(kWidth, kHeight, [&](int x, int) {
        return x % 7 == 0 ? NAN : (x % 5 == 0 ? HUGE_VAL : 0.7);
    });
    for (const auto& map : {noise, gaps, twoDepths(0.0, 0.0)}) {
        for (const int slabs : {0, 3, 8}) {
            const auto result = occluded(picture, map, {.slabs = slabs});
            for (int y = 0; y < kHeight; ++y) {
                for (int x = 0; x < kWidth; ++x) {
                    for (const double value : rgbaAt(*result.frame.output, x, y)) {
                        ASSERT_TRUE(value >= -1e-4 && value <= 1.001) << value;
                    }
                }
            }
        }
    }
}

// A thing that comes nearer while it moves a pixel a frame, through a bound that stays: nothing
// jumps.
TEST_F(Occlusion, LetsThingsPassThroughABound) {
    SKIP_UNLESS_ALL_LAYER_COUNTS_ARE_BUILT();
    constexpr int kFrames = 48;
    set("Focal Distance", 0.0);
    std::vector<double> steps;
    std::shared_ptr<headless::World> last;
    for (int frame = 0; frame < kFrames; ++frame) {
        const auto onThing = [&](int x, int y) { return onCard(x + 24 - frame, y); };
        const auto picture = paint(kWidth, kHeight, [&](int x, int y) {
            return onThing(x, y) ? nearLight(x + 24 - frame, y) : farLight(x, y);
        });
        const double depth = 0.2 + 0.6 * frame / (kFrames - 1);
        const auto map =
            paintMap(kWidth, kHeight, [&](int x, int y) { return onThing(x, y) ? depth : 0.0; });
        const auto result = occluded(picture, map, {.bounds = {0.5F}});
        if (last) steps.push_back(difference(*result.frame.output, *last));
        last = result.frame.output;
    }
    for (std::size_t i = 1; i + 1 < steps.size(); ++i) {
        EXPECT_LT(steps[i], 1.3 * (steps[i - 1] + steps[i + 1]) / 2.0) << "frame " << i + 1;
    }
}

}  // namespace
}  // namespace test
