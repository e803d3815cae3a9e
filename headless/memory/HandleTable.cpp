// SPDX-License-Identifier: Apache-2.0
#include "headless/memory/HandleTable.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>

#ifdef __linux__
#include <sys/mman.h>
#endif

namespace headless {

namespace {

constexpr std::uint64_t kHandleMagic = 0x454c444e41484c48;  // "HLHANDLE"
constexpr std::size_t kGuard = 16;
constexpr std::size_t kCacheLine = 64;
constexpr std::size_t kFirstWord = 8;
constexpr int kGuardByte = 0xB5;

constexpr std::size_t kHugePage = std::size_t{2} << 20;

// Cleared memory for a block, to be freed with std::free; null if there is none. A large block is
// walked along its columns too, a page for each row: huge pages, where the system gives them, save
// most of the look-ups.
std::byte* allocate(std::size_t size) {
#ifdef __linux__
    if (size >= kHugePage) {
        const std::size_t whole = (size + kHugePage - 1) / kHugePage * kHugePage;
        void* const memory = std::aligned_alloc(kHugePage, whole);
        if (memory) {
            madvise(memory, whole, MADV_HUGEPAGE);  // only a wish
            std::memset(memory, 0, whole);
        }
        return static_cast<std::byte*>(memory);
    }
#endif
    return static_cast<std::byte*>(std::calloc(size, 1));
}

// The payload's position in `memory`: after a guard, and with a cache line starting after the
// payload's first word. An effect stores the block's handle in that word and its data right after
// it, and wide loads and stores that cross cache lines are slow. The payload itself is aligned for
// pointers, and no more than that is guaranteed.
std::byte* payloadIn(std::byte* memory) {
    const auto earliest = reinterpret_cast<std::uintptr_t>(memory) + kGuard + kFirstWord;
    const std::uintptr_t pastLine = earliest % kCacheLine;
    return memory + kGuard + (pastLine ? kCacheLine - pastLine : 0);
}

}  // namespace

// What a PF_Handle points to: its first word is the address of the payload.
struct HandleTable::Block {
    void* data = nullptr;
    std::uint64_t magic = kHandleMagic;
    std::uint64_t size = 0;
    int locks = 0;
    bool owned = false;
    std::string name = "unnamed";
    std::byte* memory = nullptr;   // all of it
    std::byte* payload = nullptr;  // with a guard before and after it

    PF_Handle handle() { return &data; }
    bool guardsIntact() const {
        const auto intact = [](std::byte value) { return value == std::byte{kGuardByte}; };
        const std::byte* behind = payload + size;
        return std::all_of(payload - kGuard, payload, intact) &&
               std::all_of(behind, behind + kGuard, intact);
    }
};

HandleTable::HandleTable(MemoryMeter& meter, Books& books) : meter_(meter), books_(books) {}

HandleTable::~HandleTable() {
    for (auto& [handle, block] : blocks_) std::free(block->memory);
}

PF_Handle HandleTable::create(std::uint64_t size) {
    constexpr std::size_t kExtra = 2 * kGuard + kCacheLine;
    if (size > PTRDIFF_MAX - kExtra || !meter_.take(size)) return nullptr;
    auto block = std::make_unique<Block>();
    block->memory = allocate(size + kExtra);
    if (!block->memory) {
        meter_.giveBack(size);
        return nullptr;
    }
    block->payload = payloadIn(block->memory);
    block->data = block->payload;
    block->size = size;
    std::memset(block->payload - kGuard, kGuardByte, kGuard);
    std::memset(block->payload + size, kGuardByte, kGuard);

    const std::lock_guard guard(mutex_);
    const PF_Handle handle = block->handle();
    blocks_.emplace(handle, std::move(block));
    return handle;
}

// Requires the mutex to be held.
HandleTable::Block* HandleTable::find(PF_Handle handle, const char* operation) {
    const auto entry = blocks_.find(handle);
    if (entry == blocks_.end()) {
        books_.fault(std::string(operation) + " of a handle that is not live");
        return nullptr;
    }
    if (entry->second->magic != kHandleMagic) {
        books_.fault(std::string(operation) + " of a handle that was overwritten");
        return nullptr;
    }
    return entry->second.get();
}

void* HandleTable::lock(PF_Handle handle) {
    const std::lock_guard guard(mutex_);
    Block* block = find(handle, "lock");
    if (!block) return nullptr;
    ++block->locks;
    return block->data;
}

void HandleTable::unlock(PF_Handle handle) {
    const std::lock_guard guard(mutex_);
    Block* block = find(handle, "unlock");
    if (!block) return;
    if (block->locks == 0) {
        books_.fault("unlock of a handle that is not locked");
        return;
    }
    --block->locks;
}

std::uint64_t HandleTable::size(PF_Handle handle) {
    const std::lock_guard guard(mutex_);
    const Block* block = find(handle, "size");
    return block ? block->size : 0;
}

void HandleTable::release(Block& block) {
    if (!block.guardsIntact()) {
        books_.fault("bytes outside the " + std::to_string(block.size) + " bytes of handle \"" +
                     block.name + "\" were written");
    }
    std::free(block.memory);
    meter_.giveBack(block.size);
}

void HandleTable::dispose(PF_Handle handle) {
    const std::lock_guard guard(mutex_);
    Block* block = find(handle, "disposal");
    if (!block) return;
    release(*block);
    blocks_.erase(handle);
}

void HandleTable::name(PF_Handle handle, const std::string& text, bool owned) {
    const std::lock_guard guard(mutex_);
    const auto entry = blocks_.find(handle);
    if (entry == blocks_.end()) return;
    entry->second->name = text;
    entry->second->owned = owned;
}

PF_Handle HandleTable::containing(const void* address) const {
    const std::lock_guard guard(mutex_);
    const auto wanted = reinterpret_cast<std::uintptr_t>(address);
    for (const auto& [handle, block] : blocks_) {
        const auto begin = reinterpret_cast<std::uintptr_t>(block->data);
        if (wanted >= begin && wanted - begin < block->size) return handle;
    }
    return nullptr;
}

int HandleTable::disposeAll(const std::string& text) {
    const std::lock_guard guard(mutex_);
    return static_cast<int>(std::erase_if(blocks_, [&](auto& entry) {
        if (entry.second->name != text) return false;
        release(*entry.second);
        return true;
    }));
}

void HandleTable::report(Accounts& accounts) const {
    const std::lock_guard guard(mutex_);
    for (const auto& [handle, block] : blocks_) {
        if (block->owned) continue;
        const auto same = std::find_if(accounts.outstanding.begin(), accounts.outstanding.end(),
                                       [&](const Outstanding& item) {
                                           return item.kind == "handle" && item.name == block->name;
                                       });
        if (same == accounts.outstanding.end()) {
            accounts.outstanding.push_back({"handle", block->name, 1, block->size, block->locks});
        } else {
            ++same->count;
            same->bytes += block->size;
            same->locks += block->locks;
        }
    }
}

}  // namespace headless
