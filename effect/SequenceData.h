// SPDX-License-Identifier: Apache-2.0
#pragma once
// The two forms of an effect instance's data. An instance keeps no state today, so both are empty
// except for a reserved number.

#include "platform/Commands.h"

// The flat form, a handle of 16 bytes that a project can store. A live form begins with its own
// handle, which is never 0; a flat one begins with 0, and that tells them apart.
struct SerializedSequenceData {
    std::uint64_t flatMark;  // 0, as the host cleared it
    std::int32_t value;      // 0

    // Whether the block of `handle` is a flat form.
    static bool isSerializedSequenceData(PF_InData* in_data, PF_Handle handle);
};
static_assert(sizeof(SerializedSequenceData) == 16);
static_assert(offsetof(SerializedSequenceData, value) == 8);

// The live form. In a handle it follows the handle word.
class SequenceData {
public:
    SequenceData() = default;
    SequenceData(const SequenceData& other) = default;
    // The flat form carries nothing over.
    explicit SequenceData(const SerializedSequenceData* flat);
    SequenceData& operator=(const SequenceData&) = delete;
    virtual ~SequenceData();

    // A new flat form, unlocked and owned by the caller; null if the host has no memory.
    PF_Handle serialize(PF_InData* in_data) const;

    std::int32_t value = 0;  // reserved
};
