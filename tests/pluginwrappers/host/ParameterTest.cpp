// SPDX-License-Identifier: GPL-3.0-or-later
// Parameters, and how hosts combine them with programs and chunks.

#include "PluginLibrary.h"
#include "pluginwrappers/interface/VstParameterProperties.h"

#include <cstdio>

using namespace orvane;

namespace
{

struct ParameterTest : InstanceTest
{
    [[nodiscard]] std::string Text(std::int32_t opcode, std::int32_t index) const
    {
        std::array<char, 24> text;
        text.fill('x');
        ask(effect, opcode, index, 0, text.data());
        return text.data();
    }
};

constexpr std::int32_t kKey = 2;
constexpr std::int32_t kCorrectionTime = 4;

std::vector<float> parametersOf(AEffect* effect)
{
    std::vector<float> values;
    for (std::int32_t i = 0; i < effect->numParams; ++i)
        values.push_back(effect->getParameter(effect, i));
    return values;
}

using HostHabitsTest = InstanceTest;

}  // namespace

TEST_F(ParameterTest, ParametersAreTheExposedElementsInTreeOrderAtTheirDefaults)
{
    const std::tuple<const char*, const char*, float> rows[] = {
        {"Correct Pitch", "Bypass", 0.0f},
        {"Transpose", "Bypass", 0.0f},
        {"Key", "C", 3.0f / 11.0f},
        {"Pitch Range", "Normal (D2 - E6)", 0.0f},
        {"Pitch Correcton Time", "50 ms", 0.125f},
        {"Pitch Transposition", "None", 0.5f},
        {"Formant Transposition", "Natural", 0.5f}};
    ASSERT_EQ(effect->numParams, static_cast<std::int32_t>(std::size(rows)));
    for (std::int32_t i = 0; i < effect->numParams; ++i) {
        const auto& [name, display, value] = rows[i];
        EXPECT_EQ(Text(effGetParamName, i), name);
        EXPECT_EQ(Text(effGetParamDisplay, i), display);
        EXPECT_FLOAT_EQ(effect->getParameter(effect, i), value);
    }
    EXPECT_EQ(Text(effGetParamName, effect->numParams), "");
}

TEST_F(ParameterTest, AValueOfTheHostReadsBackAtOnceAsTheElementHoldsIt)
{
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    const std::tuple<std::int32_t, float, float, const char*> rows[] = {
        {0, 1.0f, 1.0f, "On"},
        {0, 0.99f, 0.0f, "Bypass"},
        {2, 1.0f, 1.0f, "G#"},
        {2, 0.5f, 5.0f / 11.0f, "D"},
        {3, 7.0f, 1.0f, "Upper Register (E4 - D#"},  // cut to 24 bytes
        {4, 0.5f, 0.5f, "200 ms"},
        {4, 0.00125f, 0.00125f, "0.5 ms"},
        {4, kInfinity, 1.0f, "400 ms"},
        {4, std::nanf(""), 1.0f, "400 ms"},
        {4, -kInfinity, 0.0f, "0 ms"}};
    for (const auto& [index, set, get, display] : rows) {
        SCOPED_TRACE(display);
        effect->setParameter(effect, index, set);
        EXPECT_FLOAT_EQ(effect->getParameter(effect, index), get);
        EXPECT_EQ(Text(effGetParamDisplay, index), display);
    }
}

TEST_F(ParameterTest, AChoiceSurvivesAHostThatKeepsValuesWithSixDigits)
{
    for (const std::int32_t parameter : {0, 1, 2, 3, 5, 6}) {
        for (int step = 0; step <= 1000; ++step) {
            effect->setParameter(effect, parameter, static_cast<float>(step) / 1000.0f);
            const float value = effect->getParameter(effect, parameter);
            std::array<char, 16> digits{};
            std::snprintf(digits.data(), digits.size(), "%.6g", static_cast<double>(value));
            effect->setParameter(effect, parameter, std::strtof(digits.data(), nullptr));
            ASSERT_EQ(effect->getParameter(effect, parameter), value) << digits.data();
        }
    }
    for (const auto& [set, get] : {std::pair{3.0f - 12e-4f, 2.0f}, {3.0f - 10e-4f, 3.0f}}) {
        effect->setParameter(effect, 2, set / 11.0f);
        EXPECT_FLOAT_EQ(effect->getParameter(effect, 2), get / 11.0f);
    }
}

TEST_F(ParameterTest, NeitherDefaultsNorValuesOfTheHostComeBackAsAutomation)
{
    effect->setParameter(effect, 0, 1.0f);
    std::thread([this] { effect->setParameter(effect, 2, 0.9f); }).join();
    ask(effect, effMainsChanged, 0, 1);  // delivers the changes
    EXPECT_EQ(TestHost::CountOf(audioMasterAutomate), 0);
}

TEST_F(ParameterTest, OnlySwitchesHaveProperties)
{
    for (std::int32_t i = 0; i < effect->numParams; ++i) {
        VstParameterProperties properties{};
        properties.flags = 77;
        const bool isSwitch = i < 2;
        EXPECT_EQ(ask(effect, effGetParameterProperties, i, 0, &properties), isSwitch ? 1 : 0);
        EXPECT_EQ(properties.flags, isSwitch ? kVstParameterIsSwitch : 77);
        EXPECT_EQ(properties.maxInteger, isSwitch ? 1 : 0);
        EXPECT_STREQ(properties.shortLabel, i == 0 ? "CrPi" : i == 1 ? "Tran" : "");
    }
}

TEST_F(HostHabitsTest, AProjectReopensWhateverTheOrderOfProgramAndChunk)
{
    ask(effect, effSetProgram, 0, 3);
    effect->setParameter(effect, kKey, 1.0f);
    effect->setParameter(effect, kCorrectionTime, 0.5f);
    const std::string bank = chunkOf(effect, false);
    const std::string program = chunkOf(effect, true);
    const std::vector<float> saved = parametersOf(effect);
    // s: sets program 3, b: bank chunk, p: program chunk
    for (const std::string steps : {"sb", "sbs", "bs", "p"}) {
        SCOPED_TRACE(steps);
        AEffect* const reopened = host.Open();
        for (const char step : steps) {
            if (step == 's')
                ask(reopened, effSetProgram, 0, 3);
            else
                EXPECT_EQ(loadChunk(reopened, step == 'b' ? bank : program, step == 'p'), 1);
        }
        EXPECT_EQ(parametersOf(reopened), saved);
        EXPECT_EQ(ask(reopened, effGetProgram), steps == "p" ? 0 : 3);
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
