#include "TestHost.h"

#include "pluginwrappers/common/VstOpcodes.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>

namespace orvane
{

TEST(PluginEntryTest, AHostThatDoesNotAnswerItsVersionGetsNothing)
{
    const TestHost host(/*versionAnswer*/ 0);
    const std::size_t before = threadCount();
    EXPECT_EQ(host.Open(), nullptr);
    EXPECT_EQ(TestHost::Calls().size(), 1u);
    EXPECT_EQ(host.Library().Entry()(nullptr), nullptr);
    EXPECT_TRUE(threadsFallTo(before));
}

TEST(PluginEntryTest, AsksTheHostForItsVersionAndForNothingElse)
{
    const TestHost host;
    AEffect* const effect = host.Open();
    ASSERT_NE(effect, nullptr);
    const auto calls = TestHost::Calls();
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].effect, nullptr);
    EXPECT_EQ(calls[0].opcode, audioMasterVersion);
    closeEffect(effect);
}

TEST(PluginEntryTest, BothNamesAreTheSameFunction)
{
    const PluginLibrary library;
    ASSERT_NE(library.Entry("main"), nullptr);
    EXPECT_EQ(library.Entry("main"), library.Entry("VSTPluginMain"));
}

TEST(PluginEntryTest, TheRecordIsFilledAsHostsExpectIt)
{
    const TestHost host;
    AEffect* const effect = host.Open();
    ASSERT_NE(effect, nullptr);
    EXPECT_EQ(effect->magic, 0x56737450);
    EXPECT_EQ(effect->numPrograms, 7);
    EXPECT_EQ(effect->numParams, 7);
    EXPECT_EQ(effect->numInputs, 2);
    EXPECT_EQ(effect->numOutputs, 2);
    EXPECT_EQ(effect->flags,
              effFlagsHasEditor | effFlagsCanMono | effFlagsCanReplacing | effFlagsProgramChunks);
    EXPECT_EQ(effect->initialDelay, 18871);
    EXPECT_EQ(effect->ioRatio, 1.0f);
    EXPECT_NE(effect->object, nullptr);
    EXPECT_EQ(effect->uniqueID, 0x6f636d6e);  // ocmn
    EXPECT_EQ(effect->version, 1);
    EXPECT_NE(effect->process, effect->processReplacing);
    closeEffect(effect);
}

TEST(PluginEntryTest, EveryPointerOfTheRecordMayBeCalledAtOnce)
{
    const TestHost host;
    AEffect* const effect = host.Open();
    ASSERT_NE(effect, nullptr);
    effect->processDoubleReplacing(effect, nullptr, nullptr, 64);
    effect->process(effect, nullptr, nullptr, 64);
    effect->processReplacing(effect, nullptr, nullptr, 64);
    for (const std::int32_t index : {-1, 0, 7, INT32_MAX, INT32_MIN}) {
        effect->setParameter(effect, index, 0.5f);
        EXPECT_EQ(effect->getParameter(effect, index), 0.0f);
    }
    closeEffect(effect);
}

TEST(PluginEntryTest, TheHostsOwnFieldsAreLeftToTheHost)
{
    const TestHost host;
    AEffect* const effect = host.Open();
    ASSERT_NE(effect, nullptr);
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

TEST(PluginEntryTest, AsksForMidiWheneverProcessingBegins)
{
    const TestHost host;
    AEffect* const effect = host.Open();
    ASSERT_NE(effect, nullptr);
    for (const std::intptr_t on : {1, 1, 0, 1})
        ask(effect, effMainsChanged, 0, on);
    const auto calls = TestHost::Calls();
    ASSERT_EQ(calls.size(), 4u);  // the first one is the handshake
    for (std::size_t i = 1; i < calls.size(); ++i) {
        EXPECT_EQ(calls[i].effect, effect);
        EXPECT_EQ(calls[i].opcode, audioMasterWantMidi);
        EXPECT_EQ(calls[i].value, 1);
    }
    closeEffect(effect);
}

}  // namespace orvane
