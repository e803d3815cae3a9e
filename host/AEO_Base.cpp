#include "host/AEO_Base.h"

#include "host/Assertion.h"

namespace AEO {

InData::InData(PF_InData* hostData)
    : in_data(hostData),
      sampling8(hostData->pica_basicP),
      sampling16(hostData->pica_basicP),
      samplingFloat(hostData->pica_basicP) {
    sampling8.acquire();
    sampling16.acquire();
    samplingFloat.acquire();
}

void ObjectBase::assertNoErrorStands() const {
    if (_err == PF_Err_NONE || _err == PF_Interrupt_CANCEL) return;
    // The invariant belongs to the end of the base object, and is reported under that name.
    assertionFailed({"~ObjectBase", "AEO_Base", 49},
                    "_err == PF_Err_NONE || _err == PF_Interrupt_CANCEL");
}

}  // namespace AEO
