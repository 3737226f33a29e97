// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/documents/ZAudioManager.h"

namespace orvane
{

/// The audio manager of a plug-in: the host is the clock, so the driver is a plain one that is
/// never started. [interface thread]
class ZPluginAudioManager : public ZAudioManager
{
public:
    using ZAudioManager::ZAudioManager;

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    /// The host decides, so the settings do not count.
    void BuildDriverModel(const ZDriverSettings& settings) override;
    /// Throw ZException -1: the manager is not archived.
    [[nodiscard]] boost::shared_ptr<ZXMLElement> ExtractHeader() const override;
    void ExtractBody(const boost::shared_ptr<ZXMLElement>& xml) const override;
};

}  // namespace orvane
