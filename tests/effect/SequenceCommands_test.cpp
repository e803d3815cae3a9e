// SPDX-License-Identifier: Apache-2.0
#include "effect/SequenceCommands.h"

#include "effect/HandleBlock.h"
#include "effect/SequenceData.h"
#include "support/EffectFixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class SequenceCommands : public EffectFixture {
protected:
    // The handle operations of a command; it has to succeed and to hold the three suites.
    Calls handleCallsOf(PF_Cmd command) {
        const Calls calls = callsOf([&] { EXPECT_EQ(send(command), 0); });
        EXPECT_EQ(argumentsOf(calls, "AcquireSuite ").size(), 3u);
        return argumentsOf(calls, "host_");
    }
};

TEST_F(SequenceCommands, DropWhateverHandleIsOfferedAndSetdownDoesNotClear) {
    for (const PF_Cmd command : {PF_Cmd_SEQUENCE_SETUP, PF_Cmd_SEQUENCE_RESETUP,
                                 PF_Cmd_SEQUENCE_FLATTEN, PF_Cmd_SEQUENCE_SETDOWN}) {
        out_data.sequence_data = nullptr;
        EXPECT_THAT(handleCallsOf(command), IsEmpty());
        out_data.sequence_data = in_data.utils->host_new_handle(16);
        EXPECT_THAT(handleCallsOf(command), ElementsAre("dispose_handle"));
        EXPECT_EQ(out_data.sequence_data != nullptr, command == PF_Cmd_SEQUENCE_SETDOWN);
    }
}

// Reports its destruction, which shows that the destructor is virtual.
struct Watched : SequenceData {
    explicit Watched(bool& flag) : ended(&flag) { value = 5; }
    Watched(const Watched&) = default;
    ~Watched() override { *ended = true; }
    bool* ended;
};

TEST_F(SequenceCommands, FlattenTurnsALiveRecordIntoAFlatOne) {
    bool ended = false;
    {
        const Watched original(ended);
        in_data.sequence_data =
            AEO::handleOfBlock(handle_block::create<Watched>(*in_data.utils, original));
    }
    ended = false;
    EXPECT_FALSE(SerializedSequenceData::isSerializedSequenceData(&in_data, in_data.sequence_data));
    EXPECT_THAT(handleCallsOf(PF_Cmd_SEQUENCE_FLATTEN),
                ElementsAre("lock_handle", "new_handle 16", "lock_handle", "unlock_handle",
                            "unlock_handle", "dispose_handle"));
    EXPECT_TRUE(ended);

    const PF_Handle flat = out_data.sequence_data;
    ASSERT_NE(flat, nullptr);
    EXPECT_TRUE(SerializedSequenceData::isSerializedSequenceData(&in_data, flat));
    const auto* record = reinterpret_cast<const SerializedSequenceData*>(*flat);
    EXPECT_EQ(record->value, 0) << "the value is not kept";
    EXPECT_EQ(SequenceData(record).value, 0);
    in_data.utils->host_dispose_handle(flat);
}

}  // namespace
