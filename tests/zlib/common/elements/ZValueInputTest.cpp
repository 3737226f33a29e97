// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/elements/ZValueInput.h"

#include "support/Test.h"

using namespace orvane;

namespace
{

using enum ZElement::Units;
}  // namespace

TEST(ZValueInputTest, ReadsNumbersWithAndWithoutUnitsAndRefusesAllElse)
{
    const std::tuple<const char*, ZElement::Units, float> rows[] = {
        {"50", kMilliseconds, 50.0f},
        {" 0.25 s ", kMilliseconds, 250.0f},
        {"35ms", kMilliseconds, 35.0f},
        {"1,5 St", kCents, 150.0f},
        {"+12.5 cents", kCents, 12.5f},
        {"-1 octave", kCents, -1200.0f},
        {"\xe2\x88\x92"
         "30 ct",
         kCents, -30.0f},
        {"250 ms", kSeconds, 0.25f},
        {"1.2kHz", kHertz, 1200.0f},
        {"3", kGeneric, 3.0f},
        {"-2.5e1 %", kPercent, -25.0f},
    };
    for (const auto& [text, units, value] : rows)
        EXPECT_EQ(readValue(text, units), value) << text;
    for (const char* text : {"", " ", "ms", "ten", "5 5", "5 cents", "1e9999", "1e39", "1e38s",
                             "5e", "nan", "inf", "--5", "+-5", "5ms ms", "0x10", "1.5.2"})
        EXPECT_EQ(readValue(text, kMilliseconds), std::nullopt) << text;
}
