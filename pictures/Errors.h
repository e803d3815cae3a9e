#pragma once
// How the tool fails: three thrown types, each with the exit code that the shell sees.

#include <stdexcept>

namespace pictures {

// The command line asks for something that can't be: exit code 2.
struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// A file, the bundle or the machine says no: exit code 1. The text names the file and the remedy.
struct Failure : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// The user pressed Control-C: exit code 130, no message.
struct Interrupted {};

}  // namespace pictures
