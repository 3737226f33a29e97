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

/// Converts seconds >= 0 to a frame, rounded to the nearest; times past any stream give a frame
/// that is never reached.
[[nodiscard]] std::int64_t frameAt(double seconds, int rate);

/// The automation and MIDI messages of a render, each at its frame of the input. Events of the same
/// frame are sent together, parameters first.
class EventSchedule
{
public:
    /// Both lists are sorted by time; rate in Hz. Throws ZException when the plug-in lacks an
    /// automated parameter.
    EventSchedule(const std::vector<AutomationPoint>& automation, std::vector<MidiEvent> messages,
                  const PluginSettings& settings, int rate);

    /// Sends all events up to and including frame that were not sent before.
    void SendDue(PluginInstance& plugin, std::int64_t frame);
    /// Longest block, in 1 .. limit, that starts at frame and ends before the next event. Call
    /// SendDue(frame) first.
    [[nodiscard]] int BlockFrames(std::int64_t frame, int limit) const;
    /// Number of events that were not sent.
    [[nodiscard]] std::size_t Left() const;

private:
    struct Change
    {
        std::int64_t frame;
        PluginSettings::HostValue value;
    };

    std::vector<Change> mChanges;
    std::vector<MidiEvent> mMessages;
    std::vector<std::int64_t> mMessageFrames;  // one for each message
    std::size_t mNextChange = 0;
    std::size_t mNextMessage = 0;
};

}  // namespace orvane
