// SPDX-License-Identifier: GPL-3.0-or-later
// What hosts do with programs, chunks and parameters, one habit a test.

#include "TestHost.h"
#include "pluginwrappers/interface/VstOpcodes.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

namespace orvane
{

namespace
{

constexpr std::int32_t kKey = 2;
constexpr std::int32_t kCorrectionTime = 4;

std::string chunkOf(AEffect* effect, bool isProgram = false)
{
    void* data = nullptr;
    const std::intptr_t size = ask(effect, effGetChunk, isProgram ? 1 : 0, 0, &data);
    return {static_cast<const char*>(data), static_cast<std::size_t>(size)};
}

std::intptr_t load(AEffect* effect, std::string chunk, bool isProgram = false)
{
    return ask(effect, effSetChunk, isProgram ? 1 : 0, static_cast<std::intptr_t>(chunk.size()),
               chunk.data());
}

std::vector<float> parametersOf(AEffect* effect)
{
    std::vector<float> values;
    for (std::int32_t i = 0; i < effect->numParams; ++i)
        values.push_back(effect->getParameter(effect, i));
    return values;
}

std::string nameOf(AEffect* effect, std::int32_t program)
{
    std::array<char, kVstMaxProgNameLen> room{};
    EXPECT_EQ(ask(effect, effGetProgramNameIndexed, program, -1, room.data()), 1);
    return room.data();
}

class HostHabitsTest : public testing::Test
{
protected:
    ~HostHabitsTest() override { closeEffect(effect); }

    /// A state that no program begins with, under a program that is not the first.
    std::string EditedBank() const
    {
        ask(effect, effSetProgram, 0, 3);
        effect->setParameter(effect, kKey, 1.0f);
        effect->setParameter(effect, kCorrectionTime, 0.5f);
        return chunkOf(effect);
    }

    const TestHost host;
    AEffect* const effect = host.Open();
};

}  // namespace

TEST_F(HostHabitsTest, AProjectReopensInWhateverOrderItsProgramAndItsChunkCome)
{
    const std::string bank = EditedBank();
    const std::string program = chunkOf(effect, true);
    const std::vector<float> saved = parametersOf(effect);
    struct Way
    {
        const char* steps;  // s: program set, b: bank, p: program's chunk, ( and ): a change of it
        std::intptr_t current;
    };
    for (const Way& way : {Way{"sb", 3}, Way{"sbs", 3}, Way{"bs", 3}, Way{"(p)", 0}}) {
        SCOPED_TRACE(way.steps);
        AEffect* const reopened = host.Open();
        for (const char* step = way.steps; *step != '\0'; ++step) {
            switch (*step) {
            case 's':
                ask(reopened, effSetProgram, 0, 3);
                break;
            case 'b':
            case 'p':
                EXPECT_EQ(load(reopened, *step == 'b' ? bank : program, *step == 'p'), 1);
                break;
            default:
                ask(reopened, *step == '(' ? effBeginSetProgram : effEndSetProgram);
            }
        }
        EXPECT_EQ(parametersOf(reopened), saved);
        EXPECT_EQ(ask(reopened, effGetProgram), way.current);
        closeEffect(reopened);
    }
}

TEST_F(HostHabitsTest, ParametersAreSetAfterTheBankThatHoldsThem)
{
    ask(effect, effSetProgram, 0, 1);  // its shifts are not those of its choices
    load(effect, chunkOf(effect));
    const std::string bank = chunkOf(effect);
    const std::vector<float> saved = parametersOf(effect);
    AEffect* const reopened = host.Open();
    ask(reopened, effSetProgram, 0, 1);
    load(reopened, bank);
    for (std::int32_t i = 0; i < reopened->numParams; ++i)
        reopened->setParameter(reopened, i, saved[static_cast<std::size_t>(i)]);
    ask(reopened, effMainsChanged, 0, 1);  // delivers what the values have changed
    ask(reopened, effMainsChanged, 0, 1);
    EXPECT_EQ(chunkOf(reopened, true), chunkOf(effect, true));
    closeEffect(reopened);
}

TEST_F(HostHabitsTest, EveryProgramIsSetInTurnToLearnItsNameHereOrInASecondInstance)
{
    const std::string bank = EditedBank();
    const std::vector<float> before = parametersOf(effect);
    AEffect* const second = host.Open();
    for (AEffect* const asked : {second, effect}) {
        const std::intptr_t current = ask(asked, effGetProgram);
        for (std::int32_t program = 0; program < effect->numPrograms; ++program) {
            ask(asked, effSetProgram, 0, program);
            std::array<char, kVstMaxProgNameLen> room{};
            ask(asked, effGetProgramName, 0, 0, room.data());
            EXPECT_EQ(room.data(), nameOf(effect, program));
        }
        ask(asked, effSetProgram, 0, current);
        EXPECT_EQ(parametersOf(effect), before);
        EXPECT_TRUE(asked == effect || chunkOf(effect) == bank);
    }
    closeEffect(second);
}

}  // namespace orvane
