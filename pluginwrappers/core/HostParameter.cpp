// SPDX-License-Identifier: GPL-3.0-or-later
#include "pluginwrappers/core/HostParameter.h"

#include "zlib/common/elements/ZElement.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <charconv>
#include <cmath>
#include <string>

namespace orvane
{

namespace
{

constexpr int kDecimals = 2;

// Hosts keep values with six digits, which can end just below the value of a choice.
constexpr float kChoiceTolerance = 1e-4f;

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

/// Returns part / whole, limited to the 0..1 that hosts rely on: an element may be out of its range
/// or NaN, since chunks and presets can hold any number.
float fractionOf(float part, float whole) noexcept
{
    const float fraction = whole != 0.0f ? part / whole : 0.0f;
    // In this order NaN becomes 0, since it fails both comparisons.
    return std::max(0.0f, std::min(fraction, 1.0f));
}

/// Returns the index, from 0 to last, of the choice whose value is near fraction; else the last one
/// whose value is below it.
std::int32_t choiceAt(float fraction, std::int32_t last) noexcept
{
    const float position = static_cast<float>(last) * fraction;
    const float nearest = std::round(position);
    const bool isNear =
        std::fabs(position - nearest) <= kChoiceTolerance * static_cast<float>(last);
    return static_cast<std::int32_t>(isNear ? nearest : position);
}

std::int32_t lastChoiceOf(const ZElement& element) noexcept
{
    return std::max(element.CountDiscreteValues() - 1, 0);
}

bool storeChoice(ZElement& element, std::int32_t index) noexcept
{
    assert(index >= 0 && index <= lastChoiceOf(element));
    if (index == element.GetDiscrete())
        return false;
    element.SetDiscrete(index, true);
    element.MarkChangedByHost();
    return true;
}

bool storeNumber(ZElement& element, float number) noexcept
{
    if (number == element.GetZFloat())
        return false;
    element.SetZFloat(number, true);
    element.MarkChangedByHost();
    return true;
}

}  // namespace

float hostValueOf(const ZElement& element) noexcept
{
    switch (element.GetType()) {
    case ZElement::ZDISCRETE: {
        const std::int32_t last = std::max(element.CountDiscreteValues() - 1, 0);
        return fractionOf(static_cast<float>(element.GetDiscrete()), static_cast<float>(last));
    }
    case ZElement::ZFLOAT:
        return fractionOf(element.GetZFloat() - element.Min(), element.Range());
    default:
        return 0.0f;
    }
}

void setFromHost(ZElement& element, float value) noexcept
{
    if (std::isnan(value))
        return;
    const float fraction = std::clamp(value, 0.0f, 1.0f);
    switch (element.GetType()) {
    case ZElement::ZDISCRETE:
        storeChoice(element, choiceAt(fraction, lastChoiceOf(element)));
        return;
    case ZElement::ZFLOAT:
        storeNumber(element, element.Range() * fraction + element.Min());
        return;
    default:
        return;
    }
}

float plainValueOf(const ZElement& element) noexcept
{
    switch (element.GetType()) {
    case ZElement::ZDISCRETE:
        return static_cast<float>(std::clamp(element.GetDiscrete(), 0, lastChoiceOf(element)));
    case ZElement::ZFLOAT:
        // In this order NaN becomes Min(), since it fails both comparisons.
        return std::max(element.Min(), std::min(element.GetZFloat(), element.Max()));
    default:
        return 0.0f;
    }
}

bool setPlainFromHost(ZElement& element, float value) noexcept
{
    if (std::isnan(value))
        return false;
    switch (element.GetType()) {
    case ZElement::ZDISCRETE: {
        const auto last = static_cast<float>(lastChoiceOf(element));
        return storeChoice(element,
                           static_cast<std::int32_t>(std::round(std::clamp(value, 0.0f, last))));
    }
    case ZElement::ZFLOAT:
        return storeNumber(element, std::clamp(value, element.Min(), element.Max()));
    default:
        return false;
    }
}

ZString displayTextOf(const ZElement& element)
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
