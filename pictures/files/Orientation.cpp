// SPDX-License-Identifier: Apache-2.0
#include "pictures/files/Orientation.h"

namespace pictures {
namespace {

// Exchanges the axes relative to the display window's corner, which stays where it is.
Window transpose(const Window& w, const Window& display) {
    return {display.left + w.top - display.top, display.top + w.left - display.left,
            display.left + w.bottom - display.top, display.top + w.right - display.left};
}

Window mirror(const Window& w, const Window& display, bool x, bool y) {
    Window mirrored = w;
    if (x) {
        mirrored.left = display.left + display.right - w.right;
        mirrored.right = display.left + display.right - w.left;
    }
    if (y) {
        mirrored.top = display.top + display.bottom - w.bottom;
        mirrored.bottom = display.top + display.bottom - w.top;
    }
    return mirrored;
}

}  // namespace

Orientation::Orientation(int number, const Window& storedDisplay)
    : flipX_(number == 2 || number == 3 || number == 7 || number == 8),
      flipY_(number == 3 || number == 4 || number == 6 || number == 7),
      transposed_(number >= 5 && number <= 8),
      display_(storedDisplay) {}

Window Orientation::toUpright(const Window& stored) const {
    const Window mirrored = mirror(stored, display_, flipX_, flipY_);
    return transposed_ ? transpose(mirrored, display_) : mirrored;
}

Window Orientation::toStored(const Window& turned) const {
    const Window mirrored = transposed_ ? transpose(turned, display_) : turned;
    return mirror(mirrored, display_, flipX_, flipY_);
}

}  // namespace pictures
