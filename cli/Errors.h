#pragma once
// How the tool fails: three thrown types, each with the exit code that the shell sees.

#include "pictures/Errors.h"

namespace cli {

using pictures::Failure;
using pictures::Interrupted;
using pictures::UsageError;

inline constexpr int kExitSuccess = 0;
inline constexpr int kExitFailure = 1;        // Failure
inline constexpr int kExitUsage = 2;          // UsageError
inline constexpr int kExitInterrupted = 130;  // Interrupted: 128 + SIGINT, as shells report it

}  // namespace cli
