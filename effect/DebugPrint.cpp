// SPDX-License-Identifier: Apache-2.0
#include "effect/DebugPrint.h"

#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <cstring>

int _printf(const char* format, ...) {
    constexpr std::size_t kLimit = 1024;
    if (std::strlen(format) >= kLimit) format = "_printf error ;Message too large\n";

    char text[kLimit];
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, kLimit, format, arguments);
    va_end(arguments);
    text[kLimit - 1] = '\0';
    return std::printf("%s", text);
}
