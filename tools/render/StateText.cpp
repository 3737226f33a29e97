// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/render/StateText.h"

#include "zlib/common/objects/ZXMLElement.h"

#include <algorithm>
#include <bit>
#include <charconv>

namespace orvane
{

namespace
{

constexpr int kDeepest = 64;  // bounds the recursion for any text
constexpr const char* kProgramTag = "VST_Program";

std::optional<float> numberOf(const ZXMLElement& element, const char* attribute)
{
    return element.HasAttribute(attribute) ? std::optional(element.GetFloat(attribute))
                                           : std::nullopt;
}

/// Samples that are written as eight hexadecimal digits each: the bits of a float.
std::vector<float> parseSamples(std::string_view digits)
{
    constexpr std::size_t kDigits = 8;
    std::vector<float> samples;
    for (; digits.size() >= kDigits; digits.remove_prefix(kDigits)) {
        std::uint32_t bits = 0;
        const auto [end, error] = std::from_chars(digits.data(), digits.data() + kDigits, bits, 16);
        if (error != std::errc() || end != digits.data() + kDigits)
            return {};
        samples.push_back(std::bit_cast<float>(bits));
    }
    return samples;
}

std::vector<float> bufferOf(const ZXMLElement& element)
{
    const auto buffer = element.GetChild("buffer");
    const auto data = buffer ? buffer->GetChild("data") : nullptr;
    return data ? parseSamples(data->GetAttributeOr("values", "")) : std::vector<float>();
}

std::vector<std::string> itemsOf(const ZXMLElement& element)
{
    std::vector<std::string> items;
    for (std::int32_t i = 0; i < element.GetChildCount(); ++i) {
        const auto child = element.GetChild(i);
        if (child->IsNamed("discrete"))
            items.emplace_back(child->GetAttributeOr("name", ""));
    }
    return items;
}

StateElement readElement(const ZXMLElement& element)
{
    StateElement read{element.GetAttributeOr("name", ""),
                      element.GetAttributeOr("type", ""),
                      numberOf(element, "floatvalue"),
                      std::nullopt,
                      numberOf(element, "min"),
                      numberOf(element, "max"),
                      bufferOf(element),
                      itemsOf(element)};
    if (element.HasAttribute("int32value"))
        read.index = element.GetInt32("int32value");
    return read;
}

void collectElements(const ZXMLDocument& text, int depth, std::vector<StateElement>& elements)
{
    for (std::int32_t i = 0; depth < kDeepest && i < text.GetChildCount(); ++i) {
        const auto child = text.GetChild(i);
        if (child->IsNamed("element"))
            elements.push_back(readElement(*child));
        collectElements(*child, depth + 1, elements);
    }
}

CurrentScale scaleOfFlags(std::string name, const float* flags)
{
    CurrentScale scale{std::move(name), {}};
    std::transform(flags, flags + kDegrees, scale.degrees.begin(),
                   [](float flag) { return flag == 1.0f; });
    scale.degrees[0] = true;
    return scale;
}

}  // namespace

StateText::StateText(std::string_view text)
{
    const ZXMLDocument document(text.data(), static_cast<std::int32_t>(text.size()));
    auto preset = document.GetChild("preset");
    mIsPreset = preset != nullptr;
    for (std::int32_t i = 0; i < document.GetChildCount(); ++i)
        mProgramCount += document.GetChild(i)->IsNamed(kProgramTag) ? 1 : 0;
    if (const auto program = document.GetChild(kProgramTag); program && !preset)
        preset = program->GetChild("preset");
    if (preset)
        mPresetVersion = preset->GetAttributeOr("version", "none");
    collectElements(document, 0, mElements);
}

const StateElement* StateText::Find(std::string_view name) const
{
    const auto found =
        std::find_if(mElements.rbegin(), mElements.rend(),
                     [name](const StateElement& element) { return element.name == name; });
    return found == mElements.rend() ? nullptr : &*found;
}

CurrentScale builtInScale(int index)
{
    const auto known = static_cast<int>(kBuiltInScaleNames.size());
    const int scale = index >= 0 && index < known ? index : 0;
    CurrentScale built{std::string(kBuiltInScaleNames[static_cast<std::size_t>(scale)]), {}};
    built.degrees[0] = true;
    for (const std::int32_t degree : builtInScaleDegrees(scale))
        built.degrees[static_cast<std::size_t>(degree)] = true;
    return built;
}

std::vector<std::string> scaleNames(const StateText& state)
{
    std::vector<std::string> names(kBuiltInScaleNames.begin(), kBuiltInScaleNames.end());
    if (const StateElement* const own = state.Find("CustomScaleNames"))
        names.insert(names.end(), own->items.begin(), own->items.end());
    return names;
}

CurrentScale currentScale(const StateText& state)
{
    const StateElement* const chosen = state.Find("currentScaleIndex");
    const StateElement* const modified = state.Find("currentScaleModified");
    const StateElement* const edited = state.Find("currentCustomScale");
    const StateElement* const own = state.Find("customScaleTones");
    const std::vector<std::string> names = scaleNames(state);
    const float number = chosen ? chosen->number.value_or(1.0f) : 1.0f;
    const int index =
        number >= 0.0f && number < static_cast<float>(names.size()) ? static_cast<int>(number) : 0;
    const std::string& name = names[static_cast<std::size_t>(index)];
    if (modified && modified->index.value_or(0) != 0 && edited &&
        edited->buffer.size() >= static_cast<std::size_t>(kDegrees))
        return scaleOfFlags(name + ", edited", edited->buffer.data());
    const auto row = static_cast<std::size_t>(index) - kBuiltInScaleNames.size();
    if (index >= static_cast<int>(kBuiltInScaleNames.size()) && own &&
        (row + 1) * kDegrees <= own->buffer.size())
        return scaleOfFlags(name, own->buffer.data() + row * kDegrees);
    return builtInScale(index);
}

}  // namespace orvane
