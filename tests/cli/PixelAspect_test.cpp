// SPDX-License-Identifier: Apache-2.0
#include "cli/render/PixelAspect.h"

#include <gtest/gtest.h>

#include <cstring>
#include <sstream>

namespace cli {
namespace {

// The controls of a round aperture that is turned by 37 degrees.
headless::ParameterSet turnedCircle() {
    headless::ParameterSet set;
    const auto declare = [&](PF_ParamType type, const char* label) {
        PF_ParamDef def{};
        def.param_type = type;
        std::strncpy(def.name, label, sizeof def.name - 1);
        if (type == PF_Param_FIX_SLIDER) {
            def.u.fd.valid_min = -500 * 65536;
            def.u.fd.valid_max = 500 * 65536;
        }
        set.declare(def);
    };
    for (const char* label : {"Blur Radius", "Roundness", "Deform", "Rotation"}) {
        declare(PF_Param_FIX_SLIDER, label);
    }
    declare(PF_Param_LAYER, "Custom Blur Shape");
    set.set("Blur Radius", 20.0);
    set.set("Roundness", 1.0);
    set.set("Rotation", 37.0);
    return set;
}

TEST(PixelAspect, WholeRatiosLeaveTheApertureAlone) {
    std::ostringstream said;
    pictures::Messages messages(said, false);
    for (const double aspect : {1.0, 1.005, 2.0}) {
        headless::ParameterSet set = turnedCircle();
        const PF_RationalScale ratio = applyPixelAspect(set, {0, 1}, aspect, "in.png", messages);
        EXPECT_EQ(ratio.num, aspect < 1.5 ? 1 : 2);
        EXPECT_EQ(set.value(set.find("Rotation")), 37.0) << aspect;
        EXPECT_EQ(set.value(set.find("Deform")), 0.0) << aspect;
        EXPECT_EQ(set.value(set.find("Blur Radius")), 20.0) << aspect;
    }
    EXPECT_EQ(said.str(), "");
    headless::ParameterSet set = turnedCircle();
    applyPixelAspect(set, {0, 1}, 1.5, "in.png", messages);
    EXPECT_EQ(set.value(set.find("Rotation")), 0.0);
    EXPECT_NE(set.value(set.find("Deform")), 0.0);
}

}  // namespace
}  // namespace cli
