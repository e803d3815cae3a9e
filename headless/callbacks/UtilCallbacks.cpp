// SPDX-License-Identifier: Apache-2.0
// The utility callbacks: handles, copying worlds, and the two text functions.

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "headless/state/HostState.h"
#include "platform/Rectangles.h"

namespace headless {

namespace {

PF_Handle newHandle(A_HandleSize size) {
    PF_Handle handle = nullptr;
    guarded([&] {
        HostState& host = HostState::current();
        host.log.add("host_new_handle", size);
        const bool shrinks = host.failures.shrinksHandle();
        if (host.failures.check(Operation::kNewHandle) == PF_Err_NONE) {
            handle = host.handles.create(shrinks ? size / 2 : size);
        }
        return PF_Err_NONE;
    });
    return handle;
}

void* lockHandle(PF_Handle handle) {
    void* address = nullptr;
    guarded([&] {
        HostState& host = HostState::current();
        host.log.add("host_lock_handle");
        if (const PF_Err err = host.failures.check(Operation::kLockHandle)) return err;
        address = host.handles.lock(handle);
        return PF_Err_NONE;
    });
    return address;
}

void unlockHandle(PF_Handle handle) {
    guarded([&] {
        HostState& host = HostState::current();
        host.log.add("host_unlock_handle");
        host.handles.unlock(handle);
        return PF_Err_NONE;
    });
}

void disposeHandle(PF_Handle handle) {
    guarded([&] {
        HostState& host = HostState::current();
        host.log.add("host_dispose_handle");
        host.handles.dispose(handle);
        return PF_Err_NONE;
    });
}

A_HandleSize getHandleSize(PF_Handle handle) {
    A_HandleSize size = 0;
    guarded([&] {
        HostState& host = HostState::current();
        host.log.add("host_get_handle_size");
        size = host.handles.size(handle);
        return PF_Err_NONE;
    });
    return size;
}

int ansiSprintf(A_char* buffer, const A_char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    const int length = std::vsprintf(buffer, format, arguments);
    va_end(arguments);
    return length;
}

A_char* ansiStrcpy(A_char* destination, const A_char* source) {
    // The interface names no size.
    // NOLINTNEXTLINE(clang-analyzer-security.insecureAPI.strcpy)
    return std::strcpy(destination, source);
}

// A rectangle in a world's own pixels, clipped to the world.
PF_LRect within(const PF_LayerDef& world, const PF_Rect* rect) {
    if (!rect) return {0, 0, world.width, world.height};
    return intersection(*rect, {0, 0, world.width, world.height});
}

// Copies pixels between the common part of two rectangles, aligned at their upper left corners.
void copyPixels(const PF_LayerDef& from, const PF_LRect& fromRect, const PF_LayerDef& to,
                const PF_LRect& toRect, std::ptrdiff_t pixel) {
    const int width = std::min(fromRect.right - fromRect.left, toRect.right - toRect.left);
    const int height = std::min(fromRect.bottom - fromRect.top, toRect.bottom - toRect.top);
    if (width <= 0) return;
    for (std::int64_t y = 0; y < height; ++y) {
        const auto* source = static_cast<const std::byte*>(from.data) +
                             (fromRect.top + y) * from.rowbytes + fromRect.left * pixel;
        auto* target =
            static_cast<std::byte*>(to.data) + (toRect.top + y) * to.rowbytes + toRect.left * pixel;
        std::memmove(target, source,
                     static_cast<std::size_t>(width) * static_cast<std::size_t>(pixel));
    }
}

PF_Err copyWorld(PF_ProgPtr effectRef, PF_EffectWorld* source, PF_EffectWorld* target,
                 PF_Rect* sourceRect, PF_Rect* targetRect) {
    return guarded([&] {
        HostState& host = HostState::current();
        host.log.add("copy");
        if (!contextOf(effectRef, "copy") || !source || !target) return PF_Err_BAD_CALLBACK_PARAM;
        if (const PF_Err err = host.failures.check(Operation::kCopy)) return err;
        const PF_PixelFormat format = World::formatOf(*source);
        if (format == PF_PixelFormat_INVALID || format != World::formatOf(*target)) {
            host.books.fault("copy between worlds that are unknown or of different formats");
            return PF_Err_BAD_CALLBACK_PARAM;
        }
        copyPixels(*source, within(*source, sourceRect), *target, within(*target, targetRect),
                   bytesPerPixel(format));
        return PF_Err_NONE;
    });
}

}  // namespace

PF_UtilCallbacks utilCallbacks() {
    PF_UtilCallbacks utils{};
    utils.copy = copyWorld;
    utils.host_new_handle = newHandle;
    utils.host_lock_handle = lockHandle;
    utils.host_unlock_handle = unlockHandle;
    utils.host_dispose_handle = disposeHandle;
    utils.host_get_handle_size = getHandleSize;
    utils.ansi.sprintf = ansiSprintf;
    utils.ansi.strcpy = ansiStrcpy;
    return utils;
}

}  // namespace headless
