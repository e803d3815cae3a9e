// SPDX-License-Identifier: Apache-2.0
#include "scene/Scene.h"

#include <thread>

#include "scene/Street.h"

namespace scene {
namespace {

constexpr double kFocalLength = 1.15;  // in half heights of the image
constexpr double kHorizon = -0.10;     // height of the horizon in the image, from -1 to 1
constexpr Vec3 kEye{0.0, 1.6, 0.0};    // metres
constexpr int kSamples = 2;            // per axis of a pixel, against aliasing

// Lines of sight through the image. The shorter side spans -1 to 1.
class Camera {
public:
    Camera(int width, int height)
        : width_(width), height_(height), half_(0.5 * std::min(width, height)) {}

    double pixelAngle() const { return 1.0 / (half_ * kFocalLength); }

    // Through a position in pixels from the image's top left corner.
    Vec3 direction(double x, double y) const {
        const double u = (x - 0.5 * width_) / half_;
        const double v = (0.5 * height_ - y) / half_;
        return {u / kFocalLength, (v - kHorizon) / kFocalLength, 1.0};
    }

private:
    int width_;
    int height_;
    double half_;
};

Vec3 meanColour(const Street& world, const Camera& camera, int x, int y) {
    Vec3 sum;
    for (int i = 0; i < kSamples * kSamples; ++i) {
        const int column = i % kSamples;
        const int row = i / kSamples;
        const double dx = (column + 0.5) / kSamples;
        const double dy = (row + 0.5) / kSamples;
        sum = sum + world.look(kEye, camera.direction(x + dx, y + dy)).colour;
    }
    return sum * (1.0 / (kSamples * kSamples));
}

// Renders one row of the scene.
void drawRow(Scene& scene, const Street& world, const Camera& camera, int y) {
    const auto first = static_cast<std::size_t>(y) * static_cast<std::size_t>(scene.width);
    float* colours = scene.colours.data() + first * 3;
    float* distances = scene.distances.data() + first;
    for (int x = 0; x < scene.width; ++x) {
        const Vec3 colour = meanColour(world, camera, x, y);
        *colours++ = static_cast<float>(colour.x);
        *colours++ = static_cast<float>(colour.y);
        *colours++ = static_cast<float>(colour.z);
        // Distances are not averaged: there is nothing between two objects.
        *distances++ =
            static_cast<float>(world.look(kEye, camera.direction(x + 0.5, y + 0.5)).distance);
    }
}

}  // namespace

Scene makeScene(int width, int height, const std::atomic<bool>& cancel,
                const std::function<void(double)>& progress) {
    const Camera camera(width, height);
    const Street world(camera.pixelAngle());
    const auto pixels = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    Scene scene{width, height, std::vector<float>(pixels * 3), std::vector<float>(pixels)};

    std::atomic<int> nextRow{0};
    const auto drawRows = [&](const auto& afterRow) {
        for (int y = nextRow++; y < height && !cancel; y = nextRow++) {
            drawRow(scene, world, camera, y);
            afterRow(y);
        }
    };
    {
        std::vector<std::jthread> helpers(std::max(1U, std::thread::hardware_concurrency()) - 1);
        for (std::jthread& helper : helpers) helper = std::jthread([&] { drawRows([](int) {}); });
        drawRows([&](int y) {
            if (progress) progress(static_cast<double>(y) / height);
        });
    }
    return scene;
}

}  // namespace scene
