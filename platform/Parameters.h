// SPDX-License-Identifier: Apache-2.0
#pragma once
// Parameter definitions of the host's C interface.

#include "platform/Worlds.h"

// Parameter types.
inline constexpr PF_ParamType PF_Param_LAYER = 0;
inline constexpr PF_ParamType PF_Param_SLIDER = 1;
inline constexpr PF_ParamType PF_Param_FIX_SLIDER = 2;
inline constexpr PF_ParamType PF_Param_ANGLE = 3;
inline constexpr PF_ParamType PF_Param_CHECKBOX = 4;
inline constexpr PF_ParamType PF_Param_COLOR = 5;
inline constexpr PF_ParamType PF_Param_POINT = 6;
inline constexpr PF_ParamType PF_Param_POPUP = 7;
inline constexpr PF_ParamType PF_Param_FLOAT_SLIDER = 10;
inline constexpr PF_ParamType PF_Param_GROUP_START = 13;
inline constexpr PF_ParamType PF_Param_GROUP_END = 14;

// Parameter behaviour (`flags`) and appearance (`ui_flags`).
inline constexpr PF_ParamFlags PF_ParamFlag_CANNOT_TIME_VARY = 1 << 1;
inline constexpr PF_ParamFlags PF_ParamFlag_START_COLLAPSED = 1 << 5;
inline constexpr PF_ParamFlags PF_ParamFlag_SUPERVISE = 1 << 6;
inline constexpr PF_ParamUIFlags PF_PUI_DISABLED = 1 << 5;

// Default of a layer parameter that starts with no layer chosen.
inline constexpr std::int32_t PF_LayerDefault_NONE = 0;

// An integer slider.
struct PF_SliderDef {
    PF_ParamValue value;
    A_char value_str[32];
    A_char value_desc[32];
    PF_ParamValue valid_min;
    PF_ParamValue valid_max;
    PF_ParamValue slider_min;
    PF_ParamValue slider_max;
    PF_ParamValue dephault;
};
ORBEL_LAYOUT_SIZE(PF_SliderDef, 88);
ORBEL_LAYOUT_OFFSET(PF_SliderDef, value, 0);
ORBEL_LAYOUT_OFFSET(PF_SliderDef, value_str, 4);
ORBEL_LAYOUT_OFFSET(PF_SliderDef, value_desc, 36);
ORBEL_LAYOUT_OFFSET(PF_SliderDef, valid_min, 68);
ORBEL_LAYOUT_OFFSET(PF_SliderDef, valid_max, 72);
ORBEL_LAYOUT_OFFSET(PF_SliderDef, slider_min, 76);
ORBEL_LAYOUT_OFFSET(PF_SliderDef, slider_max, 80);
ORBEL_LAYOUT_OFFSET(PF_SliderDef, dephault, 84);

// A slider whose value and limits are 16.16; `precision` is the number of decimals shown.
struct PF_FixedSliderDef {
    PF_Fixed value;
    A_char value_str[32];
    A_char value_desc[32];
    PF_Fixed valid_min;
    PF_Fixed valid_max;
    PF_Fixed slider_min;
    PF_Fixed slider_max;
    PF_Fixed dephault;
    PF_Precision precision;
    PF_ValueDisplayFlags display_flags;
};
ORBEL_LAYOUT_SIZE(PF_FixedSliderDef, 92);
ORBEL_LAYOUT_OFFSET(PF_FixedSliderDef, value, 0);
ORBEL_LAYOUT_OFFSET(PF_FixedSliderDef, value_str, 4);
ORBEL_LAYOUT_OFFSET(PF_FixedSliderDef, value_desc, 36);
ORBEL_LAYOUT_OFFSET(PF_FixedSliderDef, valid_min, 68);
ORBEL_LAYOUT_OFFSET(PF_FixedSliderDef, valid_max, 72);
ORBEL_LAYOUT_OFFSET(PF_FixedSliderDef, slider_min, 76);
ORBEL_LAYOUT_OFFSET(PF_FixedSliderDef, slider_max, 80);
ORBEL_LAYOUT_OFFSET(PF_FixedSliderDef, dephault, 84);
ORBEL_LAYOUT_OFFSET(PF_FixedSliderDef, precision, 88);
ORBEL_LAYOUT_OFFSET(PF_FixedSliderDef, display_flags, 90);

// An angle in 16.16 degrees.
struct PF_AngleDef {
    PF_Fixed value;
    PF_Fixed dephault;
    PF_Fixed valid_min;
    PF_Fixed valid_max;
};
ORBEL_LAYOUT_SIZE(PF_AngleDef, 16);
ORBEL_LAYOUT_OFFSET(PF_AngleDef, value, 0);
ORBEL_LAYOUT_OFFSET(PF_AngleDef, dephault, 4);
ORBEL_LAYOUT_OFFSET(PF_AngleDef, valid_min, 8);
ORBEL_LAYOUT_OFFSET(PF_AngleDef, valid_max, 12);

// A check box; `u.nameptr` is the text next to it, owned by the plug-in.
struct PF_CheckBoxDef {
    PF_ParamValue value;
    PF_Boolean dephault;
    std::uint8_t reserved;
    std::int16_t reserved1;
    union {
        const A_char* nameptr;
    } u;
};
ORBEL_LAYOUT_SIZE(PF_CheckBoxDef, 16);
ORBEL_LAYOUT_OFFSET(PF_CheckBoxDef, value, 0);
ORBEL_LAYOUT_OFFSET(PF_CheckBoxDef, dephault, 4);
ORBEL_LAYOUT_OFFSET(PF_CheckBoxDef, reserved, 5);
ORBEL_LAYOUT_OFFSET(PF_CheckBoxDef, reserved1, 6);
ORBEL_LAYOUT_OFFSET(PF_CheckBoxDef, u, 8);

struct PF_ColorDef {
    PF_Pixel value;
    PF_Pixel dephault;
};
ORBEL_LAYOUT_SIZE(PF_ColorDef, 8);
ORBEL_LAYOUT_OFFSET(PF_ColorDef, value, 0);
ORBEL_LAYOUT_OFFSET(PF_ColorDef, dephault, 4);

// A point in the image. Values are 16.16 pixels at the current downsample, defaults are 16.16
// percentages of the layer.
struct PF_PointDef {
    PF_Fixed x_value;
    PF_Fixed y_value;
    std::uint8_t reserved[3];
    PF_Boolean restrict_bounds;
    PF_Fixed x_dephault;
    PF_Fixed y_dephault;
};
ORBEL_LAYOUT_SIZE(PF_PointDef, 20);
ORBEL_LAYOUT_OFFSET(PF_PointDef, x_value, 0);
ORBEL_LAYOUT_OFFSET(PF_PointDef, y_value, 4);
ORBEL_LAYOUT_OFFSET(PF_PointDef, reserved, 8);
ORBEL_LAYOUT_OFFSET(PF_PointDef, restrict_bounds, 11);
ORBEL_LAYOUT_OFFSET(PF_PointDef, x_dephault, 12);
ORBEL_LAYOUT_OFFSET(PF_PointDef, y_dephault, 16);

// A list of choices. Values count from 1; `u.namesptr` holds the texts, separated by '|', and is
// owned by the plug-in.
struct PF_PopupDef {
    PF_ParamValue value;
    A_short num_choices;
    A_short dephault;
    union {
        const A_char* namesptr;
    } u;
};
ORBEL_LAYOUT_SIZE(PF_PopupDef, 16);
ORBEL_LAYOUT_OFFSET(PF_PopupDef, value, 0);
ORBEL_LAYOUT_OFFSET(PF_PopupDef, num_choices, 4);
ORBEL_LAYOUT_OFFSET(PF_PopupDef, dephault, 6);
ORBEL_LAYOUT_OFFSET(PF_PopupDef, u, 8);

struct PF_FloatSliderDef {
    PF_FpLong value;
    PF_FpLong phase;
    A_char value_desc[32];
    PF_FpShort valid_min;
    PF_FpShort valid_max;
    PF_FpShort slider_min;
    PF_FpShort slider_max;
    PF_FpShort dephault;
    PF_Precision precision;
    PF_ValueDisplayFlags display_flags;
    std::int32_t fs_flags;
    PF_FpShort curve_tolerance;
    PF_Boolean useExponent;
    PF_FpShort exponent;
};
ORBEL_LAYOUT_SIZE(PF_FloatSliderDef, 88);
ORBEL_LAYOUT_OFFSET(PF_FloatSliderDef, value, 0);
ORBEL_LAYOUT_OFFSET(PF_FloatSliderDef, phase, 8);
ORBEL_LAYOUT_OFFSET(PF_FloatSliderDef, value_desc, 16);
ORBEL_LAYOUT_OFFSET(PF_FloatSliderDef, valid_min, 48);
ORBEL_LAYOUT_OFFSET(PF_FloatSliderDef, valid_max, 52);
ORBEL_LAYOUT_OFFSET(PF_FloatSliderDef, slider_min, 56);
ORBEL_LAYOUT_OFFSET(PF_FloatSliderDef, slider_max, 60);
ORBEL_LAYOUT_OFFSET(PF_FloatSliderDef, dephault, 64);
ORBEL_LAYOUT_OFFSET(PF_FloatSliderDef, precision, 68);
ORBEL_LAYOUT_OFFSET(PF_FloatSliderDef, display_flags, 70);
ORBEL_LAYOUT_OFFSET(PF_FloatSliderDef, fs_flags, 72);
ORBEL_LAYOUT_OFFSET(PF_FloatSliderDef, curve_tolerance, 76);
ORBEL_LAYOUT_OFFSET(PF_FloatSliderDef, useExponent, 80);
ORBEL_LAYOUT_OFFSET(PF_FloatSliderDef, exponent, 84);

// The type-dependent part of a definition; `param_type` selects the active member.
union PF_ParamDefUnion {
    PF_LayerDef ld;
    PF_SliderDef sd;
    PF_FixedSliderDef fd;
    PF_AngleDef ad;
    PF_CheckBoxDef bd;
    PF_ColorDef cd;
    PF_PointDef td;
    PF_PopupDef pd;
    PF_FloatSliderDef fs_d;
};
ORBEL_LAYOUT_SIZE(PF_ParamDefUnion, 120);

// One parameter: its definition when added, its value when checked out.
struct PF_ParamDef {
    union {
        std::int32_t id;  // the number under which projects store the parameter
    } uu;
    PF_ParamUIFlags ui_flags;
    A_short ui_width;
    A_short ui_height;
    PF_ParamType param_type;
    A_char name[32];
    PF_ParamFlags flags;
    std::int32_t unused;
    PF_ParamDefUnion u;
};
ORBEL_LAYOUT_SIZE(PF_ParamDef, 176);
ORBEL_LAYOUT_OFFSET(PF_ParamDef, uu, 0);
ORBEL_LAYOUT_OFFSET(PF_ParamDef, ui_flags, 4);
ORBEL_LAYOUT_OFFSET(PF_ParamDef, ui_width, 8);
ORBEL_LAYOUT_OFFSET(PF_ParamDef, ui_height, 10);
ORBEL_LAYOUT_OFFSET(PF_ParamDef, param_type, 12);
ORBEL_LAYOUT_OFFSET(PF_ParamDef, name, 16);
ORBEL_LAYOUT_OFFSET(PF_ParamDef, flags, 48);
ORBEL_LAYOUT_OFFSET(PF_ParamDef, unused, 52);
ORBEL_LAYOUT_OFFSET(PF_ParamDef, u, 56);

// What PF_Cmd_USER_CHANGED_PARAM passes as its extra record.
struct PF_UserChangedParamExtra {
    PF_ParamIndex param_index;
};
ORBEL_LAYOUT_SIZE(PF_UserChangedParamExtra, 4);
ORBEL_LAYOUT_OFFSET(PF_UserChangedParamExtra, param_index, 0);
