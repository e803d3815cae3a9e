// SPDX-License-Identifier: Apache-2.0
#pragma once
// The worlds that the effect gets from the host.

#include <memory>
#include <mutex>
#include <unordered_map>

#include "headless/World.h"
#include "headless/books/Books.h"
#include "headless/memory/MemoryMeter.h"

namespace headless {

// The worlds made by PF_NewWorld. All functions may be called from any thread.
class WorldTable {
public:
    WorldTable(MemoryMeter& meter, Books& books) : meter_(meter), books_(books) {}
    WorldTable(const WorldTable&) = delete;
    WorldTable& operator=(const WorldTable&) = delete;

    // Fills `*record`. Pixels hold the guard pattern unless `clear` is set.
    PF_Err create(int width, int height, bool clear, PF_PixelFormat format, PF_LayerDef* record);
    PF_Err dispose(PF_LayerDef* record);
    void report(Accounts& accounts) const;

private:
    MemoryMeter& meter_;
    Books& books_;
    mutable std::mutex mutex_;
    std::unordered_map<const void*, std::unique_ptr<World>> worlds_;  // by reserved0
};

}  // namespace headless
