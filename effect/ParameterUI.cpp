// SPDX-License-Identifier: Apache-2.0
#include "effect/ParameterUI.h"

#include <initializer_list>

#include "effect/ParameterIndices.h"
#include "host/SuiteHandler.h"

namespace {

enum class Control { kEnabled, kDisabled };

Control disabledIf(bool condition) {
    return condition ? Control::kDisabled : Control::kEnabled;
}

// Sets controls one after the other and stops at the first failure.
class ControlPanel {
public:
    ControlPanel(PF_InData& in_data, PF_ParamDef* params[])
        : in_data_(in_data), params_(params), suites_(in_data.pica_basicP) {}

    void set(std::initializer_list<ParameterIndex> indices, Control state) {
        for (const ParameterIndex index : indices) {
            if (err_ == PF_Err_NONE) err_ = setOne(index, state);
        }
    }

    bool hasLayer(ParameterIndex index) const { return params_[index]->u.ld.reserved0 != nullptr; }
    bool isOn(ParameterIndex index) const { return params_[index]->u.bd.value != 0; }
    PF_Err result() const { return err_; }

private:
    PF_Err setOne(ParameterIndex index, Control state) {
        PF_ParamDef* def = params_[index];
        if (state == Control::kDisabled) {
            def->ui_flags |= PF_PUI_DISABLED;
        } else {
            def->ui_flags &= ~PF_PUI_DISABLED;
        }
        return suites_.PFParamUtilsSuite3()->PF_UpdateParamUI(in_data_.effect_ref, index, def);
    }

    PF_InData& in_data_;
    PF_ParamDef** params_;
    AEGP_SuiteHandler suites_;
    PF_Err err_ = PF_Err_NONE;
};

// A custom layer replaces the generated shape, and only a layer has a channel to choose.
void updateShape(ControlPanel& panel) {
    const bool custom = panel.hasLayer(kCustomBlurShape);
    panel.set({kVertices, kRoundness, kConcentration, kRotation, kDeform}, disabledIf(custom));
    panel.set({kCustomLayerChannel}, disabledIf(!custom));
}

void updateDepth(ControlPanel& panel) {
    if (!panel.hasLayer(kDepthLayer)) {
        panel.set({kDepthChannel, kPlacement, kResolution, kFocalDistance, kUseFocusPoint,
                   kFocusPoint0, kFocusPoint1, kFocusInterpolation, kProfile, kInvertDepthMap,
                   kCompositeMode, kRemoveEdgeLeak, kDetectEdgeThreshold},
                  Control::kDisabled);
        return;
    }
    const bool byPoint = panel.isOn(kUseFocusPoint);
    panel.set({kDepthChannel, kPlacement, kResolution, kUseFocusPoint}, Control::kEnabled);
    panel.set({kFocalDistance}, disabledIf(byPoint));
    panel.set({kFocusPoint0, kFocusPoint1, kFocusInterpolation}, disabledIf(!byPoint));
    panel.set({kProfile, kInvertDepthMap, kCompositeMode, kRemoveEdgeLeak, kDetectEdgeThreshold},
              Control::kEnabled);
}

}  // namespace

PF_Err UpdataParamsUI(PF_InData* in_data, PF_OutData*, PF_ParamDef* params[], PF_LayerDef*) {
    ControlPanel panel(*in_data, params);
    updateShape(panel);
    updateDepth(panel);
    return panel.result();
}

PF_Err HandleChangedParam(PF_InData*, PF_OutData*, PF_ParamDef*[], PF_LayerDef*,
                          PF_UserChangedParamExtra*) {
    return PF_Err_NONE;
}
