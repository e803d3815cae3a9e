// SPDX-License-Identifier: Apache-2.0
#pragma once
// The middle stage of a block: its spectrum times the spectra of the kernel bank, in place.

#include <cstdint>

#include "effect/RenderInfo.h"
#include "host/Vector.h"
#include "kernels/Filter.h"
#include "pipeline/BlockLayout.h"

// K is the composite mode. With Normal (1) the frame's four colour channels and the weight map of
// each layer fan out into five channels per layer; with Split (2) each channel is multiplied by its
// own layer's kernel. With one layer both are the same. Item i of the iteration is position i of
// the block.
template <std::size_t N, int K>
class Multiply {
public:
    using Element = typename BlockLayout<N>::Element;

    // Keeps its arguments by reference. `filter` and `block` both hold forward transforms.
    Multiply(const iRect& rect, const Filter<N>& filter, AEO::Vector<Element>& block)
        : rect_(rect), filter_(filter), block_(block) {}

    // Multiplies position `index`. Always returns 0.
    int iterate(int thread, int index, int count);

private:
    using Kernel = typename BlockLayout<N>::KernelElement;
    static constexpr std::size_t kColours = BlockLayout<N>::kColours;

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

    std::size_t mirrored(std::size_t index) const;

    static void split(const Kernel& kr, const Kernel& ki, Element& real, Element& imag);
    static void normal(const Kernel& kr, const Kernel& ki, Element& real, Element& imag);

    const iRect& rect_;
    const Filter<N>& filter_;
    AEO::Vector<Element>& block_;
};

template <std::size_t N, int K>
int Multiply<N, K>::iterate(int, int item, int) {
    const auto index = static_cast<std::size_t>(item);
    const std::size_t position = mirrored(index);
    const Kernel& kr = filter_[2 * position];
    const Kernel& ki = filter_[2 * position + 1];
    Element& real = block_[2 * index];
    Element& imag = block_[2 * index + 1];
    if constexpr (N == 1) {
        product<kColours>(kr[0], ki[0], real, imag, 0, 0);
    } else if constexpr (K == kCompositeSplit) {
        split(kr, ki, real, imag);
    } else {
        normal(kr, ki, real, imag);
    }
    return 0;
}

// The position of the opposite frequency. The kernels are real in space, so this reads the
// conjugate of their spectrum and mirrors them through their origin: the builder stores the
// aperture mirrored, and a point of light spreads into the upright aperture. Block and bank are
// both transposed, so the axes need no swap.
template <std::size_t N, int K>
std::size_t Multiply<N, K>::mirrored(std::size_t index) const {
    const auto width = static_cast<std::uint32_t>(rect_.width());
    const auto height = static_cast<std::uint32_t>(rect_.height());
    const auto y = static_cast<std::uint32_t>(index) / width;
    const auto x = static_cast<std::uint32_t>(index) % width;
    const std::uint32_t xm = x == 0 ? 0 : width - x;
    const std::uint32_t ym = y == 0 ? 0 : height - y;
    return std::size_t{ym} * width + xm;
}

template <std::size_t N, int K>
void Multiply<N, K>::split(const Kernel& kr, const Kernel& ki, Element& real, Element& imag) {
    constexpr std::size_t kWidth = BlockLayout<N>::kLayerChannels;
    for (std::size_t i = 0; i < N; ++i) {
        product<kWidth>(kr[i], ki[i], real, imag, kWidth * i, kWidth * i);
    }
}

// From the last layer down, each weight before its colours: no source is overwritten before its
// last use. The weight map uses the kernel of the next blurrier layer, so that a layer's mask
// reaches as far as that layer's blur.
template <std::size_t N, int K>
void Multiply<N, K>::normal(const Kernel& kr, const Kernel& ki, Element& real, Element& imag) {
    constexpr std::size_t kWidth = BlockLayout<N>::kLayerChannels;
    for (std::size_t i = N; i-- > 0;) {
        const std::size_t blurrier = i == 0 ? 0 : i - 1;
        const std::size_t weight = kWidth * i + kColours;
        product<1>(kr[blurrier], ki[blurrier], real, imag, kColours + i, weight);
        product<kColours>(kr[i], ki[i], real, imag, 0, kWidth * i);
    }
}
