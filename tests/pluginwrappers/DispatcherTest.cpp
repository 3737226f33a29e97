#include "TestHost.h"

#include "pluginwrappers/common/VstEvents.h"
#include "pluginwrappers/common/VstOpcodes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace orvane
{

namespace
{

class DispatcherTest : public testing::Test
{
protected:
    DispatcherTest()
        : effect(host.Open())
    {
    }
    ~DispatcherTest() override { closeEffect(effect); }

    TestHost host;
    AEffect* effect;
};

struct Row
{
    std::int32_t opcode;
    std::intptr_t answer;
};

// Every opcode asked without a pointer, with index and value 0. effClose is asked by each test.
constexpr Row kRows[] = {
    {effOpen, 0},
    {effSetProgram, 0},
    {effGetProgram, 0},
    {effSetProgramName, 0},
    {effGetProgramName, 0},
    {effGetParamLabel, 0},
    {effGetParamDisplay, 0},
    {effGetParamName, 0},
    {effGetVu, 0},
    {effSetSampleRate, 0},
    {effSetBlockSize, 0},
    {effMainsChanged, 0},
    {effEditGetRect, 0},
    {effEditOpen, 0},
    {effEditClose, 0},
    {effEditIdle, 0},
    {effIdentify, 0x4e764566},
    {effGetChunk, 0},
    {effSetChunk, 0},
    {effProcessEvents, 1},
    {effCanBeAutomated, 1},
    {effString2Parameter, 0},
    {effGetNumProgramCategories, 1},
    {effGetProgramNameIndexed, 0},
    {effCopyProgram, 0},
    {effConnectInput, 1},
    {effConnectOutput, 1},
    {effGetInputProperties, 0},
    {effGetOutputProperties, 0},
    {effGetPlugCategory, 1},
    {effGetCurrentPosition, 0},
    {effGetDestinationBuffer, 0},
    {effOfflineNotify, 0},
    {effOfflinePrepare, 0},
    {effOfflineRun, 0},
    {effProcessVarIo, 0},
    {effSetSpeakerArrangement, 0},
    {effSetBlockSizeAndSampleRate, 1},
    {effSetBypass, 0},
    {effGetEffectName, 0},
    {effGetErrorText, 0},
    {effGetVendorString, 0},
    {effGetProductString, 0},
    {effGetVendorVersion, 0},
    {effVendorSpecific, 0},
    {effCanDo, 0},
    {effGetTailSize, 0},
    {effIdle, 0},
    {effGetIcon, 0},
    {effSetViewPosition, 0},
    {effGetParameterProperties, 0},
    {effKeysRequired, 0},
    {effGetVstVersion, 2400},
    {effEditKeyDown, 0},
    {effEditKeyUp, 0},
    {effSetEditKnobMode, 0},
    {effGetMidiProgramName, 0},
    {effGetCurrentMidiProgram, -1},
    {effGetMidiProgramCategory, 0},
    {effHasMidiProgramsChanged, 0},
    {effGetMidiKeyName, 0},
    {effBeginSetProgram, 0},
    {effEndSetProgram, 0},
    {effGetSpeakerArrangement, 0},
    {effShellGetNextPlugin, 0},
    {effStartProcess, 0},
    {effStopProcess, 0},
    {effSetTotalSampleToProcess, 0},
    {effSetPanLaw, 0},
    {effBeginLoadBank, 0},
    {effEndLoadBank, 0},
    {effSetProcessPrecision, 0},
    {effGetNumMidiInputChannels, 0},
    {effGetNumMidiOutputChannels, 0},
};

// A text buffer of a host, with bytes behind it that nobody may touch.
class FencedRoom
{
public:
    explicit FencedRoom(std::size_t bytes)
        : mBytes(bytes)
    {
        mMemory.fill(kFence);
    }

    char* Start() { return mMemory.data(); }
    [[nodiscard]] bool FenceStands() const
    {
        return std::all_of(mMemory.begin() + static_cast<std::ptrdiff_t>(mBytes), mMemory.end(),
                           [](char c) { return c == kFence; });
    }
    [[nodiscard]] std::string Text() const
    {
        const auto end = std::find(mMemory.begin(), mMemory.end(), '\0');
        return {mMemory.begin(), end};
    }

private:
    static constexpr char kFence = '\x5a';
    std::array<char, 512> mMemory;
    std::size_t mBytes;
};

}  // namespace

TEST_F(DispatcherTest, AnswersEveryOpcodeOfTheTable)
{
    for (const Row& row : kRows)
        EXPECT_EQ(ask(effect, row.opcode), row.answer) << "opcode " << row.opcode;
    EXPECT_EQ(ask(effect, effSetTotalSampleToProcess, 0, 0x123456789), 0x123456789);
    for (const std::int32_t index : {-1, 3, INT32_MAX})
        EXPECT_EQ(ask(effect, effCanBeAutomated, index), 1);
}

TEST_F(DispatcherTest, AnswersNoughtToOpcodesThatDoNotExist)
{
    for (const std::int32_t opcode : {INT32_MIN, -1, 16, 17, 18, 20, 21, 80, 1000, INT32_MAX})
        EXPECT_EQ(ask(effect, opcode, 1, 1), 0) << "opcode " << opcode;
}

TEST_F(DispatcherTest, AnnouncesNoCapability)
{
    for (const char* query : {"bypass", "receiveVstMidiEvent", "plugAsChannelInsert", ""}) {
        std::string text = query;
        EXPECT_EQ(ask(effect, effCanDo, 0, 0, text.data()), 0) << query;
    }
}

TEST_F(DispatcherTest, WritesNoSpeakerArrangements)
{
    void* input = this;
    void* output = this;
    EXPECT_EQ(
        ask(effect, effGetSpeakerArrangement, 0, reinterpret_cast<std::intptr_t>(&input), &output),
        0);
    EXPECT_EQ(input, nullptr);
    EXPECT_EQ(output, nullptr);
}

TEST_F(DispatcherTest, SetsProgramsThatExistOnly)
{
    for (const std::intptr_t program : {std::intptr_t{-1}, std::intptr_t{effect->numPrograms},
                                        std::intptr_t{0x100000000}, INTPTR_MAX, INTPTR_MIN})
    {
        EXPECT_EQ(ask(effect, effSetProgram, 0, program), 0);
        EXPECT_EQ(ask(effect, effGetProgram), 0) << program;
    }
}

TEST_F(DispatcherTest, WritesTextsInsideTheHostsRoom)
{
    struct Text
    {
        std::int32_t opcode;
        std::size_t room;
        std::intptr_t answer;
        const char* text;
    };
    constexpr Text kTexts[] = {
        {effGetParamLabel, kVstMaxParamStrLen, 0, ""},
        {effGetParamDisplay, kVstMaxParamStrLen, 0, ""},
        {effGetParamName, kVstMaxParamStrLen, 0, ""},
        {effGetVendorString, kVstMaxVendorStrLen, 1, "Orvane Inc."},
        {effGetProgramNameIndexed, kVstMaxProgNameLen, 0, ""},
    };
    for (const Text& text : kTexts) {
        for (const std::int32_t index : {-1, INT32_MAX}) {
            FencedRoom room(text.room);
            EXPECT_EQ(ask(effect, text.opcode, index, 0, room.Start()), text.answer);
            EXPECT_EQ(room.Text(), text.text) << "opcode " << text.opcode;
            EXPECT_TRUE(room.FenceStands()) << "opcode " << text.opcode;
        }
    }
}

TEST_F(DispatcherTest, WantsAllKeysAndTakesEmptyEvents)
{
    VstEvents events{};
    EXPECT_EQ(ask(effect, effProcessEvents, 0, 0, &events), 1);
    EXPECT_EQ(ask(effect, effKeysRequired), 0);
}

TEST_F(DispatcherTest, BearsExtremeNumbersWithEveryOpcode)
{
    constexpr std::intptr_t kValues[] = {-1, 1, INT32_MAX, INT32_MIN, INTPTR_MAX, INTPTR_MIN};
    constexpr float kOpts[] = {-1.0f, 1e30f, std::numeric_limits<float>::quiet_NaN(),
                               std::numeric_limits<float>::infinity()};
    for (const Row& row : kRows) {
        if (row.opcode == effGetSpeakerArrangement)
            continue;  // its value is an address
        for (const std::intptr_t value : kValues) {
            for (const float opt : kOpts)
                ask(effect, row.opcode, static_cast<std::int32_t>(value), value, nullptr, opt);
        }
    }
    EXPECT_EQ(ask(effect, effGetProgram), 1) << "the one value that is a program";
}

TEST_F(DispatcherTest, BearsRandomCalls)
{
    std::mt19937 random(20240611);
    std::uniform_int_distribution<std::int32_t> opcodes(-2, 90);
    std::uniform_int_distribution<std::int32_t> anyNumber(INT32_MIN, INT32_MAX);
    std::uniform_int_distribution<int> anyByte(0, 255);
    for (int call = 0; call < 20000; ++call) {
        const std::int32_t opcode = opcodes(random);
        // Their pointers and values are addresses of things, not of plain bytes.
        if (opcode == effClose || opcode == effProcessEvents || opcode == effEditOpen ||
            opcode == effGetSpeakerArrangement)
            continue;
        FencedRoom room(256);  // what the records that are asked for need
        std::generate_n(room.Start(), 256, [&] { return static_cast<char>(anyByte(random)); });
        const std::intptr_t value =
            opcode == effSetChunk ? anyByte(random) : std::intptr_t{anyNumber(random)};
        const auto opt = static_cast<float>(anyNumber(random));
        void* const ptr = call % 4 != 0 ? room.Start() : nullptr;
        ask(effect, opcode, anyNumber(random), value, ptr, opt);
        ASSERT_TRUE(room.FenceStands()) << "opcode " << opcode;
    }
    EXPECT_EQ(ask(effect, effGetVstVersion), 2400);
}

}  // namespace orvane
