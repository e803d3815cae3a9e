// SPDX-License-Identifier: Apache-2.0
#pragma once
// The binary forms of a description: the property list ("PiPL") that the host reads from the file.

#include <cstdint>
#include <vector>

#include "bundle/descriptor/Description.h"

namespace descriptor {

using Bytes = std::vector<std::uint8_t>;

// The resource under which the host looks for the list.
inline constexpr std::uint16_t kResourceId = 16000;

// Big-endian, with the macOS entry points. Throws DescriptionError, as `check` does.
Bytes macPropertyList(const Description& description);

// Little-endian, every four-character code reversed, with the Windows entry point. The same errors.
Bytes windowsPropertyList(const Description& description);

// A classic resource file that holds the macOS form as its only resource.
Bytes macResourceFile(const Description& description);

}  // namespace descriptor
