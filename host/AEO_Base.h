// SPDX-License-Identifier: Apache-2.0
#pragma once
// The context of one host command, and the base of the wrappers that hold a first error.

#include "host/SuiteHolder.h"
#include "platform/Commands.h"

namespace AEO {

// The context of one host command, built on the handler's stack and passed by reference to
// everything below it. It has to outlive all objects built on it.
//
// The constructor acquires the three sampling suites: 8, 16, float. A missing one is recorded in
// its holder and isn't an error here. The order of the members ensures that they are released in
// the order float, 16, 8, even if the constructor throws.
struct InData {
    PF_InData* in_data;  // not owned
    SuiteHolder<PF_Sampling8Suite1> sampling8;
    SuiteHolder<PF_Sampling16Suite1> sampling16;
    SuiteHolder<PF_SamplingFloatSuite1> samplingFloat;

    explicit InData(PF_InData* hostRecord);
    InData(const InData&) = delete;
    InData& operator=(const InData&) = delete;
};

// Base of the wrappers of host objects. Only its destructor is virtual.
class ObjectBase {
public:
    // The first error of this object. The owner may read it, and take it over by resetting it to 0.
    // Mutable, since a world's const sampling functions can fail.
    mutable PF_Err _err = PF_Err_NONE;

    virtual ~ObjectBase() = default;
    ObjectBase(const ObjectBase&) = delete;
    ObjectBase& operator=(const ObjectBase&) = delete;

protected:
    // The context, not owned: `in_data` for objects that need only the host's record.
    union {
        InData* inData;
        PF_InData* in_data;
    };

    explicit ObjectBase(InData& context) : inData(&context) {}
    explicit ObjectBase(PF_InData* hostRecord) : in_data(hostRecord) {}

    // Keeps `result` if it is the first error. Not synchronised: worker threads may call this, but
    // nothing is stored unless a call fails, and of several errors any one may be kept.
    void keepFirstError(PF_Err result) const {
        if (result != PF_Err_NONE && _err == PF_Err_NONE) _err = result;
    }

    // Ends the process through an assertion if `_err` still holds an error other than a cancel.
    // Called last in the destructors of NewEffectWorld and Parameter, whose owners have to take
    // errors over; a plain EffectWorld may be destroyed with an error in it.
    void assertNoErrorStands() const;
};

}  // namespace AEO
