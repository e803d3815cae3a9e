// SPDX-License-Identifier: Apache-2.0
// Reduces an image for a preview at a lower resolution.

#include <algorithm>
#include <cmath>
#include <cstring>
#include <stdexcept>

#include "headless/World.h"

namespace headless {

namespace {

// The source pixels that one reduced pixel covers along one axis, first to first + count - 1; the
// outer two may be covered partially.
struct Span {
    int first = 0;
    int last = -1;
    double begin = 0;
    double end = 0;

    double coverage(int i) const { return std::min(end, i + 1.0) - std::max<double>(begin, i); }
};

Span coveredBy(int reduced, PF_RationalScale scale, int size) {
    const double step = static_cast<double>(scale.den) / scale.num;
    Span span;
    span.begin = reduced * step;
    span.end = std::min((reduced + 1) * step, static_cast<double>(size));
    span.first = static_cast<int>(std::floor(span.begin));
    span.last = static_cast<int>(std::ceil(span.end)) - 1;
    return span;
}

PF_PixelFloat meanOver(const World& source, const Span& across, const Span& down) {
    double area = 0;
    double alpha = 0;
    double red = 0;
    double green = 0;
    double blue = 0;
    for (int y = down.first; y <= down.last; ++y) {
        for (int x = across.first; x <= across.last; ++x) {
            const double weight = across.coverage(x) * down.coverage(y);
            const PF_PixelFloat p = source.get(x, y);
            area += weight;
            alpha += weight * p.alpha;
            red += weight * p.alpha * p.red;
            green += weight * p.alpha * p.green;
            blue += weight * p.alpha * p.blue;
        }
    }
    if (alpha == 0) return {0, 0, 0, 0};
    return {static_cast<float>(alpha / area), static_cast<float>(red / alpha),
            static_cast<float>(green / alpha), static_cast<float>(blue / alpha)};
}

void checkScale(PF_RationalScale scale) {
    if (scale.num < 1 || scale.den < 1 || static_cast<std::uint32_t>(scale.num) > scale.den) {
        throw std::invalid_argument("a downsample factor must be above 0 and at most 1");
    }
}

// Full resolution: all pixels are copied unchanged, including colour without alpha.
void copyRect(const World& source, World& target) {
    const PF_LRect rect = target.rect();
    const std::ptrdiff_t pixel = bytesPerPixel(source.format());
    for (int y = rect.top; y < rect.bottom; ++y) {
        const std::byte* from = source.bytesOfRow(y) + rect.left * pixel;
        std::byte* to = target.bytesOfRow(y - rect.top);
        if (source.format() == target.format()) {
            std::memcpy(to, from, static_cast<std::size_t>(pixel * target.width()));
            continue;
        }
        for (int x = rect.left; x < rect.right; ++x) {
            target.set(x - rect.left, y - rect.top, source.get(x, y));
        }
    }
}

}  // namespace

int reducedSize(int size, PF_RationalScale scale) {
    checkScale(scale);
    const std::int64_t product = static_cast<std::int64_t>(size) * scale.num;
    return static_cast<int>((product + scale.den - 1) / scale.den);
}

std::shared_ptr<World> reduce(const World& source, PF_RationalScale x, PF_RationalScale y,
                              const PF_LRect& rect, PF_PixelFormat format, int rowPadding) {
    if (rect.left < 0 || rect.top < 0 || rect.right > reducedSize(source.width(), x) ||
        rect.bottom > reducedSize(source.height(), y) || rect.left > rect.right ||
        rect.top > rect.bottom) {
        throw std::invalid_argument("rectangle outside the reduced layer");
    }
    const WorldOptions options{rect.left, rect.top, rowPadding};
    auto target =
        std::make_shared<World>(rect.right - rect.left, rect.bottom - rect.top, format, options);
    if (static_cast<std::uint32_t>(x.num) == x.den && static_cast<std::uint32_t>(y.num) == y.den) {
        copyRect(source, *target);
        return target;
    }
    for (int row = rect.top; row < rect.bottom; ++row) {
        const Span down = coveredBy(row, y, source.height());
        for (int column = rect.left; column < rect.right; ++column) {
            const Span across = coveredBy(column, x, source.width());
            target->set(column - rect.left, row - rect.top, meanOver(source, across, down));
        }
    }
    return target;
}

}  // namespace headless
