// SPDX-License-Identifier: Apache-2.0
// The callbacks that come with the two smart-render commands.

#include "headless/state/FrameState.h"
#include "platform/Rectangles.h"

namespace headless {

namespace {

// The layer parameter's world; null if it is set to none.
std::shared_ptr<const World> sourceOf(const CallContext& context, PF_ParamIndex index) {
    return index == 0 ? context.input : context.parameters->layer(index);
}

std::string layerName(PF_ParamIndex index) {
    return "pixels of layer " + std::to_string(index);
}

// The context of a smart-render callback, if the running command offers it; otherwise null and a
// fault.
CallContext* frameContext(PF_ProgPtr effectRef, const char* operation, bool rendering) {
    CallContext* context = contextOnItsThread(effectRef, operation);
    if (!context) return nullptr;
    if (context->frame && context->frame->rendering == rendering) return context;
    HostState::current().books.fault(std::string(operation) + " during " + context->command);
    return nullptr;
}

void announce(CallContext& context, PF_ParamIndex index, std::int32_t id,
              const PF_RenderRequest& request, PF_CheckoutResult& result) {
    result = {};
    const auto source = sourceOf(context, index);
    if (index == 0) context.frame->result->inputRequest = request;
    PF_LRect rect{};
    if (source) {
        const PF_LRect whole{0, 0, reducedSize(source->width(), context.geometry.x),
                             reducedSize(source->height(), context.geometry.y)};
        rect = intersection(request.rect, whole);
        if (isEmpty(rect)) rect = {};
        result.result_rect = rect;
        result.max_result_rect = whole;
        result.par = context.pixelAspect;
        result.ref_width = source->width();
        result.ref_height = source->height();
    }
    context.frame->layers[id] = {index, rect, nullptr, 0};
}

PF_Err checkoutLayer(PF_ProgPtr effectRef, PF_ParamIndex index, std::int32_t id,
                     const PF_RenderRequest* request, std::int32_t, std::int32_t, std::uint32_t,
                     PF_CheckoutResult* result) {
    return guarded([&] {
        HostState& host = HostState::current();
        host.log.add("checkout_layer", index);
        CallContext* context = frameContext(effectRef, "checkout_layer", false);
        if (!context || !request || !result) return PF_Err_BAD_CALLBACK_PARAM;
        if (const PF_Err err = host.failures.check(Operation::kCheckoutLayer)) return err;
        if (index < 0 || index >= context->parameters->size()) return PF_Err_INVALID_INDEX;
        if (context->parameters->info(index).type != PF_Param_LAYER) {
            return PF_Err_UNRECOGNIZED_PARAM_TYPE;
        }
        announce(*context, index, id, *request, *result);
        return PF_Err_NONE;
    });
}

bool sameRatio(PF_RationalScale a, PF_RationalScale b) {
    return a.num == b.num && a.den == b.den;
}

bool sameRect(const PF_LRect& a, const PF_LRect& b) {
    return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
}

// Whether the layer can be handed out as it is: whole, in the frame's format and with padded rows.
bool needsNoCopy(const CallContext& context, const FrameState::LayerCheckOut& layer,
                 const World& source) {
    const FrameRequest& request = *context.frame->request;
    const int used = source.width() * bytesPerPixel(source.format());
    return sameRect(layer.rect, source.rect()) &&
           reducedSize(source.width(), context.geometry.x) == source.width() &&
           reducedSize(source.height(), context.geometry.y) == source.height() &&
           source.format() == formatOfBits(request.bits) &&
           sameRatio(source.record().pix_aspect_ratio, context.pixelAspect) &&
           request.rowPadding > 0 && source.rowBytes() >= used + request.rowPadding;
}

// The part of the layer that was checked out, at the downsample and in the frame's format.
std::shared_ptr<World> pixelsOf(const CallContext& context,
                                const FrameState::LayerCheckOut& layer) {
    const FrameRequest& request = *context.frame->request;
    const auto source = sourceOf(context, layer.index);
    if (!source || isEmpty(layer.rect)) return nullptr;
    if (layer.index == 0 && request.withholdInput) return nullptr;
    // The effect only reads layers. Sharing one saves a copy of a large image.
    if (needsNoCopy(context, layer, *source)) return std::const_pointer_cast<World>(source);
    auto world = reduce(*source, context.geometry.x, context.geometry.y, layer.rect,
                        formatOfBits(request.bits), request.rowPadding);
    world->layer()->pix_aspect_ratio = context.pixelAspect;
    return world;
}

PF_Err checkoutLayerPixels(PF_ProgPtr effectRef, std::int32_t id, PF_EffectWorld** world) {
    return guarded([&] {
        HostState& host = HostState::current();
        host.log.add("checkout_layer_pixels", id);
        CallContext* context = frameContext(effectRef, "checkout_layer_pixels", true);
        if (!context || !world) return PF_Err_BAD_CALLBACK_PARAM;
        if (const PF_Err err = host.failures.check(Operation::kCheckoutLayerPixels)) return err;
        const auto entry = context->frame->layers.find(id);
        if (entry == context->frame->layers.end()) {
            host.books.fault(
                "checkout_layer_pixels of an id that was not checked out in pre-render");
            return PF_Err_BAD_CALLBACK_PARAM;
        }
        auto& layer = entry->second;
        if (!layer.world) layer.world = pixelsOf(*context, layer);
        *world = layer.world ? layer.world->layer() : nullptr;
        if (!layer.world) return PF_Err_NONE;
        ++layer.out;
        host.books.lend("layer", layerName(layer.index));
        return PF_Err_NONE;
    });
}

PF_Err checkinLayerPixels(PF_ProgPtr effectRef, std::int32_t id) {
    return guarded([&] {
        HostState& host = HostState::current();
        host.log.add("checkin_layer_pixels", id);
        CallContext* context = frameContext(effectRef, "checkin_layer_pixels", true);
        if (!context) return PF_Err_BAD_CALLBACK_PARAM;
        const auto entry = context->frame->layers.find(id);
        if (entry == context->frame->layers.end() || entry->second.out == 0) {
            host.books.fault("checkin_layer_pixels of pixels that are not checked out");
            return PF_Err_BAD_CALLBACK_PARAM;
        }
        --entry->second.out;
        host.books.takeBack("layer", layerName(entry->second.index));
        return PF_Err_NONE;
    });
}

PF_Err checkoutOutput(PF_ProgPtr effectRef, PF_EffectWorld** world) {
    return guarded([&] {
        HostState& host = HostState::current();
        host.log.add("checkout_output");
        CallContext* context = frameContext(effectRef, "checkout_output", true);
        if (!context || !world) return PF_Err_BAD_CALLBACK_PARAM;
        if (const PF_Err err = host.failures.check(Operation::kCheckoutOutput)) return err;
        *world =
            context->frame->request->withholdOutput ? nullptr : context->frame->output->layer();
        return PF_Err_NONE;
    });
}

}  // namespace

PF_PreRenderCallbacks preRenderCallbacks() {
    return {checkoutLayer, nullptr};
}

PF_SmartRenderCallbacks smartRenderCallbacks() {
    return {checkoutLayerPixels, checkinLayerPixels, checkoutOutput};
}

void closeLayers(HostState& host, FrameState& frame) {
    for (auto& [id, layer] : frame.layers) {
        for (; layer.out > 0; --layer.out) host.books.takeBack("layer", layerName(layer.index));
        const std::string damage = layer.world ? layer.world->damage() : "";
        if (!damage.empty()) host.books.fault(layerName(layer.index) + ": " + damage);
    }
    const std::string damage = frame.output ? frame.output->damage() : "";
    if (!damage.empty()) host.books.fault("output world: " + damage);
}

}  // namespace headless
