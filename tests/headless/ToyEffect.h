#pragma once
// A small effect that the tests drive: it declares three controls, asks for its input grown by a
// margin, and copies the input into the output.

#include <functional>

#include "headless/Effect.h"

namespace headless {

struct ToyEffect {
    std::int32_t margin = 0;
    // Runs in place of the default behaviour of the command, if it is set.
    std::function<PF_Err(PF_InData&, PF_PreRenderExtra&)> onPreRender;
    std::function<PF_Err(PF_InData&, PF_SmartRenderExtra&)> onRender;
    std::function<PF_Err(PF_Cmd, PF_InData&, PF_OutData&, PF_ParamDef**)> onOther;

    // The toy that answers from now on; its behaviour is read by all frames at once.
    ToyEffect();
    ~ToyEffect();
    static PF_Err entry(PF_Cmd cmd, PF_InData* in, PF_OutData* out, PF_ParamDef* params[],
                        PF_LayerDef* output, void* extra);

    // The default behaviour.
    PF_Err preRender(PF_InData& in, PF_PreRenderExtra& extra) const;
    static PF_Err render(PF_InData& in, PF_SmartRenderExtra& extra);
    // Frees what preRender left.
    static void disposeRecord(PF_InData& in, void* record);
};

}  // namespace headless
