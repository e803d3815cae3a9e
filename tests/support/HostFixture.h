// SPDX-License-Identifier: Apache-2.0
#pragma once
// A host and a context for tests of the host object layer.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "headless/Host.h"
#include "host/AEO_Base.h"

// Tests run with two threads and check the host's books at their end.
class HostFixture : public testing::Test {
protected:
    using Calls = std::vector<std::string>;

    // The calls that `action` makes, in order.
    template <typename Action>
    Calls callsOf(Action action) {
        host.startCallLog();
        action();
        return host.takeCallLog();
    }

    void TearDown() override { EXPECT_TRUE(host.accounts().clean()) << host.accounts().describe(); }

    headless::Host host{{.threads = 2}};
    PF_InData in_data = host.makeInData();
};

// The same with a context of the layer.
class ContextFixture : public HostFixture {
protected:
    std::optional<AEO::InData> context{std::in_place, &in_data};

    void TearDown() override {
        context.reset();
        HostFixture::TearDown();
    }
};
