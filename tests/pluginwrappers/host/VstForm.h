// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "pluginwrappers/host/PluginLibrary.h"
#include "support/Signals.h"
#include "support/TestHost.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

// The VST 2.4 form, beside which the other forms of the plug-in are heard.

namespace orvane
{

/// A voice between two notes, for long enough that the engine's output is heard.
inline std::vector<float> voiceAt(double rate)
{
    return harmonicTone(226.0, rate, static_cast<int>(1.5 * rate));
}

/// Runs a voice through the VST 2.4 form of the plug-in, which an offline host drives.
class VstForm
{
public:
    explicit VstForm(float rate)
        : effect(mHost.Open())
    {
        TestHost::SetOffline(true);
        ask(effect, effSetSampleRate, 0, 0, nullptr, rate);
        ask(effect, effSetBlockSize, 0, 512);
    }
    VstForm(const VstForm&) = delete;
    VstForm& operator=(const VstForm&) = delete;
    ~VstForm() { closeEffect(effect); }

    [[nodiscard]] std::vector<float> Play(const std::vector<float>& voice,
                                          const std::function<void(std::size_t)>& before = {}) const
    {
        std::vector<float> left = voice;
        std::vector<float> right = voice;
        ask(effect, effMainsChanged, 0, 1);
        for (std::size_t at = 0; at < voice.size(); at += 512) {
            if (before)
                before(at);
            float* channels[] = {left.data() + at, right.data() + at};
            effect->processReplacing(
                effect, channels, channels,
                static_cast<std::int32_t>(std::min<std::size_t>(512, voice.size() - at)));
        }
        return left;
    }

private:
    const LibraryHost mHost;

public:
    AEffect* const effect;
};

/// Returns the first place where two sounds differ; -1 for the same sounds.
inline long firstDifference(const std::vector<float>& one, const std::vector<float>& other)
{
    if (one.size() != other.size())
        return 0;
    const auto [left, right] = std::mismatch(one.begin(), one.end(), other.begin());
    return left == one.end() ? -1 : left - one.begin();
}

/// Gives an element another value, everywhere, since a program holds the elements of a bay twice.
inline std::string replaced(std::string text, const std::string& name, const std::string& value)
{
    const std::string begin = "name=\"" + name + '"';
    for (std::size_t at = text.find(begin); at != std::string::npos; at = text.find(begin, at)) {
        at = text.find("int32value=\"", at) + 12;
        text.replace(at, text.find('"', at) - at, value);
    }
    return text;
}

/// Adds the switch that lets played notes in, which a state holds only where someone adds it.
inline std::string listening(std::string text)
{
    return text.insert(text.find("<element name=\"pitchTranspose\""),
                       "<element name=\"AcceptMIDI\" class=\"ZElementClass\" type=\"ZDISCRETE\" "
                       "int32value=\"1\">\n</element>\n");
}

}  // namespace orvane
