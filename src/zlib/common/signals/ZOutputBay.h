// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/signals/ZFifoList.h"
#include "zlib/common/signals/ZSignalBay.h"

#include <span>

namespace orvane
{

/// The end of a network where samples go out: an import and a FIFO per channel. A sink: Prepare
/// makes it active and with it all bays that it reads. Made in code, not from a description.
class ZOutputBay : public ZSignalBay
{
public:
    /// Throws ZException kGeneral unless channels is 0 to kMaxChannels. [setup]
    ZOutputBay(std::string_view name, std::int32_t channels, ZLooper* looper = nullptr);

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    [[nodiscard]] boost::shared_ptr<ZBay> Clone() override;
    [[nodiscard]] std::int32_t GetInputChannelCount() const override;
    /// Makes the bay a sink, and active with all bays that it reads.
    bool Prepare() override;
    /// Empties the FIFOs.
    void Reset() override;
    void ProcessSignal(std::uint64_t position, std::uint32_t count, std::int32_t firstExport,
                       std::int32_t exportCount) noexcept override;

    /// Replaces the FIFOs by empty ones of that capacity. Throws ZException kGeneral unless samples
    /// is a power of two. [setup]
    void SetFifoSize(std::int32_t samples) { mFifos.SetSize(samples); }
    /// Samples that the channel's FIFO has room for; 0 when there is no FIFO. [audio thread]
    [[nodiscard]] std::uint32_t Free(std::int32_t channel) const noexcept;
    /// Samples in the channel's FIFO; 0 when there is no FIFO. [audio thread]
    [[nodiscard]] std::uint32_t Available(std::int32_t channel) const noexcept;
    /// Fills samples from the channel's FIFO. Throws ZException kGeneral, with none taken, for more
    /// than Available. [audio thread]
    void Read(std::span<float> samples, std::int32_t channel);
    /// Samples that the last pass put into the FIFO of the last channel. [audio thread]
    [[nodiscard]] std::uint32_t GetWritten() const noexcept { return mWritten; }

private:
    ZFifoList mFifos;
    std::uint32_t mWritten = 0;
};

}  // namespace orvane
