// SPDX-License-Identifier: Apache-2.0
#include "effect/SmartRender.h"

#include "effect/DebugPrint.h"
#include "effect/FrameDispatch.h"
#include "effect/ParameterIndices.h"
#include "effect/RenderInfo.h"
#include "host/AEO_Base.h"
#include "host/AEO_Parameter.h"
#include "host/LockedBlock.h"
#include "host/SuiteHandler.h"
#include "host/SuiteHolder.h"

namespace {

// The worlds of the frame, which belong to the host and are valid until the command ends.
struct FrameWorlds {
    PF_LayerDef* input = nullptr;
    PF_LayerDef* output = nullptr;

    bool complete() const { return input != nullptr && output != nullptr; }
};

int checkoutWorlds(const PF_InData& in_data, const PF_SmartRenderCallbacks& host,
                   FrameWorlds& worlds) {
    constexpr std::int32_t kCheckoutId = 0;  // the one that PreRender used
    const int err = host.checkout_layer_pixels(in_data.effect_ref, kCheckoutId, &worlds.input);
    if (err != PF_Err_NONE) return err;
    return host.checkout_output(in_data.effect_ref, &worlds.output);
}

// Owns the pre-render record for the rest of the command, then frees it.
class RecordHolder {
public:
    RecordHolder(const PF_InData& in_data, const void* data)
        : utils_(*in_data.utils), record_(static_cast<const PreRenderData*>(data)) {}
    RecordHolder(const RecordHolder&) = delete;
    RecordHolder& operator=(const RecordHolder&) = delete;
    ~RecordHolder() {
        if (record_ != nullptr) AEO::disposeLockedBlock(utils_, record_);
    }

    // Null if PreRender could not leave one.
    const PreRenderData* get() const { return record_; }

private:
    const PF_UtilCallbacks& utils_;
    const PreRenderData* record_;
};

// One SmartRender command with its context and worlds, from the pixel format to the result.
struct Frame {
    PF_InData* in_data;
    PF_OutData* out_data;
    AEO::InData& context;
    const FrameWorlds& worlds;
    const PreRenderData* record;
};

bool haveSampling(const AEO::InData& context) {
    return context.sampling8.suite != nullptr && context.sampling16.suite != nullptr &&
           context.samplingFloat.suite != nullptr;
}

void keepFirst(int& err, int next) {
    if (err == PF_Err_NONE) err = next;
}

// The format of the output; 8 bits per channel if the host doesn't report one.
PF_PixelFormat readFormat(AEO::SuiteHolder<PF_WorldSuite2>& worldSuite, const PF_LayerDef* output,
                          int& err) {
    PF_PixelFormat format = PF_PixelFormat_ARGB32;
    worldSuite.acquire();
    keepFirst(err, worldSuite.err);
    if (worldSuite.suite != nullptr) {
        keepFirst(err, worldSuite.suite->PF_GetPixelFormat(output, &format));
    }
    return format;
}

void setGeometry(RenderInfo& info, const FrameWorlds& worlds) {
    info.originDeltaX = worlds.input->origin_x - worlds.output->origin_x;
    info.originDeltaY = worlds.input->origin_y - worlds.output->origin_y;
    info.output = worlds.output;
    info.input = worlds.input;
}

// Fills the record of the frame and renders it, or copies the input if nothing is to be blurred.
int renderOrCopy(const Frame& frame, RenderInfo& info, PF_PixelFormat format) {
    int err = info.extractParameters(frame.in_data);
    setGeometry(info, frame.worlds);
    info.frameRect = frame.record->frameRect;
    info.paddedRect = frame.record->paddedRect;

    // The parameter itself, since `radius` is never 0.
    if (AEO::Parameter::Fixed(frame.in_data, kBlurRadius, err) != 0.0) {
        return renderFrame(frame.in_data, frame.out_data, frame.context, info, format);
    }
    if (err != PF_Err_NONE) return err;
    return frame.in_data->utils->copy(frame.in_data->effect_ref, info.input, info.output, nullptr,
                                      nullptr);
}

// Acquires what a frame needs from the host besides its worlds, and releases it in reverse order.
int renderWorlds(const Frame& frame) {
    int err = frame.record != nullptr ? PF_Err_NONE : PF_Err_OUT_OF_MEMORY;
    AEO::SuiteHolder<PF_WorldSuite2> worldSuite(frame.in_data->pica_basicP);
    const PF_PixelFormat format = readFormat(worldSuite, frame.worlds.output, err);

    // The layer's pixels stay checked out until the frame is done.
    AEO::Parameter depth(frame.context, kDepthLayer);
    RenderInfo info(frame.context, *depth.layer());
    keepFirst(err, depth._err);
    if (err != PF_Err_NONE) return err;
    AEGP_SuiteHandler suites(frame.in_data->pica_basicP);
    info.suites = &suites;
    return renderOrCopy(frame, info, format);
}

}  // namespace

PF_Err SmartRender(PF_InData* in_data, PF_OutData* out_data, PF_SmartRenderExtra* extra) {
    AEO::InData context(in_data);
    if (!haveSampling(context)) return context.samplingFloat.err;

    FrameWorlds worlds;
    const int err = checkoutWorlds(*in_data, *extra->cb, worlds);
    if (err != PF_Err_NONE || !worlds.complete()) return err;

    const RecordHolder record(*in_data, extra->input->pre_render_data);
    return renderWorlds({in_data, out_data, context, worlds, record.get()});
}

PF_Err Render(PF_InData* in_data, PF_OutData*, PF_ParamDef*[], PF_LayerDef*) {
    _printf("Entry Render\n");
    AEGP_SuiteHandler suites(in_data->pica_basicP);
    return PF_Err_NONE;
}
