// SPDX-License-Identifier: Apache-2.0
#include "headless/Parameters.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>

#include "headless/state/FieldText.h"
#include "platform/Fixed.h"

namespace headless {

namespace {

double seconds(A_Time time) {
    return static_cast<double>(time.value) / time.scale;
}

bool sameText(std::string_view a, std::string_view b) {
    const auto same = [](unsigned char x, unsigned char y) {
        return std::tolower(x) == std::tolower(y);
    };
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), same);
}

std::vector<std::string> splitChoices(const char* names) {
    std::vector<std::string> choices;
    std::string_view rest = names ? names : "";
    while (!rest.empty()) {
        const std::size_t bar = rest.find('|');
        choices.emplace_back(rest.substr(0, bar));
        rest = bar == std::string_view::npos ? std::string_view() : rest.substr(bar + 1);
    }
    return choices;
}

template <class Slider>
void takeRange(ParameterInfo& info, const Slider& slider, double scale) {
    info.hasRange = true;
    info.validMin = slider.valid_min / scale;
    info.validMax = slider.valid_max / scale;
    info.sliderMin = slider.slider_min / scale;
    info.sliderMax = slider.slider_max / scale;
    info.defaultValue = slider.dephault / scale;
}

// Reads the type-dependent part of the definition. False for an unknown type.
bool takeDetails(ParameterInfo& info, const PF_ParamDef& def) {
    switch (def.param_type) {
        case PF_Param_LAYER:
        case PF_Param_GROUP_START:
        case PF_Param_GROUP_END:
            return true;
        case PF_Param_SLIDER:
            takeRange(info, def.u.sd, 1.0);
            return true;
        case PF_Param_FIX_SLIDER:
            takeRange(info, def.u.fd, kFixedOne);
            info.precision = def.u.fd.precision;
            return true;
        case PF_Param_ANGLE:
            info.defaultValue = fromFixed(def.u.ad.dephault);
            info.precision = 1;
            return true;
        case PF_Param_CHECKBOX:
            info.defaultValue = def.u.bd.dephault != 0 ? 1 : 0;
            info.boxText = def.u.bd.u.nameptr ? def.u.bd.u.nameptr : "";
            return true;
        case PF_Param_POINT:
            info.defaultX = fromFixed(def.u.td.x_dephault);
            info.defaultY = fromFixed(def.u.td.y_dephault);
            info.precision = 1;
            return true;
        case PF_Param_POPUP:
            info.choices = splitChoices(def.u.pd.u.namesptr);
            info.defaultValue = def.u.pd.dephault;
            return true;
        default:
            return false;
    }
}

std::string nameOf(const ParameterInfo& info) {
    if (!info.label.empty()) return info.label;
    return "parameter " + std::to_string(info.index);
}

[[noreturn]] void refuse(const ParameterInfo& info, const std::string& why) {
    throw ParameterError(nameOf(info) + ": " + why);
}

// Six significant digits, whatever the control shows.
std::string plainText(double value) {
    char text[64];
    std::snprintf(text, sizeof text, "%g", value);
    return text;
}

void requireWhole(const ParameterInfo& info, double value) {
    if (value != std::floor(value)) refuse(info, plainText(value) + " is not a whole number");
}

void requireRange(const ParameterInfo& info, double value) {
    // The limits are truncated to 16.16, so the decimal that users see may be just outside.
    constexpr double kSlack = 1.0 / kFixedOne;
    if (value >= info.validMin - kSlack && value <= info.validMax + kSlack) return;
    refuse(info, plainText(value) + " is outside " + info.rangeText());
}

void requireNumber(const ParameterInfo& info, double value) {
    if (!std::isfinite(value)) refuse(info, "the value is not a finite number");
}

struct Position {
    double x;
    double y;
};

double between(double from, double to, double share) {
    return from + (to - from) * share;
}

// The way from a key to the next at `share` of the time between them.
double eased(double share, Interpolation interpolation) {
    switch (interpolation) {
        case Interpolation::kHold:
            return 0.0;
        case Interpolation::kLinear:
            return share;
        case Interpolation::kSmooth:
            break;
    }
    return share * share * (3.0 - 2.0 * share);
}

Position valueAt(const std::vector<Keyframe>& keys, bool interpolates, A_Time time) {
    const double now = seconds(time);
    const auto next = std::find_if(keys.begin(), keys.end(),
                                   [&](const Keyframe& key) { return seconds(key.time) > now; });
    if (next == keys.begin()) return {next->value, next->y};
    const Keyframe& last = *(next - 1);
    if (next == keys.end() || !interpolates) return {last.value, last.y};
    const double share = (now - seconds(last.time)) / (seconds(next->time) - seconds(last.time));
    const double way = eased(share, last.interpolation);
    return {between(last.value, next->value, way), between(last.y, next->y, way)};
}

PF_Fixed scaled(double pixels, PF_RationalScale scale) {
    return toFixed(pixels * scale.num / scale.den);
}

}  // namespace

bool Keyframe::operator==(const Keyframe& other) const {
    return seconds(time) == seconds(other.time) && value == other.value && y == other.y &&
           interpolation == other.interpolation;
}

bool ParameterInfo::interpolates() const {
    return type == PF_Param_FIX_SLIDER || type == PF_Param_ANGLE || type == PF_Param_POINT;
}

void ParameterInfo::requireValue(double value) const {
    requireNumber(*this, value);
    switch (type) {
        case PF_Param_SLIDER:
            requireWhole(*this, value);
            requireRange(*this, value);
            return;
        case PF_Param_FIX_SLIDER:
            requireRange(*this, value);
            return;
        case PF_Param_ANGLE:
            return;
        case PF_Param_CHECKBOX:
            if (value != 0 && value != 1) refuse(*this, "a checkbox is 0 or 1");
            return;
        case PF_Param_POPUP:
            requireWhole(*this, value);
            if (value < 1 || value > static_cast<double>(choices.size())) {
                refuse(*this, "the choices are 1 to " + std::to_string(choices.size()));
            }
            return;
        default:
            refuse(*this, "does not take a single number");
    }
}

std::string ParameterInfo::format(double value) const {
    char text[64];
    std::snprintf(text, sizeof text, "%.*f", precision, value);
    return text;
}

std::string ParameterInfo::rangeText() const {
    return hasRange ? format(validMin) + " to " + format(validMax) : "";
}

ParameterSet::ParameterSet() {
    PF_ParamDef input{};
    input.param_type = PF_Param_LAYER;
    declare(input);
    entries_.front().info.label = "Input";
}

bool ParameterSet::declare(const PF_ParamDef& def) {
    Entry entry;
    ParameterInfo& info = entry.info;
    info.index = size();
    info.id = def.uu.id;
    info.type = def.param_type;
    info.label = fieldText(def.name);
    info.flags = def.flags;
    if (!takeDetails(info, def)) return false;
    if (info.type == PF_Param_GROUP_END) openGroup_.clear();
    info.group = openGroup_;
    if (info.type == PF_Param_GROUP_START) openGroup_ = info.label;
    entry.def = def;
    entries_.push_back(std::move(entry));
    reset(size() - 1);
    return true;
}

ParameterSet::Entry& ParameterSet::entry(int index) {
    return const_cast<Entry&>(static_cast<const ParameterSet*>(this)->entry(index));
}

const ParameterSet::Entry& ParameterSet::entry(int index) const {
    if (index < 0 || index >= size()) {
        throw ParameterError("there is no parameter " + std::to_string(index));
    }
    return entries_[static_cast<std::size_t>(index)];
}

ParameterSet::Entry& ParameterSet::entryOfType(int index, PF_ParamType type) {
    Entry& found = entry(index);
    if (found.info.type != type) refuse(found.info, "has another type");
    return found;
}

const ParameterInfo& ParameterSet::info(int index) const {
    return entry(index).info;
}

std::vector<ParameterInfo> ParameterSet::infos() const {
    std::vector<ParameterInfo> all;
    for (int i = 1; i < size(); ++i) all.push_back(info(i));
    return all;
}

int ParameterSet::find(std::string_view label) const {
    int found = 0;
    for (int i = 1; i < size(); ++i) {
        const ParameterInfo& candidate = info(i);
        const std::string qualified = candidate.group + "/" + candidate.label;
        if (!candidate.hasValue() || candidate.label.empty()) continue;
        if (!sameText(label, candidate.label) && !sameText(label, qualified)) continue;
        if (found > 0) throw ParameterError("several parameters are called " + std::string(label));
        found = i;
    }
    if (found == 0) throw ParameterError("no parameter is called " + std::string(label));
    return found;
}

void ParameterSet::set(int index, double value) {
    Entry& target = entry(index);
    target.info.requireValue(value);
    target.keys = {{{0, 1}, value, 0}};
}

void ParameterSet::setChoice(int index, std::string_view text) {
    const Entry& target = entryOfType(index, PF_Param_POPUP);
    const auto& choices = target.info.choices;
    const auto found = std::find_if(choices.begin(), choices.end(),
                                    [&](const std::string& c) { return sameText(c, text); });
    if (found == choices.end()) refuse(target.info, "no choice \"" + std::string(text) + "\"");
    set(index, static_cast<double>(found - choices.begin() + 1));
}

void ParameterSet::setPoint(int index, double x, double y) {
    Entry& target = entryOfType(index, PF_Param_POINT);
    requireNumber(target.info, x);
    requireNumber(target.info, y);
    target.keys = {{{0, 1}, x, y}};
    target.percent = false;
}

void ParameterSet::setPointPercent(int index, double x, double y) {
    setPoint(index, x, y);
    entry(index).percent = true;
}

void ParameterSet::setLayer(int index, std::shared_ptr<const World> layer) {
    Entry& target = entryOfType(index, PF_Param_LAYER);
    if (index == 0) throw ParameterError("the input layer is part of the frame request");
    target.layer = std::move(layer);
}

void ParameterSet::setKeys(int index, std::vector<Keyframe> keys) {
    Entry& target = entry(index);
    const ParameterInfo& about = target.info;
    if (!about.canVary() && keys.size() > 1) refuse(about, "can't vary in time");
    if (keys.empty()) refuse(about, "no keys");
    for (std::size_t i = 0; i < keys.size(); ++i) {
        if (keys[i].time.scale == 0) refuse(about, "a key without a time scale");
        if (i > 0 && seconds(keys[i - 1].time) >= seconds(keys[i].time)) {
            refuse(about, "keys out of order");
        }
        if (about.type == PF_Param_POINT) {
            requireNumber(about, keys[i].value);
            requireNumber(about, keys[i].y);
        } else {
            about.requireValue(keys[i].value);
        }
    }
    target.keys = std::move(keys);
    target.percent = false;
}

void ParameterSet::setKeysPercent(int index, std::vector<Keyframe> keys) {
    entryOfType(index, PF_Param_POINT);
    setKeys(index, std::move(keys));
    entry(index).percent = true;
}

void ParameterSet::changeValues(int index, const std::function<double(double)>& change) {
    std::vector<Keyframe> keys = entry(index).keys;
    for (Keyframe& key : keys) key.value = change(key.value);
    setKeys(index, std::move(keys));
}

void ParameterSet::reset(int index) {
    Entry& target = entry(index);
    const ParameterInfo& about = target.info;
    target.percent = about.type == PF_Param_POINT;
    target.keys = {target.percent ? Keyframe{{0, 1}, about.defaultX, about.defaultY}
                                  : Keyframe{{0, 1}, about.defaultValue, 0}};
    target.layer.reset();
}

double ParameterSet::value(int index, A_Time time) const {
    const Entry& source = entry(index);
    return valueAt(source.keys, source.info.interpolates(), time).x;
}

std::shared_ptr<const World> ParameterSet::layer(int index) const {
    return entry(index).layer;
}

PF_ParamDef ParameterSet::evaluate(int index, A_Time time, const Geometry& geometry) const {
    const Entry& source = entry(index);
    const Position at = valueAt(source.keys, source.info.interpolates(), time);
    PF_ParamDef def = source.def;
    switch (source.info.type) {
        case PF_Param_LAYER:
            def.u = {};
            break;
        case PF_Param_SLIDER:
            def.u.sd.value = static_cast<PF_ParamValue>(at.x);
            break;
        case PF_Param_FIX_SLIDER:
            def.u.fd.value = std::clamp(toFixed(at.x), def.u.fd.valid_min, def.u.fd.valid_max);
            break;
        case PF_Param_ANGLE:
            def.u.ad.value = toFixed(at.x);
            break;
        case PF_Param_CHECKBOX:
            def.u.bd.value = static_cast<PF_ParamValue>(at.x);
            break;
        case PF_Param_POPUP:
            def.u.pd.value = static_cast<PF_ParamValue>(at.x);
            break;
        case PF_Param_POINT:
            def.u.td.x_value =
                scaled(source.percent ? at.x * geometry.width / 100 : at.x, geometry.x);
            def.u.td.y_value =
                scaled(source.percent ? at.y * geometry.height / 100 : at.y, geometry.y);
            break;
        default:
            break;
    }
    return def;
}

bool ParameterSet::disabled(int index) const {
    return (entry(index).def.ui_flags & PF_PUI_DISABLED) != 0;
}

bool ParameterSet::setUiFlags(int index, PF_ParamUIFlags flags) {
    if (index < 0 || index >= size()) return false;
    entry(index).def.ui_flags = flags;
    return true;
}

}  // namespace headless
