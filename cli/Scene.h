#pragma once
// A procedural night scene: something to blur, and its depth.

#include <vector>

namespace cli {

struct Scene {
    int width = 0;
    int height = 0;
    std::vector<float> colours;    // red, green, blue of each pixel; lamps are far above 1
    std::vector<float> distances;  // metres; infinite for the sky
};

// The same pixels for the same size, every time. Sizes from 1 up. Throws Interrupted on Control-C.
Scene makeScene(int width, int height);

}  // namespace cli
