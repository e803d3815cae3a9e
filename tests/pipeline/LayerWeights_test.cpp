// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "pipeline/StoreBuffer.h"
#include "support/StageFixture.h"

namespace {

// The weights that StoreBuffer assigns to one depth value.
template <std::size_t N>
DepthReturn<N> weightsOf(StageFixture& frame, AEO::Vector<float>& depth, float value) {
    const PF_LayerDef noLayer{};
    const AEO::Vector<float> noEdge(frame.context);
    AEO::Vector<typename BlockLayout<N>::Element> noBlock(frame.context);
    const iRect rect{0, 0, 1, 1};
    depth[0] = value;
    StoreBuffer<PF_PixelFloat, N> store(frame.info, noLayer, depth, noEdge, rect, noBlock);
    DepthReturn<N> weights;
    EXPECT_EQ(store.depthIterate(0, weights), 0);
    return weights;
}

// The weight of layer l as a hat around its centre, with the outer halves of the first and the last
// layer flat.
double hat(double distance, double slope, std::size_t layers, std::size_t l) {
    const double n = static_cast<double>(layers);
    const double place = n * std::pow(1.0 - distance, slope) - 0.5;
    const double held = std::clamp(place, 0.0, n - 1.0);
    return std::max(0.0, 1.0 - std::fabs(held - static_cast<double>(l)));
}

// How far a depth value is from the plane of focus, as a share of the distance to the farthest
// place in the range.
double distanceFromFocus(double depth, double focus, bool invert) {
    const double plane = 1.0 - focus;
    const double place = std::clamp(invert ? depth : 1.0 - depth, 0.0, 1.0);
    return std::fabs(place - plane) / std::max(std::fabs(plane), std::fabs(1.0 - plane));
}

template <std::size_t N>
void compareOverTheRange(StageFixture& frame) {
    AEO::Vector<float> depth(frame.context);
    depth.resize(1);
    for (double focus = -1.0; focus <= 2.0; focus += 0.125) {
        for (const double profile : {-1.0, -0.4, 0.0, 0.7, 1.0}) {
            for (const bool invert : {false, true}) {
                frame.info.focalDistance = focus;
                frame.info.invertDepth = invert;
                frame.info.profileSlope =
                    std::tan((profile * 0.9999 + 1.0) * std::numbers::pi * 0.25);
                for (float value = -0.25F; value <= 1.25F; value += 0.03125F) {
                    const auto weights = weightsOf<N>(frame, depth, value);
                    const double x = distanceFromFocus(static_cast<double>(value), focus, invert);
                    double sum = 0.0;
                    for (std::size_t l = 0; l < N; ++l) {
                        sum += weights[l];
                        ASSERT_NEAR(weights[l], hat(x, frame.info.profileSlope, N, l), 1e-12)
                            << "layer " << l << " of " << N << ", depth " << value << ", focus "
                            << focus << ", profile " << profile << ", invert " << invert;
                    }
                    ASSERT_NEAR(sum, 1.0, 1e-12);
                }
            }
        }
    }
}

TEST(LayerWeights, AreHatsAroundTheLayersOverTheWholeRange) {
    headless::Host host;
    StageFixture frame(host);
    compareOverTheRange<2>(frame);
    compareOverTheRange<3>(frame);
    compareOverTheRange<16>(frame);
}

TEST(LayerWeights, NanLandsOnOneLayer) {
    headless::Host host;
    StageFixture frame(host);
    AEO::Vector<float> depth(frame.context);
    depth.resize(1);
    const auto weights = weightsOf<4>(frame, depth, std::nanf(""));
    EXPECT_EQ(weights[0] + weights[1] + weights[2] + weights[3], 1.0);
}

}  // namespace
