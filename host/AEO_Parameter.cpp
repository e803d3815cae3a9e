// SPDX-License-Identifier: Apache-2.0
#include "host/AEO_Parameter.h"

#include "host/Assertion.h"
#include "host/Fixed.h"

namespace AEO {

namespace {

constexpr PF_ParamType kNotHeld = -1;

A_Time commandTime(const PF_InData* in_data) {
    return {in_data->current_time, in_data->time_scale};
}

// Reads one value of parameter `index` at `time` through the accessor; `err` keeps a first error.
template <typename Value>
Value readOnce(PF_InData* in_data, int index, const A_Time& time, int& err,
               Value (Parameter::*accessor)(const A_Time&)) {
    Parameter parameter(in_data, index);
    const Value value = (parameter.*accessor)(time);
    if (err == PF_Err_NONE) {
        err = parameter._err;
        parameter._err = PF_Err_NONE;
    }
    return value;
}

}  // namespace

Parameter::Parameter(PF_InData* hostRecord, int index) : ObjectBase(hostRecord), index_(index) {
    def_.param_type = kNotHeld;
}

Parameter::Parameter(InData& context, int index) : Parameter(context.in_data, index) {}

Parameter::~Parameter() {
    _checkin_param();
    assertNoErrorStands();
}

void Parameter::_checkin_param() {
    if (def_.param_type == kNotHeld || _err != PF_Err_NONE) return;
    _err = in_data->inter.checkin_param(in_data->effect_ref, &def_);
}

PF_ParamDef* Parameter::param(const A_Time& time) {
    _checkin_param();
    if (_err == PF_Err_NONE) {
        _err = in_data->inter.checkout_param(in_data->effect_ref, index_, time.value,
                                             in_data->time_step, time.scale, &def_);
    }
    return &def_;
}

PF_ParamDef* Parameter::param() {
    return param(commandTime(in_data));
}

int Parameter::getParamType() {
    if (def_.param_type == kNotHeld) param();
    return def_.param_type;
}

void Parameter::assertType(Type expected, const char* accessor, int line, const char* text) {
    if (getParamType() != expected) assertionFailed({accessor, "AEO_Parameter", line}, text);
}

PF_LayerDef* Parameter::layer(const A_Time& time) {
    assertType(kLayer, "layer", __LINE__, "getParamType() == kLayer");
    return &param(time)->u.ld;
}

int Parameter::slider(const A_Time& time) {
    assertType(kSlider, "slider", __LINE__, "getParamType() == kSlider");
    return param(time)->u.sd.value;
}

double Parameter::fixed(const A_Time& time) {
    assertType(kFixSlider, "fixed", __LINE__, "getParamType()==kFixSlider");
    return fromFixed(param(time)->u.fd.value);
}

double Parameter::angle(const A_Time& time) {
    assertType(kAngle, "angle", __LINE__, "getParamType()==kAngle");
    return fromFixed(param(time)->u.ad.value);
}

unsigned char Parameter::checkBox(const A_Time& time) {
    assertType(kCheckBox, "checkBox", __LINE__, "getParamType() == kCheckBox");
    return static_cast<unsigned char>(param(time)->u.bd.value & 0xFF);
}

PF_Pixel Parameter::color(const A_Time& time) {
    assertType(kColor, "color", __LINE__, "getParamType() == kColor");
    return param(time)->u.cd.value;
}

PointValue Parameter::point(const A_Time& time) {
    assertType(kPoint, "point", __LINE__, "getParamType() == kPoint");
    const PF_PointDef& point = param(time)->u.td;
    return {fromFixed(point.x_value), fromFixed(point.y_value)};
}

int Parameter::popup(const A_Time& time) {
    assertType(kPopup, "popup", __LINE__, "getParamType()==kPopup");
    return param(time)->u.pd.value;
}

double Parameter::floatSlider(const A_Time& time) {
    assertType(kFloatSlider, "floatSlider", __LINE__, "getParamType()==kFloatSlider");
    return param(time)->u.fs_d.value;
}

PF_LayerDef* Parameter::layer() {
    return layer(commandTime(in_data));
}
int Parameter::slider() {
    return slider(commandTime(in_data));
}
double Parameter::fixed() {
    return fixed(commandTime(in_data));
}
double Parameter::angle() {
    return angle(commandTime(in_data));
}
unsigned char Parameter::checkBox() {
    return checkBox(commandTime(in_data));
}
PF_Pixel Parameter::color() {
    return color(commandTime(in_data));
}
PointValue Parameter::point() {
    return point(commandTime(in_data));
}
int Parameter::popup() {
    return popup(commandTime(in_data));
}
double Parameter::floatSlider() {
    return floatSlider(commandTime(in_data));
}

int Parameter::Slider(PF_InData* in_data, int index, const A_Time& time, int& err) {
    return readOnce(in_data, index, time, err, &Parameter::slider);
}

double Parameter::Fixed(PF_InData* in_data, int index, const A_Time& time, int& err) {
    return readOnce(in_data, index, time, err, &Parameter::fixed);
}

double Parameter::Angle(PF_InData* in_data, int index, const A_Time& time, int& err) {
    return readOnce(in_data, index, time, err, &Parameter::angle);
}

unsigned char Parameter::CheckBox(PF_InData* in_data, int index, const A_Time& time, int& err) {
    return readOnce(in_data, index, time, err, &Parameter::checkBox);
}

PF_Pixel Parameter::Color(PF_InData* in_data, int index, const A_Time& time, int& err) {
    return readOnce(in_data, index, time, err, &Parameter::color);
}

PointValue Parameter::Point(PF_InData* in_data, int index, const A_Time& time, int& err) {
    return readOnce(in_data, index, time, err, &Parameter::point);
}

int Parameter::Popup(PF_InData* in_data, int index, const A_Time& time, int& err) {
    return readOnce(in_data, index, time, err, &Parameter::popup);
}

double Parameter::Float(PF_InData* in_data, int index, const A_Time& time, int& err) {
    return readOnce(in_data, index, time, err, &Parameter::floatSlider);
}

int Parameter::Slider(PF_InData* in_data, int index, int& err) {
    return Slider(in_data, index, commandTime(in_data), err);
}

double Parameter::Fixed(PF_InData* in_data, int index, int& err) {
    return Fixed(in_data, index, commandTime(in_data), err);
}

double Parameter::Angle(PF_InData* in_data, int index, int& err) {
    return Angle(in_data, index, commandTime(in_data), err);
}

unsigned char Parameter::CheckBox(PF_InData* in_data, int index, int& err) {
    return CheckBox(in_data, index, commandTime(in_data), err);
}

PF_Pixel Parameter::Color(PF_InData* in_data, int index, int& err) {
    return Color(in_data, index, commandTime(in_data), err);
}

PointValue Parameter::Point(PF_InData* in_data, int index, int& err) {
    return Point(in_data, index, commandTime(in_data), err);
}

int Parameter::Popup(PF_InData* in_data, int index, int& err) {
    return Popup(in_data, index, commandTime(in_data), err);
}

double Parameter::Float(PF_InData* in_data, int index, int& err) {
    return Float(in_data, index, commandTime(in_data), err);
}

}  // namespace AEO
