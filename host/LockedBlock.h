// SPDX-License-Identifier: Apache-2.0
#pragma once
// Locked blocks of host memory that hold their own handle.
//
// A block is locked for its whole lifetime. Its first word holds the handle and the payload follows
// directly, aligned to 8 bytes and no more, so the handle can be found from the payload.

#include <cstddef>
#include <cstring>

#include "platform/Callbacks.h"

namespace AEO {

inline constexpr std::size_t kHandleWord = sizeof(PF_Handle);
static_assert(kHandleWord == 8);

// Returns the payload of a new block of at least `bytes` bytes, which the caller owns and fills, or
// null if memory is short. A block that is smaller than requested or can't be locked counts as a
// shortage, too.
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
