// SPDX-License-Identifier: Apache-2.0
#pragma once
// The effect's controls: their declarations and their values.

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "headless/World.h"
#include "platform/Parameters.h"

namespace headless {

// A value that a control can't take; the message names the control and its range.
class ParameterError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// One control as the effect declared it. Numbers are in the control's own unit: plain for sliders,
// degrees for angles, percent of the layer for the defaults of points.
struct ParameterInfo {
    int index = 0;  // place in the effect's list; 0 is the input layer
    int id = 0;     // the number under which projects store it
    PF_ParamType type = PF_Param_LAYER;
    std::string label;
    std::string group;  // label of the enclosing group, or empty
    std::string boxText;
    std::vector<std::string> choices;  // of a popup; values count from 1
    bool hasRange = false;
    double validMin = 0;
    double validMax = 0;
    double sliderMin = 0;
    double sliderMax = 0;
    int precision = 0;  // decimals shown
    double defaultValue = 0;
    double defaultX = 0;  // of a point
    double defaultY = 0;
    PF_ParamFlags flags = 0;

    bool canVary() const { return (flags & PF_ParamFlag_CANNOT_TIME_VARY) == 0; }
    // Whether it has a value at all; groups have none.
    bool hasValue() const { return type != PF_Param_GROUP_START && type != PF_Param_GROUP_END; }
    // Whether it takes values between those of two keys: numbers with decimals, angles and points.
    bool interpolates() const;
    // Throws ParameterError unless a control that takes a single number can have `value`.
    void requireValue(double value) const;
    // `value` with the control's number of decimals, such as "0.99" for 64880/65536.
    std::string format(double value) const;
    // Such as "0 to 500"; empty without a range.
    std::string rangeText() const;
};

// How the value goes from one key to the next: it stays, goes at an even speed, or eases out of the
// one and into the other, by 3t^2 - 2t^3.
enum class Interpolation { kHold, kLinear, kSmooth };

// A value at a time; before the first key and after the last the value is constant. `y` is only for
// points. Controls that don't interpolate hold their value whatever a key says.
struct Keyframe {
    A_Time time{0, 1};
    double value = 0;
    double y = 0;
    Interpolation interpolation = Interpolation::kLinear;  // towards the next key

    bool operator==(const Keyframe& other) const;
};

// The frame's size at full resolution and its downsample, on which points depend.
struct Geometry {
    int width = 0;
    int height = 0;
    PF_RationalScale x{1, 1};
    PF_RationalScale y{1, 1};
};

// All controls of one effect instance. Copyable; a copy has its own values and shares the layers.
// Functions that take an index throw ParameterError if there is no such control, if it has another
// type, or if the value is outside its range.
class ParameterSet {
public:
    // Starts with the input layer at index 0.
    ParameterSet();

    // Adds a control, copying all of `def`. False for a type that the host doesn't know.
    bool declare(const PF_ParamDef& def);

    int size() const { return static_cast<int>(entries_.size()); }
    const ParameterInfo& info(int index) const;
    // The controls after the input layer, groups included.
    std::vector<ParameterInfo> infos() const;
    // The index of the control with this label, in any letter case; "Group/Label" if a label occurs
    // twice. Throws ParameterError for an unknown or ambiguous name.
    int find(std::string_view label) const;

    // For sliders, angles, checkboxes (0 or 1) and popups (from 1); integer controls take only
    // whole numbers.
    void set(int index, double value);
    void set(std::string_view label, double value) { set(find(label), value); }
    // A popup by the text of its choice, in any letter case.
    void setChoice(int index, std::string_view text);
    // A point in pixels of the layer at full resolution, or in percent of the layer.
    void setPoint(int index, double x, double y);
    void setPointPercent(int index, double x, double y);
    // A layer at full resolution, in any format; null for none.
    void setLayer(int index, std::shared_ptr<const World> layer);
    // Keys in ascending time; controls that can't vary take only one. Those of points are in pixels
    // of the layer at full resolution, or in percent of the layer.
    void setKeys(int index, std::vector<Keyframe> keys);
    void setKeysPercent(int index, std::vector<Keyframe> keys);
    // Replaces the value of each key by `change` of it.
    void changeValues(int index, const std::function<double(double)>& change);
    void reset(int index);  // back to the default

    double value(int index, A_Time time = {0, 1}) const;
    // At least one; a single one is a constant.
    const std::vector<Keyframe>& keys(int index) const { return entry(index).keys; }
    bool animated(int index) const { return keys(index).size() > 1; }
    // Whether the keys of a point are in percent.
    bool inPercent(int index) const { return entry(index).percent; }
    std::shared_ptr<const World> layer(int index) const;

    // The definition with its value at `time`, as a check-out returns it. A layer's record is zero:
    // the caller adds the pixels.
    PF_ParamDef evaluate(int index, A_Time time, const Geometry& geometry) const;

    // Whether the effect greyed the control out.
    bool disabled(int index) const;
    // Stores the appearance that the effect requested; false for an unknown index.
    bool setUiFlags(int index, PF_ParamUIFlags flags);

private:
    struct Entry {
        ParameterInfo info;
        PF_ParamDef def{};
        std::vector<Keyframe> keys;  // one key: constant
        bool percent = false;        // keys of a point are in percent
        std::shared_ptr<const World> layer;
    };
    Entry& entry(int index);
    const Entry& entry(int index) const;
    Entry& entryOfType(int index, PF_ParamType type);

    std::vector<Entry> entries_;
    std::string openGroup_;
};

}  // namespace headless
