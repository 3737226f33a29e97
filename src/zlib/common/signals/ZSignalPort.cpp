// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/signals/ZSignalPort.h"

#include "zlib/common/buffers/ZBuffer.h"
#include "zlib/common/signals/ZSignalBay.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <utility>

namespace orvane
{

ZSignalPort::ZSignalPort(std::string_view name, Type type)
    : ZPort(name, type)
{
}

ZSignalPort::~ZSignalPort() = default;

boost::shared_ptr<ZPort> ZSignalPort::Clone() const
{
    auto copy = boost::make_shared<ZSignalPort>(GetName(), GetType());
    copy->CopyHeadFrom(*this);
    return copy;
}

void ZSignalPort::RouteAdded(ZBay& /*farBay*/, ZPort& /*farPort*/, std::int32_t /*index*/)
{
    FindSource();
}

void ZSignalPort::RouteRemoved(ZBay& /*farBay*/, ZPort& /*farPort*/, std::int32_t /*index*/)
{
    FindSource();
    if (GetDirection() != kImport)
        return;
    ReadOwnBuffer();
    mReady = true;
    mAvailable = 0;
}

void ZSignalPort::FindSource()
{
    mSource = nullptr;
    if (GetDirection() != kImport || GetRoutes().empty())
        return;
    auto* const source = dynamic_cast<ZSignalPort*>(GetRoutes().front().port);
    if (source && source->mSignalOwner)
        mSource = source;
}

void ZSignalPort::ReadOwnBuffer() noexcept
{
    mCurrentBuffer = mOwnBuffer.get();
    if (mOwnBuffer)
        mOwnBuffer->Clear();
}

void ZSignalPort::AllocateBuffer()
{
    const std::int32_t length =
        mSignalOwner ? mSignalOwner->GetMaxBuffer() : ZSignalBay::kDefaultMaxBuffer;
    auto buffer = std::make_unique<ZBuffer>(static_cast<std::uint32_t>(length), "ZBuffer");
    for (const RouteRecord& route : GetRoutes()) {
        auto* const reader = dynamic_cast<ZSignalPort*>(route.port);
        if (reader && reader->mCurrentBuffer == mOwnBuffer.get())
            reader->ReadOwnBuffer();
    }
    mOwnBuffer = std::move(buffer);
    mCurrentBuffer = mOwnBuffer.get();
}

void ZSignalPort::Prepare(std::uint64_t position, std::uint32_t requested) noexcept
{
    mPosition = position;
    mRequested = requested;
}

}  // namespace orvane
