// SPDX-License-Identifier: Apache-2.0
#include "host/SuiteHandler.h"

AEGP_SuiteHandler::AEGP_SuiteHandler(SPBasicSuite* basic)
    : sampling8_(basic),
      sampling16_(basic),
      samplingFloat_(basic),
      world_(basic),
      paramUtils_(basic),
      utility_(basic) {}

void AEGP_SuiteHandler::MissingSuiteError() const {
    throw static_cast<int>(PF_Err_BAD_CALLBACK_PARAM);
}
