// SPDX-License-Identifier: Apache-2.0
#include "headless/memory/WorldTable.h"

#include <exception>
#include <string>

namespace headless {

PF_Err WorldTable::create(int width, int height, bool clear, PF_PixelFormat format,
                          PF_LayerDef* record) {
    if (width < 1 || height < 1 || bytesPerPixel(format) == 0) return PF_Err_BAD_CALLBACK_PARAM;
    const std::uint64_t bytes = static_cast<std::uint64_t>(width) *
                                static_cast<std::uint64_t>(height) *
                                static_cast<std::uint64_t>(bytesPerPixel(format));
    if (!meter_.take(bytes)) return PF_Err_OUT_OF_MEMORY;
    try {
        auto world = std::make_unique<World>(width, height, format);
        if (!clear) world->fillWithPattern();
        *record = world->record();
        const std::lock_guard lock(mutex_);
        worlds_.emplace(record->reserved0, std::move(world));
        return PF_Err_NONE;
    } catch (const std::exception&) {
        meter_.giveBack(bytes);
        return PF_Err_OUT_OF_MEMORY;
    }
}

PF_Err WorldTable::dispose(PF_LayerDef* record) {
    const std::lock_guard lock(mutex_);
    const auto entry = worlds_.find(record->reserved0);
    if (entry == worlds_.end()) {
        books_.fault("PF_DisposeWorld of a world that PF_NewWorld did not make");
        return PF_Err_BAD_CALLBACK_PARAM;
    }
    const std::string damage = entry->second->damage();
    if (!damage.empty()) books_.fault("world from PF_NewWorld: " + damage);
    meter_.giveBack(entry->second->bytes());
    worlds_.erase(entry);
    return PF_Err_NONE;
}

void WorldTable::report(Accounts& accounts) const {
    const std::lock_guard lock(mutex_);
    for (const auto& [identity, world] : worlds_) {
        const std::string name = std::to_string(world->width()) + "x" +
                                 std::to_string(world->height()) + " of " +
                                 std::to_string(bitsOfFormat(world->format())) + " bits";
        accounts.outstanding.push_back({"world", name, 1, world->bytes(), 0});
    }
}

}  // namespace headless
