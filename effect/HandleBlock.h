// SPDX-License-Identifier: Apache-2.0
#pragma once
// One object in a locked block of host memory, after the block's handle word.

#include <cstddef>
#include <new>

#include "host/LockedBlock.h"

namespace handle_block {

// The object in the locked block at address `locked`.
template <typename T>
T* object(void* locked) {
    static_assert(alignof(T) <= AEO::kHandleWord, "the object is aligned to the handle word");
    return reinterpret_cast<T*>(static_cast<std::byte*>(locked) + AEO::kHandleWord);
}

// Copies `value` into a new block and returns the copy, which the caller owns. Returns null if the
// host has no memory for it.
template <typename T>
T* create(const PF_UtilCallbacks& utils, const T& value) {
    std::byte* const payload = AEO::newLockedBlock(utils, sizeof(T));
    return payload ? new (payload) T(value) : nullptr;
}

// Destroys the object and frees its block.
template <typename T>
void destroy(const PF_UtilCallbacks& utils, T* object) {
    object->~T();
    AEO::disposeLockedBlock(utils, object);
}

}  // namespace handle_block
