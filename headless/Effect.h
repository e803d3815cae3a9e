// SPDX-License-Identifier: Apache-2.0
#pragma once
// The effect as the host sees it: a set-up plug-in that answers commands and renders frames.

#include <atomic>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

#include "headless/Host.h"
#include "headless/loader/Bundle.h"
#include "platform/SmartRender.h"

namespace headless {

struct CallContext;

// A command that sets the effect up failed; the message names it and its code.
class EffectError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// One frame to render. Rectangles are in pixels of the layer at the downsample.
struct FrameRequest {
    std::shared_ptr<const World> input;  // the effect's layer, whole and at full resolution
    // The pixels to render; none: the whole layer. May exceed the layer, so that the result can
    // grow.
    std::optional<PF_LRect> rect;
    A_Time time{0, 1};
    std::int32_t timeStep = 1;
    PF_RationalScale downsampleX{1, 1};
    PF_RationalScale downsampleY{1, 1};
    PF_RationalScale pixelAspect{1, 1};
    int bits = 8;  // per channel: 8, 16 or 32; the input is converted if it has others
    PF_Field field = 0;
    PF_ChannelMask channelMask = 15;
    bool preserveRgbOfZeroAlpha = true;
    int rowPadding = 32;  // bytes after each row of input and output
    // Values to render with; null: the effect's own. Must not change during the frame.
    const ParameterSet* parameters = nullptr;
    // Called on the rendering thread when `current` of `total` steps are done.
    std::function<void(int current, int total)> progress;
    // If it becomes true, progress and iterations return 517. Not owned, may be null.
    const std::atomic<bool>* cancel = nullptr;
    // Don't send the render command: to learn what the effect needs and what it would render.
    bool preRenderOnly = false;
    // For tests: don't hand out the input's or the output's world.
    bool withholdInput = false;
    bool withholdOutput = false;
};

struct FrameResult {
    PF_Err status = PF_Err_NONE;  // the first code that is not 0, of the two commands
    PF_Err preRenderStatus = PF_Err_NONE;
    PF_Err renderStatus = PF_Err_NONE;
    // Whether PF_Cmd_SMART_RENDER was sent; it isn't after a failed pre-render or for an empty
    // result rectangle.
    bool rendered = false;
    PF_RenderRequest inputRequest{};  // what the effect requested of its input layer
    PF_LRect resultRect{};            // as the effect returned them
    PF_LRect maxResultRect{};
    // The result; it covers resultRect, and its origin is that rectangle's corner. Null unless
    // rendered. In float, pixels that the effect didn't write are NaN.
    std::shared_ptr<World> output;
    bool outputUntouched = false;  // no pixel was written
    PF_OutFlags outFlags = 0;      // of the render command
    std::string message;           // return_msg
    InfoPanel info;                // what the frame drew in the info panel
};

// The name, such as "PF_Cmd_SMART_RENDER"; "command N" for unknown numbers.
std::string commandName(PF_Cmd command);

class Effect {
public:
    // Loads the bundle without sending a command. Throws BundleError. The host must outlive the
    // effect.
    Effect(Host& host, const std::filesystem::path& bundle);
    // Drives an effect that is part of the program.
    Effect(Host& host, PF_EntryPoint entry);
    // Sets the effect down if it is set up.
    ~Effect();
    Effect(const Effect&) = delete;
    Effect& operator=(const Effect&) = delete;

    // Sends PF_Cmd_GLOBAL_SETUP, PF_Cmd_PARAMS_SETUP and PF_Cmd_SEQUENCE_SETUP. Throws EffectError
    // if one fails. Main thread.
    void setUp();
    // Sends PF_Cmd_SEQUENCE_SETDOWN and PF_Cmd_GLOBAL_SETDOWN. Main thread.
    void setDown();
    bool isSetUp() const { return up_; }

    // What PF_Cmd_GLOBAL_SETUP and PF_Cmd_PARAMS_SETUP returned.
    A_u_long version() const { return globalAnswer_.my_version; }
    PF_OutFlags outFlags() const { return globalAnswer_.out_flags; }
    PF_OutFlags2 outFlags2() const { return globalAnswer_.out_flags2; }
    int declaredParameters() const { return declaredCount_; }

    ParameterSet& parameters() { return parameters_; }
    const ParameterSet& parameters() const { return parameters_; }

    // The about text.
    std::string about();
    // Sends PF_Cmd_UPDATE_PARAMS_UI with the values at `time` and returns its status; afterwards
    // parameters().disabled() reports which controls are greyed out. Main thread.
    PF_Err updateParamsUI(A_Time time = {0, 1});
    // Sends one of the sequence commands with these handles in its two records; `out` becomes what
    // the effect stored in its record. Main thread.
    PF_Err sendSequence(PF_Cmd command, PF_Handle in, PF_Handle& out);

    // Sends the two smart-render commands. May be called on several threads at once. Reports what
    // the effect does only in the result; throws std::invalid_argument for a request without input
    // or with impossible numbers.
    FrameResult renderFrame(const FrameRequest& request);

    // Sends any command outside a frame, with records prepared as for makeInData().
    PF_Err send(PF_Cmd command, PF_OutData& out, PF_ParamDef** params = nullptr,
                PF_LayerDef* output = nullptr, void* extra = nullptr);
    PF_EntryPoint entryPoint() const { return entry_; }

private:
    void globalSetUp();
    void parametersSetUp();
    PF_Err call(CallContext& context, PF_Cmd command, PF_Handle sequence, PF_OutData& out,
                PF_ParamDef** params, PF_LayerDef* output, void* extra);

    Host& host_;
    std::unique_ptr<Bundle> bundle_;
    PF_EntryPoint entry_;
    bool up_ = false;
    PF_OutData globalAnswer_{};
    PF_Handle globalData_ = nullptr;
    PF_Handle sequenceData_ = nullptr;
    int declaredCount_ = 0;
    ParameterSet parameters_;
};

}  // namespace headless
