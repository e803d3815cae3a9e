// SPDX-License-Identifier: Apache-2.0
// The product of half spectra against the general one.
#include "pipeline/Multiply.h"

#include <gtest/gtest.h>

#include "host/Iterator.h"
#include "pipeline/MultiplyReal.h"
#include "support/HostFixture.h"
#include "support/Noise.h"

namespace {

constexpr std::size_t kSize = 64;

class Multiplication : public ContextFixture {
protected:
    // Noise with the symmetry of the spectrum of real samples: the value at the opposite frequency
    // is the conjugate.
    template <class Element>
    static void fillWithSpectrum(Element* elements, std::uint64_t seed) {
        Noise noise(seed);
        for (std::size_t p = 0; p < kSize * kSize; ++p) {
            const std::size_t y = p / kSize;
            const std::size_t x = p % kSize;
            const std::size_t opposite = (kSize - y) % kSize * kSize + (kSize - x) % kSize;
            if (opposite < p) continue;
            for (std::size_t k = 0; k < Element::kLanes; ++k) {
                const double re = noise.unit() - 0.5;
                const double im = opposite == p ? 0.0 : noise.unit() - 0.5;
                elements[2 * p][k] = elements[2 * opposite][k] = re;
                elements[2 * p + 1][k] = im;
                elements[2 * opposite + 1][k] = -im;
            }
        }
    }

    template <std::size_t N, int K>
    void compare() {
        using Layout = BlockLayout<N>;
        Filter<N> filter(*context, kSize);
        AEO::Vector<typename Layout::Element> block(*context);
        AEO::Vector<typename Layout::Element> expected(*context);
        block.resize(2 * kSize * kSize);
        expected.resize(2 * kSize * kSize);
        fillWithSpectrum(filter.data(), 2);
        const iRect rect{0, 0, kSize, kSize};
        constexpr LaneGroups kAll = allGroups(Layout::kGroups);
        for (LaneGroups groups = 1; groups <= kAll; ++groups) {
            fillWithSpectrum(expected.data(), 3);
            fillWithSpectrum(block.data(), 3);
            Multiply<N, K> general(rect, filter, expected);
            MultiplyReal<N, K> real(filter, block, groups);
            ASSERT_EQ(AEO::Iterator::IterationT(*context, general, kSize * kSize), 0);
            ASSERT_EQ(AEO::Iterator::IterationT(*context, real, kSize * kSize), 0);
            for (std::size_t i = 0; i < kSize * (kSize + 2); ++i) {
                for (std::size_t c = 0; c < Layout::kChannels; ++c) {
                    if (N > 1 && !contains(groups, c / kGroupLanes)) continue;
                    ASSERT_NEAR(block[i][c], expected[i][c], 1e-15) << i << ", channel " << c;
                }
            }
        }
    }

    template <std::size_t N>
    void compareBoth() {
        compare<N, kCompositeNormal>();
        compare<N, kCompositeSplit>();
    }
};

TEST_F(Multiplication, OfHalfSpectraEqualsTheGeneralOneForAnyGroups) {
    compareBoth<1>();
    compareBoth<2>();
    compareBoth<5>();
    compareBoth<13>();
    compareBoth<16>();
}

}  // namespace
