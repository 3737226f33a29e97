// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/signals/ZThruBay.h"

#include "zlib/common/buffers/ZBuffer.h"
#include "zlib/common/objects/ZApplication.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZXMLElement.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <algorithm>

namespace orvane
{

ZThruBay::ZThruBay(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application)
    : ZSignalBay(xml, application)
{
    const std::int32_t channels = ReadChannelCount(*xml, kMaxChannels);
    for (std::int32_t channel = 0; channel < channels; ++channel) {
        MakeImport("input", ZPort::kAudio);
        MakeExport("output", ZPort::kAudio);
    }
}

bool ZThruBay::IsKindOf(std::string_view className) const
{
    return className == "ZThruBayClass" || ZSignalBay::IsKindOf(className);
}

const char* ZThruBay::GetClassName() const
{
    return "ZThruBayClass";
}

boost::shared_ptr<ZXMLElement> ZThruBay::ExtractHeader() const
{
    auto xml = ZSignalBay::ExtractHeader();
    xml->AddAttribute("numchannels", GetExportCount());
    return xml;
}

boost::shared_ptr<ZBay> ZThruBay::Clone()
{
    auto copy = boost::make_shared<ZThruBay>(ExtractHeader(), GetApp());
    CopySettingsTo(*copy);
    copy->SetInputChannelCount(GetImportCount());
    return copy;
}

void ZThruBay::SetInputChannelCount(std::int32_t count)
{
    if (count > GetExportCount())
        throw ZException("Cannot have more input channels than outputs");
    CheckChannelCount(count);
    while (GetImportCount() < count)
        MakeImport("input", ZPort::kAudio);
    while (GetImportCount() > count)
        RemoveImport(GetImportCount() - 1);
}

void ZThruBay::ProcessSignal(std::uint64_t /*position*/, std::uint32_t count,
                             std::int32_t /*firstExport*/, std::int32_t /*exportCount*/) noexcept
{
    const auto& imports = SignalImports();
    std::size_t channel = 0;
    for (ZSignalPort* const port : SignalExports()) {
        ZBuffer& buffer = *port->GetBuffer();
        if (imports.empty())
            buffer.Clear();
        else
            buffer.CopyFrom(*imports[std::min(channel, imports.size() - 1)]->GetBuffer());
        port->SetAvailable(count);
        ++channel;
    }
}

}  // namespace orvane
