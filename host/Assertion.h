// SPDX-License-Identifier: Apache-2.0
#pragma once
// Assertions that are active in every build. Each reports a function and a file by fixed names,
// wherever the code has moved to. The line is that of the source in the accessors of Parameter, and
// a fixed number in ObjectBase.

namespace AEO {

// The place that an assertion reports; `file` is a source's name without the suffix.
struct AssertionPlace {
    const char* function;
    const char* file;
    int line;
};

// Prints the failed assertion `text` to the standard error stream and aborts the process.
[[noreturn]] void assertionFailed(const AssertionPlace& place, const char* text);

}  // namespace AEO
