// SPDX-License-Identifier: GPL-3.0-or-later
#include "pluginwrappers/common/HostParameter.h"

#include "zlib/common/elements/ZElement.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string>

namespace orvane
{

namespace
{

constexpr int kDecimals = 2;

// What differs from a float's bound by rounding alone is no digit for a person.
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

/// What a host's project or a preset by hand brings may lie outside its range, or be no number:
/// hosts count on 0 to 1.
float shareOf(float part, float whole) noexcept
{
    const float share = whole != 0.0f ? part / whole : 0.0f;
    // In this order: a comparison with what is not a number is false, which leaves 0.
    return std::max(0.0f, std::min(share, 1.0f));
}

void setDiscrete(ZElement& element, float share) noexcept
{
    const std::int32_t last = std::max(element.CountDiscreteValues() - 1, 0);
    const auto index = static_cast<std::int32_t>(static_cast<float>(last) * share);
    if (index == element.GetDiscrete())
        return;
    element.SetDiscrete(index, true);
    element.MarkChangedByHost();
}

void setFloat(ZElement& element, float share) noexcept
{
    const float number = element.Range() * share + element.Min();
    if (number == element.GetZFloat())
        return;
    element.SetZFloat(number, true);
    element.MarkChangedByHost();
}

}  // namespace

float hostValueOf(const ZElement& element) noexcept
{
    switch (element.GetType()) {
    case ZElement::ZDISCRETE: {
        const std::int32_t last = std::max(element.CountDiscreteValues() - 1, 0);
        return shareOf(static_cast<float>(element.GetDiscrete()), static_cast<float>(last));
    }
    case ZElement::ZFLOAT:
        return shareOf(element.GetZFloat() - element.Min(), element.Range());
    default:
        return 0.0f;
    }
}

void setFromHost(ZElement& element, float value) noexcept
{
    if (std::isnan(value))
        return;
    const float share = std::clamp(value, 0.0f, 1.0f);
    switch (element.GetType()) {
    case ZElement::ZDISCRETE:
        return setDiscrete(element, share);
    case ZElement::ZFLOAT:
        return setFloat(element, share);
    default:
        return;
    }
}

ZString displayOf(const ZElement& element)
{
    switch (element.GetType()) {
    case ZElement::ZDISCRETE:
        return *element.GetDiscreteString(element.GetDiscrete());
    case ZElement::ZFLOAT:
        return ZString(shortNumber(element.GetZFloat()) + unitOf(element.GetUnits()));
    default:
        return {};
    }
}

}  // namespace orvane
