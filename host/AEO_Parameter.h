// SPDX-License-Identifier: Apache-2.0
#pragma once
// Scoped check-out of one parameter.

#include <cstdint>

#include "host/AEO_Base.h"
#include "platform/Parameters.h"

namespace AEO {

// The value of a point parameter, in pixels of the current downsample.
struct PointValue {
    double x;
    double y;
};

// One parameter, checked out by the first access and checked in by the destructor. Belongs to one
// handler on one thread.
//
// Accessors assert, in every build, that the parameter has their type, and read the value at the
// command's time or at the given time. Each access checks the parameter out again, the first one of
// an object twice: for its type and for its value. An error of the host stays in `_err` and
// prevents further host calls of this object; the destructor asserts that it is 0 or a cancel.
class Parameter : public ObjectBase {
public:
    // Values of getParamType() that have an accessor.
    enum Type : PF_ParamType {
        kLayer = PF_Param_LAYER,
        kSlider = PF_Param_SLIDER,
        kFixSlider = PF_Param_FIX_SLIDER,
        kAngle = PF_Param_ANGLE,
        kCheckBox = PF_Param_CHECKBOX,
        kColor = PF_Param_COLOR,
        kPoint = PF_Param_POINT,
        kPopup = PF_Param_POPUP,
        kFloatSlider = PF_Param_FLOAT_SLIDER
    };

    // Refers to parameter `index`, without a call to the host.
    Parameter(PF_InData* hostRecord, int index);
    Parameter(InData& context, int index);
    ~Parameter() override;

    // Checks the parameter in, but the object still counts as holding it, and its destructor checks
    // in once more.
    void _checkin_param();

    // Checks the parameter out at `time`, or at the command's time, after a check-in of what was
    // held. Returns this object's copy of the parameter, as the host last filled it.
    PF_ParamDef* param(const A_Time& time);
    PF_ParamDef* param();

    // The type of the parameter; checks it out at the command's time if it isn't held.
    int getParamType();

    // The layer of the held copy; its pixels are valid until the next access.
    PF_LayerDef* layer();
    PF_LayerDef* layer(const A_Time& time);
    int slider();
    int slider(const A_Time& time);
    double fixed();
    double fixed(const A_Time& time);
    // Degrees.
    double angle();
    double angle(const A_Time& time);
    // The lowest byte of the value.
    unsigned char checkBox();
    unsigned char checkBox(const A_Time& time);
    PF_Pixel color();
    PF_Pixel color(const A_Time& time);
    PointValue point();
    PointValue point(const A_Time& time);
    // The choice, counted from 1.
    int popup();
    int popup(const A_Time& time);
    double floatSlider();
    double floatSlider(const A_Time& time);

    // Read one value of parameter `index` and check it in. `err` keeps the first error of several
    // reads. If it already holds one, a read that fails, other than by a cancel, ends in the
    // destructor's assertion.
    static int Slider(PF_InData* in_data, int index, int& err);
    static int Slider(PF_InData* in_data, int index, const A_Time& time, int& err);
    static double Fixed(PF_InData* in_data, int index, int& err);
    static double Fixed(PF_InData* in_data, int index, const A_Time& time, int& err);
    static double Angle(PF_InData* in_data, int index, int& err);
    static double Angle(PF_InData* in_data, int index, const A_Time& time, int& err);
    static unsigned char CheckBox(PF_InData* in_data, int index, int& err);
    static unsigned char CheckBox(PF_InData* in_data, int index, const A_Time& time, int& err);
    static PF_Pixel Color(PF_InData* in_data, int index, int& err);
    static PF_Pixel Color(PF_InData* in_data, int index, const A_Time& time, int& err);
    static PointValue Point(PF_InData* in_data, int index, int& err);
    static PointValue Point(PF_InData* in_data, int index, const A_Time& time, int& err);
    static int Popup(PF_InData* in_data, int index, int& err);
    static int Popup(PF_InData* in_data, int index, const A_Time& time, int& err);
    static double Float(PF_InData* in_data, int index, int& err);
    static double Float(PF_InData* in_data, int index, const A_Time& time, int& err);

private:
    void assertType(Type expected, const char* accessor, int line, const char* text);

    PF_ParamDef def_{};  // `param_type` is -1 until the first check-out
    std::int32_t index_;
};

}  // namespace AEO
