// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace cli {

// The processor's kind and whether it has the instructions that bundles for it are usually built
// with, such as "x86-64 with AVX2, with FMA". A bundle that needs what is missing isn't loaded.
std::string processorText();

}  // namespace cli
