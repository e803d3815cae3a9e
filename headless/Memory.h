#pragma once
// The memory that the effect gets from the host: blocks behind handles, and worlds.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

#include "headless/Books.h"
#include "headless/World.h"
#include "platform/Scalars.h"

namespace headless {

// Counts bytes against a limit. All functions may be called from any thread.
class MemoryMeter {
public:
    // False if the limit would be passed; nothing is counted then.
    bool take(std::uint64_t bytes);
    void giveBack(std::uint64_t bytes);
    void setLimit(std::uint64_t bytes);
    void resetPeak();
    // Starts and ends the list of MemoryUse::afterEachRequest.
    void keepRequests(bool keep);
    MemoryUse use() const;

private:
    mutable std::mutex mutex;
    MemoryUse held;
    bool keeping = false;
};

// All live handles. A handle that is none is a fault in the books and otherwise has no effect.
// All functions may be called from any thread.
class HandleTable {
public:
    HandleTable(MemoryMeter& memoryMeter, Books& faultBooks);
    ~HandleTable();
    HandleTable(const HandleTable&) = delete;
    HandleTable& operator=(const HandleTable&) = delete;

    // A zeroed block whose payload is aligned to 8 bytes, with a cache line beginning behind its
    // first word; null when memory is short. Pages cost nothing before they are used.
    PF_Handle create(std::uint64_t size);
    void* lock(PF_Handle handle);
    void unlock(PF_Handle handle);
    std::uint64_t size(PF_Handle handle);
    // Frees the block, locked or not: set-down disposes of the global record under its own lock.
    void dispose(PF_Handle handle);

    // Gives a live block a name in the accounts. One `owned` by the host isn't listed there.
    void name(PF_Handle handle, const std::string& name, bool owned);
    // The block whose payload contains `address`, or null.
    PF_Handle containing(const void* address) const;
    // Frees all blocks of this name, without checks; gives their number.
    int disposeAll(const std::string& name);
    void report(Accounts& accounts) const;

private:
    struct Block;
    Block* find(PF_Handle handle, const char* operation);
    void release(Block& block);

    MemoryMeter& meter;
    Books& books;
    mutable std::mutex mutex;
    std::unordered_map<PF_Handle, std::unique_ptr<Block>> blocks;
};

// The worlds made by PF_NewWorld. All functions may be called from any thread.
class WorldTable {
public:
    WorldTable(MemoryMeter& memoryMeter, Books& faultBooks)
        : meter(memoryMeter), books(faultBooks) {}
    WorldTable(const WorldTable&) = delete;
    WorldTable& operator=(const WorldTable&) = delete;

    // Fills `*record`. Pixels that are not to be cleared carry the guard pattern.
    PF_Err create(int width, int height, bool clear, PF_PixelFormat format, PF_LayerDef* record);
    PF_Err dispose(PF_LayerDef* record);
    void report(Accounts& accounts) const;

private:
    MemoryMeter& meter;
    Books& books;
    mutable std::mutex mutex;
    std::unordered_map<const void*, std::unique_ptr<World>> worlds;  // by reserved0
};

}  // namespace headless
