// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/signals/ZInputBay.h"

#include "zlib/common/buffers/ZBuffer.h"
#include "zlib/common/buffers/ZFifoBuffer.h"
#include "zlib/common/objects/ZException.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <algorithm>

namespace orvane
{

ZInputBay::ZInputBay(std::string_view name, std::int32_t channels, ZLooper* looper)
    : ZSignalBay(name, looper)
    , mFifos("input", channels)
{
    CheckChannelCount(channels);
    for (std::int32_t channel = 0; channel < channels; ++channel)
        MakeExport("output", ZPort::kAudio);
}

bool ZInputBay::IsKindOf(std::string_view className) const
{
    return className == "ZInputBayClass" || ZSignalBay::IsKindOf(className);
}

const char* ZInputBay::GetClassName() const
{
    return "ZInputBayClass";
}

boost::shared_ptr<ZBay> ZInputBay::Clone()
{
    auto copy = boost::make_shared<ZInputBay>(GetName(), GetOutputChannelCount(), GetLooper());
    CopySettingsTo(*copy);
    if (const ZFifoBuffer* const fifo = mFifos.Get(0))
        copy->SetFifoSize(static_cast<std::int32_t>(fifo->Capacity()));
    return copy;
}

std::int32_t ZInputBay::GetOutputChannelCount() const
{
    return mFifos.ChannelCount();
}

std::uint32_t ZInputBay::Free(std::int32_t channel) const noexcept
{
    const ZFifoBuffer* const fifo = mFifos.Get(channel);
    return fifo ? fifo->Free() : 0;
}

std::uint32_t ZInputBay::Available(std::int32_t channel) const noexcept
{
    const ZFifoBuffer* const fifo = mFifos.Get(channel);
    return fifo ? fifo->Available() : 0;
}

void ZInputBay::Write(std::span<const float> samples, std::int32_t channel)
{
    ZFifoBuffer* const fifo = mFifos.Get(channel);
    if (!fifo)
        throw ZException("Read first");
    fifo->Write(samples);
}

void ZInputBay::ProcessSignal(std::uint64_t /*position*/, std::uint32_t count,
                              std::int32_t /*firstExport*/, std::int32_t /*exportCount*/) noexcept
{
    std::int32_t channel = 0;
    for (ZSignalPort* const port : SignalExports()) {
        ZFifoBuffer* const fifo = mFifos.Get(channel++);
        ZBuffer& buffer = *port->GetBuffer();
        const std::uint32_t read = fifo ? std::min({fifo->Available(), count, buffer.Length()}) : 0;
        if (read > 0)
            fifo->Read(buffer, read);
        port->SetAvailable(read);
    }
}

}  // namespace orvane
