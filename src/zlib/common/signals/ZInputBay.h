// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/signals/ZFifoList.h"
#include "zlib/common/signals/ZSignalBay.h"

#include <span>

namespace orvane
{

class ZBuffer;

/// The end of a network at which samples come in: a FIFO and an export a channel. Built in code.
class ZInputBay : public ZSignalBay
{
public:
    /// Throws ZException -1 unless channels is 0 to kMaxChannels. [setup]
    ZInputBay(std::string_view name, std::int32_t channels, ZLooper* looper = nullptr);

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    [[nodiscard]] boost::shared_ptr<ZBay> Clone() override;
    [[nodiscard]] std::int32_t GetOutputChannelCount() const override;
    void ProcessSignal(std::uint64_t position, std::uint32_t count, std::int32_t firstExport,
                       std::int32_t exportCount) noexcept override;

    /// Makes the FIFOs, or empty ones in their place; samples is a power of two, else throws
    /// ZException -1. [setup]
    void SetFifoSize(std::int32_t samples) { mFifos.SetSize(samples); }
    /// Samples that the channel's FIFO takes; 0 when there is none. [audio thread]
    [[nodiscard]] std::uint32_t Free(std::int32_t channel) const noexcept;
    /// Samples that wait there. [audio thread]
    [[nodiscard]] std::uint32_t Available(std::int32_t channel) const noexcept;
    /// Puts the buffer's first count samples into the channel's FIFO. Throws ZException -1, with
    /// none taken, when count is above Free or the buffer's length. [audio thread]
    void Write(const ZBuffer& buffer, std::uint32_t count, std::int32_t channel);
    /// The same with samples that stand in no buffer: all of the run. [audio thread]
    void Write(std::span<const float> samples, std::int32_t channel);

private:
    ZFifoList mFifos;
};

}  // namespace orvane
