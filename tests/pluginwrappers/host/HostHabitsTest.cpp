// SPDX-License-Identifier: GPL-3.0-or-later
// How hosts use programs, chunks and parameters: one habit per test.

#include "PluginLibrary.h"

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

std::vector<float> parametersOf(AEffect* effect)
{
    std::vector<float> values;
    for (std::int32_t i = 0; i < effect->numParams; ++i)
        values.push_back(effect->getParameter(effect, i));
    return values;
}

class HostHabitsTest : public testing::Test
{
protected:
    ~HostHabitsTest() override { closeEffect(effect); }

    /// Edits a program that is not the first, and returns the bank.
    std::string EditedBank() const
    {
        ask(effect, effSetProgram, 0, 3);
        effect->setParameter(effect, kKey, 1.0f);
        effect->setParameter(effect, kCorrectionTime, 0.5f);
        return chunkOf(effect, false);
    }

    const LibraryHost host;
    AEffect* const effect = host.Open();
};

}  // namespace

TEST_F(HostHabitsTest, AProjectReopensWhateverTheOrderOfProgramAndChunk)
{
    const std::string bank = EditedBank();
    const std::string program = chunkOf(effect, true);
    const std::vector<float> saved = parametersOf(effect);
    struct Way
    {
        const char* steps;  // s: sets program 3, b: bank chunk, p: program chunk
        std::intptr_t current;
    };
    for (const Way& way : {Way{"sb", 3}, Way{"sbs", 3}, Way{"bs", 3}, Way{"p", 0}}) {
        SCOPED_TRACE(way.steps);
        AEffect* const reopened = host.Open();
        for (const char* step = way.steps; *step != '\0'; ++step) {
            if (*step == 's')
                ask(reopened, effSetProgram, 0, 3);
            else
                EXPECT_EQ(loadChunk(reopened, *step == 'b' ? bank : program, *step == 'p'), 1);
        }
        EXPECT_EQ(parametersOf(reopened), saved);
        EXPECT_EQ(ask(reopened, effGetProgram), way.current);
        closeEffect(reopened);
    }
}

TEST_F(HostHabitsTest, SettingEveryParameterAgainAfterTheBankLeavesTheRestoredState)
{
    ask(effect, effSetProgram, 0, 1);  // its shifts are not those of its choices
    loadChunk(effect, chunkOf(effect, false), false);
    const std::string bank = chunkOf(effect, false);
    const std::vector<float> saved = parametersOf(effect);
    AEffect* const reopened = host.Open();
    ask(reopened, effSetProgram, 0, 1);
    loadChunk(reopened, bank, false);
    for (std::int32_t i = 0; i < reopened->numParams; ++i)
        reopened->setParameter(reopened, i, saved[static_cast<std::size_t>(i)]);
    ask(reopened, effMainsChanged, 0, 1);  // delivers the changes, and what they cause
    ask(reopened, effMainsChanged, 0, 1);
    EXPECT_EQ(chunkOf(reopened, true), chunkOf(effect, true));
    closeEffect(reopened);
}

TEST_F(HostHabitsTest, SettingEachProgramToLearnItsNameChangesNothing)
{
    const std::string bank = EditedBank();
    const std::vector<float> before = parametersOf(effect);
    for (std::int32_t program = 0; program < effect->numPrograms; ++program) {
        ask(effect, effSetProgram, 0, program);
        std::array<char, kVstMaxProgNameLen> name{};
        std::array<char, kVstMaxProgNameLen> indexedName{};
        ask(effect, effGetProgramName, 0, 0, name.data());
        EXPECT_EQ(ask(effect, effGetProgramNameIndexed, program, -1, indexedName.data()), 1);
        EXPECT_EQ(name, indexedName);
    }
    ask(effect, effSetProgram, 0, 3);
    EXPECT_EQ(parametersOf(effect), before);
}

}  // namespace orvane
