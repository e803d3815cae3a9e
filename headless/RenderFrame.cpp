// Takes one frame through PF_Cmd_SMART_PRE_RENDER and PF_Cmd_SMART_RENDER.

#include <stdexcept>

#include "headless/state/FieldText.h"
#include "headless/state/FrameState.h"

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

// The two commands share one context, so that `effect_ref` names the same frame in both.
class FrameSession {
public:
    FrameSession(HostState& hostState, const FrameRequest& frameRequest, const ParameterSet& own,
                 std::function<PF_Err(CallContext&, PF_Cmd, PF_OutData&, void*)> sender)
        : host(hostState),
          request(frameRequest),
          context(contextFor(frameRequest, own)),
          send(std::move(sender)) {
        frame.request = &request;
        frame.result = &result;
        context.frame = &frame;
    }

    FrameResult run() {
        preRender();
        result.status = result.preRenderStatus;
        if (result.status == PF_Err_NONE && !request.preRenderOnly && makeOutput()) {
            render();
            result.status = result.renderStatus;
        }
        if (preOutput.delete_pre_render_data_func && preOutput.pre_render_data) {
            preOutput.delete_pre_render_data_func(preOutput.pre_render_data);
        }
        result.info = context.info;
        return std::move(result);
    }

private:
    void preRender() {
        PF_PreRenderInput input{};
        input.output_request = renderRequest(request);
        input.bitdepth = static_cast<A_short>(request.bits);
        PF_PreRenderCallbacks callbacks = preRenderCallbacks();
        PF_PreRenderExtra extra{&input, &preOutput, &callbacks};
        result.preRenderStatus = sendCommand(PF_Cmd_SMART_PRE_RENDER, &extra);
        result.resultRect = preOutput.result_rect;
        result.maxResultRect = preOutput.max_result_rect;

        // Name the record in the accounts: the effect keeps it from here on.
        const PF_Handle record = host.handles.containing(preOutput.pre_render_data);
        if (record) host.handles.name(record, kPreRenderRecord, false);
    }

    // False for an empty result, which is not rendered, or if memory is short.
    bool makeOutput() {
        const PF_LRect& rect = result.resultRect;
        if (rect.left >= rect.right || rect.top >= rect.bottom) return false;
        try {
            const WorldOptions options{rect.left, rect.top, request.rowPadding};
            frame.output = std::make_shared<World>(rect.right - rect.left, rect.bottom - rect.top,
                                                   formatOfBits(request.bits), options);
            frame.output->fillWithPattern();
            frame.output->layer()->pix_aspect_ratio = request.pixelAspect;
        } catch (const std::exception&) {
            result.status = PF_Err_OUT_OF_MEMORY;
            return false;
        }
        return true;
    }

    void render() {
        frame.rendering = true;
        PF_SmartRenderInput input{};
        input.output_request = renderRequest(request);
        input.bitdepth = static_cast<A_short>(request.bits);
        input.pre_render_data = preOutput.pre_render_data;
        PF_SmartRenderCallbacks callbacks = smartRenderCallbacks();
        PF_SmartRenderExtra extra{&input, &callbacks};
        result.renderStatus = sendCommand(PF_Cmd_SMART_RENDER, &extra);
        result.rendered = true;
        closeLayers(host, frame);
        result.output = frame.output;
        result.outputUntouched = frame.output->holdsPatternOnly();
    }

    PF_Err sendCommand(PF_Cmd command, void* extra) {
        PF_OutData out{};
        context.command = commandName(command);
        const PF_Err status = send(context, command, out, extra);
        context.checkedOut.clear();
        result.outFlags = out.out_flags;
        result.message = fieldText(out.return_msg);
        return status;
    }

    HostState& host;
    const FrameRequest& request;
    FrameResult result;
    FrameState frame;
    CallContext context;
    PF_PreRenderOutput preOutput{};
    std::function<PF_Err(CallContext&, PF_Cmd, PF_OutData&, void*)> send;
};

}  // namespace

FrameResult Effect::renderFrame(const FrameRequest& request) {
    validate(request);
    const auto sender = [this](CallContext& context, PF_Cmd command, PF_OutData& out, void* extra) {
        return call(context, command, sequenceData, out, nullptr, nullptr, extra);
    };
    return FrameSession(host.state(), request, parameterSet, sender).run();
}

}  // namespace headless
