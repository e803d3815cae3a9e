// SPDX-License-Identifier: Apache-2.0
#include <map>

#include "support/EffectFixture.h"

namespace {

constexpr const char* kChannels = "Red|Green|Blue|Alpha|(R+G+B)/3";

// What the host receives: numbers are the range, the slider's range, the default and the decimals
// of a fixed slider; range, slider's range and default of a slider; x and y of a point; the number
// of choices and the default of a popup; the default of the rest.
struct Row {
    int id;
    std::string label;
    PF_ParamType type;
    std::vector<int> numbers;
    PF_ParamFlags flags = 0;
    std::string text{};

    bool operator==(const Row&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Row& row) {
    return out << row.label << testing::PrintToString(row.numbers) << row.flags << row.text;
}

const std::vector<Row> kRows = {
    {3, "Blur Radius", 2, {0, 32768000, 0, 6553600, 1310720, 1}},
    {4, "Vertices", 1, {3, 10, 3, 10, 6}, 32},
    {5, "Roundness", 2, {-64880, 65536, -64880, 65536, 0, 2}, 32},
    {6, "Concentration", 2, {-64880, 64880, -64880, 64880, 0, 2}, 32},
    {12, "Deform", 2, {-64880, 64880, -64880, 64880, 0, 2}, 32},
    {7, "Rotation", 3, {0x5A0000}},
    {8, "Custom Blur Shape", 0, {0}},
    {9, "Custom Layer Channel", 7, {5, 5}, 0, kChannels},
    {10, "Exposure", 2, {-1966080, 1966080, -1966080, 1966080, 655360, 1}},
    {26, "Threshold", 2, {0, 64880, 0, 64880, 0, 2}},
    {11, "Edge Behavior", 4, {1}, 0, "Repeat Edge Pixels"},
    {13, "Depth Map", 13, {}},
    {14, "Layer", 0, {0}},
    {15, "Channel", 7, {5, 5}, 0, kChannels},
    {16, "Placement", 7, {2, 1}, 0, "Center Map|Stretch Map"},
    {17, "Resolution", 1, {2, 16, 2, 16, 6}, 32},
    {19, "Focal Distance", 2, {-65536, 131072, 0, 65536, 0, 2}, 32},
    {27, "Use Focus Point", 4, {0}, 2},
    {28, "Focus Point 0", 6, {0x320000, 0x320000}},
    {31, "Focus Point 1", 6, {0x3C0000, 0x3C0000}},
    {32, "Focus Point 0-1 Interpolation", 2, {-65536, 131072, 0, 65536, 0, 2}, 32},
    {20, "Profile", 2, {-65536, 65536, -65536, 65536, 0, 2}, 32},
    {23, "Invert Depth Map", 4, {0}},
    {25, "Composite Mode", 7, {2, 1}, 0, "Normal|Split"},
    {29, "Remove Edge Leak", 2, {0, 65536, 0, 65536, 0, 2}, 32},
    {30, "Detect Edge Threshold", 2, {0, 65536, 0, 65536, 6553, 2}, 32},
    {24, "", 14, {}},
};

// The row for a definition. Fields without a place in a row have to be 0, and the value equal to
// the default.
Row rowOf(const PF_ParamDef& def) {
    Row row{def.uu.id, def.name, def.param_type, {}, def.flags};
    const auto& u = def.u;
    EXPECT_EQ(def.ui_flags | def.ui_width | def.ui_height, 0) << row.label;
    // Every value starts as its default.
    const auto keep = [&row](const auto& d, std::vector<int> numbers) {
        row.numbers = std::move(numbers);
        row.numbers.push_back(d.dephault);
        EXPECT_EQ(d.value, d.dephault) << row.label;
    };
    const auto keepRange = [&](const auto& d) {
        keep(d, {d.valid_min, d.valid_max, d.slider_min, d.slider_max});
    };
    if (def.param_type == PF_Param_SLIDER) keepRange(u.sd);
    if (def.param_type == PF_Param_FIX_SLIDER) {
        keepRange(u.fd);
        row.numbers.push_back(u.fd.precision);
        EXPECT_EQ(u.fd.display_flags, 0) << row.label;
    }
    if (def.param_type == PF_Param_ANGLE) {
        keep(u.ad, {});
        EXPECT_EQ(u.ad.valid_min | u.ad.valid_max, 0);
    }
    if (def.param_type == PF_Param_CHECKBOX) {
        keep(u.bd, {});
        row.text = u.bd.u.nameptr;
    }
    if (def.param_type == PF_Param_POINT) {
        row.numbers = {u.td.x_dephault, u.td.y_dephault};
        EXPECT_EQ(std::pair(u.td.x_value, u.td.y_value),
                  std::pair(u.td.x_dephault, u.td.y_dephault));
        EXPECT_EQ(u.td.restrict_bounds, 0);
    }
    if (def.param_type == PF_Param_POPUP) {
        keep(u.pd, {u.pd.num_choices});
        row.text = u.pd.u.namesptr;
    }
    if (def.param_type == PF_Param_LAYER) row.numbers = {u.ld.dephault};
    return row;
}

// What add_param received, and what it returns for each call, counted from 1; 0 for calls not
// listed.
std::vector<Row> added;
std::map<std::size_t, PF_Err> answers;

using Parameters = EffectFixture;

TEST_F(Parameters, AreAllDeclaredInOrderThoughTheHostRefusesSome) {
    in_data.inter.add_param = [](PF_ProgPtr, PF_ParamIndex index, PF_ParamDef* def) {
        EXPECT_EQ(index, -1) << "appends";
        added.push_back(rowOf(*def));
        return answers[added.size()];
    };
    for (const PF_Err code : {0, 513}) {
        added.clear();
        answers = {{1, code}, {27, code / 64}};
        EXPECT_EQ(send(PF_Cmd_PARAMS_SETUP), code | (code / 64));
        EXPECT_THAT(added, testing::ElementsAreArray(kRows));
        EXPECT_EQ(out_data.num_params, 28);
    }
}

}  // namespace
