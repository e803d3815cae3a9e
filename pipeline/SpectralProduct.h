// SPDX-License-Identifier: Apache-2.0
#pragma once
// The product of one position of a block's spectrum with the kernels, in place.

#include <algorithm>
#include <cstddef>

#include "effect/RenderInfo.h"
#include "pipeline/BlockLayout.h"

// K is the composite mode. With Normal (1) the frame's four colour channels and the weight map of
// each layer fan out into five channels per layer; with Split (2) each channel is multiplied by its
// own layer's kernel. With one layer both are the same.
template <std::size_t N, int K>
class SpectralProduct {
public:
    using Layout = BlockLayout<N>;
    using Element = typename Layout::Element;
    using Kernel = typename Layout::KernelElement;

    // Multiplies the value real + i imag by kr + i ki, layers first to last - 1. Normal needs the
    // layers in descending order, one call after the other.
    static void layers(const Kernel& kr, const Kernel& ki, Element& real, Element& imag,
                       std::size_t first, std::size_t last) {
        for (std::size_t i = last; i-- > first;) {
            if constexpr (N == 1) {
                product<kColours>(kr[0], ki[0], real, imag, 0, 0);
            } else if constexpr (K == kCompositeSplit) {
                product<kWidth>(kr[i], ki[i], real, imag, kWidth * i, kWidth * i);
            } else {
                normal(kr, ki, real, imag, i);
            }
        }
    }

private:
    static constexpr std::size_t kColours = Layout::kColours;
    static constexpr std::size_t kWidth = Layout::kLayerChannels;

    // Sets the `width` channels from `target` on to the product of the kernel value kr + i * ki and
    // the channels from `source` on, which are the same ones or disjoint.
    template <std::size_t width>
    static void product(double kr, double ki, Element& real, Element& imag, std::size_t source,
                        std::size_t target) {
        ORBEL_INDEPENDENT_LANES
        for (std::size_t c = 0; c < width; ++c) {
            const double re = real[source + c];
            const double im = imag[source + c];
            real[target + c] = kr * re - ki * im;
            imag[target + c] = kr * im + ki * re;
        }
    }

    // From the last layer down, each weight before its colours, no source is overwritten before its
    // last use. The weight map uses the kernel of the next blurrier layer, so that a layer's mask
    // reaches as far as that layer's blur.
    static void normal(const Kernel& kr, const Kernel& ki, Element& real, Element& imag,
                       std::size_t i) {
        const std::size_t blurrier = i == 0 ? 0 : i - 1;
        const std::size_t weight = kWidth * i + kColours;
        product<1>(kr[blurrier], ki[blurrier], real, imag, kColours + i, weight);
        product<kColours>(kr[i], ki[i], real, imag, 0, kWidth * i);
    }
};
