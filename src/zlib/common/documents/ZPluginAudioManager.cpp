// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/documents/ZPluginAudioManager.h"

#include "zlib/common/objects/ZException.h"
#include "zlib/common/signals/ZSignalDriver.h"

#include <boost/make_shared.hpp>

namespace orvane
{

bool ZPluginAudioManager::IsKindOf(std::string_view className) const
{
    return className == "ZPluginAudioManagerClass" || ZAudioManager::IsKindOf(className);
}

const char* ZPluginAudioManager::GetClassName() const
{
    return "ZPluginAudioManagerClass";
}

void ZPluginAudioManager::BuildDriverModel(const ZDriverSettings& /*settings*/)
{
    Build([] { return boost::make_shared<ZSignalDriver>(); });
}

boost::shared_ptr<ZXMLElement> ZPluginAudioManager::ExtractHeader() const
{
    throw ZException("Implement ExtractHeader in ZPluginAudioManager\n");
}

void ZPluginAudioManager::ExtractBody(const boost::shared_ptr<ZXMLElement>& /*xml*/) const
{
    throw ZException("Implement ExtractBody in ZPluginAudioManager\n");
}

}  // namespace orvane
