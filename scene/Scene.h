#pragma once
// A procedural night scene: something to blur, and its depth.

#include <atomic>
#include <vector>

namespace scene {

struct Scene {
    int width = 0;
    int height = 0;
    std::vector<float> colours;    // red, green, blue of each pixel; lamps are far above 1
    std::vector<float> distances;  // metres; infinite for the sky
};

// The same pixels for the same size, every time. Sizes from 1 up. Once `cancel` becomes true, the
// remaining rows stay zero.
Scene makeScene(int width, int height, const std::atomic<bool>& cancel);

}  // namespace scene
