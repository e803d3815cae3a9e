#pragma once
// Assertions that stay in every build. Each names its place itself, so that a report reads the same
// whatever file and line the code has moved to.

namespace AEO {

// Where an assertion stands: `file` is the source's name without a suffix.
struct AssertionPlace {
    const char* function;
    const char* file;
    int line;
};

// Prints the failed assertion `text` to the standard error stream and aborts the process.
[[noreturn]] void assertionFailed(const AssertionPlace& place, const char* text);

}  // namespace AEO
