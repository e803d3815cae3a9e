// SPDX-License-Identifier: Apache-2.0
#pragma once
// The command stream that a trial sends, in the order of these functions.

#include "trial/Trial.h"

namespace trial {

// Loads the bundle and sets the effect up; notes the times. Throws headless::BundleError and
// headless::EffectError, after which no other case can run.
void trySetUp(Trial& trial);
// The states of the controls, and the commands that the effect doesn't handle.
void tryControls(Trial& trial);
// The sequence commands, with and without a record.
void trySequences(Trial& trial);
// Renders all frames, and saves them if the settings ask for it.
void tryFrames(Trial& trial);
// Cancelled frames, and frames without enough memory; afterwards a frame is the same as before.
void tryFailures(Trial& trial);
// Sets the effect down, unloads the bundle, and does both set-up and set-down once more.
void trySetDown(Trial& trial);

}  // namespace trial
