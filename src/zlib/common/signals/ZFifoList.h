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

/// The sample FIFOs of an end bay, one per channel. The list's lock is held only while the FIFOs
/// are replaced, which must not overlap reading and writing: those take no lock.
class ZFifoList
{
public:
    ZFifoList(std::string_view name, std::int32_t channels);
    ~ZFifoList();

    /// Replaces all FIFOs by empty ones; before the first call there are none. Throws ZException
    /// kGeneral, with the FIFOs as they were, unless samples is a power of two. [setup]
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
