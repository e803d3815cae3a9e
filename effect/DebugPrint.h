// SPDX-License-Identifier: Apache-2.0
#pragma once

// Prints one debug line to the standard output, formatted as by printf and cut at 1023 characters.
// A format of 1024 characters or more prints a fixed message instead. Returns what printf returns.
int _printf(const char* format, ...);
