#pragma once
// Controls such as the effect declares, without the effect.

#include <cstring>

#include "headless/Parameters.h"

namespace cli::test {

inline PF_ParamDef control(PF_ParamType type, const char* label) {
    PF_ParamDef def{};
    def.param_type = type;
    std::strncpy(def.name, label, sizeof def.name - 1);
    return def;
}

// A number, a whole number, a box, and a group with a layer, a choice, a point and an angle.
inline headless::ParameterSet someControls() {
    headless::ParameterSet set;
    PF_ParamDef number = control(PF_Param_FIX_SLIDER, "Blur Radius");
    number.u.fd.valid_max = 500 * 65536;
    number.u.fd.precision = 1;
    set.declare(number);
    PF_ParamDef roundness = control(PF_Param_FIX_SLIDER, "Roundness");
    roundness.u.fd.valid_min = -64880;
    roundness.u.fd.valid_max = 65536;
    roundness.u.fd.precision = 2;
    set.declare(roundness);
    PF_ParamDef whole = control(PF_Param_SLIDER, "Vertices");
    whole.u.sd.valid_min = 3;
    whole.u.sd.valid_max = 10;
    set.declare(whole);
    set.declare(control(PF_Param_CHECKBOX, "Edge Behavior"));
    set.declare(control(PF_Param_GROUP_START, "Depth Map"));
    set.declare(control(PF_Param_LAYER, "Layer"));
    PF_ParamDef choice = control(PF_Param_POPUP, "Channel");
    choice.u.pd.num_choices = 3;
    choice.u.pd.dephault = 1;
    choice.u.pd.u.namesptr = "Red|Center Map|(R+G+B)/3";
    set.declare(choice);
    set.declare(control(PF_Param_POINT, "Focus Point 0"));
    set.declare(control(PF_Param_FIX_SLIDER, "Focus Point 0-1 Interpolation"));
    set.declare(control(PF_Param_GROUP_END, ""));
    set.declare(control(PF_Param_ANGLE, "Rotation"));
    return set;
}

}  // namespace cli::test
