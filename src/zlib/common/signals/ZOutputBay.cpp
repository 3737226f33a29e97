// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/signals/ZOutputBay.h"

#include "zlib/common/buffers/ZBuffer.h"
#include "zlib/common/buffers/ZFifoBuffer.h"
#include "zlib/common/elements/ZElement.h"
#include "zlib/common/objects/ZException.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <algorithm>

namespace orvane
{

ZOutputBay::ZOutputBay(std::string_view name, std::int32_t channels, ZLooper* looper)
    : ZSignalBay(name, looper)
    , mFifos("output", channels)
{
    CheckChannelCount(channels);
    for (std::int32_t channel = 0; channel < channels; ++channel)
        MakeImport(name, ZPort::kAudio);
    const auto power = boost::make_shared<ZElement>("OutputPower", ZElement::ZFLOAT, looper);
    power->SetRange(0.0f, 1.0f, true);
    power->SetZFloat(1.0f, true);
    power->SetArchivable(false);
    AddElement(power);
}

bool ZOutputBay::IsKindOf(std::string_view className) const
{
    return className == "ZOutputBayClass" || ZSignalBay::IsKindOf(className);
}

const char* ZOutputBay::GetClassName() const
{
    return "ZOutputBayClass";
}

boost::shared_ptr<ZBay> ZOutputBay::Clone()
{
    auto copy = boost::make_shared<ZOutputBay>(GetName(), GetInputChannelCount(), GetLooper());
    CopySettingsTo(*copy);
    if (const ZFifoBuffer* const fifo = mFifos.Get(0))
        copy->SetFifoSize(static_cast<std::int32_t>(fifo->Capacity()));
    return copy;
}

std::int32_t ZOutputBay::GetInputChannelCount() const
{
    return mFifos.ChannelCount();
}

bool ZOutputBay::Prepare()
{
    MakeSink();
    Activate();
    return ZSignalBay::Prepare();
}

void ZOutputBay::Reset()
{
    mFifos.Reset();
    ZSignalBay::Reset();
}

std::uint32_t ZOutputBay::Free(std::int32_t channel) const noexcept
{
    const ZFifoBuffer* const fifo = mFifos.Get(channel);
    return fifo ? fifo->Free() : 0;
}

std::uint32_t ZOutputBay::Available(std::int32_t channel) const noexcept
{
    const ZFifoBuffer* const fifo = mFifos.Get(channel);
    return fifo ? fifo->Available() : 0;
}

void ZOutputBay::Read(std::span<float> samples, std::int32_t channel)
{
    ZFifoBuffer* const fifo = mFifos.Get(channel);
    if (!fifo)
        throw ZException("Write first");
    fifo->Read(samples);
}

void ZOutputBay::ProcessSignal(std::uint64_t /*position*/, std::uint32_t /*count*/,
                               std::int32_t /*firstExport*/, std::int32_t /*exportCount*/) noexcept
{
    mWritten = 0;
    std::int32_t channel = 0;
    for (ZSignalPort* const port : SignalImports()) {
        ZFifoBuffer* const fifo = mFifos.Get(channel++);
        const ZBuffer& buffer = *port->GetBuffer();
        mWritten = fifo ? std::min({fifo->Free(), port->GetAvailable(), buffer.Length()}) : 0;
        if (mWritten > 0)
            fifo->Write(buffer, mWritten);
    }
}

}  // namespace orvane
