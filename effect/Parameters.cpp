// SPDX-License-Identifier: Apache-2.0
#include "effect/Parameters.h"

#include <cstring>

#include "effect/ParameterIndices.h"
#include "platform/Fixed.h"

namespace {

constexpr PF_ParamFlags kCollapsed = PF_ParamFlag_START_COLLAPSED;

struct Range {
    double min;
    double max;
};

// The choices of a popup with their number, and the default, counted from 1.
struct Choices {
    const char* texts;
    A_short count;
    A_short chosen;
};

constexpr Choices kChannelChoices{"Red|Green|Blue|Alpha|(R+G+B)/3", 5, 5};
constexpr Choices kPlacementChoices{"Center Map|Stretch Map", 2, 1};
constexpr Choices kCompositeChoices{"Normal|Split", 2, 1};

// 16.16, truncated towards zero: 0.99 is 64880 and -0.99 is -64880.
constexpr PF_Fixed fixed(double value) {
    return static_cast<PF_Fixed>(value * kFixedOne);
}

// Appends controls to the host's list, one call each. `id` is the number under which projects store
// a control: it never changes and is never reused.
class ParameterList {
public:
    explicit ParameterList(PF_InData& in_data) : in_data_(in_data) {}

    // The bitwise OR of the host's results so far.
    PF_Err result() const { return results_; }

    void slider(std::int32_t id, const char* label, PF_ParamValue min, PF_ParamValue max,
                PF_ParamValue value) {
        PF_ParamDef def = begin(id, label, PF_Param_SLIDER, kCollapsed);
        PF_SliderDef& s = def.u.sd;
        s.valid_min = s.slider_min = min;
        s.valid_max = s.slider_max = max;
        s.value = s.dephault = value;
        add(def);
    }

    // `shown` is the range of the slider itself; `precision` the number of decimals.
    void fixSlider(std::int32_t id, const char* label, Range valid, Range shown, double value,
                   PF_Precision precision, PF_ParamFlags flags) {
        PF_ParamDef def = begin(id, label, PF_Param_FIX_SLIDER, flags);
        PF_FixedSliderDef& s = def.u.fd;
        s.valid_min = fixed(valid.min);
        s.valid_max = fixed(valid.max);
        s.slider_min = fixed(shown.min);
        s.slider_max = fixed(shown.max);
        s.value = s.dephault = fixed(value);
        s.precision = precision;
        add(def);
    }

    // An angle without limits.
    void angle(std::int32_t id, const char* label, double degrees) {
        PF_ParamDef def = begin(id, label, PF_Param_ANGLE, 0);
        def.u.ad.value = def.u.ad.dephault = fixed(degrees);
        add(def);
    }

    void checkBox(std::int32_t id, const char* label, const char* text, bool on,
                  PF_ParamFlags flags) {
        PF_ParamDef def = begin(id, label, PF_Param_CHECKBOX, flags);
        def.u.bd.value = on ? 1 : 0;
        def.u.bd.dephault = on ? 1 : 0;
        def.u.bd.u.nameptr = text;
        add(def);
    }

    void layer(std::int32_t id, const char* label) {
        PF_ParamDef def = begin(id, label, PF_Param_LAYER, 0);
        def.u.ld.dephault = PF_LayerDefault_NONE;
        add(def);
    }

    void popup(std::int32_t id, const char* label, const Choices& choices) {
        PF_ParamDef def = begin(id, label, PF_Param_POPUP, 0);
        def.u.pd.value = def.u.pd.dephault = choices.chosen;
        def.u.pd.num_choices = choices.count;
        def.u.pd.u.namesptr = choices.texts;
        add(def);
    }

    // A point at the same percentage of the layer's width and height; it may lie outside the frame.
    void point(std::int32_t id, const char* label, double percent) {
        PF_ParamDef def = begin(id, label, PF_Param_POINT, 0);
        PF_PointDef& p = def.u.td;
        p.x_value = p.x_dephault = fixed(percent);
        p.y_value = p.y_dephault = fixed(percent);
        add(def);
    }

    void groupStart(std::int32_t id, const char* label) {
        PF_ParamDef def = begin(id, label, PF_Param_GROUP_START, 0);
        add(def);
    }

    void groupEnd(std::int32_t id) {
        PF_ParamDef def = begin(id, nullptr, PF_Param_GROUP_END, 0);
        add(def);
    }

private:
    // A zeroed definition with what all types share; without a label the name stays empty.
    PF_ParamDef begin(std::int32_t id, const char* label, PF_ParamType type,
                      PF_ParamFlags flags) const {
        PF_ParamDef def;
        std::memset(&def, 0, sizeof def);
        def.uu.id = id;
        def.param_type = type;
        def.flags = flags;
        if (label != nullptr) in_data_.utils->ansi.strcpy(def.name, label);
        return def;
    }

    void add(PF_ParamDef& def) {
        constexpr PF_ParamIndex kAppend = -1;
        results_ |= in_data_.inter.add_param(in_data_.effect_ref, kAppend, &def);
    }

    PF_InData& in_data_;
    PF_Err results_ = PF_Err_NONE;
};

void addAperture(ParameterList& list) {
    list.fixSlider(3, "Blur Radius", {0, 500}, {0, 100}, 20, 1, 0);
    list.slider(4, "Vertices", 3, 10, 6);
    list.fixSlider(5, "Roundness", {-0.99, 1}, {-0.99, 1}, 0, 2, kCollapsed);
    list.fixSlider(6, "Concentration", {-0.99, 0.99}, {-0.99, 0.99}, 0, 2, kCollapsed);
    list.fixSlider(12, "Deform", {-0.99, 0.99}, {-0.99, 0.99}, 0, 2, kCollapsed);
    list.angle(7, "Rotation", 90);
    list.layer(8, "Custom Blur Shape");
    list.popup(9, "Custom Layer Channel", kChannelChoices);
}

void addHighlightsAndEdges(ParameterList& list) {
    list.fixSlider(10, "Exposure", {-30, 30}, {-30, 30}, 10, 1, 0);
    list.fixSlider(26, "Threshold", {0, 0.99}, {0, 0.99}, 0, 2, 0);
    list.checkBox(11, "Edge Behavior", "Repeat Edge Pixels", true, 0);
}

void addDepthMap(ParameterList& list) {
    list.groupStart(13, "Depth Map");
    list.layer(14, "Layer");
    list.popup(15, "Channel", kChannelChoices);
    list.popup(16, "Placement", kPlacementChoices);
    list.slider(17, "Resolution", 2, 16, 6);
    list.fixSlider(19, "Focal Distance", {-1, 2}, {0, 1}, 0, 2, kCollapsed);
    list.checkBox(27, "Use Focus Point", "", false, PF_ParamFlag_CANNOT_TIME_VARY);
    list.point(28, "Focus Point 0", 50);
    list.point(31, "Focus Point 1", 60);
    list.fixSlider(32, "Focus Point 0-1 Interpolation", {-1, 2}, {0, 1}, 0, 2, kCollapsed);
    list.fixSlider(20, "Profile", {-1, 1}, {-1, 1}, 0, 2, kCollapsed);
    list.checkBox(23, "Invert Depth Map", "", false, 0);
    list.popup(25, "Composite Mode", kCompositeChoices);
    list.fixSlider(29, "Remove Edge Leak", {0, 1}, {0, 1}, 0, 2, kCollapsed);
    list.fixSlider(30, "Detect Edge Threshold", {0, 1}, {0, 1}, 0.1, 2, kCollapsed);
    list.groupEnd(24);
}

}  // namespace

PF_Err ParamsSetup(PF_InData* in_data, PF_OutData* out_data) {
    ParameterList list(*in_data);
    addAperture(list);
    addHighlightsAndEdges(list);
    addDepthMap(list);
    out_data->num_params = kParameterCount;
    return list.result();
}
