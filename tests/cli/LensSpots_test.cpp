// SPDX-License-Identifier: Apache-2.0
// Points of light at known distances, blurred by the effect as a lens would: their size is
// measured.
#include <cmath>

#include "support/RunTool.h"
#include "support/TestFiles.h"

namespace test {
namespace {

using OIIO::TypeDesc;

constexpr double kNearest = 1.5;  // metres; the farthest is infinite
constexpr double kFocalLength = 50.0;
constexpr double kSensorWidth = 36.0;
constexpr double kTolerance = 0.02;  // pixels

struct Spots {
    double radius = 0;  // the largest blur in pixels
    int columns = 5;
    int rows = 4;
    double focus = 4.0;
    std::string layers = "16";
    int reduction = 1;  // the downsample is one over it
    bool breathing = false;
    bool inverted = false;
    double pixelAspect = 1.0;
};

// One cell for each distance, with a point of light in its middle, as large as a pixel of the
// downsample. A depth layer's weights are blurred like its light, so that other cells are felt up
// to the largest radius inside a cell.
class LensSpots : public FolderTest {
protected:
    void use(const Spots& spots) {
        spots_ = spots;
        cell_ = spots.reduction * static_cast<int>(4.0 * spots.radius / spots.reduction + 8.0);
        const double largest = std::max(defocus(0), defocus(count() - 1));
        fStop_ = gain(1.0) * largest / spots.radius;
        std::vector<float> lights;
        std::vector<float> map;
        for (int y = 0; y < height(); ++y) {
            for (int x = 0; x < width(); ++x) {
                const bool lit = isMiddle(x) && isMiddle(y);
                lights.insert(lights.end(), 3, lit ? 1.0F : 0.0F);
                map.push_back(
                    static_cast<float>(1.0 / inverse(x / cell_ + y / cell_ * spots_.columns)));
            }
        }
        writeValues(path("in.exr"), imageSpec(width(), height(), {"R", "G", "B"}, TypeDesc::FLOAT),
                    lights);
        writeValues(path("z.exr"), imageSpec(width(), height(), {"Z"}, TypeDesc::FLOAT), map);
    }

    // Renders, and compares each point's radius of gyration with that of the lens's disc.
    void expectTheLens(double tolerance) const {
        const ToolRun run = runTool(
            {"render", path("in.exr"), "-o", path("out.exr"), "--depth-map-layer", path("z.exr"),
             "--roundness", "1", "--resolution", spots_.layers, "--invert-depth-map",
             spots_.inverted ? "on" : "off", "--pixel-aspect", std::to_string(spots_.pixelAspect),
             "--downsample", "1/" + std::to_string(spots_.reduction), "--camera", camera()});
        ASSERT_EQ(run.exitCode, 0) << run.err;
        const std::vector<float> result = readValues<float>(path("out.exr"));
        for (int i = 0; i < count(); ++i) {
            const double lens = gain(fStop_) * defocus(i) * std::sqrt(0.5);
            const double measured = gyration(result, i);
            EXPECT_NEAR(measured, lens, tolerance) << "at " << 1.0 / inverse(i) << " m\n"
                                                   << run.err;
        }
    }

private:
    int count() const { return spots_.columns * spots_.rows; }
    int width() const { return spots_.columns * cell_; }
    int height() const { return spots_.rows * cell_; }
    bool isMiddle(int at) const {
        const int place = at % cell_ - cell_ / (2 * spots_.reduction) * spots_.reduction;
        return place >= 0 && place < spots_.reduction;
    }
    // 1/distance, evenly from the nearest to infinity.
    double inverse(int cell) const { return (1.0 - cell / (count() - 1.0)) / kNearest; }
    double defocus(int cell) const { return std::fabs(inverse(cell) - 1.0 / spots_.focus); }
    // The blur's radius in pixels for each 1/m away from the focus: the formula of the lens.
    double gain(double fStop) const {
        const double f = kFocalLength;
        const double diameter = f * f / fStop / (spots_.breathing ? 1 - f / spots_.focus / 1e3 : 1);
        return diameter / 2.0 / 1000.0 * width() * spots_.pixelAspect / kSensorWidth;
    }
    std::string camera() const {
        return "focal-length=" + std::to_string(kFocalLength) +
               ",f-stop=" + std::to_string(fStop_) +
               ",sensor-width=" + std::to_string(kSensorWidth) +
               ",focus=" + std::to_string(spots_.focus) +
               ",breathing=" + (spots_.breathing ? "on" : "off");
    }
    // In pixels of the full resolution; where pixels aren't square, in heights of one.
    double gyration(const std::vector<float>& result, int cell) const {
        const int size = cell_ / spots_.reduction;
        double sum = 0;
        double xs = 0;
        double ys = 0;
        double squares = 0;
        for (int i = 0; i < size * size; ++i) {
            const int column = cell % spots_.columns * size + i % size;
            const int row = cell / spots_.columns * size + i / size;
            const auto pixel = static_cast<std::size_t>(row * spots_.columns * size + column);
            const auto light = static_cast<double>(result[3 * pixel]);
            const double x = column * spots_.pixelAspect;
            const double y = row;
            sum += light;
            xs += light * x;
            ys += light * y;
            squares += light * (x * x + y * y);
        }
        return spots_.reduction * std::sqrt((squares - (xs * xs + ys * ys) / sum) / sum);
    }

    Spots spots_;
    int cell_ = 0;
    double fStop_ = 1;
};

TEST_F(LensSpots, HaveTheRadiusOfGyrationOfTheLens) {
    for (const double radius : {2.0, 5.0, 20.0}) {
        use({.radius = radius});
        expectTheLens(kTolerance);
    }
    // Fewer distances, since a cell takes seconds.
    for (const double radius : {60.0, 110.0}) {
        use({.radius = radius, .columns = 3, .rows = 1});
        expectTheLens(kTolerance);
    }
}

TEST_F(LensSpots, HaveItWithAnyFocusLayersAndScale) {
    const Spots cases[] = {{.radius = 15.0, .focus = 1.6},
                           {.radius = 15.0, .focus = 200.0},
                           {.radius = 15.0, .layers = "3", .inverted = true},
                           {.radius = 30.0, .layers = "5", .reduction = 2},
                           {.radius = 15.0, .layers = "5", .reduction = 3},
                           {.radius = 15.0, .breathing = true}};
    for (const Spots& spots : cases) {
        use(spots);
        expectTheLens(kTolerance);
    }
    // A kernel's pixels and the half pixel that the effect adds to the radius aren't square then.
    for (const double aspect : {0.6, 1.5, 2.0}) {
        use({.radius = 15.0, .pixelAspect = aspect});
        expectTheLens(0.25);
    }
}

}  // namespace
}  // namespace test
