// SPDX-License-Identifier: Apache-2.0
#include "headless/state/HostState.h"
#include "headless/suites/Suites.h"

namespace headless {

namespace {

PF_Err newWorld(PF_ProgPtr effectRef, std::int32_t width, std::int32_t height, PF_Boolean clear,
                PF_PixelFormat format, PF_EffectWorld* world) {
    return guarded([&] {
        HostState& host = HostState::current();
        host.log.add("PF_NewWorld", width, height);
        if (!contextOf(effectRef, "PF_NewWorld") || !world) return PF_Err_BAD_CALLBACK_PARAM;
        if (const PF_Err err = host.failures.check(Operation::kNewWorld)) return err;
        return host.worlds.create(width, height, clear != 0, format, world);
    });
}

PF_Err disposeWorld(PF_ProgPtr effectRef, PF_EffectWorld* world) {
    return guarded([&] {
        HostState& host = HostState::current();
        host.log.add("PF_DisposeWorld");
        if (!contextOf(effectRef, "PF_DisposeWorld") || !world) return PF_Err_BAD_CALLBACK_PARAM;
        // A provoked failure returns a code, but the pixels are still freed.
        const PF_Err injected = host.failures.check(Operation::kDisposeWorld);
        const PF_Err err = host.worlds.dispose(world);
        return injected != PF_Err_NONE ? injected : err;
    });
}

// A record that belongs to no world, such as that of a layer set to none, has no format.
PF_Err getPixelFormat(const PF_EffectWorld* world, PF_PixelFormat* format) {
    return guarded([&] {
        HostState& host = HostState::current();
        host.log.add("PF_GetPixelFormat");
        if (!world || !format) return PF_Err_BAD_CALLBACK_PARAM;
        if (const PF_Err err = host.failures.check(Operation::kGetPixelFormat)) return err;
        const PF_PixelFormat known = World::formatOf(*world);
        if (known == PF_PixelFormat_INVALID) return PF_Err_BAD_CALLBACK_PARAM;
        *format = known;
        return PF_Err_NONE;
    });
}

}  // namespace

const PF_WorldSuite2* worldSuite() {
    static constexpr PF_WorldSuite2 kTable{newWorld, disposeWorld, getPixelFormat};
    return &kTable;
}

}  // namespace headless
