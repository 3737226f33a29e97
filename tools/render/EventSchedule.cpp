// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/render/EventSchedule.h"

#include "tools/render/PluginInstance.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <span>
#include <utility>

namespace orvane
{

std::int64_t frameAt(double seconds, int rate)
{
    assert(seconds >= 0.0 && rate > 0);
    constexpr double kFurthest = 9e15;  // a double holds every whole number up to here
    return std::llround(std::min(seconds * rate, kFurthest));
}

EventSchedule::EventSchedule(const std::vector<AutomationPoint>& automation,
                             std::vector<MidiEvent> messages, const PluginSettings& settings,
                             int rate)
    : mMessages(std::move(messages))
{
    assert(std::ranges::is_sorted(automation, {}, &AutomationPoint::seconds));
    assert(std::ranges::is_sorted(mMessages, {}, &MidiEvent::seconds));
    for (const AutomationPoint& point : automation)
        mChanges.push_back({frameAt(point.seconds, rate), settings.ToHost(point.value)});
    for (const MidiEvent& message : mMessages)
        mMessageFrames.push_back(frameAt(message.seconds, rate));
}

void EventSchedule::SendDue(PluginInstance& plugin, std::int64_t frame)
{
    while (mNextChange < mChanges.size() && mChanges[mNextChange].frame <= frame) {
        const PluginSettings::HostValue& value = mChanges[mNextChange++].value;
        plugin.SetParameter(value.index, value.value);
    }
    const std::size_t first = mNextMessage;
    while (mNextMessage < mMessages.size() && mMessageFrames[mNextMessage] <= frame)
        ++mNextMessage;
    if (first < mNextMessage)
        plugin.Send(std::span(mMessages).subspan(first, mNextMessage - first));
}

int EventSchedule::BlockFrames(std::int64_t frame, int limit) const
{
    assert(limit >= 1);
    std::int64_t frames = limit;
    if (mNextChange < mChanges.size())
        frames = std::min(frames, mChanges[mNextChange].frame - frame);
    if (mNextMessage < mMessages.size())
        frames = std::min(frames, mMessageFrames[mNextMessage] - frame);
    assert(frames >= 1);
    return static_cast<int>(frames);
}

std::size_t EventSchedule::Left() const
{
    return mChanges.size() - mNextChange + mMessages.size() - mNextMessage;
}

}  // namespace orvane
