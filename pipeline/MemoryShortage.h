// SPDX-License-Identifier: Apache-2.0
#pragma once
// Reports to the user that a frame needs more memory than there is.

#include "platform/Suites.h"

// Shows in the host's info panel that a large buffer could not be allocated and which controls
// reduce its size. Returns PF_Err_OUT_OF_MEMORY, the frame's result.
int reportMemoryShortage(SPBasicSuite& basic);
