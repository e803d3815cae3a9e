// SPDX-License-Identifier: Apache-2.0
#include "depth/DetectEdge.h"

#include <gtest/gtest.h>

#include <functional>

#include "depth/Sobel.h"
#include "headless/Host.h"
#include "host/Iterator.h"

namespace {

constexpr iRect kBlock{-5, 3, 11, 13};
constexpr int kWidth = 16;
constexpr int kHeight = 10;

// Runs both stages over one block of depth values.
class EdgeDetection : public testing::Test {
protected:
    void detect(const std::function<double(int x, int y)>& value) {
        for (int y = 0; y < kHeight; ++y) {
            for (int x = 0; x < kWidth; ++x) depth[at(x, y)] = static_cast<float>(value(x, y));
        }
        Sobel sobel(depth, kBlock, gradient);
        ASSERT_EQ(AEO::Iterator::IterationT(context, sobel, kWidth * kHeight), 0);
        DetectEdge detectEdge(gradient, kBlock, edge);
        ASSERT_EQ(AEO::Iterator::IterationT(context, detectEdge, kWidth * kHeight), 0);
    }

    static std::size_t at(int x, int y) { return static_cast<std::size_t>(y * kWidth + x); }

    void SetUp() override {
        depth.resize(kWidth * kHeight);
        edge.resize(kWidth * kHeight);
        gradient.resize(kWidth * kHeight);
    }

    headless::Host host;
    PF_InData record = host.makeInData();
    AEO::InData context{&record};
    AEO::Vector<float> depth{context};
    AEO::Vector<float> edge{context};
    AEO::Vector<ET::vecT<double, 2>> gradient{context};
};

TEST_F(EdgeDetection, IsOneOnBothSidesOfAStep) {
    for (const double sign : {1.0, -1.0}) {
        detect([&](int x, int) { return x >= 6 ? sign : 0.0; });
        for (int x = 0; x < kWidth; ++x) {
            ASSERT_EQ(edge[at(x, 4)], x == 5 || x == 6 ? 1.0f : 0.0f) << x;
        }
        detect([&](int, int y) { return y >= 6 ? sign : 0.0; });
        for (int y = 0; y < kHeight; ++y) {
            ASSERT_EQ(edge[at(3, y)], y == 5 || y == 6 ? 1.0f : 0.0f) << y;
        }
    }
}

}  // namespace
