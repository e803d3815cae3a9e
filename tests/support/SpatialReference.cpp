// SPDX-License-Identifier: Apache-2.0
#include "support/SpatialReference.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "support/TestPictures.h"

namespace reference {
namespace {

Kernel kernelOf(const headless::World& shape, double radius, double factor) {
    const double scale = std::max(shape.width(), shape.height()) / (2 * radius) / factor;
    Kernel kernel{static_cast<int>(std::ceil(radius)), {}};
    double total = 0;
    for (int dy = -kernel.reach; dy <= kernel.reach; ++dy) {
        for (int dx = -kernel.reach; dx <= kernel.reach; ++dx) {
            const double half = std::min(scale * 0.5, 128.0);
            const double weight = boxMean(shape, {shape.width() * 0.5 + dx * scale,
                                                  shape.height() * 0.5 + dy * scale, half, half})
                                      .alpha;
            kernel.weights.push_back(weight);
            total += weight;
        }
    }
    for (double& weight : kernel.weights) weight = total > 0 ? weight / total : 0;
    if (total == 0) kernel.weights[kernel.weights.size() / 2] = 1;
    return kernel;
}

// What one pixel emits: expanded light times alpha, and its share in each depth layer.
struct Source {
    double light[4];  // red, green, blue, alpha
    std::vector<double> weights;
};

class Evaluation {
public:
    Evaluation(const Scene& scene, const PF_LRect& rect)
        : scene_(scene),
          rect_(rect),
          reach_(scene.kernels[0].reach),
          layers_(scene.kernels.size()) {
        for (int y = rect_.top - reach_; y < rect_.bottom + reach_; ++y) {
            for (int x = rect_.left - reach_; x < rect_.right + reach_; ++x) {
                sources_.push_back(source(x, y));
            }
        }
    }

    Pixel pixel(int x, int y) const {
        double sum[5] = {};  // red, green, blue, alpha, weight
        for (std::size_t layer = 0; layer < layers_; ++layer) addLayer(x, y, layer, sum);
        const double alpha = sum[3];
        for (int c = 0; c < 3 && alpha > 0; ++c) sum[c] /= alpha;
        const double coverage = layers_ > 1 && sum[4] > 0 ? alpha / sum[4] : alpha;
        return {coverage, compress(sum[0]), compress(sum[1]), compress(sum[2])};
    }

private:
    void addLayer(int x, int y, std::size_t layer, double (&sum)[5]) const {
        const bool gather = scene_.mode == Mode::kNormal && layers_ > 1;
        const Kernel& kernel = scene_.kernels[layer];
        const Kernel& mask = gather && layer > 0 ? scene_.kernels[layer - 1] : kernel;
        double light[4] = {};
        double weight = 0;
        for (int dy = -reach_; dy <= reach_; ++dy) {
            for (int dx = -reach_; dx <= reach_; ++dx) {
                const Source& from = at(x - dx, y - dy);
                const double share = layers_ > 1 ? from.weights[layer] : 1.0;
                const double spread = kernel.at(dx, dy) * (gather ? 1.0 : share);
                for (int c = 0; c < 4; ++c) light[c] += spread * from.light[c];
                weight += share * mask.at(dx, dy);
            }
        }
        for (int c = 0; c < 4; ++c) sum[c] += gather ? weight * light[c] : light[c];
        sum[4] += weight;
    }

    const Source& at(int x, int y) const {
        const int width = rect_.right - rect_.left + 2 * reach_;
        return sources_[static_cast<std::size_t>((y - rect_.top + reach_) * width + x - rect_.left +
                                                 reach_)];
    }

    Source source(int x, int y) const {
        const headless::World& in = *scene_.input;
        const int cx = std::clamp(x, 0, in.width() - 1);
        const int cy = std::clamp(y, 0, in.height() - 1);
        PF_PixelFloat p = in.get(cx, cy);
        if (!scene_.repeatEdge && (x != cx || y != cy)) p = {0, 0, 0, 0};
        const double exposure = layers_ > 1 ? localExposure(x, y) : scene_.exposure;
        const double alpha = static_cast<double>(p.alpha);
        Source result{{expand(static_cast<double>(p.red), exposure) * alpha,
                       expand(static_cast<double>(p.green), exposure) * alpha,
                       expand(static_cast<double>(p.blue), exposure) * alpha, alpha},
                      {}};
        if (layers_ > 1) result.weights = weightsAt(x, y);
        return result;
    }

    // The map's border pixels are repeated.
    double depth(int x, int y) const {
        const headless::World& map = *scene_.map;
        return static_cast<double>(
            map.get(std::clamp(x, 0, map.width() - 1), std::clamp(y, 0, map.height() - 1)).red);
    }

    // A triangle for each layer i, centred at i + 0.5; constant beyond the outer centres.
    std::vector<double> weightsAt(int x, int y) const {
        const double value = depth(x, y);
        const double t = std::clamp(scene_.invert ? value : 1 - value, 0.0, 1.0);
        const double f = scene_.focalDistance;
        const double away = std::fabs(t - (1 - f)) / std::max(f, 1 - f);
        const double slope = std::tan((scene_.profile * 0.9999 + 1) * std::numbers::pi / 4);
        const double count = static_cast<double>(layers_);
        const double place = std::clamp(count * std::pow(1 - away, slope), 0.5, count - 0.5) - 0.5;
        std::vector<double> weights(layers_, 0.0);
        for (std::size_t i = 0; i < layers_; ++i) {
            weights[i] = std::max(0.0, 1 - std::fabs(place - static_cast<double>(i)));
        }
        return weights;
    }

    double localExposure(int x, int y) const {
        if (scene_.edgeLeak == 0) return scene_.exposure;
        double gx = 0;
        double gy = 0;
        for (int i = -1; i <= 1; ++i) {
            const double smooth = i == 0 ? 0.5 : 0.25;
            gx += smooth * (depth(x - 1, y + i) - depth(x + 1, y + i));
            gy += smooth * (depth(x + i, y - 1) - depth(x + i, y + 1));
        }
        const double gain = std::tan(scene_.edgeLeak * 0.99 * std::numbers::pi / 2);
        const double cut = gain * (std::hypot(gx, gy) - scene_.edgeThreshold);
        return scene_.exposure * (1 - std::clamp(cut, 0.0, 1.0));
    }

    double expand(double c, double exposure) const {
        if (exposure == 0 || c < scene_.threshold) return c;
        return std::expm1((c - scene_.threshold) * exposure) / exposure + scene_.threshold;
    }

    double compress(double c) const {
        if (scene_.exposure == 0 || c < scene_.threshold) return c;
        return std::log1p((c - scene_.threshold) * scene_.exposure) / scene_.exposure +
               scene_.threshold;
    }

    const Scene& scene_;
    PF_LRect rect_;
    int reach_;
    std::size_t layers_;
    std::vector<Source> sources_;
};

}  // namespace

std::vector<Kernel> kernelsOf(const headless::World& shape, double radius, int layers) {
    std::vector<Kernel> kernels;
    for (int l = 0; l < layers; ++l) {
        const double factor = layers == 1 ? 1.0 : double(layers - 1 - l) / (layers - 1);
        kernels.push_back(kernelOf(shape, radius, std::max(factor, 1e-5)));
    }
    return kernels;
}

std::vector<Pixel> render(const Scene& scene, const PF_LRect& rect) {
    const Evaluation evaluation(scene, rect);
    std::vector<Pixel> pixels;
    for (int y = rect.top; y < rect.bottom; ++y) {
        for (int x = rect.left; x < rect.right; ++x) pixels.push_back(evaluation.pixel(x, y));
    }
    return pixels;
}

}  // namespace reference
