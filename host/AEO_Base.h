#pragma once
// The context of one host command, and the base of the wrappers that hold a first error.

#include "host/SuiteHolder.h"
#include "platform/Commands.h"

namespace AEO {

// The context of one host command, built on the handler's stack and passed by reference to
// everything below it. It has to outlive all objects made with it.
//
// The constructor acquires the three sampling suites, 8, 16, float; a missing one is recorded in
// its holder and stops nothing. The members' order makes the release run float, 16, 8, also when
// an exception leaves the constructor.
struct InData {
    PF_InData* in_data;  // not owned
    SuiteHolder<PF_Sampling8Suite1> sampling8;
    SuiteHolder<PF_Sampling16Suite1> sampling16;
    SuiteHolder<PF_SamplingFloatSuite1> samplingFloat;

    explicit InData(PF_InData* hostRecord);
    InData(const InData&) = delete;
    InData& operator=(const InData&) = delete;
};

// Base of the wrappers of host objects. Its only virtual operation is the destructor.
class ObjectBase {
public:
    // The first error that this object met. The owner may read it, and take it over by setting it
    // back to 0. Mutable, since reading a world from its const sampling functions can fail.
    mutable PF_Err _err = PF_Err_NONE;

    virtual ~ObjectBase() = default;
    ObjectBase(const ObjectBase&) = delete;
    ObjectBase& operator=(const ObjectBase&) = delete;

protected:
    // The context, not owned: `in_data` for objects that need nothing but the host's own record.
    union {
        InData* inData;
        PF_InData* in_data;
    };

    explicit ObjectBase(InData& context) : inData(&context) {}
    explicit ObjectBase(PF_InData* hostRecord) : in_data(hostRecord) {}

    // Keeps `result` if it is the first error. Not synchronised: worker threads may call this, but
    // nothing is stored as long as all goes well, and of several errors any one will do.
    void keepFirstError(PF_Err result) const {
        if (result != PF_Err_NONE && _err == PF_Err_NONE) _err = result;
    }

    // Ends the process through an assertion if an error other than a cancel still stands. The last
    // act of the destructors of NewEffectWorld and Parameter, whose owners have to take errors
    // over; a plain EffectWorld may go with an error in it.
    void assertNoErrorStands() const;
};

}  // namespace AEO
