// SPDX-License-Identifier: Apache-2.0
#pragma once
// Rectangles of pixels, of the interface's type or any other with the same four edges.

#include <algorithm>

template <class Rect>
constexpr bool isEmpty(const Rect& rect) {
    return rect.left >= rect.right || rect.top >= rect.bottom;
}

// What both cover; without any common pixel some empty rectangle.
template <class Rect>
constexpr Rect intersection(const Rect& a, const Rect& b) {
    return {std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
            std::min(a.bottom, b.bottom)};
}
