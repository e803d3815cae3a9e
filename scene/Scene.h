// SPDX-License-Identifier: Apache-2.0
#pragma once
// A procedural night scene with depth, as a test image for the blur.

#include <atomic>
#include <functional>
#include <vector>

namespace scene {

struct Scene {
    int width = 0;
    int height = 0;
    std::vector<float> colours;    // red, green, blue of each pixel; lamps are far above 1
    std::vector<float> distances;  // metres; infinite for the sky
};

// The same size always has the same pixels. Sizes are at least 1. When `cancel` becomes true, the
// remaining rows stay zero. `progress`, if any, is called on this thread with the share done, 0
// to 1.
Scene makeScene(int width, int height, const std::atomic<bool>& cancel,
                const std::function<void(double)>& progress = {});

}  // namespace scene
