// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/signals/ZFifoList.h"

#include "zlib/common/buffers/ZFifoBuffer.h"

#include <algorithm>
#include <mutex>

namespace orvane
{

ZFifoList::ZFifoList(std::string_view name, std::int32_t channels)
    : mChannels(channels)
    , mLock(name)
{
}

ZFifoList::~ZFifoList() = default;

void ZFifoList::SetSize(std::int32_t samples)
{
    Fifos fifos;
    for (std::int32_t channel = 0; channel < mChannels; ++channel)
        fifos.push_back(
            std::make_unique<ZFifoBuffer>(static_cast<std::uint32_t>(std::max(samples, 0))));
    const std::lock_guard guard(mLock);
    mFifos.swap(fifos);
}

void ZFifoList::Reset() noexcept
{
    for (const auto& fifo : mFifos)
        fifo->Reset();
}

ZFifoBuffer* ZFifoList::Get(std::int32_t channel) const noexcept
{
    if (channel < 0 || channel >= std::ssize(mFifos))
        return nullptr;
    return mFifos[static_cast<std::size_t>(channel)].get();
}

}  // namespace orvane
