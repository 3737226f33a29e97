// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/elements/ZValueText.h"

#include <array>
#include <charconv>
#include <string>

namespace orvane
{

namespace
{

constexpr int kDecimals = 2;

// Two decimals without trailing zeros: further digits only show the rounding of floats.
std::string shortNumber(float value)
{
    std::array<char, 64> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value,
                                   std::chars_format::fixed, kDecimals);
    std::string text(digits.data(), end.ptr);
    text.erase(text.find_last_not_of('0') + 1);
    if (text.ends_with('.'))
        text.pop_back();
    return text == "-0" ? "0" : text;
}

}  // namespace

const char* unitOf(ZElement::Units units)
{
    switch (units) {
    case ZElement::kPercent:
        return " %";
    case ZElement::kSeconds:
        return " s";
    case ZElement::kSampleFrames:
        return " samples";
    case ZElement::kHertz:
        return " Hz";
    case ZElement::kCents:
        return " cents";
    case ZElement::kDecibels:
        return " dB";
    case ZElement::kMilliseconds:
        return " ms";
    default:
        return "";
    }
}

ZString valueText(float value, ZElement::Units units)
{
    return ZString(shortNumber(value) + unitOf(units));
}

ZString signedValueText(float value, ZElement::Units units)
{
    const std::string number = shortNumber(value);
    const bool isSigned = number == "0" || number.starts_with('-');
    return ZString((isSigned ? "" : "+") + number + unitOf(units));
}

}  // namespace orvane
