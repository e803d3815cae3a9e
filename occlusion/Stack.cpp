// SPDX-License-Identifier: Apache-2.0
#include "occlusion/Stack.h"

#include <cstddef>

#include "occlusion/Rows.h"
#include "platform/Rectangles.h"

namespace occlusion {
namespace {

constexpr std::size_t kChannels = 4;

}  // namespace

Stack::Stack(const PF_LRect& rect, int threads)
    : rect_(rect),
      threads_(threads),
      light_(kChannels * static_cast<std::size_t>(rect.right - rect.left) *
                 static_cast<std::size_t>(rect.bottom - rect.top),
             0.0F) {}

const float* Stack::pixel(int x, int y) const {
    const auto width = static_cast<std::size_t>(rect_.right - rect_.left);
    return &light_[kChannels * (static_cast<std::size_t>(y - rect_.top) * width +
                                static_cast<std::size_t>(x - rect_.left))];
}

float* Stack::pixel(int x, int y) {
    return const_cast<float*>(static_cast<const Stack*>(this)->pixel(x, y));
}

void Stack::cover(const headless::World& slab, const headless::World* full) {
    const PF_LRect place = slab.rect();
    const PF_LRect common = intersection(rect_, place);
    if (isEmpty(common)) return;
    forRows(common.bottom - common.top, threads_, [&](int first, int last) {
        for (int y = common.top + first; y < common.top + last; ++y) {
            const auto* const row = slab.row<PF_PixelFloat>(y - place.top);
            const auto* const fullRow =
                full == nullptr ? nullptr : full->row<PF_PixelFloat>(y - place.top);
            for (int x = common.left; x < common.right; ++x) {
                const PF_PixelFloat& above = row[x - place.left];
                const float most = fullRow == nullptr ? 1.0F : fullRow[x - place.left].alpha;
                const float through = above.alpha < most ? 1.0F - above.alpha / most : 0.0F;
                float* const light = pixel(x, y);
                light[0] = above.alpha * above.red + through * light[0];
                light[1] = above.alpha * above.green + through * light[1];
                light[2] = above.alpha * above.blue + through * light[2];
                light[3] = above.alpha + through * light[3];
            }
        }
    });
}

std::shared_ptr<headless::World> Stack::picture(const LightCurve& curve) const {
    auto world = std::make_shared<headless::World>(
        rect_.right - rect_.left, rect_.bottom - rect_.top, PF_PixelFormat_ARGB128,
        headless::WorldOptions{.originX = rect_.left, .originY = rect_.top});
    const auto colour = [&](float light, float alpha) {
        const float straight = alpha > 0.0F ? light / alpha : light;
        return static_cast<float>(curve.compress(static_cast<double>(straight)));
    };
    forRows(world->height(), threads_, [&](int first, int last) {
        for (int y = first; y < last; ++y) {
            auto* const row = world->row<PF_PixelFloat>(y);
            for (int x = 0; x < world->width(); ++x) {
                const float* const light = pixel(x + rect_.left, y + rect_.top);
                row[x] = {.alpha = light[3],
                          .red = colour(light[0], light[3]),
                          .green = colour(light[1], light[3]),
                          .blue = colour(light[2], light[3])};
            }
        }
    });
    return world;
}

}  // namespace occlusion
