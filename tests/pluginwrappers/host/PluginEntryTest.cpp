// SPDX-License-Identifier: GPL-3.0-or-later
#include "PluginLibrary.h"

#include <gtest/gtest.h>

#include <array>

namespace orvane
{

TEST(PluginEntryTest, AHostWithoutAVersionGetsNoInstance)
{
    const LibraryHost host(/*versionAnswer*/ 0);
    const std::size_t before = threadCount();
    EXPECT_EQ(host.Open(), nullptr);
    EXPECT_EQ(TestHost::Calls().size(), 1u);
    EXPECT_EQ(host.Library().Entry()(nullptr), nullptr);
    EXPECT_TRUE(threadsFallTo(before));
    EXPECT_EQ(host.Library().Entry("main"), host.Library().Entry("VSTPluginMain"));
}

TEST(PluginEntryTest, ANewRecordIsCompleteAndUsableAtOnce)
{
    const LibraryHost host;
    AEffect* const effect = host.Open();
    ASSERT_NE(effect, nullptr);
    const auto calls = TestHost::Calls();
    ASSERT_EQ(calls.size(), 1u) << "hosts crash on other opcodes here";
    EXPECT_EQ(calls[0].effect, nullptr);
    EXPECT_EQ(calls[0].opcode, audioMasterVersion);

    EXPECT_EQ(effect->magic, 0x56737450);
    EXPECT_EQ(effect->numPrograms, 7);
    EXPECT_EQ(effect->numParams, 7);
    EXPECT_EQ(effect->numInputs, 2);
    EXPECT_EQ(effect->numOutputs, 2);
    EXPECT_EQ(effect->flags, 0x39);
    EXPECT_EQ(effect->initialDelay, 18871);
    EXPECT_EQ(effect->ioRatio, 1.0f);
    EXPECT_NE(effect->object, nullptr);
    EXPECT_EQ(effect->uniqueID, 0x6f636d6e);  // ocmn
    EXPECT_EQ(effect->version, 1);
    EXPECT_NE(effect->process, effect->processReplacing);

    effect->processDoubleReplacing(effect, nullptr, nullptr, 64);
    effect->process(effect, nullptr, nullptr, 64);
    effect->processReplacing(effect, nullptr, nullptr, 64);
    for (const std::int32_t index : {-1, 0, 7, INT32_MAX, INT32_MIN}) {
        effect->setParameter(effect, index, 0.5f);
        EXPECT_EQ(effect->getParameter(effect, index), 0.0f);
    }
    closeEffect(effect);
}

TEST(PluginEntryTest, FieldsOfTheHostAreNeverWritten)
{
    const LibraryHost host;
    AEffect* const effect = host.Open();
    EXPECT_EQ(effect->resvd1, 0);
    EXPECT_EQ(effect->resvd2, 0);
    effect->resvd1 = 0x1111;
    effect->resvd2 = 0x2222;
    effect->user = &effect->user;
    std::array<char, 4096> room{};
    for (std::int32_t opcode = 0; opcode < 80; ++opcode) {
        if (opcode != effClose && opcode != effProcessEvents)
            ask(effect, opcode, 0, 0, room.data());
    }
    EXPECT_EQ(effect->resvd1, 0x1111);
    EXPECT_EQ(effect->resvd2, 0x2222);
    EXPECT_EQ(effect->user, &effect->user);
    closeEffect(effect);
}

}  // namespace orvane
