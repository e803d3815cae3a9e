#pragma once

// Prints one debug line to the standard output, formatted as by printf and cut at 1023 characters.
// A format of 1024 characters or more prints a fixed complaint instead. Returns what printf gives.
int _printf(const char* format, ...);
