// SPDX-License-Identifier: Apache-2.0
#include "occlusion/Render.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <utility>

#include "occlusion/Rows.h"
#include "occlusion/SlabBlur.h"
#include "occlusion/Stack.h"
#include "platform/Rectangles.h"

namespace occlusion {
namespace {

double factorOf(PF_RationalScale scale) {
    return static_cast<double>(scale.num) / scale.den;
}

// The frame of one picture, slab after slab.
class SlabFrame {
public:
    SlabFrame(headless::Host& host, headless::Effect& effect, const headless::FrameRequest& request,
              headless::ParameterSet parameters)
        : host_(host),
          effect_(effect),
          request_(request),
          parameters_(std::move(parameters)),
          curve_(parameters_, request.time) {
        if (request.input == nullptr || request.input->format() != PF_PixelFormat_ARGB128) {
            throw std::invalid_argument("slabs need an input in float");
        }
        request_.bits = 32;
        request_.parameters = &parameters_;
    }

    Result render(const Options& options) {
        requireOrder(options.bounds);
        const headless::World& picture = *request_.input;
        const View view = viewOf(parameters_, picture.width(), picture.height(),
                                 factorOf(request_.downsampleY), request_.time);
        const auto& [depths, scale] = view;
        const Slabs slabs(options.bounds.empty() ? chooseBounds({&view, 1}, options.slabs)
                                                 : options.bounds);
        const bool sharp = parameters_.value(parameters_.find("Blur Radius"), request_.time) == 0.0;
        if (slabs.count() == 1 || sharp) return {effect_.renderFrame(request_), {{}}};

        headless::FrameResult frame = askExtent();
        if (frame.status != PF_Err_NONE || isEmpty(frame.resultRect)) return {std::move(frame), {}};
        parameters_.setLayer(parameters_.find("Layer"), nullptr);
        const Outlines outlines(picture, depths, scale, threads());
        const Scene scene{picture, depths, scale, curve_, slabs, outlines, threads()};
        Stack stack(frame.resultRect, threads());
        Result result{std::move(frame), {}};
        for (std::size_t slab = 0; slab < slabs.count(); ++slab) {
            result.slabs.push_back(reportOf(slabs, slab));
            if (!addSlab(scene, slab, stack, result)) return result;
        }
        result.frame.rendered = true;
        result.frame.output = stack.picture(curve_);
        return result;
    }

private:
    static void requireOrder(const std::vector<float>& bounds) {
        const auto before = [](float a, float b) { return !(a < b); };
        const bool inside = bounds.empty() || (bounds.front() > 0.0F && bounds.back() < 1.0F);
        if (inside && std::ranges::adjacent_find(bounds, before) == bounds.end()) return;
        throw std::invalid_argument("bounds of slabs that aren't ascending inside 0 to 1");
    }

    int threads() const { return host_.workers(); }

    // What the effect would render.
    headless::FrameResult askExtent() {
        headless::FrameRequest ask = request_;
        ask.preRenderOnly = true;
        return effect_.renderFrame(ask);
    }

    static SlabReport reportOf(const Slabs& slabs, std::size_t slab) {
        const std::vector<float>& bounds = slabs.bounds();
        return {.far = slab == 0 ? 0.0F : bounds[slab - 1],
                .near = slab < bounds.size() ? bounds[slab] : 1.0F,
                .radii = {}};
    }

    // Blurs a slab and lays it over the others. Returns whether the frame can go on.
    bool addSlab(const Scene& scene, std::size_t index, Stack& stack, Result& result) {
        SlabScene slab = makeSlab(scene, index);
        if (isEmpty(slab.extent)) return true;
        SlabReport& report = result.slabs.back();
        report.radii = slab.span;
        SlabBlur blur(parameters_, std::move(slab), factorOf(request_.downsampleY), threads());
        report.layers = blur.layers();
        headless::FrameRequest request = blur.request(request_, result.frame.resultRect);
        request.progress =
            progressOf(static_cast<int>(index), static_cast<int>(scene.slabs.count()));
        const headless::FrameResult blurred = effect_.renderFrame(request);
        if (blurred.status != PF_Err_NONE) {
            result.frame = blurred;
            return false;
        }
        if (blurred.output == nullptr) return true;
        if (repeatsEdges()) {
            stack.cover(*blurred.output, nullptr);
            return true;
        }
        blur.fill();
        request.progress = nullptr;
        const headless::FrameResult full = effect_.renderFrame(request);
        if (full.status != PF_Err_NONE) {
            result.frame = full;
            return false;
        }
        stack.cover(*blurred.output, full.output.get());
        return true;
    }

    bool repeatsEdges() const {
        return parameters_.value(parameters_.find("Edge Behavior"), request_.time) != 0.0;
    }

    // Reports a slab's steps as those of the whole frame.
    std::function<void(int, int)> progressOf(int slab, int slabs) const {
        if (!request_.progress) return nullptr;
        return [this, slab, slabs](int current, int total) {
            request_.progress(slab * total + current, slabs * total);
        };
    }

    headless::Host& host_;
    headless::Effect& effect_;
    headless::FrameRequest request_;
    headless::ParameterSet parameters_;
    LightCurve curve_;
};

}  // namespace

Result render(headless::Host& host, headless::Effect& effect, const headless::FrameRequest& request,
              headless::ParameterSet parameters, const Options& options) {
    return SlabFrame(host, effect, request, std::move(parameters)).render(options);
}

}  // namespace occlusion
