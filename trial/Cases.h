#pragma once
// The command stream that a trial sends, in the order of these functions.

#include "trial/Trial.h"

namespace trial {

// Loads the bundle and sets the effect up; tells the times. Throws headless::BundleError and
// headless::EffectError, after which nothing else can be tried.
void trySetUp(Trial& trial);
// The states of the controls, and the commands that the effect leaves unanswered.
void tryControls(Trial& trial);
// The sequence commands, without a record and with one offered.
void trySequences(Trial& trial);
// Renders all frames and keeps them.
void tryFrames(Trial& trial);
// Cancelled frames, and frames without enough memory; afterwards a frame is what it was before.
void tryFailures(Trial& trial);
// Sets down, unloads, and does it all once more.
void trySetDown(Trial& trial);

}  // namespace trial
