// SPDX-License-Identifier: Apache-2.0
#pragma once
// The tables of the function suites. Each is constant and lives as long as the program.

#include "platform/Suites.h"

namespace headless {

const PF_Sampling8Suite1* sampling8Suite();
const PF_Sampling16Suite1* sampling16Suite();
const PF_SamplingFloatSuite1* samplingFloatSuite();
const PF_WorldSuite2* worldSuite();
const AEGP_IterateSuite1* iterateSuite();
const PF_AdvAppSuite1* advAppSuite();
const PF_ParamUtilsSuite3* paramUtilsSuite();
const AEGP_UtilitySuite11* utilitySuite();

// The suite with this name and version, or null.
const void* findSuite(const char* name, std::int32_t version);

}  // namespace headless
