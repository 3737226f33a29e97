// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/signals/ZFifoList.h"
#include "zlib/common/signals/ZSignalBay.h"

#include <span>

namespace orvane
{

/// The end of a network where samples come in: a FIFO and an export per channel. Made in code, not
/// from a description.
class ZInputBay : public ZSignalBay
{
public:
    /// Throws ZException kGeneral unless channels is 0 to kMaxChannels. [setup]
    ZInputBay(std::string_view name, std::int32_t channels, ZLooper* looper = nullptr);

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    [[nodiscard]] boost::shared_ptr<ZBay> Clone() override;
    [[nodiscard]] std::int32_t GetOutputChannelCount() const override;
    void ProcessSignal(std::uint64_t position, std::uint32_t count, std::int32_t firstExport,
                       std::int32_t exportCount) noexcept override;

    /// Replaces the FIFOs by empty ones of that capacity. Throws ZException kGeneral unless samples
    /// is a power of two. [setup]
    void SetFifoSize(std::int32_t samples) { mFifos.SetSize(samples); }
    /// Samples that the channel's FIFO has room for; 0 when there is no FIFO. [audio thread]
    [[nodiscard]] std::uint32_t Free(std::int32_t channel) const noexcept;
    /// Samples in the channel's FIFO; 0 when there is no FIFO. [audio thread]
    [[nodiscard]] std::uint32_t Available(std::int32_t channel) const noexcept;
    /// Appends samples to the channel's FIFO. Throws ZException kGeneral, with none taken, for more
    /// than Free. [audio thread]
    void Write(std::span<const float> samples, std::int32_t channel);

private:
    ZFifoList mFifos;
};

}  // namespace orvane
