// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/render/AutomationFile.h"
#include "tools/render/MidiFile.h"
#include "tools/render/PluginSettings.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace orvane
{

class PluginInstance;

/// The frame at a time, at least 0, of a stream; one that never comes for times beyond all streams.
[[nodiscard]] std::int64_t frameAt(double seconds, int rate);

/// What a plug-in gets while it runs, each at its frame of the stream: values of parameters and
/// messages. Those of one frame come together, parameters first.
class EventSchedule
{
public:
    /// Both lists in order of time; rate in Hz. Throws ZException where the plug-in has no such
    /// parameter.
    EventSchedule(const std::vector<AutomationPoint>& automation, std::vector<MidiEvent> messages,
                  const PluginSettings& settings, int rate);

    /// Gives all that is due at the frame and was not given yet.
    void Give(PluginInstance& plugin, std::int64_t frame);
    /// How long a block from the frame on can be until something else is due: 1 .. limit. Needs a
    /// Give of that frame.
    [[nodiscard]] int BlockFrames(std::int64_t frame, int limit) const;
    /// How many are still to come.
    [[nodiscard]] std::size_t Left() const;

private:
    struct Change
    {
        std::int64_t frame;
        PluginSettings::HostValue value;
    };

    std::vector<Change> mChanges;
    std::vector<MidiEvent> mMessages;
    std::vector<std::int64_t> mMessageFrames;  // as many
    std::size_t mNextChange = 0;
    std::size_t mNextMessage = 0;
};

}  // namespace orvane
