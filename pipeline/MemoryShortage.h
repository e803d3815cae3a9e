#pragma once
// What the user is told when a frame needs more memory than there is.

#include "platform/Suites.h"

// Shows in the host's info panel that a large buffer could not be had and which controls bring its
// size down. Returns PF_Err_OUT_OF_MEMORY, the frame's result.
int reportMemoryShortage(SPBasicSuite& basic);
