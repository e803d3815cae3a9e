// SPDX-License-Identifier: Apache-2.0
#pragma once
// The executors of this build.

#include <memory>

#include "headless/Executor.h"

namespace headless {

std::unique_ptr<Executor> makeThreadsExecutor(int workers);
#ifdef ORBEL_HAS_TBB
std::unique_ptr<Executor> makeTbbExecutor(int workers);
std::string tbbVersion();  // of the library that is loaded
#endif

}  // namespace headless
