// SPDX-License-Identifier: Apache-2.0
#include <set>

#include "support/EffectFixture.h"

namespace {

using Indices = std::vector<int>;

constexpr PF_ParamUIFlags kDisabled = 0x20;
constexpr PF_ParamUIFlags kOther = 0x41;  // bits that the effect leaves alone

class ParameterUI : public EffectFixture {
protected:
    ParameterUI() {
        for (std::size_t i = 0; i < defs.size(); ++i) pointers[i] = &defs[i];
    }

    // Sets the three conditions; every second control starts disabled.
    void prepare(bool shape, bool depth, bool focus) {
        for (std::size_t i = 0; i < defs.size(); ++i) {
            defs[i].ui_flags = kOther | (i % 2 == 1 ? kDisabled : 0);
        }
        defs[7].u.ld.reserved0 = shape ? this : nullptr;
        defs[13].u.ld.reserved0 = depth ? this : nullptr;
        defs[18].u.bd.value = focus ? 1 : 0;
    }

    // The controls that were reported to the host, in order.
    Indices update(PF_Err expected = 0) {
        const Calls calls =
            callsOf([&] { EXPECT_EQ(send(PF_Cmd_UPDATE_PARAMS_UI, pointers.data()), expected); });
        Indices told;
        for (const std::string& index : argumentsOf(calls, "PF_UpdateParamUI ")) {
            told.push_back(std::stoi(index));
        }
        return told;
    }

    std::set<int> disabled() const {
        std::set<int> indices;
        for (int i = 0; i < 28; ++i) {
            const PF_ParamUIFlags flags = defs[static_cast<std::size_t>(i)].ui_flags;
            EXPECT_EQ(flags & ~kDisabled, kOther);
            if ((flags & kDisabled) != 0) indices.insert(i);
        }
        return indices;
    }

    std::array<PF_ParamDef, 28> defs{};
    std::array<PF_ParamDef*, 28> pointers{};
};

TEST_F(ParameterUI, GreysOutWhatHasNoEffect) {
    const std::set<int> generated{2, 3, 4, 5, 6};
    const std::set<int> allDepth{14, 15, 16, 17, 18, 19, 20, 21, 22, 23, 24, 25, 26};
    const std::set<int> points{19, 20, 21};
    for (const int state : {0, 1, 2, 3, 4, 5, 6, 7}) {
        const bool shape = (state & 1) != 0, depth = (state & 2) != 0, focus = (state & 4) != 0;
        prepare(shape, depth, focus);
        Indices order{2, 3, 4, 6, 5, 8, 14, 15, 16, 17, 18, 19, 20, 21, 22, 23, 24, 25, 26};
        if (depth) std::swap(order[9], order[10]);
        EXPECT_EQ(update(), order) << state;

        std::set<int> expected = shape ? generated : std::set<int>{8};
        if (!depth) expected.insert(allDepth.begin(), allDepth.end());
        if (depth && focus) expected.insert(17);
        if (depth && !focus) expected.insert(points.begin(), points.end());
        for (const int index : order) {
            EXPECT_EQ(parameters().disabled(index), expected.count(index) > 0) << "as reported";
        }
        expected.insert({1, 7, 9, 11, 13, 27});  // what stays as it was
        EXPECT_EQ(disabled(), expected) << state;
    }
}

TEST_F(ParameterUI, StopsAtTheFirstFailure) {
    for (const int k : {6, 7, 19}) {
        prepare(true, false, false);
        std::set<int> expected = disabled();
        host.failAt(headless::Operation::kUpdateParamUI, k, 513);
        const Indices told = update(513);
        host.failures().clear();
        EXPECT_EQ(told.size(), static_cast<std::size_t>(k));
        expected.insert(told.begin(), told.end());
        expected.erase(8);
        EXPECT_EQ(disabled(), expected) << "the failing control is changed, those after it aren't";
    }
    host.failures().failSuite(kPFParamUtilsSuite);
    update(516);
}

}  // namespace
