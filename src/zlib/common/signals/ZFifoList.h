// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZLock.h"

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

namespace orvane
{

class ZFifoBuffer;

/// The sample FIFOs of an end of a network, one a channel. They are rebuilt under the list's lock;
/// reading and writing takes none, so nobody may be reading or writing meanwhile.
class ZFifoList
{
public:
    ZFifoList(std::string_view name, std::int32_t channels);
    ~ZFifoList();

    /// Replaces all FIFOs by empty ones; there are none before the first time. samples is a power
    /// of two; else throws ZException -1, with the FIFOs as they were. [setup]
    void SetSize(std::int32_t samples);
    /// Empties all. [setup]
    void Reset() noexcept;
    /// Null when there is no such channel or no FIFO yet. [audio thread]
    [[nodiscard]] ZFifoBuffer* Get(std::int32_t channel) const noexcept;
    [[nodiscard]] std::int32_t ChannelCount() const noexcept { return mChannels; }

private:
    using Fifos = std::vector<std::unique_ptr<ZFifoBuffer>>;

    const std::int32_t mChannels;
    ZLock mLock;
    Fifos mFifos;  // replaced under mLock
};

}  // namespace orvane
