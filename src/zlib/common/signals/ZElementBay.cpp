// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/signals/ZElementBay.h"

#include "zlib/common/buffers/ZBuffer.h"
#include "zlib/common/elements/ZElement.h"
#include "zlib/common/objects/ZApplication.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZXMLElement.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <atomic>

namespace orvane
{

ZElementBay::ZElementBay(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application)
    : ZSignalBay(xml, application)
    , mDescription(xml)
{
    const auto elementXml = xml->GetChild("element");
    if (!elementXml)
        throw ZException("No Element XML chunk found in Element Bay.");
    mElement = boost::make_shared<ZElement>(elementXml, application);
    if (mElement->GetType() == ZElement::ZBUFFER)
        mSpectralBuffer =
            std::make_unique<ZBuffer>(mElement->GetZBuffer()->Length(), "SpectralBuffer");
    MakeExport("Element Bay", PortType());
    ZElementBay::MaxBufferChanged();
}

ZElementBay::~ZElementBay() = default;

bool ZElementBay::IsKindOf(std::string_view className) const
{
    return className == "ZElementBayClass" || ZSignalBay::IsKindOf(className);
}

const char* ZElementBay::GetClassName() const
{
    return "ZElementBayClass";
}

void ZElementBay::ExtractBody(const boost::shared_ptr<ZXMLElement>& xml) const
{
    xml->AddChild(*mElement->ExtractXML());
}

boost::shared_ptr<ZBay> ZElementBay::Clone()
{
    auto copy = boost::make_shared<ZElementBay>(mDescription, GetApp());
    CopySettingsTo(*copy);
    copy->RestoreBody(ExtractXML());
    return copy;
}

boost::shared_ptr<ZElement> ZElementBay::GetElement() const
{
    return mElement;
}

ZPort::Type ZElementBay::PortType() const
{
    switch (mElement->GetType()) {
    case ZElement::ZDISCRETE:
        return ZPort::kDiscrete;
    case ZElement::ZBUFFER:
        return ZPort::kSpectrum;
    default:
        return ZPort::kControl;
    }
}

void ZElementBay::PortRangeChanged(ZPort& port)
{
    if (mElement->GetType() == ZElement::ZFLOAT)
        mElement->SetRange(port.RangeMin(), port.RangeMax(), false);
}

void ZElementBay::MaxBufferChanged()
{
    ZSignalBay::MaxBufferChanged();
    if (mSpectralBuffer)
        for (ZSignalPort* const port : SignalExports())
            port->SetBuffer(mSpectralBuffer.get());
}

void ZElementBay::SetDefaults()
{
    if (mElement->GetType() == ZElement::ZDISCRETE)
        mElement->SetDiscrete(mElement->GetDiscreteDefault(), false);
    else if (mElement->GetType() == ZElement::ZFLOAT)
        mElement->SetZFloat(mElement->GetZFloatDefault(), false);
}

void ZElementBay::ProcessSignal(std::uint64_t /*position*/, std::uint32_t /*count*/,
                                std::int32_t /*firstExport*/, std::int32_t /*exportCount*/) noexcept
{
    for (ZSignalPort* const port : SignalExports())
        port->SetAvailable(WriteValue(*port->GetBuffer()));
}

/// Gives back the number of samples written.
std::uint32_t ZElementBay::WriteValue(ZBuffer& buffer) const noexcept
{
    switch (mElement->GetType()) {
    case ZElement::ZFLOAT:
        buffer.Data()[0] = mElement->GetZFloat();
        return 1;
    case ZElement::ZBUFFER:
        return CopySpectrum();
    default:
        return 0;
    }
}

std::uint32_t ZElementBay::CopySpectrum() const noexcept
{
    ZBuffer& source = *mElement->GetZBuffer();
    // Atomic, because another thread may be storing samples.
    for (std::uint32_t i = 0; i < mSpectralBuffer->Length(); ++i)
        mSpectralBuffer->Data()[i] =
            std::atomic_ref(source.Data()[i]).load(std::memory_order_relaxed);
    return mSpectralBuffer->Length();
}

}  // namespace orvane
