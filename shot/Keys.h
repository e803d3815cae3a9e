// SPDX-License-Identifier: Apache-2.0
#pragma once
// The values of a control over the frames of a shot, and their form in a text:
// FRAME:VALUE[:INTERPOLATION], separated by commas, such as "1001:0.2,1024:0.8:hold".

#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "headless/Parameters.h"

namespace shot {

using headless::Interpolation;

inline constexpr int kLastFrame = 999'999'999;  // the first one is its negative

// A text or a list of keys that has no meaning; the message says why.
class KeyError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// A place in a layer, in pixels at full resolution or in percent of the layer.
struct Point {
    double x = 0;
    double y = 0;
    bool percent = false;

    bool operator==(const Point&) const = default;
};

// A number, the state of a checkbox, the text of a choice, or a point.
using Value = std::variant<double, bool, std::string, Point>;

struct Key {
    int frame = 0;
    Value value;
    // Towards the next key. Unsaid: linear for controls that interpolate, otherwise hold.
    std::optional<Interpolation> interpolation{};

    bool operator==(const Key&) const = default;
};

// In ascending order of frames. A single one is a constant, and its frame is 0.
using Keys = std::vector<Key>;

// "hold", "linear" or "smooth", and back; none for any other text.
const char* interpolationName(Interpolation interpolation);
std::optional<Interpolation> interpolationNamed(std::string_view name);

// Throws KeyError unless `frame` comes after that of `before`, which may be null.
void requireAscending(const int* before, int frame);

// Whether a text has keys rather than a single value.
bool hasKeys(std::string_view text);

// One key of a text, with the control's own notation of the value.
struct KeyText {
    int frame = 0;
    std::string value;
    std::optional<Interpolation> interpolation{};
};

// Throws KeyError for a text that isn't of the form above, and for frames out of order, twice or
// beyond kLastFrame.
std::vector<KeyText> splitKeys(const std::string& text);

// The shortest text that gives exactly this number.
std::string exactText(double number);

// The keys as a text, a constant as its value alone. Points are X,Y or X%,Y%, in keys with a slash.
std::string textOf(const Keys& keys);

}  // namespace shot
