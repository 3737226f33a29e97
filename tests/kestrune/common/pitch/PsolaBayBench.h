// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "kestrune/common/pitch/ZPsolaBay.h"
#include "support/ElementArchiveCheck.h"
#include "zlib/common/objects/ZMessage.h"
#include "zlib/common/objects/ZMessageIds.h"

#include <boost/smart_ptr/make_shared.hpp>

namespace orvane
{

/// A pitch bay by itself, with an application whose tick runs when a test says so.
template <class Bay = ZPsolaBay>
struct PsolaBayBench
{
    static constexpr std::int32_t kMaxBuffer = 2048;

    explicit PsolaBayBench(std::int32_t channels = 2)
        : bay(boost::make_shared<Bay>(
              xmlOf("<bay name=\"PsolaBay\" class=\"ZPsolaBayClass\" numchannels=\"" +
                    std::to_string(channels) + "\"></bay>"),
              &application))
    {
        bay->SetMaxBuffer(kMaxBuffer);
    }

    ZElement& Element(const char* name) const { return *findBelow(*bay->GetElement(), name); }

    /// Turns marks into messages and delivers these.
    void Tick()
    {
        const auto group = bay->GetElement();
        boost::shared_ptr<ZElement> element;
        for (std::int32_t i = 0; group->GetSubElement(i, element); ++i)
            element->FlushMark(nullptr);
        application.ProcessQueue();
    }

    void SetDiscrete(const char* name, std::int32_t value)
    {
        Element(name).SetDiscrete(value, false);
        Tick();
    }

    void SetFlags(const char* name, const std::vector<std::int32_t>& degrees)
    {
        ZBuffer flags(12, "ZBuffer");
        for (const std::int32_t degree : degrees)
            flags.Data()[degree] = 1.0f;
        Element(name).SetZBuffer(flags, false);
        Tick();
    }

    [[nodiscard]] std::vector<std::int32_t> Flags(const char* name) const
    {
        const ZBuffer& flags = *Element(name).GetZBuffer();
        return degreesOf({flags.Data(), 12});
    }

    void Send(std::int32_t id) { bay->HandleZMessage(boost::make_shared<ZMessage>(id)); }

    void SetSampleRate(float rate) { bay->HandleZMessage(makeSampleRateMessage(rate)); }

    /// One call of the bay, of at most kMaxBuffer samples.
    void Call(std::span<const std::vector<float>> inputs, std::span<std::vector<float>> outputs,
              std::size_t at, std::uint32_t count) const
    {
        for (std::size_t channel = 0; channel < inputs.size(); ++channel)
            std::copy_n(inputs[channel].data() + at, count,
                        PortOf(bay->GetImport(static_cast<std::int32_t>(channel))));
        bay->ProcessSignal(at, count, 0, bay->GetExportCount());
        for (std::size_t channel = 0; channel < outputs.size(); ++channel)
            std::copy_n(PortOf(bay->GetExport(static_cast<std::int32_t>(channel))), count,
                        outputs[channel].data() + at);
    }

    /// Runs signals of one length through the bay, in calls of the given sizes by turns.
    std::vector<std::vector<float>> Run(const std::vector<std::vector<float>>& inputs,
                                        const std::vector<std::uint32_t>& sizes = {512}) const
    {
        const std::size_t length = inputs[0].size();
        std::vector<std::vector<float>> outputs(inputs.size(), std::vector<float>(length));
        for (std::size_t at = 0, turn = 0; at < length; ++turn) {
            const std::size_t size = sizes[turn % sizes.size()];
            const auto count = static_cast<std::uint32_t>(std::min(size, length - at));
            Call(inputs, outputs, at, count);
            at += count;
        }
        return outputs;
    }

    SmallApplication application;
    boost::shared_ptr<Bay> bay;

private:
    static auto PortOf(ZPort* port) { return static_cast<ZSignalPort*>(port)->GetBuffer()->Data(); }
};

}  // namespace orvane
