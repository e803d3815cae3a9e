// SPDX-License-Identifier: Apache-2.0
// Three small scenes that a path tracer rendered through a pinhole and through a lens: how close
// the ways of blurring the one come to the other. Made by bench/lens/scenes.py.
#include <cmath>

#include "support/LayerCounts.h"
#include "support/RunTool.h"
#include "support/TestFiles.h"

namespace test {
namespace {

constexpr int kWidth = 240;
constexpr int kHeight = 135;
constexpr int kMargin = 12;  // where light from outside the picture is missing

struct SceneCase {
    std::string name;
    double focus;    // metres
    double atLeast;  // dB of occlusion
    double gain;     // dB that it is ahead of both other ways, at least
};

class LensTruth : public FolderTest {
protected:
    static std::string file(const SceneCase& scene, const std::string& kind) {
        return std::string(ORBEL_TEST_DATA) + "/lens/" + scene.name + "-" + kind + ".exr";
    }
    std::vector<float> render(const SceneCase& scene, const std::vector<std::string>& way) const {
        std::vector<std::string> all = {
            "render",
            file(scene, "pinhole"),
            "-o",
            path("out.exr"),
            "--depth-map-layer",
            file(scene, "depth"),
            "--depth-kind",
            "distance",
            "--camera",
            "focal-length=85,f-stop=1.2,sensor-width=36,focus=" + std::to_string(scene.focus),
            "--roundness",
            "1",
            "--resolution",
            "16",
            "--output-type",
            "float"};
        all.insert(all.end(), way.begin(), way.end());
        const ToolRun run = runTool(all);
        EXPECT_EQ(run.exitCode, 0) << run.err;
        return readValues<float>(path("out.exr"));
    }
    // As a screen shows it: clipped, and encoded as sRGB (IEC 61966-2-1).
    static double shown(float light) {
        const double clipped = std::clamp(static_cast<double>(light), 0.0, 1.0);
        return clipped <= 0.0031308 ? 12.92 * clipped
                                    : 1.055 * std::pow(clipped, 1.0 / 2.4) - 0.055;
    }
    // The peak signal-to-noise ratio in dB.
    static double quality(const std::vector<float>& picture, const std::vector<float>& truth) {
        double sum = 0.0;
        int values = 0;
        for (int y = kMargin; y < kHeight - kMargin; ++y) {
            for (int x = 3 * kMargin; x < 3 * (kWidth - kMargin); ++x) {
                const auto i = static_cast<std::size_t>(3 * y * kWidth + x);
                sum += std::pow(shown(picture[i]) - shown(truth[i]), 2.0);
                ++values;
            }
        }
        return -10.0 * std::log10(sum / values);
    }
};

TEST_F(LensTruth, OcclusionComesClosest) {
    SKIP_UNLESS_ALL_LAYER_COUNTS_ARE_BUILT();
    const SceneCase scenes[] = {
        {"row", 2.5, 33.5, 1.2}, {"lattice", 3.5, 25.5, 2.0}, {"table", 2.0, 33.0, 0.2}};
    for (const SceneCase& scene : scenes) {
        const auto truth = readValues<float>(file(scene, "truth"));
        const double normal = quality(render(scene, {"--composite-mode", "normal"}), truth);
        const double split = quality(render(scene, {"--composite-mode", "split"}), truth);
        const double occlusion = quality(render(scene, {"--occlusion", "auto"}), truth);
        EXPECT_GT(occlusion, scene.atLeast) << scene.name;
        EXPECT_GT(occlusion, std::max(normal, split) + scene.gain)
            << scene.name << ": normal " << normal << ", split " << split;
        EXPECT_GT(quality(readValues<float>(file(scene, "pinhole")), truth), 10.0)
            << "same picture";
    }
}

}  // namespace
}  // namespace test
