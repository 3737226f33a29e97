// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/render/PresetCheck.h"

#include "tools/render/RenderSettings.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <string_view>

namespace orvane
{

namespace
{

/// Elements that a preset can set but that the plug-in does not save, and those of its groups.
constexpr std::array<std::string_view, 12> kUnsavedElements{
    "AcceptMIDI",        "TuningHistory",  "PresetAActive", "PresetBActive", "PresetCActive",
    "PresetDActive",     "scale",          "notesInScale",  "ZBay",          "ContainerBay",
    "BuiltInScaleNames", "correctionMeter"};

template <typename Texts>
bool contains(const Texts& texts, std::string_view text)
{
    return std::find(texts.begin(), texts.end(), text) != texts.end();
}

/// The attribute that holds the value of an element of the state; empty for groups.
std::string_view valueAttribute(const StateElement& known)
{
    if (known.number)
        return "floatvalue";
    if (known.index)
        return "int32value";
    return known.buffer.empty() ? "" : "buffer";
}

bool hasValue(const StateElement& given, std::string_view attribute)
{
    if (attribute == "floatvalue")
        return given.number.has_value();
    if (attribute == "int32value")
        return given.index.has_value();
    return attribute.empty() || !given.buffer.empty();
}

/// Why the value does not count, or an empty text.
std::string refusalOf(const StateElement& given, const StateElement& known)
{
    const std::string_view attribute = valueAttribute(known);
    if (!hasValue(given, attribute) ||
        (!given.type.empty() && !known.type.empty() && given.type != known.type))
        return fmt::format("element '{}' has a value of another type: the plug-in takes {} ({})",
                           given.name, attribute, known.type);
    // The index of the scale is kept as a number whose range means nothing.
    if (known.number && known.low && known.high && given.name != "currentScaleIndex" &&
        (*given.number < *known.low || *given.number > *known.high))
        return fmt::format("element '{}' is out of range: {} is not in {} to {}", given.name,
                           *given.number, *known.low, *known.high);
    if (known.index) {
        if (const SettingRule* const rule = findSettingRule(given.name);
            rule && (*given.index < 0 || *given.index > static_cast<int>(rule->high)))
            return fmt::format("element '{}' is out of range: {} is not in 0 to {}", given.name,
                               *given.index, rule->high);
    }
    if (known.buffer.size() != given.buffer.size())
        return fmt::format("element '{}' has {} samples: the plug-in takes {}", given.name,
                           given.buffer.size(), known.buffer.size());
    return "";
}

}  // namespace

std::vector<std::string> checkPreset(const StateText& preset, const StateText& state)
{
    // The plug-in leaves this element out of its state while it has its default.
    StateElement tracking;
    tracking.name = settingRule(Setting::kTracking).name;
    tracking.type = "ZDISCRETE";
    tracking.index = 0;

    std::vector<std::string> notes;
    for (const StateElement& given : preset.Elements()) {
        if (contains(kUnsavedElements, given.name))
            continue;
        const StateElement* known = state.Find(given.name);
        if (!known && given.name == tracking.name)
            known = &tracking;
        const std::string note = known ? refusalOf(given, *known)
                                       : fmt::format("the plug-in has no element '{}'", given.name);
        // A saved preset holds each element twice.
        if (!note.empty() && !contains(notes, note))
            notes.push_back(note);
    }
    return notes;
}

}  // namespace orvane
