// SPDX-License-Identifier: Apache-2.0
#pragma once
// The exceptions that end the tool, and the exit code of each.

#include "pictures/Errors.h"

namespace cli {

using pictures::Failure;
using pictures::Interrupted;
using pictures::UsageError;

inline constexpr int kExitSuccess = 0;
inline constexpr int kExitFailure = 1;      // Failure
inline constexpr int kExitUsage = 2;        // UsageError
inline constexpr int kExitDifferent = 1;    // of `compare`
inline constexpr int kExitNotCompared = 2;  // of `compare`: UsageError and Failure
using pictures::kExitInterrupted;           // Interrupted

}  // namespace cli
