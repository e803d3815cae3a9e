// SPDX-License-Identifier: Apache-2.0
// Renders one frame with PF_Cmd_SMART_PRE_RENDER and PF_Cmd_SMART_RENDER.

#include <stdexcept>

#include "headless/state/FieldText.h"
#include "headless/state/FrameState.h"
#include "platform/Rectangles.h"

namespace headless {

namespace {

void validate(const FrameRequest& request) {
    if (!request.input) throw std::invalid_argument("a frame without input");
    if (request.time.scale == 0) throw std::invalid_argument("a frame without a time scale");
    if (request.pixelAspect.num < 1 || request.pixelAspect.den < 1) {
        throw std::invalid_argument("a pixel aspect that is not above 0");
    }
    formatOfBits(request.bits);
    reducedSize(request.input->width(), request.downsampleX);
    reducedSize(request.input->height(), request.downsampleY);
}

CallContext contextFor(const FrameRequest& request, const ParameterSet& own) {
    CallContext context;
    context.thread = std::this_thread::get_id();
    context.parameters = request.parameters ? request.parameters : &own;
    context.input = request.input;
    context.geometry = {request.input->width(), request.input->height(), request.downsampleX,
                        request.downsampleY};
    context.time = request.time;
    context.timeStep = request.timeStep;
    context.pixelAspect = request.pixelAspect;
    context.progress = request.progress;
    context.cancel = request.cancel;
    return context;
}

PF_RenderRequest renderRequest(const FrameRequest& request) {
    PF_RenderRequest wanted{};
    wanted.rect = request.rect.value_or(
        PF_LRect{0, 0, reducedSize(request.input->width(), request.downsampleX),
                 reducedSize(request.input->height(), request.downsampleY)});
    wanted.field = request.field;
    wanted.channel_mask = request.channelMask;
    wanted.preserve_rgb_of_zero_alpha = request.preserveRgbOfZeroAlpha ? 1 : 0;
    return wanted;
}

// The two commands share one context, so that `effect_ref` identifies the same frame in both.
class FrameSession {
public:
    FrameSession(HostState& hostState, const FrameRequest& frameRequest, const ParameterSet& own,
                 std::function<PF_Err(CallContext&, PF_Cmd, PF_OutData&, void*)> sender)
        : host_(hostState),
          request_(frameRequest),
          context_(contextFor(frameRequest, own)),
          send_(std::move(sender)) {
        frame_.request = &request_;
        frame_.result = &result_;
        context_.frame = &frame_;
    }

    FrameResult run() {
        preRender();
        result_.status = result_.preRenderStatus;
        if (result_.status == PF_Err_NONE && !request_.preRenderOnly && makeOutput()) {
            render();
            result_.status = result_.renderStatus;
        }
        if (preOutput_.delete_pre_render_data_func && preOutput_.pre_render_data) {
            preOutput_.delete_pre_render_data_func(preOutput_.pre_render_data);
        }
        if (request_.preRenderOnly && record_) host_.handles.dispose(record_);
        result_.info = context_.info;
        return std::move(result_);
    }

private:
    void preRender() {
        PF_PreRenderInput input{};
        input.output_request = renderRequest(request_);
        input.bitdepth = static_cast<A_short>(request_.bits);
        PF_PreRenderCallbacks callbacks = preRenderCallbacks();
        PF_PreRenderExtra extra{&input, &preOutput_, &callbacks};
        result_.preRenderStatus = sendCommand(PF_Cmd_SMART_PRE_RENDER, &extra);
        result_.resultRect = preOutput_.result_rect;
        result_.maxResultRect = preOutput_.max_result_rect;

        // Name the record in the accounts: the effect owns it from here on.
        record_ = host_.handles.containing(preOutput_.pre_render_data);
        if (record_) host_.handles.name(record_, kPreRenderRecord, false);
    }

    // False for an empty result, which isn't rendered, or if there isn't enough memory.
    bool makeOutput() {
        const PF_LRect& rect = result_.resultRect;
        if (isEmpty(rect)) return false;
        try {
            const WorldOptions options{rect.left, rect.top, request_.rowPadding};
            frame_.output = std::make_shared<World>(rect.right - rect.left, rect.bottom - rect.top,
                                                    formatOfBits(request_.bits), options);
            frame_.output->fillWithPattern();
            frame_.output->layer()->pix_aspect_ratio = request_.pixelAspect;
        } catch (const std::exception&) {
            result_.status = PF_Err_OUT_OF_MEMORY;
            return false;
        }
        return true;
    }

    void render() {
        frame_.rendering = true;
        PF_SmartRenderInput input{};
        input.output_request = renderRequest(request_);
        input.bitdepth = static_cast<A_short>(request_.bits);
        input.pre_render_data = preOutput_.pre_render_data;
        PF_SmartRenderCallbacks callbacks = smartRenderCallbacks();
        PF_SmartRenderExtra extra{&input, &callbacks};
        result_.renderStatus = sendCommand(PF_Cmd_SMART_RENDER, &extra);
        result_.rendered = true;
        closeLayers(host_, frame_);
        result_.output = frame_.output;
        result_.outputUntouched = frame_.output->holdsPatternOnly();
    }

    PF_Err sendCommand(PF_Cmd command, void* extra) {
        PF_OutData out{};
        context_.command = commandName(command);
        const PF_Err status = send_(context_, command, out, extra);
        context_.checkedOut.clear();
        result_.outFlags = out.out_flags;
        result_.message = fieldText(out.return_msg);
        return status;
    }

    HostState& host_;
    const FrameRequest& request_;
    FrameResult result_;
    FrameState frame_;
    CallContext context_;
    PF_PreRenderOutput preOutput_{};
    PF_Handle record_ = nullptr;  // of the effect, between the two commands
    std::function<PF_Err(CallContext&, PF_Cmd, PF_OutData&, void*)> send_;
};

}  // namespace

FrameResult Effect::renderFrame(const FrameRequest& request) {
    validate(request);
    const auto sender = [this](CallContext& context, PF_Cmd command, PF_OutData& out, void* extra) {
        return call(context, command, sequenceData_, out, nullptr, nullptr, extra);
    };
    return FrameSession(host_.state(), request, parameters_, sender).run();
}

}  // namespace headless
