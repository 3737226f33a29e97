// What hosts do with programs, chunks and parameters, one habit a test.

#include "TestHost.h"

#include "pluginwrappers/common/VstEvents.h"
#include "pluginwrappers/common/VstOpcodes.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <chrono>
#include <string>
#include <thread>
#include <vector>

namespace orvane
{

namespace
{

constexpr std::int32_t kCorrectPitch = 0;
constexpr std::int32_t kKey = 2;
constexpr std::int32_t kCorrectionTime = 4;
constexpr std::int32_t kPitchTranspose = 5;
constexpr std::int32_t kBlock = 256;

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

TEST_F(HostHabitsTest, AProjectIsRestoredByTheProgramAndThenTheBank)
{
    const std::string bank = EditedBank();
    const std::vector<float> saved = parametersOf(effect);
    AEffect* const reopened = host.Open();
    ask(reopened, effSetProgram, 0, 3);
    EXPECT_NE(parametersOf(reopened), saved);
    EXPECT_EQ(load(reopened, bank), 1);
    EXPECT_EQ(parametersOf(reopened), saved);
    EXPECT_EQ(ask(reopened, effGetProgram), 3);
    closeEffect(reopened);
}

TEST_F(HostHabitsTest, TheProgramIsSetOnceMoreAfterTheBank)
{
    const std::string bank = EditedBank();
    const std::vector<float> saved = parametersOf(effect);
    AEffect* const reopened = host.Open();
    ask(reopened, effSetProgram, 0, 3);
    load(reopened, bank);
    ask(reopened, effSetProgram, 0, 3);
    EXPECT_EQ(parametersOf(reopened), saved);
    closeEffect(reopened);
}

TEST_F(HostHabitsTest, ABankIsLoadedAndItsProgramSetAfterwards)
{
    const std::string bank = EditedBank();
    const std::vector<float> saved = parametersOf(effect);
    AEffect* const reopened = host.Open();
    load(reopened, bank);
    ask(reopened, effSetProgram, 0, 3);
    EXPECT_EQ(parametersOf(reopened), saved);
    closeEffect(reopened);
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

TEST_F(HostHabitsTest, AProgramsChunkComesInsideAChangeOfPrograms)
{
    EditedBank();
    const std::string program = chunkOf(effect, true);
    const std::vector<float> saved = parametersOf(effect);
    AEffect* const reopened = host.Open();
    ask(reopened, effBeginSetProgram);
    EXPECT_EQ(load(reopened, program, true), 1);
    ask(reopened, effEndSetProgram);
    EXPECT_EQ(parametersOf(reopened), saved);
    EXPECT_EQ(ask(reopened, effGetProgram), 0);
    closeEffect(reopened);
}

TEST_F(HostHabitsTest, EveryProgramIsSetInTurnToLearnItsName)
{
    EditedBank();
    const std::vector<float> before = parametersOf(effect);
    const std::intptr_t current = ask(effect, effGetProgram);
    for (std::int32_t program = 0; program < effect->numPrograms; ++program) {
        ask(effect, effSetProgram, 0, program);
        std::array<char, kVstMaxProgNameLen> room{};
        ask(effect, effGetProgramName, 0, 0, room.data());
        EXPECT_EQ(room.data(), nameOf(effect, program));
    }
    ask(effect, effSetProgram, 0, current);
    EXPECT_EQ(parametersOf(effect), before);
}

TEST_F(HostHabitsTest, ASecondInstanceIsOpenedForTheProgramsNamesOfATrack)
{
    const std::string bank = EditedBank();
    const std::vector<float> before = parametersOf(effect);
    AEffect* const second = host.Open();
    for (std::int32_t program = 0; program < second->numPrograms; ++program) {
        ask(second, effSetProgram, 0, program);
        EXPECT_EQ(nameOf(second, program), nameOf(effect, program));
    }
    EXPECT_EQ(parametersOf(effect), before);
    closeEffect(second);
    EXPECT_EQ(chunkOf(effect), bank);
}

TEST_F(HostHabitsTest, AutomationAndNotesAndProgramsAndChunksComeOnThreadsOfTheirOwn)
{
    using Clock = std::chrono::steady_clock;
    ask(effect, effSetBlockSize, 0, kBlock);
    ask(effect, effMainsChanged, 0, 1);
    const std::string bank = EditedBank();
    std::atomic<bool> done{false};

    std::thread audio([&] {
        std::vector<float> block(kBlock, 0.1f);
        std::vector<float> other(kBlock, 0.1f);
        float* channels[] = {block.data(), other.data()};
        VstMidiEvent note{};
        note.type = kVstMidiType;
        note.midiData[0] = static_cast<char>(0x90);
        note.midiData[2] = 100;
        VstEvents events{1, 0, {reinterpret_cast<VstEvent*>(&note)}};
        for (int i = 0; !done; ++i) {
            note.midiData[1] = static_cast<char>(i % 128);
            ask(effect, effProcessEvents, 0, 0, &events);
            effect->setParameter(effect, kCorrectPitch, static_cast<float>(i / 50 % 2));
            effect->setParameter(effect, kPitchTranspose, static_cast<float>(i % 25) / 24.0f);
            effect->processReplacing(effect, channels, channels, kBlock);
            if (i % 200 == 199)
                ask(effect, effMainsChanged, 0, 1);
        }
    });
    std::thread programs([&] {
        for (std::int32_t i = 0; !done; ++i) {
            ask(effect, effSetProgram, 0, i % 7);
            EXPECT_EQ(nameOf(effect, i % 7).empty(), false);
            parametersOf(effect);
        }
    });
    for (const auto end = Clock::now() + std::chrono::milliseconds(500); Clock::now() < end;) {
        EXPECT_EQ(load(effect, bank), 1);
        EXPECT_EQ(load(effect, chunkOf(effect, true), true), 1);
        EXPECT_GT(chunkOf(effect).size(), 10000u);
    }
    done = true;
    audio.join();
    programs.join();
}

}  // namespace orvane
