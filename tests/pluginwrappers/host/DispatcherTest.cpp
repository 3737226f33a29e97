// SPDX-License-Identifier: GPL-3.0-or-later
#include "PluginLibrary.h"

using namespace orvane;

namespace
{

using DispatcherTest = InstanceTest;

// The answers other than 0 to a null pointer, index 0 and value 0.
const std::map<std::int32_t, std::intptr_t> kAnswers{
    {effIdentify, 0x4e764566}, {effProcessEvents, 1},
    {effCanBeAutomated, 1},    {effGetNumProgramCategories, 1},
    {effConnectInput, 1},      {effConnectOutput, 1},
    {effGetPlugCategory, 1},   {effSetBlockSizeAndSampleRate, 1},
    {effGetVstVersion, 2400},  {effGetCurrentMidiProgram, -1},
};

}  // namespace

TEST_F(DispatcherTest, EveryOpcodeHasItsAnswerAndUnknownOnesGiveZero)
{
    for (std::int32_t opcode = -1; opcode < 200; ++opcode) {
        if (opcode == effClose)
            continue;
        const auto known = kAnswers.find(opcode);
        EXPECT_EQ(ask(effect, opcode), known != kAnswers.end() ? known->second : 0) << opcode;
    }
    EXPECT_EQ(ask(effect, effSetTotalSampleToProcess, 0, 0x123456789), 0x123456789);
    EXPECT_EQ(ask(effect, effCanBeAutomated, -1), 1);
    for (const char* query : {"bypass", "receiveVstMidiEvent", "plugAsChannelInsert", ""}) {
        std::string text = query;
        EXPECT_EQ(ask(effect, effCanDo, 0, 0, text.data()), 0) << query;
    }
    void* input = this;
    void* output = this;
    EXPECT_EQ(
        ask(effect, effGetSpeakerArrangement, 0, reinterpret_cast<std::intptr_t>(&input), &output),
        0);
    EXPECT_TRUE(input == nullptr && output == nullptr);
}

TEST_F(DispatcherTest, ProgramsOutOfRangeAreIgnored)
{
    ask(effect, effSetProgram, 0, 2);
    for (const std::intptr_t program : {-1L, 7L, 0x100000000L, INTPTR_MAX, INTPTR_MIN}) {
        EXPECT_EQ(ask(effect, effSetProgram, 0, program), 0);
        EXPECT_EQ(ask(effect, effGetProgram), 2) << program;
    }
}

TEST_F(DispatcherTest, TextsStayWithinTheHostsBuffers)
{
    for (const auto& [opcode, room] : {std::pair{effGetParamLabel, kVstMaxParamStrLen},
                                       {effGetParamDisplay, kVstMaxParamStrLen},
                                       {effGetParamName, kVstMaxParamStrLen},
                                       {effGetVendorString, kVstMaxVendorStrLen},
                                       {effGetProgramNameIndexed, kVstMaxProgNameLen}})
    {
        for (const std::int32_t index : {-1, INT32_MAX}) {
            const bool isVendor = opcode == effGetVendorString;
            std::string text(100, '#');
            EXPECT_EQ(ask(effect, opcode, index, 0, text.data()), isVendor ? 1 : 0);
            EXPECT_STREQ(text.c_str(), isVendor ? "Orvane Inc." : "") << opcode;
            EXPECT_EQ(std::count(text.begin() + room, text.end(), '#'), 100 - room);
        }
    }
}

TEST_F(DispatcherTest, RandomArgumentsDoNoHarm)
{
    constexpr std::intptr_t kNumbers[] = {-1, 0, 1, INT32_MAX, INT32_MIN, INTPTR_MAX, INTPTR_MIN};
    constexpr float kOpts[] = {-1.0f, 48000.0f, 1e30f, std::numeric_limits<float>::quiet_NaN(),
                               std::numeric_limits<float>::infinity()};
    std::mt19937 random(20240611);
    for (int call = 0; call < 30000; ++call) {
        const auto opcode = static_cast<std::int32_t>(random() % 92) - 2;
        // The others take pointers to other than plain bytes.
        if (opcode == effClose || opcode == effProcessEvents || opcode == effEditOpen ||
            opcode == effGetSpeakerArrangement)
            continue;
        std::array<char, 260> room;  // the largest record takes 256
        std::generate(room.begin(), room.end(), [&] { return static_cast<char>(random()); });
        const char fence = room.back();
        const bool hasRoom = call % 4 != 0;
        const std::intptr_t value = hasRoom && opcode == effSetChunk
                                        ? static_cast<std::intptr_t>(random() % 256)
                                        : kNumbers[random() % std::size(kNumbers)];
        const auto index = static_cast<std::int32_t>(kNumbers[random() % std::size(kNumbers)]);
        ask(effect, opcode, index, value, hasRoom ? room.data() : nullptr,
            kOpts[random() % std::size(kOpts)]);
        ASSERT_EQ(room.back(), fence) << "opcode " << opcode;
    }
    EXPECT_EQ(ask(effect, effGetVstVersion), 2400);
}
