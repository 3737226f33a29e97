// SPDX-License-Identifier: GPL-3.0-or-later
#include "PluginLibrary.h"
#include "pluginwrappers/interface/VstParameterProperties.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <string>
#include <thread>
#include <utility>

namespace orvane
{

namespace
{

class ParameterTest : public testing::Test
{
protected:
    ~ParameterTest() override { closeEffect(effect); }

    [[nodiscard]] std::string Text(std::int32_t opcode, std::int32_t index) const
    {
        std::array<char, 24> text;
        text.fill('x');
        ask(effect, opcode, index, 0, text.data());
        return text.data();
    }

    const LibraryHost host;
    AEffect* const effect = host.Open();
};

}  // namespace

TEST_F(ParameterTest, ParametersAreTheExposedElementsInTreeOrderAtTheirDefaults)
{
    struct Row
    {
        const char* name;
        const char* display;
        float value;
    };
    const Row rows[] = {{"Correct Pitch", "Bypass", 0.0f},
                        {"Transpose", "Bypass", 0.0f},
                        {"Key", "C", 3.0f / 11.0f},
                        {"Pitch Range", "Normal (D2 - E6)", 0.0f},
                        {"Pitch Correcton Time", "50 ms", 0.125f},
                        {"Pitch Transposition", "None", 0.5f},
                        {"Formant Transposition", "Natural", 0.5f}};
    ASSERT_EQ(effect->numParams, static_cast<std::int32_t>(std::size(rows)));
    for (std::int32_t i = 0; i < effect->numParams; ++i) {
        const Row& row = rows[i];
        EXPECT_EQ(Text(effGetParamName, i), row.name);
        EXPECT_EQ(Text(effGetParamDisplay, i), row.display);
        EXPECT_EQ(Text(effGetParamLabel, i), "");
        EXPECT_FLOAT_EQ(effect->getParameter(effect, i), row.value);
    }
    EXPECT_EQ(Text(effGetParamName, effect->numParams), "");
}

TEST_F(ParameterTest, AValueOfTheHostReadsBackAtOnceAsTheElementHoldsIt)
{
    struct Row
    {
        std::int32_t index;
        float set;
        float get;
        const char* display;
    };
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    for (const Row& row :
         {Row{0, 1.0f, 1.0f, "On"}, Row{0, 0.99f, 0.0f, "Bypass"}, Row{2, 1.0f, 1.0f, "G#"},
          Row{2, 0.5f, 5.0f / 11.0f, "D"},
          Row{3, 7.0f, 1.0f, "Upper Register (E4 - D#"},  // cut to 24 bytes
          Row{3, -kInfinity, 0.0f, "Normal (D2 - E6)"}, Row{4, 0.5f, 0.5f, "200 ms"},
          Row{4, 0.00125f, 0.00125f, "0.5 ms"}, Row{4, kInfinity, 1.0f, "400 ms"},
          Row{4, std::nanf(""), 1.0f, "400 ms"}})
    {
        SCOPED_TRACE(row.display);
        effect->setParameter(effect, row.index, row.set);
        EXPECT_FLOAT_EQ(effect->getParameter(effect, row.index), row.get);
        EXPECT_EQ(Text(effGetParamDisplay, row.index), row.display);
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

}  // namespace orvane
