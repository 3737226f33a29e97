// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "kestrune/common/engine/KestruneScales.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvane
{

/// An element of a plug-in's state: a value under a name. Members whose attribute is absent are
/// empty.
struct StateElement
{
    std::string name;
    std::string type;  // the archive's word for the type, such as ZFLOAT
    std::optional<float> number;
    std::optional<std::int32_t> index;
    std::optional<float> low;  // range of number
    std::optional<float> high;
    std::vector<float> buffer;
    std::vector<std::string> items;  // of a saved list
};

/// The state of a plug-in as XML text: a preset, or a chunk of one or all programs.
class StateText
{
public:
    explicit StateText(std::string_view text);

    /// Number of programs at the top level of the text.
    [[nodiscard]] int ProgramCount() const { return mProgramCount; }
    /// Version of the preset at the top level or in the first program; empty when there is no
    /// preset, "none" when it has no version.
    [[nodiscard]] const std::string& PresetVersion() const { return mPresetVersion; }
    /// Whether a preset stands at the top level of the text.
    [[nodiscard]] bool IsPreset() const { return mIsPreset; }

    /// All elements at any depth, in the order of the text.
    [[nodiscard]] const std::vector<StateElement>& Elements() const { return mElements; }
    /// The last element of that name, which is the one in force after a load; null without one.
    [[nodiscard]] const StateElement* Find(std::string_view name) const;

private:
    int mProgramCount = 0;
    bool mIsPreset = false;
    std::string mPresetVersion;
    std::vector<StateElement> mElements;
};

/// The scale that a state has in force.
struct CurrentScale
{
    std::string name;  // that of the menu; with ", edited" after a change of notes
    std::array<bool, kDegrees> degrees;  // semitones above the key; the key itself is always set
};

/// The built-in scale of an index; an index past them gives "Chromatic".
[[nodiscard]] CurrentScale builtInScale(int index);
/// Names of all scales of a state: the built-in ones, then the user's.
[[nodiscard]] std::vector<std::string> scaleNames(const StateText& state);
/// Reads the scale in force from a state: built-in, the user's own, or edited.
[[nodiscard]] CurrentScale currentScale(const StateText& state);

}  // namespace orvane
