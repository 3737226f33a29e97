#include "pluginwrappers/common/HostParameter.h"

#include "zlib/common/ZElement.h"

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
        const std::int32_t last = element.CountDiscreteValues() - 1;
        return last > 0 ? static_cast<float>(element.GetDiscrete()) / static_cast<float>(last)
                        : 0.0f;
    }
    case ZElement::ZFLOAT: {
        const float range = element.Range();
        return range != 0.0f ? (element.GetZFloat() - element.Min()) / range : 0.0f;
    }
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
