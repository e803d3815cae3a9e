#include "scene/Scene.h"

#include <thread>

#include "scene/Street.h"

namespace scene {
namespace {

constexpr double kFocalLength = 1.15;  // in half heights of the picture
constexpr double kHorizon = -0.10;     // height of the horizon in the picture, from -1 to 1
constexpr Vec3 kEye{0.0, 1.6, 0.0};    // metres
constexpr int kSamples = 2;            // each way in a pixel, for the edges

// Lines of sight through the picture. The shorter side spans -1 to 1.
class Camera {
public:
    Camera(int width, int height)
        : m_width(width), m_height(height), m_half(0.5 * std::min(width, height)) {}

    double pixelAngle() const { return 1.0 / (m_half * kFocalLength); }

    // Through a place in pixels from the picture's top left corner.
    Vec3 direction(double x, double y) const {
        const double u = (x - 0.5 * m_width) / m_half;
        const double v = (0.5 * m_height - y) / m_half;
        return {u / kFocalLength, (v - kHorizon) / kFocalLength, 1.0};
    }

private:
    int m_width;
    int m_height;
    double m_half;
};

Vec3 meanColour(const Street& world, const Camera& camera, int x, int y) {
    Vec3 sum;
    for (int i = 0; i < kSamples * kSamples; ++i) {
        const double dx = (i % kSamples + 0.5) / kSamples;
        const double dy = (static_cast<double>(i / kSamples) + 0.5) / kSamples;
        sum = sum + world.look(kEye, camera.direction(x + dx, y + dy)).colour;
    }
    return sum * (1.0 / (kSamples * kSamples));
}

// One row of the scene, into its place.
void drawRow(Scene& scene, const Street& world, const Camera& camera, int y) {
    const auto first = static_cast<std::size_t>(y) * static_cast<std::size_t>(scene.width);
    float* colours = scene.colours.data() + first * 3;
    float* distances = scene.distances.data() + first;
    for (int x = 0; x < scene.width; ++x) {
        const Vec3 colour = meanColour(world, camera, x, y);
        *colours++ = static_cast<float>(colour.x);
        *colours++ = static_cast<float>(colour.y);
        *colours++ = static_cast<float>(colour.z);
        // Distances are not averaged: between two things there is no third.
        *distances++ =
            static_cast<float>(world.look(kEye, camera.direction(x + 0.5, y + 0.5)).distance);
    }
}

}  // namespace

Scene makeScene(int width, int height, const std::atomic<bool>& cancel) {
    const Camera camera(width, height);
    const Street world(camera.pixelAngle());
    const auto pixels = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    Scene scene{width, height, std::vector<float>(pixels * 3), std::vector<float>(pixels)};

    std::atomic<int> nextRow{0};
    const auto drawRows = [&] {
        for (int y = nextRow++; y < height && !cancel; y = nextRow++) {
            drawRow(scene, world, camera, y);
        }
    };
    {
        std::vector<std::jthread> helpers(std::max(1U, std::thread::hardware_concurrency()));
        for (std::jthread& helper : helpers) helper = std::jthread(drawRows);
    }
    return scene;
}

}  // namespace scene
