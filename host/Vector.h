// SPDX-License-Identifier: Apache-2.0
#pragma once
// An array in host memory.

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <type_traits>

#include "host/AEO_Base.h"
#include "host/LockedBlock.h"

namespace AEO {

// An array whose elements are in one host handle, which stays locked as long as the block lives.
// The first 8 bytes of the locked memory hold the handle itself and element 0 follows directly, so
// elements are aligned to 8 bytes and no more.
//
// Capacity is exactly what was requested. A failed allocation isn't reported: the caller compares
// `data()` with null, or `capacity()` with what it requested. With a context whose `in_data` is
// null the vector doesn't call the host and allocates nothing.
//
// New elements are zero bytes and a growing array is copied, so T has to be a type for which that
// is enough. `Allocator` is unused: memory always comes from the host. For use on the command's
// thread; items of an iteration only access elements.
template <typename T, typename Allocator = std::allocator<T>>
class Vector {
    static_assert(std::is_trivially_copyable_v<T>, "elements are moved and freed as bytes");
    static_assert(alignof(T) <= 8, "elements are 8-byte aligned and no better");

public:
    // An empty vector without a block. `context` is not owned and has to outlive the vector.
    explicit Vector(InData& context) : context_(&context) {}
    ~Vector() {
        size_ = 0;
        if (data_ && hasHost()) disposeLockedBlock(utils(), data_);
    }
    Vector(const Vector&) = delete;
    Vector& operator=(const Vector&) = delete;

    // Allocates room for exactly `n` elements unless there is enough; never shrinks. Growing moves
    // the elements. On failure the vector stays as it was.
    void reserve(std::size_t n);

    // Sets the number of elements. Added ones are zero bytes; a smaller `n` touches no memory. If
    // memory is short the size stays as it was.
    void resize(std::size_t n);

    T* data() { return data_; }
    const T* data() const { return data_; }
    std::size_t size() const { return size_; }
    std::size_t capacity() const { return capacity_; }
    // Element `i`, below `size()`; not checked.
    T& operator[](std::size_t i) { return data_[i]; }
    const T& operator[](std::size_t i) const { return data_[i]; }

private:
    // The most elements whose size in bytes, with the handle word, can be represented.
    static constexpr std::size_t kMaxElements =
        (std::numeric_limits<std::size_t>::max() - kHandleWord) / sizeof(T);

    bool hasHost() const { return context_->in_data != nullptr; }
    const PF_UtilCallbacks& utils() const { return *context_->in_data->utils; }

    std::size_t capacity_ = 0;
    std::size_t size_ = 0;
    T* data_ = nullptr;
    InData* context_;
};

template <typename T, typename Allocator>
void Vector<T, Allocator>::reserve(std::size_t n) {
    if (n <= capacity_ || n > kMaxElements || !hasHost()) return;
    std::byte* const block = newLockedBlock(utils(), n * sizeof(T));
    if (!block) return;

    T* const grown = reinterpret_cast<T*>(block);
    if (data_) {
        std::uninitialized_copy_n(data_, size_, grown);
        disposeLockedBlock(utils(), data_);
    }
    data_ = grown;
    capacity_ = n;
}

template <typename T, typename Allocator>
void Vector<T, Allocator>::resize(std::size_t n) {
    if (n >= size_) {
        reserve(n);
        if (capacity_ < n) return;
        if (n > size_) std::memset(static_cast<void*>(data_ + size_), 0, (n - size_) * sizeof(T));
    }
    size_ = n;
}

}  // namespace AEO
