// SPDX-License-Identifier: Apache-2.0
#pragma once
// A host that knows the effect's controls, and the commands outside a frame.

#include "effect/EntryPoint.h"
#include "support/HostFixture.h"

class EffectFixture : public HostFixture {
protected:
    EffectFixture() { EXPECT_EQ(send(PF_Cmd_PARAMS_SETUP), 0); }

    PF_Err send(PF_Cmd command, PF_ParamDef** params = nullptr, void* extra = nullptr) {
        return EntryPointFunc(command, &in_data, &out_data, params, nullptr, extra);
    }
    headless::ParameterSet& parameters() { return host.parameters(); }

    // The handle word and the object that follows it.
    static PF_Handle handleBefore(const void* object) {
        return static_cast<PF_Handle const*>(object)[-1];
    }

    PF_OutData out_data{};
};

// The calls that begin with `prefix`, with the prefix removed.
inline std::vector<std::string> argumentsOf(const std::vector<std::string>& calls,
                                            const std::string& prefix) {
    std::vector<std::string> arguments;
    for (const std::string& call : calls) {
        if (call.rfind(prefix, 0) == 0) arguments.push_back(call.substr(prefix.size()));
    }
    return arguments;
}

// The calls of a handler that makes the calls `inner` while it holds the sampling suites.
inline std::vector<std::string> withinSampling(std::vector<std::string> inner) {
    const std::string suites[] = {"PF Sampling8 Suite 1", "PF Sampling16 Suite 1",
                                  "PF SamplingFloat Suite 1"};
    std::vector<std::string> calls;
    for (const std::string& suite : suites) calls.push_back("AcquireSuite " + suite);
    calls.insert(calls.end(), inner.begin(), inner.end());
    for (int i = 2; i >= 0; --i) calls.push_back("ReleaseSuite " + suites[i]);
    return calls;
}

// Makes the k-th check-in through `record` fail with `code`. The parameter stays checked out, so
// the next check-in returns it: the read fails, but leaves nothing checked out.
inline void failCheckin(PF_InData& record, int k, PF_Err code) {
    static int left;
    static PF_Err failure;
    static decltype(PF_InteractCallbacks::checkin_param) real;
    left = k;
    failure = code;
    real = record.inter.checkin_param;
    record.inter.checkin_param = [](PF_ProgPtr effectRef, PF_ParamDef* param) {
        return --left == 0 ? failure : real(effectRef, param);
    };
}
