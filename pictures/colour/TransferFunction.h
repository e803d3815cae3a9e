// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace pictures {

// How the values of a picture encode light. Light is relative: 1 is the white of a display or, in
// PQ and HLG, reference white.
//
// Curves that map 0 to 0 continue below 0 by odd symmetry, f(-x) = -f(x), and all continue above 1,
// so that the values of float files survive a round trip. Two don't: KodakLog ends at code 0, PQ at
// 10000 cd/m2.
class TransferFunction {
public:
    // The function of this name, in any letter case: one of knownNames(). None for other names.
    static std::optional<TransferFunction> named(std::string_view name);
    // Such as "linear, sRGB, ...", for messages.
    static std::string knownNames();

    // In its usual spelling, such as "sRGB" or "Gamma2.2".
    const std::string& name() const { return name_; }
    bool linear() const { return name_ == "linear"; }
    bool odd() const { return odd_; }
    double decode(double value) const;  // to light
    double encode(double light) const;  // from light

private:
    using Curve = double (*)(double value, double gamma);
    TransferFunction(std::string name, Curve toLight, Curve fromLight, bool odd, double gamma = 1.0)
        : name_(std::move(name)),
          toLight_(toLight),
          fromLight_(fromLight),
          odd_(odd),
          gamma_(gamma) {}
    double evaluate(Curve curve, double value) const;

    std::string name_;
    Curve toLight_;
    Curve fromLight_;
    bool odd_;
    double gamma_;
};

// "Gamma2.2" for an exponent of 2.2, with at most four significant digits.
std::string gammaName(double exponent);

// Whether two texts are the same in any letter case; names of colour spaces are compared so.
bool sameName(std::string_view a, std::string_view b);

}  // namespace pictures
