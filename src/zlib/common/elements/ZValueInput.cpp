// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/elements/ZValueInput.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <string>
#include <string_view>

namespace orvane
{

namespace
{

/// A word behind a number, in lower case, and by how much it multiplies.
struct UnitWord
{
    ZElement::Units units;
    std::string_view word;
    double factor;
};

constexpr UnitWord kWords[] = {
    {ZElement::kCents, "cents", 1.0},
    {ZElement::kCents, "cent", 1.0},
    {ZElement::kCents, "ct", 1.0},
    {ZElement::kCents, "c", 1.0},
    {ZElement::kCents, "semitones", 100.0},
    {ZElement::kCents, "semitone", 100.0},
    {ZElement::kCents, "st", 100.0},
    {ZElement::kCents, "octaves", 1200.0},
    {ZElement::kCents, "octave", 1200.0},
    {ZElement::kCents, "oct", 1200.0},
    {ZElement::kMilliseconds, "ms", 1.0},
    {ZElement::kMilliseconds, "s", 1000.0},
    {ZElement::kSeconds, "s", 1.0},
    {ZElement::kSeconds, "ms", 0.001},
    {ZElement::kHertz, "hz", 1.0},
    {ZElement::kHertz, "khz", 1000.0},
    {ZElement::kPercent, "%", 1.0},
    {ZElement::kDecibels, "db", 1.0},
    {ZElement::kSampleFrames, "samples", 1.0},
};

constexpr std::string_view kMinusSign = "\xe2\x88\x92";  // U+2212

void replaceAll(std::string& text, std::string_view what, std::string_view by)
{
    for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += by.size())
        text.replace(at, what.size(), by);
}

std::string_view trimmed(std::string_view text)
{
    const auto first = text.find_first_not_of(" \t");
    return first == std::string_view::npos
               ? std::string_view()
               : text.substr(first, text.find_last_not_of(" \t") + 1 - first);
}

/// The text in the form that the number is read from: in lower case, with a point and a hyphen.
std::string normalized(const ZString& text)
{
    std::string plain = text.ToNarrow();
    replaceAll(plain, kMinusSign, "-");
    replaceAll(plain, "\xc2\xa0", " ");  // a blank that does not break
    replaceAll(plain, ",", ".");
    plain = std::string(trimmed(plain));
    // Without the locale of the process, which is the host's.
    std::ranges::transform(plain, plain.begin(), [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    });
    if (plain.starts_with('+') && !plain.starts_with("+-"))
        plain.erase(0, 1);
    return plain;
}

}  // namespace

std::optional<float> readValue(const ZString& text, ZElement::Units units)
{
    const std::string plain = normalized(text);
    double number = 0.0;
    const char* const end = plain.data() + plain.size();
    const auto [rest, error] = std::from_chars(plain.data(), end, number);
    const std::string_view word = trimmed({rest, static_cast<std::size_t>(end - rest)});
    if (!word.empty()) {
        const auto found = std::ranges::find_if(
            kWords, [&](const UnitWord& unit) { return unit.units == units && unit.word == word; });
        if (found == std::end(kWords))
            return std::nullopt;
        number *= found->factor;
    }
    if (error != std::errc() || !(std::abs(number) <= std::numeric_limits<float>::max()))
        return std::nullopt;
    return static_cast<float>(number);
}

}  // namespace orvane
