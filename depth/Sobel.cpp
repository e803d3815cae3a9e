// SPDX-License-Identifier: Apache-2.0
#include "depth/Sobel.h"

#include "depth/Neighbours.h"

Sobel::Sobel(const AEO::Vector<float>& depth, const iRect& rect, AEO::Vector<Gradient>& gradient)
    : depth_(depth), rect_(rect), gradient_(gradient) {}

int Sobel::iterate(int, int index, int) {
    forRun(rect_, index, [&](const RowRun& run) {
        const float* const here = depth_.data() + run.row * run.width;
        const float* const upper = depth_.data() + run.upper * run.width;
        const float* const lower = depth_.data() + run.lower * run.width;
        Gradient* const gradient = gradient_.data() + run.row * run.width;
        run.forColumns([=](std::size_t x, std::size_t left, std::size_t right) {
            const float dx = here[left] - here[right];
            const float dy = upper[x] - lower[x];
            gradient[x][0] = static_cast<double>(dx) * 0.25;
            gradient[x][1] = static_cast<double>(dy) * 0.25;
        });
    });
    return 0;
}
