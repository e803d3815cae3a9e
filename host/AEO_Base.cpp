// SPDX-License-Identifier: Apache-2.0
#include "host/AEO_Base.h"

#include "host/Assertion.h"

namespace AEO {

InData::InData(PF_InData* hostRecord)
    : in_data(hostRecord),
      sampling8(hostRecord->pica_basicP),
      sampling16(hostRecord->pica_basicP),
      samplingFloat(hostRecord->pica_basicP) {
    sampling8.acquire();
    sampling16.acquire();
    samplingFloat.acquire();
}

void ObjectBase::assertNoErrorStands() const {
    if (_err == PF_Err_NONE || _err == PF_Interrupt_CANCEL) return;
    // The invariant is the base destructor's, so it is reported under that name.
    assertionFailed({"~ObjectBase", "AEO_Base", 49},
                    "_err == PF_Err_NONE || _err == PF_Interrupt_CANCEL");
}

}  // namespace AEO
