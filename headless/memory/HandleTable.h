// SPDX-License-Identifier: Apache-2.0
#pragma once
// The memory blocks of the handles that the effect gets from the host.

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>

#include "headless/books/Books.h"
#include "headless/memory/MemoryMeter.h"
#include "platform/Scalars.h"

namespace headless {

// All live handles. Using an invalid handle is a fault in the books and otherwise has no effect.
// All functions may be called from any thread.
class HandleTable {
public:
    HandleTable(MemoryMeter& meter, Books& books);
    ~HandleTable();
    HandleTable(const HandleTable&) = delete;
    HandleTable& operator=(const HandleTable&) = delete;

    // A zeroed block whose payload is aligned to 8 bytes, with a cache line starting after its
    // first word; null if there isn't enough memory. Pages cost nothing until they are used.
    PF_Handle create(std::uint64_t size);
    void* lock(PF_Handle handle);
    void unlock(PF_Handle handle);
    std::uint64_t size(PF_Handle handle);
    // Frees the block, locked or not: set-down disposes of the global record while it is locked.
    void dispose(PF_Handle handle);

    // Names a live block for the accounts. A block that the host owns (`owned`) isn't listed there.
    void name(PF_Handle handle, const std::string& name, bool owned);
    // The block whose payload contains `address`, or null.
    PF_Handle containing(const void* address) const;
    // Frees all blocks of this name without checks, and returns their number.
    int disposeAll(const std::string& name);
    void report(Accounts& accounts) const;

private:
    struct Block;
    Block* find(PF_Handle handle, const char* operation);
    void release(Block& block);

    MemoryMeter& meter_;
    Books& books_;
    mutable std::mutex mutex_;
    std::unordered_map<PF_Handle, std::unique_ptr<Block>> blocks_;
};

}  // namespace headless
