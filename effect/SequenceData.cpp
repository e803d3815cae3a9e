// SPDX-License-Identifier: Apache-2.0
#include "effect/SequenceData.h"

#include <cstddef>
#include <cstring>

bool SerializedSequenceData::isSerializedSequenceData(PF_InData* in_data, PF_Handle handle) {
    std::uint64_t firstWord;
    std::memcpy(&firstWord, in_data->utils->host_lock_handle(handle), sizeof firstWord);
    in_data->utils->host_unlock_handle(handle);
    return firstWord == 0;
}

SequenceData::SequenceData(const SerializedSequenceData*) {}

SequenceData::~SequenceData() = default;

PF_Handle SequenceData::serialize(PF_InData* in_data) const {
    const PF_Handle handle = in_data->utils->host_new_handle(sizeof(SerializedSequenceData));
    if (handle == nullptr) return nullptr;
    void* locked = in_data->utils->host_lock_handle(handle);
    if (locked == nullptr) {
        in_data->utils->host_dispose_handle(handle);
        return nullptr;
    }
    static_cast<SerializedSequenceData*>(locked)->value = 0;
    in_data->utils->host_unlock_handle(handle);
    return handle;
}
