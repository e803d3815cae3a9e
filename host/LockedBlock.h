#pragma once
// Blocks of host memory that know their own handle.
//
// The block is locked for its whole life. Its first word holds the handle, and the payload stands
// directly behind it, 8-byte aligned and no better: whoever has the payload finds the handle again.

#include <cstddef>
#include <cstring>

#include "platform/Callbacks.h"

namespace AEO {

inline constexpr std::size_t kHandleWord = sizeof(PF_Handle);
static_assert(kHandleWord == 8);

// The payload of a new block of at least `bytes` bytes, which the caller owns and fills; null if
// memory is short. A host that gives less than it was asked for, or can't lock what it gave, is out
// of memory, too.
inline std::byte* newLockedBlock(const PF_UtilCallbacks& utils, std::size_t bytes) {
    const std::size_t needed = kHandleWord + bytes;
    const PF_Handle handle = utils.host_new_handle(needed);
    if (!handle) return nullptr;
    const bool largeEnough = utils.host_get_handle_size(handle) >= needed;
    void* const locked = largeEnough ? utils.host_lock_handle(handle) : nullptr;
    if (!locked) {
        utils.host_dispose_handle(handle);
        return nullptr;
    }
    std::memcpy(locked, &handle, kHandleWord);
    return static_cast<std::byte*>(locked) + kHandleWord;
}

// The handle of the block whose payload this is.
inline PF_Handle handleOfBlock(const void* payload) {
    PF_Handle handle;
    std::memcpy(&handle, static_cast<const std::byte*>(payload) - kHandleWord, kHandleWord);
    return handle;
}

// Unlocks and frees the block whose payload this is.
inline void disposeLockedBlock(const PF_UtilCallbacks& utils, const void* payload) {
    const PF_Handle handle = handleOfBlock(payload);
    utils.host_unlock_handle(handle);
    utils.host_dispose_handle(handle);
}

}  // namespace AEO
